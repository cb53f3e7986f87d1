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

#include "data/providers/Operation.h"
#include "data/providers/Provider.h"
#include "data/rows/ColumnChunk.h"
#include "data/rows/RowMemory.h"

namespace tessel {

/// What a task has to tell since it was last asked.
struct TaskNews {
  std::vector<ErrorInfo> reports;

  bool executed = false;          ///< The command was run and has a result with columns: `fields`.
  std::vector<FieldInfo> fields;  ///< Told with `executed`, and once more, complete, with the end.
  std::int64_t recordsAffected = -1;

  std::vector<ChunkPtr> chunks;
  bool progress = false;  ///< It is time to show `rowsFetched`.
  std::int64_t rowsFetched = 0;

  bool ended = false;  ///< Said once.
  std::optional<ErrorInfo> failure;
  bool sessionLost = false;
  std::optional<std::string> catalog;          ///< The one in use, where it is known.
  std::vector<std::size_t> key;                ///< The fields of a whole unique key.
  std::optional<UserTransaction> transaction;  ///< The user's, where it is known.
};

/// One piece of work for a connection's worker, and what worker, cancelling threads and UI thread
/// share of it.
///
/// It ends exactly once: by the worker, or by Abandon when the worker does not come back. Whatever
/// the worker says after that is ignored.
class Task : public Operation {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using Poster = std::function<void()>;

  virtual ~Task() = default;

  /// Takes the next step of the work; false: it was the last one. Raises Error when the work fails;
  /// no step follows then. Worker thread.
  [[nodiscard]] virtual bool Step(ProviderSession& session) = 0;
  /// Whether the work has opened the session. Worker thread.
  [[nodiscard]] virtual bool OpenedSession() const { return false; }

  /// Tells what the user's transaction is like after the work. Worker thread.
  void TellTransaction(UserTransaction state);
  /// Ends the task with what its work came to. Worker thread.
  void End(std::optional<ErrorInfo> failure, bool sessionLost);
  /// Ends the task in the worker's place, the session lost: as cancelled, or as done when its work
  /// was settled before. Nothing happens when it has ended. Any thread.
  /// Tells whether it did.
  bool Abandon();

  /// True for the first caller only.
  [[nodiscard]] bool BeginCancel();
  [[nodiscard]] bool Ended() const;
  /// Whether the command has a result with columns.
  [[nodiscard]] bool HasResult() const;
  /// Waits until the task has ended or `limit` is over; tells whether it has ended.
  [[nodiscard]] bool WaitForEnd(Milliseconds limit) const;
  void WaitForEnd() const;
  /// Waits until the command has a result with columns or the task has ended.
  void WaitForResult() const;

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
  /// Changes the news, `post` says whether that is worth a notice. Worker thread.
  void Tell(const std::function<void(TaskNews&)>& change, bool post);

 private:
  [[nodiscard]] Poster PostLocked();

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  TaskNews news_;
  Poster post_;
  bool posted_ = false;  ///< A notice is on its way.
  bool hasResult_ = false;
  bool settled_ = false;
  bool ended_ = false;
  bool cancelling_ = false;
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

/// Something short that the UI thread waits for.
class CallTask : public Task {
 public:
  using Body = std::function<void(ProviderSession&, Operation&)>;

  explicit CallTask(Body body) : body_(std::move(body)) {}

  [[nodiscard]] bool Step(ProviderSession& session) override;

 private:
  Body body_;
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

/// Runs a command and fetches its rows: a step for the command, one for each block of rows, and a
/// last one for what follows the rows.
class ExecuteTask : public Task {
 public:
  explicit ExecuteTask(std::string sql, RowMemory memory = RowMemory::OfMachine(),
                       FetchPace pace = {})
      : sql_(std::move(sql)), keeper_(std::move(memory)), pace_(pace) {}

  [[nodiscard]] const std::string& Sql() const { return sql_; }
  [[nodiscard]] bool Step(ProviderSession& session) override;

 private:
  enum class Stage { Command, Rows, Rest };

  [[nodiscard]] bool Advance(ProviderSession& session);
  [[nodiscard]] bool RunCommand(ProviderSession& session);
  void FetchBlock(ProviderSession& session);
  void OfferRows();
  [[nodiscard]] std::optional<Error> HandOver(bool tell);
  [[nodiscard]] std::optional<Error> HandOverLast();
  void Drain(ProviderSession& session);
  void LeaveCommand(ProviderSession& session) noexcept;
  void TellFields(ProviderSession& session);

  std::string sql_;
  ChunkKeeper keeper_;
  const FetchPace pace_;
  Stage stage_ = Stage::Command;
  std::vector<FieldInfo> fields_;
  RowSink rows_{0};
  std::chrono::steady_clock::time_point lastLook_;
  std::chrono::steady_clock::time_point lastHandOver_;
  std::chrono::steady_clock::time_point lastChunk_;
  std::chrono::steady_clock::time_point lastProgress_;
  std::size_t rowsAtOnce_ = pace_.fewestRows;
};

}  // namespace tessel
