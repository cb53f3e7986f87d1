#pragma once

#include <functional>
#include <string>

#include "logic/program/Global.h"

namespace tessel {

/// Context numbers of the message boxes that have no topic of their own.
namespace helpContext {
inline constexpr int question = 9100;
inline constexpr int notice = 9200;
}  // namespace helpContext

/// The help file, and message boxes with a Help button.
class Help {
 public:
  explicit Help(const Global& global) : global_(global) {}

  /// Opens the help viewer: command 1 contents, 2 index, 15 the topic of context number `data`.
  /// Failures are ignored.
  void ShowHelp(int command, int data) const;
  void ShowContents() const { ShowHelp(1, 0); }
  void ShowIndex() const { ShowHelp(2, 0); }
  void ShowHelpTopic(int context) const { ShowHelp(15, context); }

  /// A message box with a Help button bound to `context`; the box stays open while help is shown.
  MessageResult HelpMsgBox(const std::string& text, MessageButtons buttons, MessageIcon icon,
                           int context) const;
  MessageResult HelpMsgBoxQuestion(const std::string& text, MessageButtons buttons,
                                   MessageIcon icon) const;
  MessageResult HelpMsgBoxNotice(const std::string& text, MessageButtons buttons,
                                 MessageIcon icon) const;

  /// A question of more than Yes and No, or one whose Enter must not do harm: the message as given,
  /// with a Help button bound to `context`.
  MessageResult Ask(Message message, int context) const;

  /// A message box with OK alone and no Help button.
  void Show(const std::string& text, MessageIcon icon) const;
  /// Does something and shows what it raises. False: it raised.
  bool TryTo(const std::function<void()>& action) const;

 private:
  const Global& global_;
};

/// The summary of keys, one line a key, with CR LF line ends and no space at its end.
[[nodiscard]] std::string LoadShortcutText();

}  // namespace tessel
