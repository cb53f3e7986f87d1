#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "contract/base/Error.h"
#include "contract/data/Operation.h"

namespace tessel {

/// What becomes of the statements before one that fails.
enum class EarlierStatements {
  Stay,  ///< They are done for good.
  MayBeUndone,
  NotKnown
};

/// A statement that gave no columns.
struct DoneStatement {
  std::int64_t recordsAffected = -1;  ///< -1: it does not tell.
  std::vector<ErrorInfo> reports;     ///< Since the statement before.
  StatementPlace statement;
};

/// What one piece of work (open, execute and fetch, schema, change of catalog) shares with its
/// provider: the request to stop, and the list of what the database reported.
///
/// StopAsked, AskToStop and ThrowIfStopped belong to any thread, the others to the worker.
class WorkContext {
 public:
  /// True from the moment that a cancel was asked for. A provider looks at it between rows and
  /// before each call that may take long.
  [[nodiscard]] bool StopAsked() const noexcept {
    return stopAsked_.load(std::memory_order_acquire);
  }
  void AskToStop() noexcept { stopAsked_.store(true, std::memory_order_release); }
  /// Raises Error(cancelled) once StopAsked.
  void ThrowIfStopped() const;

  /// Adds a notice, a warning or an error that does not end the operation to the connection's
  /// Errors.
  void Report(ErrorInfo record) { reports_.push_back(std::move(record)); }
  /// Adds all records, in order, and throws Error of the first. `records` is not empty.
  [[noreturn]] void Raise(std::vector<ErrorInfo> records);
  /// Adds the error that ended the operation, unless it is one that Raise threw: that stands in the
  /// list already.
  void NoteFailure(const Error& failure);

  /// A statement of the command text runs from now on. `earlier`: those before it, when it or one
  /// behind it fails.
  void BeginStatement(const StatementPlace& statement, EarlierStatements earlier);
  /// The one that runs, or ran last.
  [[nodiscard]] const StatementPlace& Statement() const { return statement_; }
  /// The statements up to this number stay done; nothing: that is not known.
  [[nodiscard]] const std::optional<std::int64_t>& KeptUpTo() const { return keptUpTo_; }

  /// What the database complains of begins at that byte of the command text, in the statement that
  /// runs.
  void FailAt(std::size_t byte) { failedAt_ = byte; }
  /// Of the statement that ran last; nothing: that is not known.
  [[nodiscard]] const std::optional<std::size_t>& FailedAt() const { return failedAt_; }

  /// Of the rows that a RowLoader was given since its beginning the database refuses number `row`
  /// (from 0), because of `column`, which may be empty. To be told before the Error is raised.
  void RefuseRow(std::int64_t row, std::string column = {}) {
    refused_ = RefusedPlace{row, std::move(column)};
  }
  struct RefusedPlace {
    std::int64_t row = 0;
    std::string column;
  };
  [[nodiscard]] const std::optional<RefusedPlace>& RefusedAt() const { return refused_; }

  /// A statement without columns is done: it affected so many records (-1: it does not tell), and
  /// what was reported since the one before belongs to it.
  void EndStatement(std::int64_t recordsAffected);

  /// The statements so far; the list is empty afterwards.
  [[nodiscard]] std::vector<DoneStatement> TakeStatements();
  /// The records since the last of them; the list is empty afterwards.
  [[nodiscard]] std::vector<ErrorInfo> TakeReports();

 private:
  std::atomic<bool> stopAsked_ = false;
  StatementPlace statement_;
  std::optional<std::int64_t> keptUpTo_;
  std::optional<std::size_t> failedAt_;
  std::optional<RefusedPlace> refused_;
  std::vector<DoneStatement> statements_;
  std::vector<ErrorInfo> reports_;
  bool raised_ = false;
};

/// The error that a cancelled operation ends with.
[[nodiscard]] Error CancelledError();

}  // namespace tessel
