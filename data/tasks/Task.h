#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "data/providers/Provider.h"
#include "data/providers/WorkContext.h"
#include "data/rows/ColumnChunk.h"
#include "data/rows/RowMemory.h"

namespace tessel {

/// What is new of a result of the command.
struct ResultNews {
  bool begins = true;                  ///< Else more of the one told last.
  std::vector<FieldInfo> fields = {};  ///< Of one that begins; empty: it has no columns.
  std::int64_t recordsAffected = -1;   ///< Of one without columns that begins.
  std::vector<ErrorInfo> notices = {};
  std::vector<ChunkPtr> chunks = {};
  StatementPlace statement = {};  ///< Of one that begins.
};

/// What is known of a result with columns when its command has ended.
struct ResultFacts {
  std::vector<FieldInfo> fields;  ///< Complete.
  std::vector<std::size_t> key;   ///< Those of a whole unique key among them.
};

/// What is known when a task has ended. It is told with the end and not before: however early a
/// part of it is known, none can be taken with earlier news and forgotten.
struct TaskEnd {
  std::optional<ErrorInfo> failure;
  bool sessionLost = false;
  std::optional<std::string> catalog;          ///< The one in use, where it is known.
  std::vector<ResultFacts> results;            ///< Those with columns, as far as it was asked.
  std::optional<TextStop> stop;                ///< Where a command was left before its end.
  std::optional<UserTransaction> transaction;  ///< The user's, where it is known.
};

/// What a task has to tell since it was last asked.
struct TaskNews {
  std::vector<ErrorInfo> reports;
  std::vector<ResultNews> results;

  bool executed = false;              ///< The first result with columns is among `results`.
  std::int64_t recordsAffected = -1;  ///< Up to there, or to the end.
  bool progress = false;              ///< It is time to show `rowsFetched`.
  std::int64_t rowsFetched = 0;

  std::optional<TaskEnd> end;  ///< Told once.
};

/// One piece of work for a connection's worker, and what worker, cancelling threads and UI thread
/// share of it.
///
/// It ends exactly once: by the worker, or by Abandon when the worker does not come back. Whatever
/// the worker says after that is ignored.
class Task : public WorkContext {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using Poster = std::function<void()>;

  virtual ~Task() = default;

  /// Does the next piece of the work, and tells whether there is more to do; raises Error when it
  /// fails. Worker thread.
  [[nodiscard]] virtual bool Step(ProviderSession& session) = 0;
  /// Whether the session was opened. Worker thread.
  [[nodiscard]] virtual bool OpenedSession() const { return false; }

  /// Tells what the user's transaction is like after the last step. Worker thread.
  void TellTransaction(UserTransaction state);
  /// Ends the task with what its steps came to. Worker thread.
  void End(std::optional<ErrorInfo> failure, bool sessionLost);
  /// Ends the task in the worker's place, the session lost: as cancelled, or as done when its work
  /// was settled before. Nothing happens when it has ended. Any thread.
  /// Tells whether it did.
  bool Abandon();

  /// True for the first caller only.
  [[nodiscard]] bool BeginCancel();
  [[nodiscard]] bool Ended() const;
  /// The session undoes what the task did, which nobody is to interrupt: it may take as long as the
  /// work itself did.
  [[nodiscard]] bool TakesBack() const;
  /// Whether the command has a result with columns.
  [[nodiscard]] bool HasResult() const;
  /// Waits until the task has ended or `limit` is over; tells whether it has ended.
  [[nodiscard]] bool WaitForEnd(Milliseconds limit) const;
  void WaitForEnd() const;

  /// From now on `post` is called, from any thread, when there is news; at once if there is some
  /// already. Null: when this returns, no call is under way and none will come. It is let go of
  /// with the notice of the end, so it may own the task.
  void SetPoster(Poster post);
  /// UI thread.
  [[nodiscard]] TaskNews TakeNews();

 protected:
  /// The outcome is success, whatever happens from here on: the third state, no longer cancellable.
  /// Worker thread.
  void Settle();
  /// From now on until the end it is taken back. Worker thread.
  void BeginTakingBack();
  /// Changes the news, `post` says whether that is worth a notice. Worker thread.
  void Tell(const std::function<void(TaskNews&)>& change, bool post);
  /// Changes what is told with the end. Worker thread.
  void PrepareEnd(const std::function<void(TaskEnd&)>& change);
  /// The catalog that `session` uses now is the one at the end. Worker thread.
  void NoteCatalog(ProviderSession& session);

 private:
  [[nodiscard]] Poster EndLocked();
  [[nodiscard]] Poster PostLocked();
  void TakeInStatements();
  void TakeInReports();

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  TaskNews news_;
  TaskEnd end_;
  Poster post_;
  bool posted_ = false;  ///< A notice is on its way.
  std::int64_t recordsAffected_ = -1;
  bool hasResult_ = false;
  bool settled_ = false;
  bool ended_ = false;
  bool cancelling_ = false;
  bool takesBack_ = false;
};

/// Opens the session.
class OpenTask : public Task {
 public:
  explicit OpenTask(Login login) : login_(std::move(login)) {}

  [[nodiscard]] bool Step(ProviderSession& session) override;
  [[nodiscard]] bool OpenedSession() const override { return opened_; }

  /// What ReadProperties gave; to be asked for after the end.
  [[nodiscard]] const Properties& SessionProperties() const { return properties_; }

 private:
  Login login_;
  Properties properties_;
  bool opened_ = false;
};

/// Makes another catalog the one in use.
class CatalogTask : public Task {
 public:
  explicit CatalogTask(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] bool Step(ProviderSession& session) override;

 private:
  std::string name_;
};

/// Reads a schema rowset.
class SchemaTask : public Task {
 public:
  explicit SchemaTask(SchemaRequest request) : request_(std::move(request)) {}

  [[nodiscard]] SchemaRowset Schema() const { return request_.schema; }

  [[nodiscard]] bool Step(ProviderSession& session) override;

 private:
  SchemaRequest request_;
};

/// How often something is heard of rows that are being fetched.
struct FetchPace {
  /// The worker looks up from fetching after so many rows where they come fast.
  static constexpr std::size_t mostRows = 256;

  std::chrono::milliseconds progress{100};  ///< How often progress is told.
  /// How often rows are handed over: what was fetched since is lost with a worker left behind.
  std::chrono::milliseconds handOver{10};
  /// How long rows may wait for their chunk to become large.
  std::chrono::milliseconds chunk{250};
  /// After so many rows the worker looks up where they come slowly, and at first.
  std::size_t fewestRows = 1;
};

/// Runs a command and fetches the rows of all its results: a step for the command, one for each
/// block of rows, and one for each result that follows.
class ExecuteTask : public Task {
 public:
  ExecuteTask(std::string sql, std::shared_ptr<RowBudget> budget, FetchPace pace)
      : sql_(std::move(sql)), keeper_(std::move(budget)), pace_(pace) {}

  [[nodiscard]] const std::string& Sql() const { return sql_; }
  [[nodiscard]] bool Step(ProviderSession& session) override;

 private:
  enum class Stage { Command, Rows, Next };

  [[nodiscard]] bool Advance(ProviderSession& session);
  [[nodiscard]] bool BeginFirst(ProviderSession& session);
  [[nodiscard]] bool BeginNext(ProviderSession& session);
  [[nodiscard]] bool BeginResult(std::vector<FieldInfo> fields);
  void FetchBlock(ProviderSession& session);
  void OfferRows();
  [[nodiscard]] std::optional<Error> HandOver(bool tell);
  [[nodiscard]] std::optional<Error> HandOverLast();
  void LeaveCommand(ProviderSession& session) noexcept;
  void NoteStop(const Error& error);
  void TellFields(ProviderSession& session);

  std::string sql_;
  ChunkKeeper keeper_;
  const FetchPace pace_;
  Stage stage_ = Stage::Command;
  bool behindFirst_ = false;                    ///< The first result with columns has been fetched.
  std::vector<std::vector<FieldInfo>> fields_;  ///< Of the results with columns.
  RowSink rows_{0};                             ///< Of the present one.
  std::int64_t rowsBefore_ = 0;                 ///< Of the results before it.
  std::int64_t rowsSoFar_ = 0;  ///< With those of the present one that were handed over.
  std::chrono::steady_clock::time_point lastLook_;
  std::chrono::steady_clock::time_point lastHandOver_;
  std::chrono::steady_clock::time_point lastChunk_;
  std::chrono::steady_clock::time_point lastProgress_;
  std::size_t rowsAtOnce_ = pace_.fewestRows;
};

}  // namespace tessel
