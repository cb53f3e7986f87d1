// The desktop contract, held by the headless twin.

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/contract/desktop/ContractHost.h"
#include "tests/headless/HeadlessDesktop.h"

namespace tessel::test {

namespace {

class HeadlessContractHost final : public ContractHost {
 public:
  [[nodiscard]] Desktop& TheDesktop() override { return desktop_; }

  void Click(Window& window, std::string_view control) override { At(window).Click(control); }
  void DoubleClick(Window& window, std::string_view control) override {
    At(window).DoubleClick(control);
  }
  void ClickMouse(Window& window, std::string_view control, MouseButton button,
                  int shift) override {
    const MouseEvent event{button, shift, 0, 0};
    At(window).MouseDown(control, event);
    At(window).MouseUp(control, event);
  }
  void Type(Window& window, std::string_view control, std::string_view text) override {
    At(window).Type(control, text);
  }
  void PressKey(Window& window, int keyCode, int shift) override {
    At(window).PressKey(keyCode, shift);
  }
  void SelectEntry(Window& window, std::string_view list, int index) override {
    At(window).SelectItem(list, index);
  }
  void ClickCell(Window& window, std::string_view listView, int row, int column) override {
    At(window).ClickCell(listView, row, column, {MouseButton::Left, shiftState::none, 0, 0});
  }
  void DoubleClickRow(Window& window, std::string_view listView, int row,
                      MouseButton button) override {
    At(window).DoubleClickRow(listView, row, button);
  }
  void ClickColumn(Window& window, std::string_view listView, int column) override {
    At(window).ClickColumn(listView, column);
  }
  void EndLabelEdit(Window& window, std::string_view listView, const std::string& text) override {
    At(window).EditLabel(listView, text);
  }
  void ClickNode(Window& window, std::string_view tree, const std::string& key) override {
    At(window).ClickNode(tree, key);
  }
  void CheckNode(Window& window, std::string_view tree, const std::string& key) override {
    At(window).CheckNode(tree, key);
  }
  void ExpandNode(Window& window, std::string_view tree, const std::string& key) override {
    At(window).ExpandNode(tree, key);
  }
  void ClickGridCell(Window& window, std::string_view grid, std::int64_t position,
                     int column) override {
    At(window).ClickGridCell(grid, position, column);
  }
  void SelectGridRows(Window& window, std::string_view grid,
                      const std::vector<std::int64_t>& positions) override {
    At(window).SelectGridRows(grid, positions);
  }
  void ChooseMenu(Window& window, std::string_view command) override {
    At(window).ChooseMenu(command);
  }
  void CloseByControlBox(Window& window) override { At(window).CloseByControlBox(); }
  void Maximize(Window& document) override { At(document).Maximize(true); }
  void OnModal(const std::string& form, std::function<void(Window&)> step) override {
    desktop_.OnModal(form, std::move(step));
  }
  void OnMessage(const std::string& text, MessageResult answer) override {
    desktop_.ExpectMessage(text, answer);
  }
  void OnPopup(const std::string& menu, const std::string& command) override {
    desktop_.ExpectPopup(menu, command);
  }
  void PassTime(int milliseconds) override { desktop_.AdvanceTime(milliseconds); }
  void Settle() override {
    desktop_.DrainEvents();
    desktop_.RunDeferred();
  }

 private:
  static HeadlessWindow& At(Window& window) { return dynamic_cast<HeadlessWindow&>(window); }

  HeadlessDesktop desktop_;
};

class HeadlessContract : public testing::TestWithParam<ContractCase> {};

}  // namespace

TEST_P(HeadlessContract, Holds) {
  HeadlessContractHost host;
  GetParam().body(host);
}

INSTANTIATE_TEST_SUITE_P(Twin, HeadlessContract, testing::ValuesIn(AllContractCases()),
                         ContractCaseName<testing::TestParamInfo<ContractCase>>);

TEST(ContractSuite, NamesAreDistinct) {
  std::set<std::string> names;
  for (const ContractCase& contractCase : AllContractCases())
    EXPECT_TRUE(names.insert(contractCase.name).second) << contractCase.name;
}

}  // namespace tessel::test
