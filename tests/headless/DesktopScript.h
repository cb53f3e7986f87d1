#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/CommonDialogs.h"
#include "contract/desktop/Desktop.h"

namespace tessel::test {

class HeadlessWindow;

/// A file dialog as it was shown.
struct ShownFileDialog {
  std::string form;  ///< Of the window it belongs to.
  std::string name;
  bool save = false;
  std::string fileName;
  std::string initialFolder;
  std::string filter;
  std::string defaultExtension;
  int flags = 0;
};

/// A pop-up menu as it was shown.
struct ShownPopup {
  std::string menu;
  std::string at;  ///< Name of the control that it stood at; empty: at the pointer.
  int x = 0;
  int y = 0;
};

/// What a test has prepared for the questions that the program will ask, and a record of what it
/// asked. Answers are used in order, each once. A question without one fails the test at once;
/// answers left over fail it in VerifyScript, which the desktop's end calls.
class DesktopScript {
 public:
  using Step = std::function<void(HeadlessWindow&)>;

  /// A message box of exactly this text is answered; `look` runs while it is open.
  void ExpectMessage(std::string text, MessageResult answer = MessageResult::Ok,
                     std::function<void(const Message&)> look = {});
  /// The next file dialog is answered with a path, as typed.
  void AnswerFile(std::string path) { files_.emplace_back(std::move(path)); }
  void CancelFile() { files_.emplace_back(std::nullopt); }
  void AnswerColor(Color color) { colors_.emplace_back(color); }
  void CancelColor() { colors_.emplace_back(std::nullopt); }
  /// What the user does in a modal window of that form; one step each time that nothing else is
  /// under way.
  void OnModal(const std::string& form, Step step) { steps_[form].push_back(std::move(step)); }
  /// The next pop-up menu is `menu`; `command` is chosen from it, none when empty. `look` runs
  /// while it is open.
  void ExpectPopup(std::string menu, std::string command, std::function<void()> look = {});

  /// All message boxes shown so far.
  [[nodiscard]] const std::vector<Message>& Messages() const { return messages_; }
  [[nodiscard]] const std::vector<ShownFileDialog>& FileDialogs() const { return shownFiles_; }
  /// The colours proposed by the colour dialogs shown so far.
  [[nodiscard]] const std::vector<Color>& ColorDialogs() const { return shownColors_; }
  [[nodiscard]] const std::vector<ShownPopup>& Popups() const { return popups_; }
  /// Names of the forms shown modally so far.
  [[nodiscard]] const std::vector<std::string>& Modals() const { return modals_; }

  /// Fails the test for every answer left over, and forgets them.
  void VerifyScript();

  // --- for the twin's windows --------------------------------------------------------------------
  [[nodiscard]] MessageResult AnswerMessage(const Message& message);
  [[nodiscard]] std::optional<std::string> TakeFile(const ShownFileDialog& dialog);
  [[nodiscard]] std::optional<Color> TakeColor(Color proposed);
  /// Runs the next step for the window; false when there is none.
  bool RunStep(HeadlessWindow& window);
  void NoteModal(const std::string& form) { modals_.push_back(form); }
  /// The command to choose, after looking at the open menu; empty: none.
  [[nodiscard]] std::string TakePopup(const ShownPopup& popup);

 private:
  struct ExpectedMessage {
    std::string text;
    MessageResult answer;
    std::function<void(const Message&)> look;
  };
  struct ExpectedPopup {
    std::string menu;
    std::string command;
    std::function<void()> look;
  };

  std::deque<ExpectedMessage> expected_;
  std::deque<std::optional<std::string>> files_;
  std::deque<std::optional<Color>> colors_;
  std::deque<ExpectedPopup> expectedPopups_;
  std::map<std::string, std::deque<Step>> steps_;

  std::vector<Message> messages_;
  std::vector<ShownFileDialog> shownFiles_;
  std::vector<Color> shownColors_;
  std::vector<ShownPopup> popups_;
  std::vector<std::string> modals_;
};

}  // namespace tessel::test
