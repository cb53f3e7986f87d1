#include "data/cursor/DataOperation.h"

#include <algorithm>
#include <iterator>

namespace tessel {

/// Nobody waits for it any more.
DataOperation::~DataOperation() {
  if (!HasEnded()) DataOperation::Cancel();
}

std::shared_ptr<Connection> DataOperation::ActiveConnection() const {
  const std::shared_ptr<CursorHost> host = host_.lock();
  return host ? host->AsConnection() : nullptr;
}

void DataOperation::Cancel() {
  if (const std::shared_ptr<CursorHost> host = host_.lock()) host->CancelTask(task_);
}

void DataOperation::Wait() {
  if (HasEnded()) return;
  if (const std::shared_ptr<CursorHost> host = host_.lock()) host->WaitFor(*task_);
  const auto deliver = deliver_;  // A handler may let go of this operation.
  deliver();
}

void DataOperation::Take(TaskNews& news, const RowOrigin& origin) {
  CountRows(std::max(Rows(), news.rowsFetched));
  for (ResultNews& result : news.results) TakeResult(result, news.recordsAffected);
  if (news.end) TakeEnd(news, origin);
}

void DataOperation::TakeResult(ResultNews& result, std::int64_t recordsAffected) {
  if (result.begins) {
    std::shared_ptr<ClientRecordset> recordset;
    if (!result.fields.empty()) {
      if (recordsets_.empty()) SetRecordsAffected(recordsAffected);
      Enter(OperationPhase::Fetching);
      recordset = recordsets_.emplace_back(
          std::make_shared<ClientRecordset>(host_, settings_.source, settings_.lock));
      recordset->BeginRows(task_, std::move(result.fields));
    }
    Add({recordset, result.recordsAffected, std::move(result.notices), result.statement});
  } else if (!Results().empty()) {
    std::ranges::move(result.notices, std::back_inserter(LastResult().notices));
  }
  if (!recordsets_.empty()) recordsets_.back()->AddRows(task_.get(), std::move(result.chunks));
}

/// Of the recordsets for which there are no facts too little is known to change their rows.
void DataOperation::TakeEnd(TaskNews& news, const RowOrigin& origin) {
  TaskEnd& end = *news.end;
  if (recordsets_.empty()) SetRecordsAffected(news.recordsAffected);
  const std::size_t known = std::min(recordsets_.size(), end.results.size());
  for (std::size_t i = 0; i < known; ++i)
    recordsets_[i]->EndRows(
        task_.get(), {origin, std::move(end.results[i].key), std::move(end.results[i].fields)});
  LeaveRows();
  if (end.stop) {
    end.stop->transaction = end.transaction.value_or(UserTransaction::Unknown);
    StopAt(*end.stop);
  }
  End(end.failure);
}

void DataOperation::Announce(const TaskNews& news, FailureSink& failures) {
  if (news.executed) RowsBegan.Raise(&failures);
  if (news.end) Ended.Raise(&failures);
  else if (news.executed || news.progress) Progress.Raise(&failures);
}

void DataOperation::LeaveRows() {
  for (const auto& recordset : recordsets_) recordset->EndRows(task_.get(), {});
}

void DataOperation::EndUnheard() {
  if (HasEnded()) return;
  LeaveRows();
  End(CancelledError().Info());
}

}  // namespace tessel
