#include "data/tasks/Task.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "data/changes/UniqueRows.h"

namespace tessel {

namespace {

std::vector<ErrorInfo>& operator+=(std::vector<ErrorInfo>& list,
                                   const std::vector<ErrorInfo>& more) {
  list.insert(list.end(), more.begin(), more.end());
  return list;
}

/// Where more of the result told last belongs to.
ResultNews& LatestResult(TaskNews& news) {
  if (news.results.empty()) news.results.push_back({.begins = false});
  return news.results.back();
}

/// Of so many results it is asked what their rows come from; the rows of those behind cannot be
/// changed.
constexpr std::size_t mostDescribed = 100;

void MakeReadOnly(std::vector<FieldInfo>& fields) {
  for (FieldInfo& field : fields) field.updatable = false;
}

/// What there is to know of a result of the command that was just closed. Where rows come from
/// several tables no change could tell which row it is to hit, and there are providers that cannot
/// change any.
ResultFacts Describe(ProviderSession& session, std::size_t result, std::vector<FieldInfo> fields) {
  session.CompleteFields(result, fields);
  std::vector<std::size_t> key = session.FindKey(result, fields);
  const WriteDialect* writing = session.Writing();
  const bool canWrite = writing != nullptr && !(writing->needsKey && key.empty());
  if (OneBaseTable(fields) == nullptr || !canWrite) MakeReadOnly(fields);
  return {std::move(fields), std::move(key)};
}

void ThrowIfAny(const std::optional<Error>& error) {
  if (error) throw Error(*error);
}

}  // namespace

void Task::End(std::optional<ErrorInfo> failure, bool sessionLost) {
  Poster spent;
  const std::lock_guard lock(mutex_);
  if (ended_) return;
  TakeInStatements();
  TakeInReports();
  end_.failure = std::move(failure);
  end_.sessionLost = sessionLost;
  spent = EndLocked();
}

bool Task::Abandon() {
  Poster spent;
  const std::lock_guard lock(mutex_);
  if (ended_) return false;
  if (!settled_) {
    end_.failure = CancelledError().Info();
    news_.reports.push_back(*end_.failure);
  }
  end_.sessionLost = true;
  spent = EndLocked();
  return true;
}

void Task::TellTransaction(UserTransaction state) {
  PrepareEnd([state](TaskEnd& end) { end.transaction = state; });
}

bool Task::BeginCancel() {
  const std::lock_guard lock(mutex_);
  return !std::exchange(cancelling_, true) && !ended_;
}

bool Task::Ended() const {
  const std::lock_guard lock(mutex_);
  return ended_;
}

bool Task::TakesBack() const {
  const std::lock_guard lock(mutex_);
  return takesBack_;
}

void Task::BeginTakingBack() {
  const std::lock_guard lock(mutex_);
  takesBack_ = true;
}

bool Task::HasResult() const {
  const std::lock_guard lock(mutex_);
  return hasResult_;
}

bool Task::WaitForEnd(Milliseconds limit) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, limit, [this] { return ended_; });
}

void Task::WaitForEnd() const {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return ended_; });
}

void Task::SetPoster(Poster post) {
  Poster spent;
  const std::lock_guard lock(mutex_);
  std::swap(post_, post);
  posted_ = false;
  if (hasResult_ || ended_) spent = PostLocked();
}

TaskNews Task::TakeNews() {
  const std::lock_guard lock(mutex_);
  posted_ = false;
  return std::exchange(news_, TaskNews());
}

/// The statements that are done become news. With the lock held, as TakeInReports.
void Task::TakeInStatements() {
  for (DoneStatement& statement : TakeStatements()) {
    if (statement.recordsAffected >= 0)
      recordsAffected_ = std::max<std::int64_t>(recordsAffected_, 0) + statement.recordsAffected;
    news_.reports += statement.reports;
    news_.results.push_back({.recordsAffected = statement.recordsAffected,
                             .notices = std::move(statement.reports),
                             .statement = statement.statement});
  }
  if (!hasResult_) news_.recordsAffected = recordsAffected_;
}

/// What was reported since belongs to the result that was told last.
void Task::TakeInReports() {
  const std::vector<ErrorInfo> reports = TakeReports();
  if (reports.empty()) return;
  news_.reports += reports;
  LatestResult(news_).notices += reports;
}

void Task::Settle() {
  const std::lock_guard lock(mutex_);
  settled_ = true;
}

void Task::Tell(const std::function<void(TaskNews&)>& change, bool post) {
  const std::lock_guard lock(mutex_);
  if (ended_) return;
  TakeInStatements();
  change(news_);
  TakeInReports();
  hasResult_ = hasResult_ || news_.executed;
  if (post) (void)PostLocked();
}

void Task::PrepareEnd(const std::function<void(TaskEnd&)>& change) {
  const std::lock_guard lock(mutex_);
  if (!ended_) change(end_);
}

void Task::NoteCatalog(ProviderSession& session) {
  std::string catalog = session.CurrentCatalog();
  PrepareEnd([&](TaskEnd& end) { end.catalog = std::move(catalog); });
}

/// With the lock held, as PostLocked.
Task::Poster Task::EndLocked() {
  news_.end = std::move(end_);
  ended_ = true;
  return PostLocked();
}

/// Posts with the lock held: so no notice can be on its way to the queue once SetPoster has
/// returned. After the last notice the poster is given back, to be destroyed when the lock is gone:
/// it may own this task, which would otherwise keep itself alive.
Task::Poster Task::PostLocked() {
  changed_.notify_all();
  if (post_ && !std::exchange(posted_, true)) post_();
  return ended_ ? std::exchange(post_, nullptr) : nullptr;
}

bool OpenTask::Step(ProviderSession& session) {
  session.Open(login_, *this);
  opened_ = true;
  properties_ = session.ReadProperties();
  NoteCatalog(session);
  return false;
}

bool CatalogTask::Step(ProviderSession& session) {
  session.SetCatalog(name_, *this);
  NoteCatalog(session);
  return false;
}

bool SchemaTask::Step(ProviderSession& session) {
  SchemaRows rows(request_.schema, request_.restrictions);
  session.ReadSchema(rows, *this);
  rows.Sink().CloseChunk();
  Tell(
      [&](TaskNews& news) {
        news.executed = true;
        news.results.push_back({.fields = rows.Fields(), .chunks = rows.Sink().TakeChunks()});
        news.rowsFetched = rows.Sink().Rows();
      },
      false);
  return false;
}

bool ExecuteTask::Step(ProviderSession& session) {
  try {
    if (Advance(session)) return true;
  } catch (...) {
    LeaveCommand(session);
    throw;
  }
  Settle();
  LeaveCommand(session);
  return false;
}

/// Tells whether more is to be done. An error behind the first result with columns does not fail
/// the command.
bool ExecuteTask::Advance(ProviderSession& session) {
  try {
    switch (stage_) {
      case Stage::Command: return BeginFirst(session);
      case Stage::Rows: FetchBlock(session); return true;
      case Stage::Next: return BeginNext(session);
    }
  } catch (const Error& error) {
    NoteStop(error);
    if (!behindFirst_ || error.Number() == errorNumber::cancelled) throw;
    NoteFailure(error);
  }
  return false;
}

/// What is asked here is no part of the command: failing to tell it must not make the command a
/// failure.
void ExecuteTask::LeaveCommand(ProviderSession& session) noexcept {
  session.CloseResult();
  try {
    NoteCatalog(session);
    TellFields(session);
  } catch (const std::exception&) {
    return;
  }
}

void ExecuteTask::NoteStop(const Error& error) {
  TextStop stop{Statement(), KeptUpTo()};
  if (error.Number() != errorNumber::cancelled) stop.failedAt = FailedAt();
  PrepareEnd([&](TaskEnd& end) { end.stop = stop; });
}

/// Of which result it cannot be learnt, its rows cannot be changed; that says nothing of the
/// others.
void ExecuteTask::TellFields(ProviderSession& session) {
  std::vector<ResultFacts> results;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    try {
      results.push_back(Describe(session, i, fields_[i]));
    } catch (const Error&) {
      MakeReadOnly(fields_[i]);
      results.push_back({fields_[i], {}});
    }
  }
  PrepareEnd([&](TaskEnd& end) { end.results = std::move(results); });
}

bool ExecuteTask::BeginFirst(ProviderSession& session) {
  return BeginResult(session.ExecuteCommand(sql_, *this));
}

bool ExecuteTask::BeginNext(ProviderSession& session) {
  behindFirst_ = true;
  rowsBefore_ = rowsSoFar_;
  return BeginResult(session.NextResult(*this));
}

/// Tells whether there are rows to be fetched. What was done is told in any case: what follows may
/// hang.
bool ExecuteTask::BeginResult(std::vector<FieldInfo> fields) {
  if (fields.empty()) {
    Tell([](TaskNews& /*statements*/) {}, false);
    return false;
  }
  stage_ = Stage::Rows;
  rows_ = RowSink(fields.size());
  if (fields_.size() < mostDescribed) fields_.push_back(fields);
  else MakeReadOnly(fields);
  lastLook_ = lastHandOver_ = lastChunk_ = lastProgress_ = std::chrono::steady_clock::now();
  Tell(
      [&](TaskNews& news) {
        news.executed = news.executed || !behindFirst_;
        news.results.push_back({.fields = std::move(fields), .statement = Statement()});
      },
      true);
  return true;
}

void ExecuteTask::FetchBlock(ProviderSession& session) {
  try {
    if (session.FetchRows(rows_, rowsAtOnce_, *this)) {
      ThrowIfStopped();
      return OfferRows();
    }
  } catch (...) {
    (void)HandOverLast();
    throw;
  }
  stage_ = Stage::Next;
  ThrowIfAny(HandOverLast());
}

/// Now and then gives what was fetched to the UI thread: so that it can be seen, and is not lost
/// with a worker that has to be left behind. Chunks grow with the rows there are, that there be few
/// of them.
void ExecuteTask::OfferRows() {
  const auto now = std::chrono::steady_clock::now();
  const bool slow = now - std::exchange(lastLook_, now) > pace_.handOver;
  rowsAtOnce_ = slow ? std::max(rowsAtOnce_ / 2, pace_.fewestRows)
                     : std::min(rowsAtOnce_ * 2, FetchPace::mostRows);
  if (now - lastHandOver_ < pace_.handOver) return;
  lastHandOver_ = now;
  const bool tell = now - lastProgress_ >= pace_.progress;
  if (tell) lastProgress_ = now;
  const bool large = static_cast<std::int64_t>(rows_.PendingRows()) * 4 >= rows_.Rows();
  if (large || now - lastChunk_ >= pace_.chunk) {
    lastChunk_ = now;
    rows_.CloseChunk();
  }
  ThrowIfAny(HandOver(tell));
}

/// Rows for which there is no room are handed over all the same: they are there.
std::optional<Error> ExecuteTask::HandOver(bool tell) {
  std::vector<ChunkPtr> chunks = rows_.TakeChunks();
  std::optional<Error> noRoom = keeper_.Keep(chunks);
  rowsSoFar_ = rowsBefore_ + rows_.Rows();
  Tell(
      [&](TaskNews& news) {
        std::ranges::move(chunks, std::back_inserter(LatestResult(news).chunks));
        news.rowsFetched = rowsSoFar_;
        news.progress = news.progress || tell;
      },
      tell);
  return noRoom;
}

std::optional<Error> ExecuteTask::HandOverLast() {
  rows_.CloseChunk();
  std::optional<Error> noRoom = HandOver(false);
  rows_ = RowSink(0);
  return noRoom;
}

}  // namespace tessel
