#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "contract/base/Error.h"
#include "contract/base/Event.h"
#include "contract/data/Transaction.h"

namespace tessel {

class Connection;
class Recordset;

/// How far an operation has come. It goes on in this order, and may leave phases out.
enum class OperationPhase {
  Connecting,
  Executing,  ///< A command, a schema rowset or a change of the catalog, before there are rows.
  Fetching,   ///< There is a result with columns; its rows arrive.
  Writing,    ///< A row is added, changed or deleted in the database.
  Ended
};

/// How an operation ended. Work that was finished when it was asked to stop is Done.
enum class OperationOutcome { Done, Failed, Cancelled };

/// One piece of work of a connection in the background, from its start to its one end: connecting,
/// a command, a schema rowset, a change of the catalog, the writing of a row. UI thread only.
///
/// It runs when it is returned, or has ended already where there was nothing to do. Whoever started
/// it holds it: one that is let go of before its end is asked to stop, and nobody hears of its end.
/// The events come through the event queue, and when all is in order: a handler may do anything,
/// even let go of the operation or its connection.
class Operation {
 public:
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;
  virtual ~Operation() = default;

  /// The connection that it runs on; null when that is gone.
  [[nodiscard]] virtual std::shared_ptr<Connection> ActiveConnection() const = 0;

  /// Asks it to stop, without waiting; any number of times, at any time. The end still comes, once,
  /// within moments even when a driver hangs. Rows already fetched stay. A late request changes
  /// nothing: not the outcome, nor what runs next.
  virtual void Cancel() = 0;

  /// Waits for the end without running the event queue; Progress and Ended are raised before it
  /// returns. Returns at once when it has ended. It raises no Error: Failure tells what came of it.
  virtual void Wait() = 0;

  /// As the UI thread has heard of it; it changes only when the event queue runs, or in Wait.
  [[nodiscard]] OperationPhase Phase() const { return phase_; }
  [[nodiscard]] bool HasEnded() const { return phase_ == OperationPhase::Ended; }
  /// Rows fetched so far, of all results.
  [[nodiscard]] std::int64_t Rows() const { return rows_; }
  /// Only after the end: before it nothing has failed yet, and it says Done.
  [[nodiscard]] OperationOutcome Outcome() const;
  /// Why it failed, or that it was cancelled; nothing when it was done. Only after the end.
  [[nodiscard]] const std::optional<ErrorInfo>& Failure() const { return failure_; }

  /// Another phase began, or more rows have come; not more often than is worth showing. Not raised
  /// for the end.
  Event<> Progress;
  /// The end, once, however it came. Phase, Outcome and Failure tell it already.
  Event<> Ended;

 protected:
  // For implementations: these only take down what is to be told. They raise no event; whoever
  // calls them raises Progress or Ended when everything is in order.
  explicit Operation(OperationPhase phase) : phase_(phase) {}

  void Enter(OperationPhase phase) { phase_ = phase; }
  /// The sum so far, not those that are new.
  void CountRows(std::int64_t rows) { rows_ = rows; }
  /// Called once. Error(cancelled) makes the outcome Cancelled, another failure Failed.
  void End(std::optional<ErrorInfo> failure);

 private:
  OperationPhase phase_;
  std::int64_t rows_ = 0;
  std::optional<ErrorInfo> failure_;
};

/// Waits for the end of an operation without running the event queue. Raises its failure, also when
/// it was cancelled.
void Finish(Operation& operation);

/// A statement of a command's text.
struct StatementPlace {
  std::int64_t number = 0;  ///< From 1; 0: the database does not tell which one it is.
  std::size_t begin = 0;    ///< Bytes of the text, [begin, end).
  std::size_t end = 0;
};

/// Where the text of a command was left before its end.
struct TextStop {
  StatementPlace statement;  ///< The one that failed, or ran when a cancel ended it.
  /// The statements up to this number stay done, whatever becomes of the others; nothing where the
  /// driver does not tell.
  std::optional<std::int64_t> keptUpTo;
  /// What is true of the done ones behind those. None: they were undone. Open: they wait for COMMIT
  /// or ROLLBACK. Failed: only ROLLBACK is accepted. Unknown: the database does not tell.
  UserTransaction transaction = UserTransaction::Unknown;
  /// The byte of the text that the database complains of, where it tells one; its end is a place
  /// too. Nothing for a cancel.
  std::optional<std::size_t> failedAt = {};
};

/// What one statement of a command came to. A result outlives its operation and its connection for
/// as long as it is held; the rows stay readable then.
struct CommandResult {
  std::shared_ptr<Recordset> rows;    ///< Open; null: the statement gives no columns.
  std::int64_t recordsAffected = -1;  ///< Of a statement without columns; -1: not told.
  std::vector<ErrorInfo> notices;     ///< Reported since the result before.
  StatementPlace statement;           ///< Whose result it is; one may have several.
};

/// A command, or a schema rowset. Rows may be looked at while they arrive: their number grows
/// only while the event queue runs, or in Wait.
class QueryOperation : public Operation {
 public:
  /// Of RecordsAffected: no execution has completed.
  static constexpr std::int64_t notExecuted = -2;

  /// Every result so far, in the order of the command. Of a text with very many only the rows of
  /// the first hundred with columns can be changed.
  [[nodiscard]] const std::vector<CommandResult>& Results() const { return results_; }
  /// The first result with columns: what a window shows. Null while there is none.
  [[nodiscard]] std::shared_ptr<Recordset> FirstRows() const;
  /// What the statements up to the first result with columns affected, together: -1 when none of
  /// them told, notExecuted before the execution has completed.
  [[nodiscard]] std::int64_t RecordsAffected() const { return recordsAffected_; }

  /// Where the text was left; nothing when it ran to its end. Only after the end. An error behind
  /// the first result with columns leaves the outcome Done, and stops the text all the same.
  [[nodiscard]] const std::optional<TextStop>& Stop() const { return stop_; }

  /// The first result with columns is there; once, before the Progress or Ended that goes with it.
  Event<> RowsBegan;

 protected:
  using Operation::Operation;

  // For implementations, as those of Operation.
  void Add(CommandResult result) { results_.push_back(std::move(result)); }
  /// To add notices to it; only when there is a result.
  [[nodiscard]] CommandResult& LastResult() { return results_.back(); }
  void SetRecordsAffected(std::int64_t count) { recordsAffected_ = count; }
  void StopAt(TextStop stop) { stop_ = stop; }

 private:
  std::vector<CommandResult> results_;
  std::optional<TextStop> stop_;
  std::int64_t recordsAffected_ = notExecuted;
};

}  // namespace tessel
