// The ways between the windows by keys and by the Window menu, and the keys of the sidebar.

#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

using test::FrameFixture;

class WindowMenuTest : public FrameFixture {
 protected:
  Window& records(std::size_t n) { return *desktop.WindowsOf("frmRecords").at(n); }
  void StartWith(int connections) {
    Start();
    for (int i = 0; i < connections; ++i) Connect("C" + std::to_string(i));
    query().PressKey(key::f6, shiftState::alt);  // The frame takes it from nobody.
    frame().QueryWindow().FocusText();
    query().Activate();
  }
  [[nodiscard]] std::string Active() {
    for (auto* window : desktop.WindowsOf("frmRecords"))
      if (window->Active()) return window->Caption();
    return query().Active() ? "SQL" : "";
  }
  /// Presses the key in the window that is active.
  void Press(int keyCode, int shift) { mdi().PressKey(keyCode, shift); }
};

TEST_F(WindowMenuTest, CtrlF6AndCtrlTabGoRoundTheWindowsAndBack) {
  StartWith(2);
  for (const int keyCode : {key::f6, key::tab}) {
    std::vector<std::string> met;
    for (int i = 0; i < 3; ++i) {
      Press(keyCode, shiftState::ctrl);
      met.push_back(Active());
    }
    EXPECT_EQ(met, (std::vector<std::string>{"C0 caption", "C1 caption", "SQL"})) << keyCode;
    Press(keyCode, shiftState::ctrl | shiftState::shift);
    EXPECT_EQ(Active(), "C1 caption") << keyCode;
    Press(keyCode, shiftState::ctrl);
    EXPECT_EQ(query().FocusName(), "txtQuery");
  }
}

TEST_F(WindowMenuTest, TheMenuGoesToTheNextAndThePreviousWindow) {
  StartWith(2);
  mdi().ChooseMenu("mnuWindowNext");
  EXPECT_EQ(Active(), "C0 caption");
  records(0).ChooseMenu("mnuWindowNext");
  records(1).ChooseMenu("mnuWindowPrevious");
  EXPECT_EQ(Active(), "C0 caption");
}

TEST_F(WindowMenuTest, TheMenuClosesARecordsWindowAndNotTheQueryWindow) {
  StartWith(1);
  mdi().Menu("menuWindow").Choose();
  EXPECT_FALSE(mdi().Menu("mnuWindowClose").Enabled());
  query().PressKey(key::f6);
  records(0).Menu("menuWindow").Choose();
  EXPECT_TRUE(records(0).Menu("mnuWindowClose").Enabled());
  records(0).ChooseMenu("mnuWindowClose");
  desktop.RunDeferred();
  EXPECT_EQ(frame().RecordsWindowCount(), 0);
  EXPECT_TRUE(query().Visible());
}

TEST_F(WindowMenuTest, TheHelpMenuShowsThePageOfTheActiveWindow) {
  StartWith(1);
  mdi().ChooseMenu("mnuHelpWindow");
  query().PressKey(key::f6);
  records(0).ChooseMenu("mnuHelpWindow");
  EXPECT_EQ(desktop.HelpOn(), (std::vector<std::string>{"frmMain", "frmRecords"}));
}

TEST_F(WindowMenuTest, MoreThanNineWindowsAreInAListOfTheirOwn) {
  StartWith(9);
  mdi().Menu("menuWindow").Choose();
  EXPECT_TRUE(mdi().Menu("mnuWindowMore").Visible());
  desktop.OnModal("dlgWindows", [](Window& w) {
    auto& list = w.Find<ListBox>("lstWindows");
    EXPECT_EQ(list.ListCount(), 10);
    EXPECT_EQ(list.ListIndex(), 0) << "the active one";
    EXPECT_EQ(w.FocusName(), "lstWindows");
    list.SetListIndex(9);
    w.PressKey(key::enter);
  });
  mdi().ChooseMenu("mnuWindowMore");
  EXPECT_EQ(Active(), "C8 caption");
  desktop.OnModal("dlgWindows", [](Window& w) {
    w.Find<ListBox>("lstWindows").SetListIndex(3);
    w.PressKey(key::escape);
  });
  records(8).Menu("menuWindow").Choose();
  records(8).ChooseMenu("mnuWindowMore");
  EXPECT_EQ(Active(), "C8 caption");
}

TEST_F(WindowMenuTest, NineWindowsNeedNoSuchList) {
  StartWith(8);
  mdi().Menu("menuWindow").Choose();
  EXPECT_FALSE(mdi().Menu("mnuWindowMore").Visible());
}

TEST_F(WindowMenuTest, TheSidebarIsMadeWiderAndNarrowerByKeys) {
  StartWith(1);
  auto& box = mdi().Find<PictureBox>("box");
  const int width = 3000;
  mdi().ResizeControl("box", width, 9000);
  Press(key::f8, shiftState::shift);
  EXPECT_EQ(box.Bounds().width, width + 600);
  query().PressKey(key::f6);
  Press(key::f8, shiftState::shift | shiftState::ctrl);
  EXPECT_EQ(box.Bounds().width, width);
  records(0).ChooseMenu("mnuSidebarWider");
  EXPECT_EQ(box.Bounds().width, width + 600);
  for (int i = 0; i < 50; ++i) mdi().Menu("mnuSidebarNarrower").Choose();
  EXPECT_EQ(box.Bounds().width, 1800);
}

TEST_F(WindowMenuTest, AHiddenSidebarThatIsMadeWiderShows) {
  StartWith(0);
  Press(key::f8, shiftState::none);
  ASSERT_FALSE(mdi().Find<PictureBox>("box").Visible());
  Press(key::f8, shiftState::shift);
  EXPECT_TRUE(mdi().Find<PictureBox>("box").Visible());
}

TEST_F(WindowMenuTest, EscLeavesTheSidebarForTheSql) {
  StartWith(1);
  for (const char* control : {"trvBrowser", "lsvTags", "cmdAddTag", "cmdCloseBox"}) {
    mdi().Find<Control>(control).SetFocus();
    mdi().PressKey(key::escape);
    EXPECT_EQ(query().FocusName(), "txtQuery") << control;
  }
}

TEST_F(WindowMenuTest, F6LeavesTheSidebarForTheRecords) {
  StartWith(1);
  query().PressKey(key::f7);
  mdi().PressKey(key::f6);
  EXPECT_EQ(records(0).FocusName(), "txtStatus");
}

TEST_F(WindowMenuTest, F6WithoutAConnectionDoesNothing) {
  StartWith(0);
  query().PressKey(key::f6);
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(WindowMenuTest, NewSqlIsTypedWhereverItWasAskedFor) {
  StartWith(1);
  query().PressKey(key::f7);
  mdi().PressKey('N', shiftState::ctrl);
  EXPECT_EQ(query().FocusName(), "txtQuery");
  query().PressKey(key::f6);
  mdi().PressKey('N', shiftState::ctrl);
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(WindowMenuTest, TheFirstNodeIsSelectedWhenTheTreeGetsTheKeyboard) {
  StartWith(2);
  auto& tree = mdi().Find<TreeView>("trvBrowser");
  ASSERT_EQ(tree.SelectedKey(), "");
  query().PressKey(key::f7);
  EXPECT_EQ(tree.SelectedKey(), "d1");
  desktop.ExpectPopup("menuDB", "");
  mdi().PressKey(key::contextMenu);
}

TEST_F(WindowMenuTest, ANodeThatComesWhileTheTreeHasTheKeyboardIsReached) {
  Start();
  query().PressKey(key::f7);
  Connect("A");
  mdi().Find<TreeView>("trvBrowser").SetFocus();
  mdi().PressKey(key::home);
  EXPECT_EQ(mdi().Find<TreeView>("trvBrowser").SelectedKey(), "d1");
}

TEST_F(WindowMenuTest, EscLeavesTheButtonsOfTheQueryWindow) {
  StartWith(0);
  for (const char* control : {"cmdNew", "cmdExecute", "chkWordWrap"}) {
    query().Find<Control>(control).SetFocus();
    query().PressKey(key::escape);
    EXPECT_EQ(query().FocusName(), "txtQuery") << control;
  }
}

TEST_F(WindowMenuTest, EscLeavesTheRowsOfAllForTheSqlAndKeepsThem) {
  for (const char* name : {"C0", "C1"})
    data.ServerOf(name).Answer("select 1", {MemoryField("n")}, {{Value(std::string("x"))}});
  StartWith(2);
  Select("select 1");
  mdi().ChooseMenu("mnuDBExecuteAll");
  mdi().ChooseMenu("mnuDBMergedRows");
  Window& rows = desktop.WindowOf("frmRows");
  ASSERT_TRUE(rows.Active());
  rows.PressKey(key::escape);
  EXPECT_TRUE(query().Active());
  EXPECT_TRUE(rows.Visible());
}

}  // namespace
}  // namespace tessel
