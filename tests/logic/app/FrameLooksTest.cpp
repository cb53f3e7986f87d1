// What the frame shows of itself: the next step while there is no connection, tabs, documents that
// fill it, and the colour of a connection.

#include "tests/headless/HeadlessTreeView.h"
#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

constexpr const char* nextStep = "No database yet. Database > Connect... (Alt+D, C)";

using FrameLooksTest = test::FrameFixture;

TEST_F(FrameLooksTest, TheGroundSaysTheNextStepUntilThereIsAConnection) {
  desktop.OnModal("dlgConnect", [this](Window& w) {
    EXPECT_EQ(mdi().GroundText(), nextStep);
    w.Click("cmdCancel");
  });
  program.Main();
  Connect("A");
  EXPECT_EQ(mdi().GroundText(), "");
  desktop.WindowsOf("frmRecords").front()->CloseByControlBox();
  EXPECT_EQ(mdi().GroundText(), nextStep);
}

TEST_F(FrameLooksTest, AConnectionThatFailsLeavesTheNextStep) {
  Start();
  data.ServerOf("A").openFailure = MemoryError("unknown host");
  desktop.ExpectMessage("unknown host", MessageResult::Ok);
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("A");
    w.Click("cmdConnect");
  });
  desktop.OnModal("dlgConnect", [](Window& w) { w.Click("cmdCancel"); });
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(mdi().GroundText(), nextStep);
}

TEST_F(FrameLooksTest, ACommandWithoutAConnectionSaysTheNextStepInItsPlace) {
  Start();
  EXPECT_FALSE(query().VisibleInFact("lblHint"));
  Select("select 1");
  query().PressKey(key::f5);
  EXPECT_TRUE(query().VisibleInFact("lblHint"));
  EXPECT_EQ(query().Find<Label>("lblHint").Caption(), nextStep);
  EXPECT_EQ(query().FocusName(), "txtQuery");
  Connect("A");
  EXPECT_FALSE(query().VisibleInFact("lblHint"));
}

TEST_F(FrameLooksTest, TheActiveDocumentFillsTheFrameAndGoesBack) {
  Start();
  Connect("A");
  Window& records = *desktop.WindowsOf("frmRecords").front();
  records.Activate();
  records.PressKey(key::f10, shiftState::ctrl);
  EXPECT_TRUE(records.Maximized());
  EXPECT_FALSE(query().Maximized());
  records.Menu("menuWindow").Choose();
  EXPECT_TRUE(records.Menu("mnuWindowMaximize").Checked());
  records.ChooseMenu("mnuWindowMaximize");
  EXPECT_FALSE(records.Maximized());
  records.Menu("menuWindow").Choose();
  EXPECT_FALSE(records.Menu("mnuWindowMaximize").Checked());
  query().Activate();
  query().PressKey(key::f10, shiftState::ctrl);
  EXPECT_TRUE(query().Maximized());
}

TEST_F(FrameLooksTest, WithTabsTheConnectionsShareOnePlaceBelowTheQueryWindow) {
  Start();
  Connect("A");
  Connect("B");
  mdi().ChooseMenu("mnuWindowTabs");
  EXPECT_TRUE(mdi().Tabbed());
  const auto records = desktop.WindowsOf("frmRecords");
  EXPECT_EQ(records[0]->Bounds(), records[1]->Bounds());
  EXPECT_EQ(query().Bounds().height, mdi().Bounds().height / 2);
  mdi().Menu("menuWindow").Choose();
  EXPECT_TRUE(mdi().Menu("mnuWindowTabs").Checked());
  mdi().ChooseMenu("mnuWindowTabs");
  EXPECT_FALSE(mdi().Tabbed());
  EXPECT_NE(records[0]->Bounds(), records[1]->Bounds());
}

TEST_F(FrameLooksTest, TabsAreRemembered) {
  Start();
  mdi().ChooseMenu("mnuWindowTabs");
  EXPECT_EQ(Content("Tessel.view.txt"), "tabs=1\n");
  Program second{Platform{desktop, data, files, folder.Path().string(), folder.File("Tessel"),
                          "1.0", nullptr}};
  desktop.OnModal("dlgConnect", [](Window& w) { w.Click("cmdCancel"); });
  second.Main();
  EXPECT_TRUE(second.Frame().TheWindow().Tabbed());
  mdi().ChooseMenu("mnuWindowTabs");
  EXPECT_EQ(Content("Tessel.view.txt"), "tabs=0\n");
}

TEST_F(FrameLooksTest, NothingIsWrittenBeforeSomethingIsChosen) {
  Start();
  EXPECT_FALSE(realFiles.FileExists(folder.File("Tessel.view.txt")));
}

TEST_F(FrameLooksTest, AChoiceThatCannotBeKeptHoldsUntilTheEnd) {
  Start();
  files.FailWrites("No space left on device");
  mdi().ChooseMenu("mnuWindowTabs");
  EXPECT_TRUE(mdi().Tabbed());
}

TEST_F(FrameLooksTest, AConnectionHasItsColourInItsWindowAndInTheTree) {
  for (const char* name : {"A", "B"}) data.ServerOf(name).AnswerNothing("select 1").HoldExecuting();
  Start();
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("A");
    w.Find<Label>("labColor").SetBackColor(0xD0FFFF);
    w.Click("cmdConnect");
  });
  mdi().ChooseMenu("mnuDBConnect");
  const auto& tree = mdi().Find<test::HeadlessTreeView>("trvBrowser");
  EXPECT_EQ(desktop.WindowsOf("frmRecords").front()->Mark(), Color{0xD0FFFF});
  EXPECT_EQ(tree.Mark(tree.Children("").front()), Color{0xD0FFFF});
  Connect("B");
  EXPECT_EQ(desktop.WindowsOf("frmRecords").back()->Mark(), std::nullopt);
}

TEST_F(FrameLooksTest, TheProgressWindowHasTheColourOfItsConnection) {
  for (const char* name : {"A", "B"}) data.ServerOf(name).AnswerNothing("select 1").HoldExecuting();
  Start();
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("A");
    w.Find<Label>("labColor").SetBackColor(0x0000C0);
    w.Click("cmdConnect");
  });
  mdi().ChooseMenu("mnuDBConnect");
  Connect("B");
  std::vector<std::optional<Color>> marks;
  for (int i = 0; i < 2; ++i)
    desktop.OnModal("dlgAsync", [&](Window& w) {
      marks.push_back(w.Mark());
      data.Resume();
    });
  Select("select 1");
  query().PressKey(key::f5);
  EXPECT_EQ(marks, (std::vector<std::optional<Color>>{0x0000C0, std::nullopt}));
}

TEST_F(FrameLooksTest, TheButtonsOfTheSidebarStandInTheRowOfItsHeading) {
  Start();
  mdi().ResizeControl("box", 4000, 10480);
  const Rect tags = mdi().Find<PictureBox>("fraTags").Bounds();
  const Rect close = mdi().Find<Button>("cmdCloseBox").Bounds();
  const Rect add = mdi().Find<Button>("cmdAddTag").Bounds();
  const Rect remove = mdi().Find<Button>("cmdRemoveTag").Bounds();
  EXPECT_EQ(add.left + add.width, remove.left);
  EXPECT_LE(tags.left + remove.left + remove.width, close.left);
  EXPECT_LT(close.top, tags.top + 330);
  const Rect list = mdi().Find<ListView>("lsvTags").Bounds();
  EXPECT_GE(tags.top + list.top, close.top + close.height) << "the list lies below the buttons";
  const Rect browser = mdi().Find<PictureBox>("fraBrowser").Bounds();
  EXPECT_GT(browser.top, tags.top + tags.height);
  EXPECT_LE(browser.top + browser.height, 10480);
}

}  // namespace
}  // namespace tessel
