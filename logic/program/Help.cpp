#include "logic/program/Help.h"

#include <string_view>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr std::string_view shortcutText =
    "SQL Window\r\n"
    "----------\r\n"
    "F5        Execute SQL (selected text only)\r\n"
    "\r\n"
    "Ctrl+F    Complete field name\r\n"
    "Ctrl+T    Complete table name\r\n"
    "Ctrl+.    Complete from vocabulary\r\n"
    "Modifiers for the above:-\r\n"
    "(none)    Complete abbreviation\r\n"
    "Shift     Expand acronym based on capitals\r\n"
    "Alt       Expand acronym based on underscores/spaces\r\n"
    "\r\n"
    "Ctrl+'    Quote selected string\r\n"
    "\r\n"
    "\r\n"
    "Database Window\r\n"
    "---------------\r\n"
    "F2        Inline edit\r\n"
    "F3        BIG view\r\n"
    "F4        BIG edit\r\n"
    "Ctrl+S/R  Accept/Reject changes\r\n"
    "\r\n"
    "F5        Re-query\r\n"
    "Alt+<-/-> Back/Forward\r\n"
    "\r\n"
    "Ctrl+L    Toggle Lock\r\n"
    "\r\n"
    "\r\n"
    "Browser\r\n"
    "-------\r\n"
    "Enter     Copy object name to SQL window\r\n"
    "\r\n"
    "\r\n"
    "\r\n"
    "Shift     (with any SQL executing command) Preview SQL before execution\r\n"
    "\r\n"
    "F6        Toggle focus between SQL and Database windows\r\n"
    "F7        Toggle focus between SQL window and Browser\r\n";

}  // namespace

void Help::ShowHelp(int command, int data) const {
  static_cast<void>(global_.TheDesktop().ShowHelp(global_.HelpFile(), command, data));
}

MessageResult Help::HelpMsgBox(const std::string& text, MessageButtons buttons, MessageIcon icon,
                               int context) const {
  return Ask({text, buttons, icon}, context);
}

MessageResult Help::Ask(Message message, int context) const {
  message.help = [this, context] { ShowHelpTopic(context); };
  return global_.TheDesktop().ShowMessage(message);
}

MessageResult Help::HelpMsgBoxQuestion(const std::string& text, MessageButtons buttons,
                                       MessageIcon icon) const {
  return HelpMsgBox(text, buttons, icon, helpContext::question);
}

MessageResult Help::HelpMsgBoxNotice(const std::string& text, MessageButtons buttons,
                                     MessageIcon icon) const {
  return HelpMsgBox(text, buttons, icon, helpContext::notice);
}

void Help::Show(const std::string& text, MessageIcon icon) const {
  global_.TheDesktop().ShowMessage({text, MessageButtons::Ok, icon});
}

bool Help::TryTo(const std::function<void()>& action) const {
  try {
    action();
    return true;
  } catch (const Error& error) {
    Show(error.Description(), MessageIcon::Exclamation);
    return false;
  }
}

std::string LoadShortcutText() { return std::string(shortcutText); }

}  // namespace tessel
