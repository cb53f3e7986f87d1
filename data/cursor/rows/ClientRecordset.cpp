#include "data/cursor/rows/ClientRecordset.h"

#include <algorithm>
#include <utility>

#include "data/cursor/rows/WrittenRows.h"

namespace tessel {

ClientRecordset::ClientRecordset(std::weak_ptr<CursorHost> host, std::string source, LockType lock)
    : RowCursor(std::move(source), lock), host_(std::move(host)) {
  UseRows(std::make_shared<ResultRows>());
}

ClientRecordset::~ClientRecordset() { UseRows(nullptr); }

std::shared_ptr<ClientRecordset> ClientRecordset::Of(std::vector<FieldInfo> fields,
                                                     std::vector<ChunkPtr> chunks) {
  auto recordset = std::make_shared<ClientRecordset>(std::weak_ptr<CursorHost>(), std::string(),
                                                     LockType::ReadOnly);
  recordset->BeginRows(nullptr, std::move(fields));
  recordset->AddRows(nullptr, std::move(chunks));
  recordset->EndRows(nullptr, {});
  return recordset;
}

// --- where they come from --------------------------------------------------------------------

std::shared_ptr<Connection> ClientRecordset::ActiveConnection() const {
  const std::shared_ptr<CursorHost> host = host_.lock();
  return host ? host->AsConnection() : nullptr;
}

void ClientRecordset::Close() {
  if (const std::shared_ptr<CursorHost> host = host_.lock()) {
    if (task_) host->CancelTask(task_);
    if (change_) host->CancelTask(change_);
  }
  task_.reset();
  change_.reset();
  state_ = objectState::closed;
  UseRows(std::make_shared<ResultRows>());
}

/// What was begun here and is pending goes with the rows before.
void ClientRecordset::UseRows(std::shared_ptr<ResultRows> rows) {
  if (rows_) {
    rows_->Unwatch(this);
    const auto& pending = rows_->pending;
    if (pending && pending->owner == this && !pending->IsBeingWritten()) rows_->DropPending();
  }
  rows_ = std::move(rows);
  if (!rows_) return;
  rows_->Watch(this);
  MoveOver(rows_);
}

std::shared_ptr<Recordset> ClientRecordset::Clone(LockType lock) {
  RequireOpen();
  auto clone = std::make_shared<ClientRecordset>(host_, Source(), lock);
  clone->UseRows(rows_);
  clone->state_ = objectState::open;
  return clone;
}

std::shared_ptr<const FixedRows> ClientRecordset::RowsForGood() const {
  RequireOpen();
  return std::make_shared<WrittenRows>(rows_);
}

// --- for the connection ----------------------------------------------------------------------

void ClientRecordset::BeginRows(std::shared_ptr<Task> task, std::vector<FieldInfo> fields) {
  task_ = std::move(task);
  rows_->fields = std::move(fields);
  state_ = objectState::open | objectState::fetching;
}

void ClientRecordset::AddRows(const Task* task, std::vector<ChunkPtr> chunks) {
  if (task != task_.get()) return;
  for (ChunkPtr& chunk : chunks) rows_->store.Add(std::move(chunk));
}

/// Each field is changed in its place: who holds a reference to it keeps a good one.
void ClientRecordset::EndRows(const Task* task, RowFacts facts) {
  if (task != task_.get()) return;
  task_.reset();
  state_ &= objectState::open;
  if (state_ == objectState::closed) return;
  rows_->origin = std::move(facts.origin);
  if (facts.fields.size() == rows_->fields.size())
    std::ranges::move(facts.fields, rows_->fields.begin());
  rows_->SetKey(std::move(facts.key));
  ApplySort();
}

}  // namespace tessel
