#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "contract/base/Error.h"

namespace tessel {

/// A statement that gave no columns.
struct DoneStatement {
  std::int64_t recordsAffected = -1;  ///< -1: it does not tell.
  std::vector<ErrorInfo> reports;     ///< Since the statement before.
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

  /// A statement without columns is done: it affected so many records (-1: it does not tell), and
  /// what was reported since the one before belongs to it.
  void EndStatement(std::int64_t recordsAffected);

  /// The statements so far; the list is empty afterwards.
  [[nodiscard]] std::vector<DoneStatement> TakeStatements();
  /// The records since the last of them; the list is empty afterwards.
  [[nodiscard]] std::vector<ErrorInfo> TakeReports();

 private:
  std::atomic<bool> stopAsked_ = false;
  std::vector<DoneStatement> statements_;
  std::vector<ErrorInfo> reports_;
  bool raised_ = false;
};

/// The error that a cancelled operation ends with.
[[nodiscard]] Error CancelledError();

}  // namespace tessel
