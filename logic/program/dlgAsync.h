#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/Label.h"

namespace tessel {

class Button;
class ProgressBar;

/// Whether the provider of an open connection can work asynchronously.
[[nodiscard]] bool AllowsAsynchronousWork(const Connection& connection);

/// Elapsed time as "Hh:Nn:Ss", hours counting modulo 24.
[[nodiscard]] std::string FormatElapsed(std::int64_t milliseconds);

/// The progress window that every long operation runs under. It opens connections and runs queries
/// while it is shown modally over the main frame (DoConnect, DoQuery), and serves the program's own
/// loops as a modeless window with progress and cancel (InitProcess or InitProgress, then Yield or
/// DoProgress, then Unload). One instance; operations do not nest.
class dlgAsync {
 public:
  /// `frame` is the window it shows above and disables while it yields; it outlives this object.
  dlgAsync(Desktop& desktop, Window& frame) : desktop_(desktop), frame_(frame) {}

  /// What the window's title calls that connection from now on. What runs on a connection without
  /// a name has the program's own name as its title.
  void NameConnection(const std::shared_ptr<Connection>& connection, std::string name);
  /// The loop that follows works for that connection; the other operations know theirs.
  void WorkFor(const Connection* connection);

  /// Opens the connection, whose connection string is set. False when cancelled; raises the failure
  /// otherwise.
  bool DoConnect(const std::shared_ptr<Connection>& connection, const std::string& user,
                 const std::string& password);

  /// Opens the recordset, whose source is set, and gives the count that its execution reported (-2
  /// when none completed). Not `async`: waits inside the provider, and cannot be cancelled. False
  /// when cancelled; raises the failure otherwise.
  bool DoQuery(const std::shared_ptr<Recordset>& recordset, std::int64_t& recordsAffected,
               bool async);

  /// Writes the recordset's pending change, or deletes its current record. Not `async`: waits
  /// inside the provider, and cannot be cancelled. False when cancelled, and the change is still
  /// pending then; raises the failure otherwise.
  bool DoUpdate(const std::shared_ptr<Recordset>& recordset, bool async);
  bool DoDelete(const std::shared_ptr<Recordset>& recordset, bool async);

  /// The rows of a query, to be read only; asynchronously where the provider can. They are closed
  /// when the query returns none. Null when cancelled; raises the failure otherwise.
  [[nodiscard]] std::shared_ptr<Recordset> ReadRows(Connection& connection, const std::string& sql);

  /// A schema rowset, in the same way.
  [[nodiscard]] std::shared_ptr<Recordset> ReadSchema(Connection& connection, SchemaRowset schema,
                                                      const std::vector<std::string>& restrictions);

  /// Changes the catalog in use, in the same way. False when cancelled; raises the failure
  /// otherwise.
  bool UseCatalog(Connection& connection, const std::string& name);

  /// Shows the window modeless, without a bar; as with InitProgress, not before 150 ms have passed.
  void InitProcess(const std::string& message);
  /// Shows the window modeless with a bar from 0 to `maximum`, which is more than 0.
  void InitProgress(const std::string& message, double maximum);
  /// Advances the bar, yielding now and then; false once the user has cancelled.
  bool DoProgress(double increment);
  /// Lets the interface process pending input once; false once the user has cancelled.
  bool Yield();
  /// Cancels what is under way, if anything is.
  void Cancel() {
    if (window_ != nullptr && window_->Loaded()) cmdCancel_Click();
  }
  /// Ends an InitProcess or InitProgress; also at the end of the program.
  void Unload();

  /// A whole loop under a bar: calls `step` with 0, 1, ... below `count`, ends early once the user
  /// has cancelled, and unloads in any case. False when cancelled. Steps that take next to no time
  /// are better taken several at once before the interface has its turn; nothing is shown for fewer
  /// than these.
  bool ForEach(const std::string& message, std::int64_t count,
               const std::function<void(std::int64_t)>& step, std::int64_t atOnce = 1);

 private:
  [[nodiscard]] std::shared_ptr<Recordset> Read(Connection& connection,
                                                std::shared_ptr<Recordset> rows);
  void Load();
  void Reset();
  void ShowElapsed();
  void WaitModally();
  void WaitBlocked(const std::function<void()>& operation);
  void Hold(const std::shared_ptr<Recordset>& recordset);
  bool DoChange(const std::shared_ptr<Recordset>& recordset, const std::string& message, bool async,
                const std::function<void(int options)>& change);
  void Complete(const ErrorInfo* error, EventStatus status);
  bool Finish(std::exception_ptr pending);
  void Release();

  void cmdCancel_Click();
  void Form_Activate();
  void mCn_ExecuteComplete(std::int64_t recordsAffected, const ErrorInfo* error,
                           EventStatus status);
  void mRs_FetchProgress(std::int64_t progress);

  struct Name {
    std::weak_ptr<Connection> connection;
    std::string text;
  };

  Desktop& desktop_;
  Window& frame_;
  std::vector<Name> names_;
  std::string title_;  ///< Of the connection worked for; empty: the program's own name.
  std::unique_ptr<Window> window_;
  ProgressBar* bar_ = nullptr;
  std::uint32_t progressStep_ = 1;  ///< Units of the bar from one yield to the next.
  std::int64_t start_ = 0;
  bool cancelled_ = false;
  bool done_ = false;
  bool clockRuns_ = false;
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Recordset> recordset_;
  std::optional<ErrorInfo> storedError_;
  std::int64_t recordsAffected_ = -2;
};

}  // namespace tessel
