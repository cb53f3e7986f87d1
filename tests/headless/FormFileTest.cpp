#include "tests/headless/FormFile.h"

#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "tests/headless/HeadlessDesktop.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Property(const std::string& name, const std::string& type, const std::string& value) {
  return "<property name=\"" + name + "\"><" + type + ">" + value + "</" + type + "></property>";
}

std::string Widget(const std::string& className, const std::string& name,
                   const std::string& content = {}) {
  return "<widget class=\"" + className + "\" name=\"" + name + "\">" + content + "</widget>";
}

class FormFileTest : public testing::Test {
 protected:
  /// A form file of a dialog that holds `content`, and what stands behind the dialog.
  void Write(const std::string& content, const std::string& behind = {}) {
    folder_.Write("frmTest.ui",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ui version=\"4.0\">" +
                      Widget("QDialog", "frmTest", Property("kind", "string", "dialog") + content) +
                      behind + "</ui>");
  }

  std::unique_ptr<Window> Make() {
    HeadlessDesktop& desktop = desktop_.emplace(folder_.Path().string());
    return desktop.MakeWindow("frmTest");
  }

  TemporaryFolder folder_;
  std::optional<HeadlessDesktop> desktop_;
};

}  // namespace

TEST_F(FormFileTest, ReadsInitialStates) {
  Write(Widget("QPushButton", "cmdGo",
               Property("text", "string", "&amp;Go") + Property("enabled", "bool", "false") +
                   Property("toolTip", "string", "Starts it")) +
        Widget("QCheckBox", "chkIt", Property("checked", "bool", "true")) +
        Widget("QLabel", "lblHidden", Property("visible", "bool", "false")) +
        Widget("QProgressBar", "prgIt",
               Property("maximum", "number", "7") + Property("value", "number", "3")));
  const auto window = Make();
  EXPECT_EQ(window->Find<Button>("cmdGo").Caption(), "&Go");
  EXPECT_FALSE(window->Find<Button>("cmdGo").Enabled());
  EXPECT_EQ(window->Find<Button>("cmdGo").ToolTip(), "Starts it");
  EXPECT_TRUE(window->Find<CheckBox>("chkIt").Value());
  EXPECT_FALSE(window->Find<Label>("lblHidden").Visible());
  EXPECT_EQ(window->Find<ProgressBar>("prgIt").Max(), 7);
  EXPECT_EQ(window->Find<ProgressBar>("prgIt").Value(), 3);
}

TEST_F(FormFileTest, ReadsBoundsInTwips) {
  Write(Widget("QLabel", "lblIt",
               "<property name=\"geometry\"><rect><x>1</x><y>2</y><width>30</width>"
               "<height>4</height></rect></property>"));
  EXPECT_EQ(Make()->Find<Label>("lblIt").Bounds(), (Rect{15, 30, 450, 60}));
}

TEST_F(FormFileTest, ReadsEntriesAndColumns) {
  const auto text = [](const std::string& element, const std::string& value) {
    return "<" + element + ">" + Property("text", "string", value) + "</" + element + ">";
  };
  Write(Widget("QComboBox", "cboIt",
               Property("editable", "bool", "true") + Property("currentIndex", "number", "1") +
                   text("item", "one") + text("item", "two")) +
        Widget("QTreeWidget", "lsvIt", text("column", "First") + text("column", "Second")));
  const auto window = Make();
  EXPECT_TRUE(window->Find<ComboBox>("cboIt").Editable());
  EXPECT_EQ(window->Find<ComboBox>("cboIt").Text(), "two");
  EXPECT_EQ(window->Find<ListView>("lsvIt").ColumnCaption(1), "Second");
}

TEST_F(FormFileTest, FindsControlsInLayoutsAndContainers) {
  Write("<layout class=\"QVBoxLayout\"><item>" +
        Widget("QWidget", "holder",
               "<layout class=\"QHBoxLayout\"><item>" + Widget("QPushButton", "cmdDeep") +
                   "</item></layout>") +
        "</item></layout>" +
        Widget("QFrame", "box",
               Property("enabled", "bool", "false") + Widget("QPushButton", "cmdInside")));
  const auto window = Make();
  EXPECT_NO_THROW(static_cast<void>(window->Find<Button>("cmdDeep")));
  EXPECT_THROW(static_cast<void>(window->Find<Control>("holder")), Error);
  int clicks = 0;
  window->Find<Button>("cmdInside").Click = [&] { ++clicks; };
  window->Show();
  dynamic_cast<HeadlessWindow&>(*window).Click("cmdInside");
  EXPECT_EQ(clicks, 0) << "its container is disabled";
}

TEST_F(FormFileTest, TakesPromotedClassesForWhatTheyExtend) {
  Write(Widget("tessel::Special", "cmdIt"),
        "<customwidgets><customwidget><class>tessel::Special</class><extends>tessel::Base"
        "</extends></customwidget><customwidget><class>tessel::Base</class><extends>QPushButton"
        "</extends></customwidget></customwidgets>");
  EXPECT_NO_THROW(static_cast<void>(Make()->Find<Button>("cmdIt")));
}

TEST_F(FormFileTest, RefusesWidgetsOfNoKind) {
  Write(Widget("QCalendarWidget", "calIt"));
  try {
    static_cast<void>(Make());
    ADD_FAILURE() << "nothing was raised";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("calIt is a QCalendarWidget"));
  }
}

TEST_F(FormFileTest, RefusesDamagedFiles) {
  folder_.Write("frmTest.ui", "<ui><widget");
  EXPECT_THROW(static_cast<void>(Make()), std::runtime_error);
}

TEST_F(FormFileTest, ReadsMenus) {
  Write(Widget("QMenuBar", "menuBar",
               Widget("QMenu", "menuFile",
                      Property("title", "string", "&amp;File") + Widget("QMenu", "menuMore") +
                          "<addaction name=\"mnuNew\"/><addaction name=\"separator\"/>"
                          "<addaction name=\"menuMore\"/>") +
                   "<addaction name=\"menuFile\"/>") +
        "<action name=\"mnuNew\">" + Property("text", "string", "&amp;New") +
        Property("shortcut", "string", "Ctrl+N") + Property("checkable", "bool", "true") +
        Property("checked", "bool", "true") + Property("enabled", "bool", "false") + "</action>");
  const auto window = Make();
  EXPECT_EQ(window->Menu("menuFile").Caption(), "&File");
  EXPECT_FALSE(window->Menu("menuFile").Checked());
  EXPECT_EQ(window->Menu("mnuNew").Caption(), "&New");
  EXPECT_TRUE(window->Menu("mnuNew").Checked());
  EXPECT_FALSE(window->Menu("mnuNew").Enabled());
  const auto& item = dynamic_cast<HeadlessMenuItem&>(window->Menu("mnuNew"));
  EXPECT_TRUE(item.HasShortcut('N', shiftState::ctrl));
  EXPECT_TRUE(item.InMenuBar());
  EXPECT_EQ(item.ParentTitle(), &window->Menu("menuFile"));
}

TEST_F(FormFileTest, ACommandMayStandInTheMenuBarAndInAPopUpMenu) {
  Write(Widget("QMenuBar", "menuBar",
               Widget("QMenu", "menuFile", "<addaction name=\"mnuNew\"/>") +
                   Widget("QMenu", "menuPopUp", "<addaction name=\"mnuNew\"/>") +
                   Widget("QMenu", "menuOther", "<addaction name=\"mnuOwn\"/>") +
                   "<addaction name=\"menuFile\"/>") +
        "<action name=\"mnuNew\"/><action name=\"mnuOwn\"/>");
  const auto made = Make();
  auto& window = dynamic_cast<HeadlessWindow&>(*made);
  window.Show();
  std::vector<std::string> events;
  for (const char* name : {"menuFile", "menuPopUp", "menuOther", "mnuNew"})
    window.Menu(name).Click = [&events, name] { events.emplace_back(name); };
  window.ChooseMenu("mnuNew");
  EXPECT_THAT(events, ElementsAre("menuFile", "mnuNew"));
  events.clear();
  desktop_->ExpectPopup("menuPopUp", "mnuNew");
  window.PopupMenu(window.Menu("menuPopUp"), nullptr, 0, 0);
  EXPECT_THAT(events, ElementsAre("menuPopUp", "mnuNew"));
  const auto& command = dynamic_cast<HeadlessMenuItem&>(window.Menu("mnuNew"));
  EXPECT_FALSE(command.CanBeChosen(&dynamic_cast<HeadlessMenuItem&>(window.Menu("menuOther"))));
}

TEST_F(FormFileTest, TheTabKeyFollowsTheForm) {
  Write(Widget("QPushButton", "cmdOne") + Widget("QLabel", "lblIt") +
            Widget("QPushButton", "cmdTwo") +
            Widget("QToolButton", "cmdNone", Property("focusPolicy", "enum", "Qt::NoFocus")) +
            Widget("QPushButton", "cmdThree"),
        "<tabstops><tabstop>cmdTwo</tabstop><tabstop>cmdOne</tabstop></tabstops>");
  const auto made = Make();
  auto& window = dynamic_cast<HeadlessWindow&>(*made);
  window.Show();
  std::vector<std::string> names;
  for (int i = 0; i < 4; ++i) {
    names.push_back(window.FocusName());
    window.PressKey(key::tab);
  }
  EXPECT_THAT(names, ElementsAre("cmdTwo", "cmdOne", "cmdThree", "cmdTwo"));
  window.PressKey(key::tab, shiftState::shift);
  window.PressKey(key::tab, shiftState::shift);
  EXPECT_EQ(window.FocusName(), "cmdThree");
}

TEST_F(FormFileTest, MnemonicsPressButtonsAndLeadToBuddies) {
  Write(Widget("QLabel", "lblIt",
               Property("text", "string", "Captio&amp;n") + Property("buddy", "cstring", "txtIt")) +
        Widget("QLineEdit", "txtIt") +
        Widget("QPushButton", "cmdGo", Property("text", "string", "R&amp;&amp;D &amp;go")));
  const auto made = Make();
  auto& window = dynamic_cast<HeadlessWindow&>(*made);
  int clicks = 0;
  window.Find<Button>("cmdGo").Click = [&] { ++clicks; };
  window.Show();
  window.PressKey('G', shiftState::alt);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(window.FocusName(), "cmdGo");
  window.PressKey('N', shiftState::alt);
  EXPECT_EQ(window.FocusName(), "txtIt");
  window.PressKey('D', shiftState::alt);
  EXPECT_EQ(clicks, 1);
}

TEST_F(FormFileTest, EscapeClosesADialogWithoutACancelButton) {
  Write(Widget("QPushButton", "cmdOne"));
  const auto made = Make();
  auto& window = dynamic_cast<HeadlessWindow&>(*made);
  window.Show();
  window.PressKey(key::escape);
  EXPECT_FALSE(window.Loaded());
}

TEST_F(FormFileTest, TheFocusLeavesWhatIsHidden) {
  Write(Widget("QPushButton", "cmdOne") + Widget("QPushButton", "cmdTwo"));
  const auto made = Make();
  auto& window = dynamic_cast<HeadlessWindow&>(*made);
  window.Show();
  ASSERT_EQ(window.FocusName(), "cmdOne");
  window.Find<Button>("cmdOne").SetVisible(false);
  EXPECT_EQ(window.FocusName(), "cmdTwo");
}

TEST(ShortcutTest, ReadsKeysAndShiftStates) {
  const auto expect = [](const char* text, int keyCode, int shift) {
    const FormShortcut shortcut = ParseShortcut(text);
    EXPECT_EQ(shortcut.keyCode, keyCode) << text;
    EXPECT_EQ(shortcut.shift, shift) << text;
  };
  expect("F8", key::f8, shiftState::none);
  expect("Shift+F5", key::f5, shiftState::shift);
  expect("Ctrl+Alt+C", 'C', shiftState::ctrl | shiftState::alt);
  expect("Ctrl+=", key::equals, shiftState::ctrl);
  expect("Del", key::del, shiftState::none);
  EXPECT_THROW(static_cast<void>(ParseShortcut("Ctrl+Nothing")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(ParseShortcut("Hyper+A")), std::runtime_error);
}

}  // namespace tessel::test
