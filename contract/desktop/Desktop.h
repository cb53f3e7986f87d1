#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Clock.h"
#include "contract/base/EventQueue.h"
#include "contract/desktop/Window.h"

namespace tessel {

/// The set of buttons of a message box; a name lists them in their order.
enum class MessageButtons { Ok, OkCancel, YesNoCancel, YesNo };
enum class MessageIcon { None, Critical, Question, Exclamation, Information };
/// The button that was pressed, with its classic number.
enum class MessageResult { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// A message box. Its text is plain, never markup, and may be long.
struct Message {
  std::string text;  ///< UTF-8; a long one scrolls, and line ends of either kind are kept.
  MessageButtons buttons = MessageButtons::Ok;
  MessageIcon icon = MessageIcon::None;
  std::string title = "Tessel";
  /// With it the box has a Help button, which calls it, as F1 does, and leaves the box open. What
  /// it throws is shown as a handler's failure is.
  std::function<void()> help = {};
  /// Words that stand on the buttons in place of their own ("Yes", "No"...), in the order in which
  /// the set names them; "&" marks the letter that presses the button. Empty: their own words.
  std::vector<std::string> captions = {};
  /// The button that Enter presses at first; none: the first of the set. It is one of the set.
  std::optional<MessageResult> defaultAnswer = {};
};

/// The clipboard of the desktop, shared with other programs: it may change at any time. UI thread.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// The clipboard as UTF-8 text; empty when it holds none.
  [[nodiscard]] virtual std::string Text() const = 0;
  /// The clipboard as the source of an HTML page, UTF-8; empty when it holds none.
  [[nodiscard]] virtual std::string Html() const = 0;
  /// Plain text in place of all that the clipboard held; line ends stay as they are.
  virtual void SetText(std::string_view text) = 0;
};

class Notifications;

/// What the program asks of the desktop. UI thread only, except for Events().Post. It outlives its
/// windows and everything that it gives a reference to.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// A loaded, hidden window of the form `formName`; raises Error(itemNotFound) when there is no
  /// such form. The form says what it is: the frame, a document inside the frame (made after it),
  /// or a dialog. Error(application): a document without a frame.
  [[nodiscard]] virtual std::unique_ptr<Window> MakeWindow(std::string_view formName) = 0;

  /// Shows a message box modally. Its default button has the focus; the letter of a button presses
  /// it, with Alt or without. Closing it without a button is Cancel, or No, or Ok, whichever it has
  /// last, and so is what comes back, without a box, once the session ends. Meanwhile events go on:
  /// notices and timers run.
  virtual MessageResult ShowMessage(const Message& message) = 0;

  // One of each for the whole program; the references stay good.
  [[nodiscard]] virtual Clipboard& TheClipboard() = 0;
  [[nodiscard]] virtual EventQueue& Events() = 0;
  [[nodiscard]] virtual const Clock& TheClock() const = 0;
  [[nodiscard]] virtual Notifications& TheNotifications() = 0;

  /// Whether a key is held at this moment (virtual key code; Shift, Ctrl and Alt at least).
  [[nodiscard]] virtual bool IsKeyDown(int keyCode) const = 0;

  /// Processes all pending events once, so that a long operation lets windows be painted and a
  /// button be pressed. Handlers run inside it. It may do nothing when it did so only milliseconds
  /// ago. Only the progress window's Yield calls it.
  virtual void ProcessPending() = 0;

  /// Runs `action` soon on the UI thread, from the top of the event loop, outside every handler and
  /// modal window. Actions run in the order in which they were given; what one throws is shown as a
  /// handler's failure is.
  virtual void Defer(std::function<void()> action) = 0;

  /// Starts a program, without arguments, that lives on by itself; raises Error(file) with the
  /// system's reason when it cannot be started. `path` is no command line: blanks belong to it.
  virtual void StartProcess(const std::string& path) = 0;

  /// Shows the help file: command 1 contents, 2 index, 15 the topic of the context number `data`.
  /// Any other command shows nothing. A topic that is not there shows the contents. A desktop with
  /// a help book of its own needs no `helpFile`. False when nothing could be shown; never raises.
  virtual bool ShowHelp(const std::string& helpFile, int command, int data) = 0;
  /// Shows the help topic of a window, as F1 in it does: that of its context number, else that of
  /// its form, else the contents. Never raises.
  virtual void ShowHelpOn(const Window& window) = 0;

  /// The system ends the program: a signal, the end of the session. From now on nothing is asked:
  /// modal windows and message boxes close by themselves, and no QueryUnload is raised. When all
  /// handlers have returned the frame is unloaded.
  Event<> SessionEnds;
};

}  // namespace tessel
