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

enum class MessageButtons { Ok, OkCancel, YesNoCancel, YesNo };
enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageResult { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// A message box. Its text is plain, never markup, and may be long.
struct Message {
  std::string text;
  MessageButtons buttons = MessageButtons::Ok;
  MessageIcon icon = MessageIcon::None;
  std::string title = "Tessel";
  /// With it the box has a Help button, which calls it and leaves the box open.
  std::function<void()> help = {};
  /// Words that stand on the buttons in place of their own ("Yes", "No"...), in the order in which
  /// the set names them; "&" marks the letter that presses the button. Empty: their own words.
  std::vector<std::string> captions = {};
  /// The button that Enter presses at first; none: the first of the set.
  std::optional<MessageResult> defaultAnswer = {};
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// The clipboard as UTF-8 text; empty when it holds none.
  [[nodiscard]] virtual std::string Text() const = 0;
  virtual void SetText(std::string_view text) = 0;
};

/// What the program asks of the desktop. UI thread only.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// A loaded, hidden window of the form `formName`; raises Error(itemNotFound) when there is no
  /// such form. The form says what it is: the frame, a document inside the frame (made after it),
  /// or a dialog.
  [[nodiscard]] virtual std::unique_ptr<Window> MakeWindow(std::string_view formName) = 0;

  /// Shows a message box modally. Its default button has the focus; the letter of a button presses
  /// it, with Alt or without. Closing it without a button is Cancel, or No, or Ok, whichever it has
  /// last.
  virtual MessageResult ShowMessage(const Message& message) = 0;

  [[nodiscard]] virtual Clipboard& TheClipboard() = 0;
  [[nodiscard]] virtual EventQueue& Events() = 0;
  [[nodiscard]] virtual const Clock& TheClock() const = 0;

  /// Whether a key is held at this moment (virtual key code; Shift, Ctrl and Alt at least).
  [[nodiscard]] virtual bool IsKeyDown(int keyCode) const = 0;

  /// Processes all pending events once. Only the progress window's Yield calls it.
  virtual void ProcessPending() = 0;

  /// Runs `action` soon on the UI thread, from the top of the event loop, outside every handler and
  /// modal window.
  virtual void Defer(std::function<void()> action) = 0;

  /// Starts a program that lives on by itself; raises Error with the system's reason when it cannot
  /// be started.
  virtual void StartProcess(const std::string& path) = 0;

  /// Shows the help file: command 1 contents, 2 index, 15 the topic of the context number `data`.
  /// False when nothing could be shown; never raises.
  virtual bool ShowHelp(const std::string& helpFile, int command, int data) = 0;

  /// The system ends the program: a signal, the end of the session. From now on nothing is asked:
  /// modal windows and message boxes close by themselves, and no QueryUnload is raised. When all
  /// handlers have returned the frame is unloaded.
  Event<> SessionEnds;
};

}  // namespace tessel
