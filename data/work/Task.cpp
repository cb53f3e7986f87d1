#include "data/work/Task.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "data/changes/UniqueRows.h"

namespace tessel {

namespace {

std::vector<ErrorInfo>& operator+=(std::vector<ErrorInfo>& list, std::vector<ErrorInfo> more) {
  std::ranges::move(more, std::back_inserter(list));
  return list;
}

void ThrowIfAny(const std::optional<Error>& error) {
  if (error) throw Error(*error);
}

}  // namespace

void Task::End(std::optional<ErrorInfo> failure, bool sessionLost) {
  Poster spent;
  const std::lock_guard lock(mutex_);
  if (ended_) return;
  news_.reports += TakeReports();
  news_.ended = true;
  news_.failure = std::move(failure);
  news_.sessionLost = sessionLost;
  ended_ = true;
  spent = PostLocked();
}

void Task::TellTransaction(UserTransaction state) {
  Tell([state](TaskNews& news) { news.transaction = state; }, false);
}

bool Task::Abandon() {
  Poster spent;
  const std::lock_guard lock(mutex_);
  if (ended_) return false;
  news_.ended = true;
  if (!settled_) {
    news_.failure = CancelledError().Info();
    news_.reports.push_back(*news_.failure);
  }
  news_.sessionLost = true;
  ended_ = true;
  spent = PostLocked();
  return true;
}

bool Task::BeginCancel() {
  const std::lock_guard lock(mutex_);
  return !std::exchange(cancelling_, true) && !ended_;
}

bool Task::Ended() const {
  const std::lock_guard lock(mutex_);
  return ended_;
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

void Task::WaitForResult() const {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return hasResult_ || ended_; });
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

void Task::Settle() {
  const std::lock_guard lock(mutex_);
  settled_ = true;
}

void Task::Tell(const std::function<void(TaskNews&)>& change, bool post) {
  const std::lock_guard lock(mutex_);
  if (ended_) return;
  change(news_);
  news_.reports += TakeReports();
  hasResult_ = hasResult_ || news_.executed;
  if (post) (void)PostLocked();
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
  std::string catalog = session.CurrentCatalog();
  Tell([&](TaskNews& news) { news.catalog = std::move(catalog); }, false);
  return false;
}

bool CallTask::Step(ProviderSession& session) {
  body_(session, *this);
  std::string catalog = session.CurrentCatalog();
  Tell([&](TaskNews& news) { news.catalog = std::move(catalog); }, false);
  return false;
}

bool SchemaTask::Step(ProviderSession& session) {
  SchemaRows rows(request_.schema, request_.restrictions);
  session.ReadSchema(rows, *this);
  rows.Sink().CloseChunk();
  Tell(
      [&](TaskNews& news) {
        news.executed = true;
        news.fields = rows.Fields();
        news.chunks = rows.Sink().TakeChunks();
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

/// Tells whether more is to be done.
bool ExecuteTask::Advance(ProviderSession& session) {
  switch (stage_) {
    case Stage::Command: return RunCommand(session);
    case Stage::Rows: FetchBlock(session); return true;
    case Stage::Rest: Drain(session); break;
  }
  return false;
}

/// What is asked here is no part of the command: failing to tell it must not make the command a
/// failure.
void ExecuteTask::LeaveCommand(ProviderSession& session) noexcept {
  session.CloseResult();
  try {
    std::string catalog = session.CurrentCatalog();
    Tell([&](TaskNews& news) { news.catalog = std::move(catalog); }, false);
    if (!fields_.empty()) TellFields(session);
  } catch (const std::exception&) {
    return;
  }
}

/// Where rows come from several tables no change could tell which row it is to hit, and there are
/// providers that cannot change any.
void ExecuteTask::TellFields(ProviderSession& session) {
  session.CompleteFields(fields_);
  std::vector<std::size_t> key = session.FindKey(fields_);
  const WriteDialect* writing = session.Writing();
  const bool canWrite = writing != nullptr && !(writing->needsKey && key.empty());
  if (OneBaseTable(fields_) == nullptr || !canWrite)
    for (FieldInfo& field : fields_) field.updatable = false;
  Tell(
      [&](TaskNews& news) {
        news.fields = fields_;
        news.key = std::move(key);
      },
      false);
}

/// Tells whether there are rows to be fetched.
bool ExecuteTask::RunCommand(ProviderSession& session) {
  ExecuteResult result = session.ExecuteCommand(sql_, *this);
  fields_ = std::move(result.fields);
  const bool hasRows = !fields_.empty();
  Tell(
      [&](TaskNews& news) {
        news.executed = hasRows;
        news.fields = fields_;
        news.recordsAffected = result.recordsAffected;
      },
      hasRows);
  if (!hasRows) return false;
  stage_ = Stage::Rows;
  rows_ = RowSink(fields_.size());
  lastLook_ = lastHandOver_ = lastChunk_ = lastProgress_ = std::chrono::steady_clock::now();
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
  stage_ = Stage::Rest;
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
  Tell(
      [&](TaskNews& news) {
        std::ranges::move(chunks, std::back_inserter(news.chunks));
        news.rowsFetched = rows_.Rows();
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

void ExecuteTask::Drain(ProviderSession& session) {
  try {
    session.DrainResults(*this);
  } catch (const Error& error) {
    if (error.Number() == errorNumber::cancelled) throw;
    NoteFailure(error);
  }
}

}  // namespace tessel
