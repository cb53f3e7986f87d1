#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/Desktop.h"
#include "contract/desktop/Window.h"

namespace tessel::test {

/// One implementation of the desktop contract, and a user at work on it. The cases of the contract
/// suite see no more than this. Windows are the desktop's own, made by a case and shown when the
/// user acts on them; names are those of the program's forms.
///
/// Every action returns when its effects, events included, are over. What the answers prepared here
/// are for must be shown before the host goes, else it fails the test.
class ContractHost {
 public:
  virtual ~ContractHost() = default;

  [[nodiscard]] virtual Desktop& TheDesktop() = 0;

  // --- keyboard and mouse ------------------------------------------------------------------------
  virtual void Click(Window& window, std::string_view control) = 0;
  /// In the middle of the control; in a list view beside its rows.
  virtual void DoubleClick(Window& window, std::string_view control) = 0;
  /// Presses and releases a button of the mouse over the control's upper left corner.
  virtual void ClickMouse(Window& window, std::string_view control, MouseButton button,
                          int shift) = 0;
  /// Gives the control the focus without moving the caret and types ASCII text.
  virtual void Type(Window& window, std::string_view control, std::string_view text) = 0;
  /// Presses and releases a key where the focus is.
  virtual void PressKey(Window& window, int keyCode, int shift = shiftState::none) = 0;

  // --- what controls offer -----------------------------------------------------------------------
  /// Picks an entry of a list box, or of a combo box's opened list.
  virtual void SelectEntry(Window& window, std::string_view list, int index) = 0;
  virtual void ClickCell(Window& window, std::string_view listView, int row, int column) = 0;
  virtual void ClickColumn(Window& window, std::string_view listView, int column) = 0;
  virtual void DoubleClickRow(Window& window, std::string_view listView, int row,
                              MouseButton button) = 0;
  /// Types a text into the label editor that is open and ends it with the Enter key.
  virtual void EndLabelEdit(Window& window, std::string_view listView, const std::string& text) = 0;
  virtual void ClickNode(Window& window, std::string_view tree, const std::string& key) = 0;
  /// Clicks the node's check box.
  virtual void CheckNode(Window& window, std::string_view tree, const std::string& key) = 0;
  /// Opens the node by its sign.
  virtual void ExpandNode(Window& window, std::string_view tree, const std::string& key) = 0;
  virtual void ClickGridCell(Window& window, std::string_view grid, std::int64_t position,
                             int column) = 0;
  /// Clicks row headers one after another, from the second on with Ctrl.
  virtual void SelectGridRows(Window& window, std::string_view grid,
                              const std::vector<std::int64_t>& positions) = 0;

  // --- windows and menus -------------------------------------------------------------------------
  /// Opens the menus of the menu bar down to a command and chooses it.
  virtual void ChooseMenu(Window& window, std::string_view command) = 0;
  virtual void CloseByControlBox(Window& window) = 0;
  virtual void Maximize(Window& document) = 0;

  // --- answers prepared, each used once, in order ------------------------------------------------
  /// While the next modal window of this form is shown. It must end the showing.
  virtual void OnModal(const std::string& form, std::function<void(Window&)> step) = 0;
  virtual void OnMessage(const std::string& text, MessageResult answer) = 0;
  /// A command of the next pop-up menu of that name is chosen; none when empty.
  virtual void OnPopup(const std::string& menu, const std::string& command) = 0;

  // --- time --------------------------------------------------------------------------------------
  /// Lets so much time pass with the event loop running.
  virtual void PassTime(int milliseconds) = 0;
  /// Runs what waits in the event loop: notices, deferred actions, painting.
  virtual void Settle() = 0;
};

/// One rule of the desktop contract.
struct ContractCase {
  std::string name;  ///< Letters and digits only: the name of a parameterized test.
  void (*body)(ContractHost&);
};

/// The whole suite. A ring instantiates it with a host of its own:
///   class QtContract : public testing::TestWithParam<ContractCase> {};
///   TEST_P(QtContract, Holds) { QtContractHost host; GetParam().body(host); }
///   INSTANTIATE_TEST_SUITE_P(Qt, QtContract, testing::ValuesIn(AllContractCases()),
///   ContractCaseName);
[[nodiscard]] std::vector<ContractCase> AllContractCases();

/// Names a case in the list of tests.
template <class Info>
std::string ContractCaseName(const Info& info) {
  return info.param.name;
}

// The parts of the suite.
[[nodiscard]] std::vector<ContractCase> ButtonContract();
[[nodiscard]] std::vector<ContractCase> TextContract();
[[nodiscard]] std::vector<ContractCase> EditorContract();
[[nodiscard]] std::vector<ContractCase> ValueContract();
[[nodiscard]] std::vector<ContractCase> ListContract();
[[nodiscard]] std::vector<ContractCase> ListViewContract();
[[nodiscard]] std::vector<ContractCase> TreeContract();
[[nodiscard]] std::vector<ContractCase> GridContract();
[[nodiscard]] std::vector<ContractCase> GridEditingContract();
[[nodiscard]] std::vector<ContractCase> MenuContract();
[[nodiscard]] std::vector<ContractCase> KeyContract();
[[nodiscard]] std::vector<ContractCase> WindowContract();
[[nodiscard]] std::vector<ContractCase> DesktopContract();

}  // namespace tessel::test
