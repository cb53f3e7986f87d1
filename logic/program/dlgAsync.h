#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/EndNotice.h"

namespace tessel {

class Button;
class ProgressBar;

/// Whether the provider of an open connection can work asynchronously.
[[nodiscard]] bool AllowsAsynchronousWork(const Connection& connection);

/// The progress window that every long operation runs under. It waits for operations of
/// connections while it is shown modally over the main frame (Run, DoConnect, DoQuery), and serves
/// the program's own loops as a modeless window with progress and cancel (InitProcess or
/// InitProgress, then Yield or DoProgress, then Unload). A user who has turned to something else is
/// told of the end of what took long. One instance; it is used for one thing at a time.
class dlgAsync {
 public:
  using Operations = std::vector<std::shared_ptr<Operation>>;

  /// `frame` is the window it shows above and disables while it yields; it outlives this object.
  dlgAsync(Desktop& desktop, Window& frame) : desktop_(desktop), frame_(frame) {}

  /// What the window's title calls that connection from now on. What runs on a connection without
  /// a name has the program's own name as its title.
  void NameConnection(const std::shared_ptr<Connection>& connection, std::string name,
                      std::optional<Color> mark = {});

  /// Waits for the end of an operation under `message`, and cancels it when the user asks for that.
  /// Not `async`: waits inside the provider, and cannot be cancelled. False when cancelled; raises
  /// the failure otherwise.
  bool Run(std::shared_ptr<Operation> operation, const std::string& message, bool async);
  /// Waits for the end of all of several in the same way. The title is that of the first one's
  /// connection, the failure that of the first one that failed.
  bool RunAll(Operations operations, const std::string& message, bool async);

  /// Opens the connection, whose connection string is set. False when cancelled; raises the failure
  /// otherwise.
  bool DoConnect(const std::shared_ptr<Connection>& connection, const std::string& user,
                 const std::string& password);

  /// Waits for a query, and gives the count that its execution reported (-2 when none completed).
  /// False when cancelled; raises the failure otherwise.
  bool DoQuery(const std::shared_ptr<QueryOperation>& query, std::int64_t& recordsAffected,
               bool async);

  /// The rows of a query, to be read only; asynchronously where the provider can. Null when
  /// cancelled or when the query gives none; raises the failure otherwise.
  [[nodiscard]] std::shared_ptr<Recordset> ReadRows(Connection& connection, const std::string& sql);

  /// A schema rowset, in the same way.
  [[nodiscard]] std::shared_ptr<Recordset> ReadSchema(Connection& connection, SchemaRowset schema,
                                                      const std::vector<std::string>& restrictions);

  /// Shows the window modeless, without a bar; as with InitProgress, not before 150 ms have passed.
  /// The title is that of `connection`, if the loop works for one.
  void InitProcess(const std::string& message, const Connection* connection = nullptr);
  /// Shows the window modeless with a bar from 0 to `maximum`, which is more than 0. Beside the bar
  /// it says how many `units` of how many are done, and the percentage.
  void InitProgress(const std::string& message, double maximum,
                    const Connection* connection = nullptr, std::string units = "");
  /// Until the end of this InitProgress it also says how many units are done a second.
  void TellRate() { tellsRate_ = true; }
  /// Advances the bar, yielding now and then; false once the user has cancelled.
  bool DoProgress(double increment);
  /// Lets the interface process pending input once; false once the user has cancelled.
  bool Yield();
  /// Cancels what is under way, if anything is.
  void Cancel() {
    if (window_ != nullptr && window_->Loaded()) cmdCancel_Click();
  }
  /// Another one over the same frame, for a loop whose steps run under this one.
  [[nodiscard]] dlgAsync ForLoop() const;
  /// Ends an InitProcess or InitProgress; also at the end of the program.
  void Unload();
  /// The same, for a loop that has failed, or has done its work or was cancelled.
  void EndLoop(bool failed);

  /// A whole loop under a bar: calls `step` with 0, 1, ... below `count`, ends early once the user
  /// has cancelled, and unloads in any case. False when cancelled. Steps that take next to no time
  /// are better taken several at once before the interface has its turn; nothing is shown for fewer
  /// than these.
  bool ForEach(const std::string& message, const Connection* connection, std::int64_t count,
               const std::function<void(std::int64_t)>& step, std::int64_t atOnce = 1,
               const std::string& units = "");

 private:
  [[nodiscard]] std::shared_ptr<Recordset> Read(const std::shared_ptr<QueryOperation>& query);
  void Load();
  void Reset(const Connection* connection);
  void ShowElapsed();
  void ShowDone();
  [[nodiscard]] std::string RateSoFar() const;
  [[nodiscard]] std::int64_t Elapsed() const;
  void WaitFor(Operations operations, const std::string& message, bool async);
  void WaitModally();
  void WaitBlocked();
  [[nodiscard]] bool AllEnded() const;
  bool Conclude();
  [[nodiscard]] EndedWork EndOf(const Operations& ended) const;
  void Release();

  void cmdCancel_Click();
  void Form_Activate();
  void OperationProgress();
  void OperationEnded();

  struct Name {
    std::weak_ptr<Connection> connection;
    std::string text;
    std::optional<Color> mark;
  };

  /// Null for none, and for one that has no name.
  [[nodiscard]] const Name* NameOf(const Connection* connection) const;

  Desktop& desktop_;
  Window& frame_;
  std::vector<Name> names_;
  std::unique_ptr<Window> window_;
  ProgressBar* bar_ = nullptr;
  std::uint32_t progressStep_ = 1;  ///< Units of the bar from one yield to the next.
  std::uint32_t servedStep_ = 0;    ///< Steps of the bar done at the last yield.
  bool tellsRate_ = false;          ///< Says how many units are done a second.
  std::string units_;               ///< Of the bar.
  std::int64_t start_ = 0;
  std::int64_t shownDone_ = 0;         ///< When it was last said how much is done.
  std::string work_;                   ///< What is under way, as it was said at its start.
  std::int64_t recordsAffected_ = -1;  ///< By the query waited for.
  bool cancelled_ = false;
  bool clockRuns_ = false;
  Operations operations_;  ///< Those waited for.
};

/// Ends what InitProcess or InitProgress began, however the work under it ends; an exception that
/// passes is its failure.
class UnloadAtEnd {
 public:
  /// `async` outlives this object.
  explicit UnloadAtEnd(dlgAsync& async) : async_(async) {}
  ~UnloadAtEnd() { async_.EndLoop(std::uncaught_exceptions() > exceptions_); }
  UnloadAtEnd(const UnloadAtEnd&) = delete;
  UnloadAtEnd& operator=(const UnloadAtEnd&) = delete;

 private:
  dlgAsync& async_;
  int exceptions_ = std::uncaught_exceptions();
};

}  // namespace tessel
