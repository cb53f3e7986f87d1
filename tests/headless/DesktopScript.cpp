#include "tests/headless/DesktopScript.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include <gtest/gtest.h>

#include "tests/headless/HeadlessWindow.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

std::vector<MessageResult> ResultsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok: return {MessageResult::Ok};
    case MessageButtons::OkCancel: return {MessageResult::Ok, MessageResult::Cancel};
    case MessageButtons::YesNo: return {MessageResult::Yes, MessageResult::No};
    case MessageButtons::YesNoCancel: break;
  }
  return {MessageResult::Yes, MessageResult::No, MessageResult::Cancel};
}

template <class Item>
Item TakeFirst(std::deque<Item>& items) {
  Item first = std::move(items.front());
  items.pop_front();
  return first;
}

}  // namespace

void DesktopScript::ExpectMessage(std::string text, MessageResult answer,
                                  std::function<void(const Message&)> look) {
  expected_.push_back({std::move(text), answer, std::move(look)});
}

void DesktopScript::ExpectPopup(std::string menu, std::string command, std::function<void()> look) {
  expectedPopups_.push_back({std::move(menu), std::move(command), std::move(look)});
}

void DesktopScript::VerifyScript() {
  for (const ExpectedMessage& message : std::exchange(expected_, {}))
    ADD_FAILURE() << "This message was expected and not shown:\n" << message.text;
  for (const auto& file : std::exchange(files_, {}))
    ADD_FAILURE() << "A file dialog was expected and not shown: " << file.value_or("(cancel)");
  if (!std::exchange(colors_, {}).empty())
    ADD_FAILURE() << "A colour dialog was expected and not shown.";
  for (const ExpectedPopup& popup : std::exchange(expectedPopups_, {}))
    ADD_FAILURE() << "The pop-up menu " << popup.menu << " was expected and not shown.";
  for (const auto& [form, steps] : std::exchange(steps_, {}))
    if (!steps.empty())
      ADD_FAILURE() << steps.size() << " step(s) in the modal window " << form << " were not run.";
}

MessageResult DesktopScript::AnswerMessage(const Message& message) {
  messages_.push_back(message);
  if (expected_.empty()) StopTest("Unexpected message:\n" + message.text);
  const ExpectedMessage expected = TakeFirst(expected_);
  if (expected.text != message.text)
    StopTest("Unexpected message:\n" + message.text + "\ninstead of:\n" + expected.text);
  const std::vector<MessageResult> results = ResultsOf(message.buttons);
  if (std::ranges::find(results, expected.answer) == results.end())
    StopTest("The answer given is not among the buttons of:\n" + message.text);
  if (expected.look) expected.look(message);
  return expected.answer;
}

std::optional<std::string> DesktopScript::TakeFile(const ShownFileDialog& dialog) {
  shownFiles_.push_back(dialog);
  if (files_.empty())
    StopTest("Unexpected file dialog of " + dialog.form + ", filter " + dialog.filter);
  return TakeFirst(files_);
}

std::optional<Color> DesktopScript::TakeColor(Color proposed) {
  shownColors_.push_back(proposed);
  if (colors_.empty()) StopTest("Unexpected colour dialog.");
  return TakeFirst(colors_);
}

bool DesktopScript::RunStep(HeadlessWindow& window) {
  const auto found = steps_.find(window.FormName());
  if (found == steps_.end() || found->second.empty()) return false;
  const Step step = TakeFirst(found->second);
  step(window);
  return true;
}

std::string DesktopScript::TakePopup(const ShownPopup& popup) {
  popups_.push_back(popup);
  if (expectedPopups_.empty() || expectedPopups_.front().menu != popup.menu)
    StopTest("Unexpected pop-up menu: " + popup.menu);
  const ExpectedPopup expected = TakeFirst(expectedPopups_);
  if (expected.look) expected.look();
  return expected.command;
}

}  // namespace tessel::test
