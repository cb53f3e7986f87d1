#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <functional>
#include <vector>

class QDialog;
class QEventLoop;
class QMenu;
class QWidget;

namespace tessel {

/// The only place where the program runs an event loop inside a handler: modal dialogs, pop-up
/// menus, and the one round of pending events that a long operation allows itself.
class EventLoops {
 public:
  /// How many of them are running now; 0 when handlers are called from the application's own loop.
  [[nodiscard]] int Depth() const { return depth_; }
  /// Called when the depth has come back to 0.
  std::function<void()> becameIdle;

  /// Ends all that run now as if the user had given up; from now on none begins: dialogs and menus
  /// are not shown.
  void EndAll();
  [[nodiscard]] bool Ending() const { return ending_; }

  /// Shows the dialog modally and returns its result when it has been hidden.
  int Run(QDialog& dialog);
  /// The same for a dialog that only concerns the user when it takes long: it shows after
  /// `milliseconds`, unless EndWait comes first; until then input is kept from all windows. Short
  /// work so passes without a flicker, and without moving the keyboard focus to and fro.
  int RunLater(QDialog& dialog, int milliseconds);
  /// Ends the wait of RunLater for the dialog, which then never shows.
  void EndWait(const QDialog& dialog);
  /// Shows the menu at a place of the screen and returns when it has closed.
  void Run(QMenu& menu, const QPoint& place);
  /// Processes what is pending, once, unless it has done so only milliseconds ago. A window that
  /// was shown since the last time is given the chance to be painted.
  void ProcessPending();
  /// A window was shown: the next round of pending events is due at once.
  void NoteShown() { sinceRound_.invalidate(); }
  /// A window manager places a new window in its own time; a dialog that is to stand in its middle
  /// waits for that, without input, for a moment at most.
  void AwaitPlace(const QWidget& window);

 private:
  class Running;

  int Exec(QEventLoop& loop);

  int depth_ = 0;
  bool ending_ = false;
  std::vector<QEventLoop*> running_;  ///< The innermost last.
  QElapsedTimer sinceRound_;          ///< Since the end of the last round of pending events.
  const QDialog* awaited_ = nullptr;
  QEventLoop* wait_ = nullptr;
};

}  // namespace tessel
