// What reaches a text when keys are held: Ctrl, Alt and Meta type nothing, AltGr does.

#include <QComboBox>
#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <functional>
#include <string>

#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "desktop/base/Text.h"
#include "tests/contract/desktop/GridWindow.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

/// A key as the window system reports it.
struct HeldKey {
  int qtKey;
  Qt::KeyboardModifiers held;
  QString text;
};

const HeldKey silentKeys[] = {
    {Qt::Key_1, Qt::ControlModifier, "1"},
    {Qt::Key_Comma, Qt::ControlModifier, ","},
    {Qt::Key_Semicolon, Qt::ControlModifier | Qt::ShiftModifier, ";"},
    {Qt::Key_Exclam, Qt::ControlModifier | Qt::ShiftModifier, "!"},
    {Qt::Key_J, Qt::AltModifier, "j"},
    {Qt::Key_J, Qt::AltModifier | Qt::ShiftModifier, "J"},
    {Qt::Key_X, Qt::MetaModifier, "x"},
    {Qt::Key_1, Qt::ControlModifier | Qt::AltModifier, "1"},
    {Qt::Key_Equal, Qt::ControlModifier | Qt::AltModifier, "="},
    {Qt::Key_Odiaeresis, Qt::ControlModifier | Qt::AltModifier, "ö"},
};

/// A German keyboard, as X11 reports it and as other systems do.
const HeldKey altGrKeys[] = {
    {Qt::Key_At, Qt::GroupSwitchModifier, "@"},
    {Qt::Key_BracketLeft, Qt::GroupSwitchModifier, "["},
    {Qt::Key_BraceLeft, Qt::GroupSwitchModifier, "{"},
    {Qt::Key_Bar, Qt::GroupSwitchModifier, "|"},
    {Qt::Key_Backslash, Qt::GroupSwitchModifier, "\\"},
    {0x20AC, Qt::GroupSwitchModifier, "€"},
    {Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, "@"},
    {Qt::Key_BraceLeft, Qt::ControlModifier | Qt::AltModifier, "{"},
    {0x20AC, Qt::ControlModifier | Qt::AltModifier, "€"},
    {0x144, Qt::ControlModifier | Qt::AltModifier | Qt::GroupSwitchModifier, "ń"},
};

class TypingTest : public DesktopFixture {
 protected:
  /// The text has the focus and is selected whole.
  void Check(const std::function<std::string()>& text) {
    const std::string before = text();
    for (const HeldKey& key : silentKeys) PressQtKey(key.qtKey, key.held, key.text);
    EXPECT_EQ(text(), before);
    std::string expected;
    for (const HeldKey& key : altGrKeys) {
      PressQtKey(key.qtKey, key.held, key.text);
      expected += FromQt(key.text);
    }
    EXPECT_EQ(text(), expected);
  }
  void CheckBox(const std::string& form, const std::string& name) {
    const auto window = ShowForm(form);
    auto& box = window->Find<TextControl>(name);
    box.SetText("select 1");
    box.SetFocus();
    box.Select(0, 8);
    Check([&] { return box.Text(); });
  }
};

TEST_F(TypingTest, ATextBoxTakesNoTextOfHeldKeys) {
  CheckBox("dlgText", "txtText");
  CheckBox("dlgConnect", "txtCnStr");
  CheckBox("frmText", "txtText");
}

TEST_F(TypingTest, TheSqlEditorTakesNoTextOfHeldKeys) {
  const auto frame = ShowForm("frmMDI");
  CheckBox("frmMain", "txtQuery");
}

TEST_F(TypingTest, AComboBoxTakesNoTextOfHeldKeys) {
  const auto window = ShowForm("dlgCnODBC");
  auto& combo = window->Find<ComboBox>("cboDSN");
  combo.SetText("shop");
  combo.SetFocus();
  combo.SelectAllText();
  Check([&] { return combo.Text(); });
}

TEST_F(TypingTest, AListToChooseFromIsNotSearchedByHeldKeys) {
  const auto window = ShowForm("dlgCnSQLSrv");
  auto& combo = WidgetAs<QComboBox>(*window, "cboNetLib");
  combo.setEditable(false);
  combo.addItems({"1", "j", "x"});
  combo.setCurrentIndex(-1);
  combo.setFocus();
  for (const HeldKey& key : silentKeys) PressQtKey(key.qtKey, key.held, key.text);
  EXPECT_EQ(combo.currentIndex(), -1);
  PressQtKey(Qt::Key_X, Qt::NoModifier, "x");
  EXPECT_EQ(combo.currentText(), "x");
}

TEST_F(TypingTest, ALabelBeingEditedTakesNoTextOfHeldKeys) {
  const auto window = ShowForm("dlgConnect");
  auto& list = window->Find<ListView>("lsvConnections");
  list.Insert(0, {"key", "label", {""}, "", 0, color::windowText});
  list.SetFocus();
  list.StartLabelEdit(0);
  host.Settle();
  auto* editor = WidgetOf(*window, "lsvConnections").findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  Check([editor] { return FromQt(editor->text()); });
}

TEST_F(TypingTest, ACellTakesNoTextOfHeldKeys) {
  GridWindow test(host);
  test.data.Answer("rows", {MemoryField("name")}, {{std::string("one")}});
  test.grid.SetAllowUpdate(true);
  test.grid.SetDataSource(test.Open("rows", LockType::Optimistic));
  test.grid.SetFocus();
  host.Settle();
  for (const HeldKey& key : silentKeys) PressQtKey(key.qtKey, key.held, key.text);
  EXPECT_FALSE(test.grid.EditActive()) << "the cell that is current";
  PressQtKey(Qt::Key_At, Qt::GroupSwitchModifier, "@");
  EXPECT_EQ(test.grid.CellText(), "@");
  test.grid.SelectCellText();
  Check([&] { return test.grid.CellText(); });
  test.grid.DropEdit();
}

TEST_F(TypingTest, DeadKeysAndInputMethodsType) {
  const auto window = ShowForm("dlgText");
  auto& box = window->Find<TextBox>("txtText");
  box.SetFocus();
  QInputMethodEvent composed;
  composed.setCommitString("â");
  QCoreApplication::sendEvent(&WidgetOf(*window, "txtText"), &composed);
  EXPECT_EQ(box.Text(), "â");
}

TEST_F(TypingTest, AKeyWithoutItsTextIsStillToldOnce) {
  const auto window = ShowForm("dlgText");
  auto& box = window->Find<TextBox>("txtText");
  int told = 0;
  window->KeyDown = [&](KeyEvent& event) {
    ++told;
    EXPECT_EQ(event.keyCode, '6');
    EXPECT_EQ(event.shift, shiftState::ctrl);
    EXPECT_EQ(event.text, "");
  };
  box.SetFocus();
  PressQtKey(Qt::Key_6, Qt::ControlModifier, "6");
  EXPECT_EQ(told, 1);
}

}  // namespace

}  // namespace tessel::test
