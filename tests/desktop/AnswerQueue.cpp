#include "tests/desktop/AnswerQueue.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <cstdlib>
#include <iostream>

#include <gtest/gtest.h>

#include "desktop/base/Text.h"
#include "desktop/dialogs/MessageDialog.h"

namespace tessel::test {

namespace {

constexpr int lookMilliseconds = 2;
/// A window that ends by itself is not unexpected; one that stays so long is.
constexpr int patience = 1500;
/// A test that brings up more of them would never end.
constexpr int mostRefused = 10;

QDialogButtonBox::StandardButton ButtonOf(MessageResult answer) {
  switch (answer) {
    case MessageResult::Cancel: return QDialogButtonBox::Cancel;
    case MessageResult::Yes: return QDialogButtonBox::Yes;
    case MessageResult::No: return QDialogButtonBox::No;
    case MessageResult::Ok: break;
  }
  return QDialogButtonBox::Ok;
}

}  // namespace

AnswerQueue::AnswerQueue() {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
  timer_.start(lookMilliseconds);
}

AnswerQueue::~AnswerQueue() {
  for (const Answer& answer : answers_)
    ADD_FAILURE() << "Never shown: " << answer.kind << " " << answer.name;
}

void AnswerQueue::OnModal(const std::string& form, std::function<void(QWidget&)> step) {
  answers_.push_back({"modal", form, std::move(step)});
}

void AnswerQueue::OnMessage(const std::string& text, MessageResult answer) {
  answers_.push_back(
      {"message", text, [answer](QWidget& box) { PressMessageButton(box, answer); }});
}

void AnswerQueue::OnPopup(const std::string& menu, const std::string& command) {
  answers_.push_back({"popup", menu, [command](QWidget& shown) {
                        auto& open = dynamic_cast<QMenu&>(shown);
                        if (command.empty()) open.close();
                        else ChooseFrom(open, command);
                      }});
}

void AnswerQueue::OnMessage(const std::string& text, std::function<void(QWidget&)> step) {
  answers_.push_back({"message", text, std::move(step)});
}

void AnswerQueue::OnPopup(const std::string& menu, std::function<void(QWidget&)> step) {
  answers_.push_back({"popup", menu, std::move(step)});
}

void AnswerQueue::OnDialog(std::function<void(QWidget&)> step) {
  answers_.push_back({"dialog", "", std::move(step)});
}

/// A window is not answered while its last answer still runs: that may have opened another one.
void AnswerQueue::Look() {
  ForgetHidden();
  QWidget* shown = QApplication::activePopupWidget();
  const auto* menu = qobject_cast<QMenu*>(shown);
  if (menu == nullptr) shown = QApplication::activeModalWidget();
  if (shown == nullptr || !shown->isVisible()) return;
  if (std::ranges::find(answered_, QPointer<QWidget>(shown)) != answered_.end()) return;
  const std::string name = FromQt(shown->objectName());
  if (menu != nullptr) return Give("popup", name, *shown);
  if (qobject_cast<MessageDialog*>(shown) != nullptr)
    return Give("message", MessageTextOf(*shown), *shown);
  if (shown->property("kind").isValid()) return Give("modal", name, *shown);
  Give("dialog", "", *shown);
}

/// The answer is given from a timer of its own: what it opens in turn is looked at meanwhile.
void AnswerQueue::Give(const std::string& kind, const std::string& name, QWidget& shown) {
  const bool expected =
      !answers_.empty() && answers_.front().kind == kind && answers_.front().name == name;
  if (!expected) {
    if (++unexpectedLooks_ * lookMilliseconds < patience) return;
    unexpectedLooks_ = 0;
    return Refuse(kind + ": " + name, shown);
  }
  unexpectedLooks_ = 0;
  const Answer answer = std::move(answers_.front());
  answers_.pop_front();
  answered_.emplace_back(&shown);
  QTimer::singleShot(0, &shown, [this, answer, window = QPointer<QWidget>(&shown)] {
    answer.step(*window);
    std::erase(answered_, window);
  });
}

void AnswerQueue::Refuse(const std::string& what, QWidget& shown) {
  ADD_FAILURE() << "Unexpected " << what;
  if (++refused_ > mostRefused) {
    std::cerr << "Windows keep coming up that nobody answers, such as " << what << std::endl;
    std::abort();
  }
  if (auto* dialog = qobject_cast<QDialog*>(&shown)) return dialog->reject();
  shown.close();
}

void AnswerQueue::ForgetHidden() {
  std::erase_if(answered_, [](const QPointer<QWidget>& window) {
    return window == nullptr || !window->isVisible();
  });
}

void ChooseFrom(QMenu& menu, const std::string& command) {
  for (QAction* action : menu.actions()) {
    if (FromQt(action->objectName()) != command) continue;
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
    if (menu.isVisible()) menu.close();
    return;
  }
  ADD_FAILURE() << "The menu has no command " << command;
  menu.close();
}

std::string MessageTextOf(const QWidget& box) {
  if (const auto* lines = box.findChild<QPlainTextEdit*>()) return FromQt(lines->toPlainText());
  for (const QLabel* label : box.findChildren<QLabel*>())
    if (!label->text().isEmpty()) return FromQt(label->text());
  return {};
}

void PressMessageButton(QWidget& box, MessageResult answer) {
  QAbstractButton* button = box.findChild<QDialogButtonBox*>()->button(ButtonOf(answer));
  if (button != nullptr) return QTest::mouseClick(button, Qt::LeftButton);
  ADD_FAILURE() << "The box has no such button: " << MessageTextOf(box);
  box.hide();
}

}  // namespace tessel::test
