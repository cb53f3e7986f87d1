#pragma once

#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "contract/desktop/Desktop.h"

class QMenu;

namespace tessel::test {

/// What a user does with the modal windows, message boxes and pop-up menus that come up, prepared
/// beforehand. One that was not expected fails the test with its text and is closed.
class AnswerQueue {
 public:
  AnswerQueue();
  ~AnswerQueue();
  AnswerQueue(const AnswerQueue&) = delete;
  AnswerQueue& operator=(const AnswerQueue&) = delete;

  /// `step` runs while the next modal window of that form is shown; `window` is the form's widget.
  void OnModal(const std::string& form, std::function<void(QWidget& window)> step);
  void OnMessage(const std::string& text, MessageResult answer);
  void OnPopup(const std::string& menu, const std::string& command);
  /// The same for a user who does not answer by the mouse.
  void OnMessage(const std::string& text, std::function<void(QWidget& box)> step);
  void OnPopup(const std::string& menu, std::function<void(QWidget& shown)> step);
  /// `step` runs while the next modal dialog of any other kind (files, colours) is shown.
  void OnDialog(std::function<void(QWidget& dialog)> step);

 private:
  struct Answer {
    std::string kind;  ///< "modal", "message", "popup" or "dialog".
    std::string name;
    std::function<void(QWidget&)> step;
  };

  void Look();
  void Give(const std::string& kind, const std::string& name, QWidget& shown);
  /// Fails the test and closes the window; ends the program when that leads nowhere.
  void Refuse(const std::string& what, QWidget& shown);
  void ForgetHidden();

  std::deque<Answer> answers_;
  QTimer timer_;
  std::vector<QPointer<QWidget>> answered_;  ///< Those whose answer runs.
  int unexpectedLooks_ = 0;
  int refused_ = 0;
};

/// Chooses a command of an open menu with the mouse.
void ChooseFrom(QMenu& menu, const std::string& command);
/// Text of a message box that is shown.
[[nodiscard]] std::string MessageTextOf(const QWidget& box);
/// Presses a button of a message box.
void PressMessageButton(QWidget& box, MessageResult answer);

}  // namespace tessel::test
