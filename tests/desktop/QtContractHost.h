#pragma once

#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

#include "desktop/QtDesktop.h"
#include "tests/contract/desktop/ContractHost.h"
#include "tests/desktop/AnswerQueue.h"

namespace tessel::test {

/// The desktop of a test: Qt's, with every window remembered that is made.
class RememberingDesktop final : public Desktop {
 public:
  explicit RememberingDesktop(QtDesktop& desktop) : desktop_(desktop) {
    desktop_.SessionEnds = [this] { SessionEnds.Raise(nullptr); };
  }

  /// The window whose form this widget is; null when there is none.
  [[nodiscard]] Window* WindowOf(const QWidget& form) const;

  [[nodiscard]] std::unique_ptr<Window> MakeWindow(std::string_view formName) override;
  MessageResult ShowMessage(const Message& message) override {
    return desktop_.ShowMessage(message);
  }
  [[nodiscard]] Clipboard& TheClipboard() override { return desktop_.TheClipboard(); }
  [[nodiscard]] EventQueue& Events() override { return desktop_.Events(); }
  [[nodiscard]] const Clock& TheClock() const override { return desktop_.TheClock(); }
  [[nodiscard]] Notifications& TheNotifications() override { return desktop_.TheNotifications(); }
  [[nodiscard]] bool IsKeyDown(int keyCode) const override { return desktop_.IsKeyDown(keyCode); }
  void ProcessPending() override { desktop_.ProcessPending(); }
  void Defer(std::function<void()> action) override { desktop_.Defer(std::move(action)); }
  void StartProcess(const std::string& path) override { desktop_.StartProcess(path); }
  bool ShowHelp(const std::string& file, int command, int data) override {
    return desktop_.ShowHelp(file, command, data);
  }
  void ShowHelpOn(const Window& window) override { desktop_.ShowHelpOn(window); }

 private:
  QtDesktop& desktop_;
  std::vector<std::pair<QPointer<QWidget>, Window*>> made_;
};

class QtContractHost final : public ContractHost {
 public:
  QtContractHost();

  [[nodiscard]] Desktop& TheDesktop() override { return desktop_; }
  [[nodiscard]] AnswerQueue& Answers() { return answers_; }
  [[nodiscard]] QtDesktop& Qt() { return qt_; }
  void Click(Window& window, std::string_view control) override;
  void DoubleClick(Window& window, std::string_view control) override;
  void ClickMouse(Window& window, std::string_view control, MouseButton button, int shift) override;
  void Type(Window& window, std::string_view control, std::string_view text) override;
  void PressKey(Window& window, int keyCode, int shift = shiftState::none) override;
  void SelectEntry(Window& window, std::string_view list, int index) override;
  void ClickCell(Window& window, std::string_view listView, int row, int column) override;
  void ClickColumn(Window& window, std::string_view listView, int column) override;
  void DoubleClickRow(Window& window, std::string_view listView, int row,
                      MouseButton button) override;
  void EndLabelEdit(Window& window, std::string_view listView, const std::string& text) override;
  void ClickNode(Window& window, std::string_view tree, const std::string& key) override;
  void CheckNode(Window& window, std::string_view tree, const std::string& key) override;
  void ExpandNode(Window& window, std::string_view tree, const std::string& key) override;
  void ClickGridCell(Window& window, std::string_view grid, std::int64_t position,
                     int column) override;
  void SelectGridRows(Window& window, std::string_view grid,
                      const std::vector<std::int64_t>& positions) override;
  void ChooseMenu(Window& window, std::string_view command) override;
  void CloseByControlBox(Window& window) override;
  void Maximize(Window& document) override;
  void OnModal(const std::string& form, std::function<void(Window&)> step) override;
  void OnMessage(const std::string& text, MessageResult answer) override;
  void OnPopup(const std::string& menu, const std::string& command) override;
  void PassTime(int milliseconds) override;
  void Settle() override;

 private:
  QtDesktop qt_;
  RememberingDesktop desktop_;
  AnswerQueue answers_;
};

}  // namespace tessel::test
