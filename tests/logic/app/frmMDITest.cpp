#include "logic/app/frmMDI.h"

#include <filesystem>

#include "tests/logic/app/FrameFixture.h"
#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

using test::AnswerViews;

/// The shortcuts as they are told to users: keys are padded to ten columns.
std::string ExpectedShortcuts() {
  struct Line {
    std::string key;
    std::string description;
  };
  const std::vector<Line> lines{
      {"SQL Window", ""},
      {std::string(10, '-'), ""},
      {"F5", "Execute SQL (selected text only)"},
      {"", ""},
      {"Ctrl+F", "Complete field name"},
      {"Ctrl+T", "Complete table name"},
      {"Ctrl+.", "Complete from vocabulary"},
      {"Modifiers for the above:-", ""},
      {"(none)", "Complete abbreviation"},
      {"Shift", "Expand acronym based on capitals"},
      {"Alt", "Expand acronym based on underscores/spaces"},
      {"", ""},
      {"Ctrl+'", "Quote selected string"},
      {"", ""},
      {"", ""},
      {"Database Window", ""},
      {std::string(15, '-'), ""},
      {"F2", "Inline edit"},
      {"F3", "BIG view"},
      {"F4", "BIG edit"},
      {"Ctrl+S/R", "Accept/Reject changes"},
      {"", ""},
      {"F5", "Re-query"},
      {"Alt+<-/->", "Back/Forward"},
      {"", ""},
      {"Ctrl+L", "Toggle Lock"},
      {"", ""},
      {"", ""},
      {"Browser", ""},
      {std::string(7, '-'), ""},
      {"Enter", "Copy object name to SQL window"},
      {"", ""},
      {"", ""},
      {"", ""},
      {"Shift", "(with any SQL executing command) Preview SQL before execution"},
      {"", ""},
      {"F6", "Toggle focus between SQL and Database windows"},
      {"F7", "Toggle focus between SQL window and Browser"}};
  std::string text;
  for (auto [key, description] : lines) {
    if (!description.empty()) key.resize(10, ' ');
    text += key + description + "\r\n";
  }
  return text;
}

using frmMDITest = test::FrameFixture;

TEST_F(frmMDITest, TheProgramStartsWithTheQueryWindowAndTheConnectionsDialog) {
  desktop.OnModal("dlgConnect", [this](Window& w) {
    EXPECT_TRUE(mdi().Visible());
    EXPECT_TRUE(query().Visible());
    w.Click("cmdCancel");
  });
  program.Main();
  EXPECT_EQ(program.TheGlobal().JetProviderName(), "Microsoft.Jet.OLEDB.3.51");
  EXPECT_EQ(program.TheGlobal().HelpFile(), folder.File("Tessel.chm"));
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmMDITest, WithoutASelectionTheUserIsAskedForOne) {
  Start();
  for (const char* text : {"", "  ", " \t\r\n \t"}) {
    Select(text);
    desktop.ExpectMessage("Please select the SQL to be executed.", MessageResult::Ok,
                          [](const Message& message) {
                            EXPECT_EQ(message.icon, MessageIcon::Exclamation);
                            EXPECT_EQ(message.buttons, MessageButtons::Ok);
                            EXPECT_TRUE(message.help);
                          });
    mdi().ChooseMenu("mnuDBExecute");
    EXPECT_EQ(query().FocusName(), "txtQuery");
  }
}

TEST_F(frmMDITest, TheHelpButtonOfThatNoticeShowsItsTopic) {
  Start();
  desktop.ExpectMessage("Please select the SQL to be executed.", MessageResult::Ok,
                        [](const Message& message) { message.help(); });
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_EQ(desktop.HelpRequests(),
            (std::vector<test::HelpRequest>{{folder.File("Tessel.chm"), 15, 9200}}));
}

TEST_F(frmMDITest, WithoutConnectionsNothingRunsAndNothingIsSaid) {
  Start();
  Select("select 1");
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(frmMDITest, TheSelectionIsTrimmedButKeepsItsTrailingLineBreaks) {
  Start();
  Connect("A");
  data.AnswerNothing("select 1\r\n\t");
  Select("  \r\n\tselect 1\r\n\t  ");
  query().PressKey(key::f5);
  EXPECT_EQ(data.ExecutedSql(), (std::vector<std::string>{"select 1\r\n\t"}));
}

TEST_F(frmMDITest, TheSqlRunsOnEveryConnectionInTheOrderOfOpening) {
  Start();
  Connect("A");
  Connect("B");
  Connect("C");
  data.AnswerNothing("select 1");
  Select("select 1");
  mdi().ChooseMenu("mnuDBExecute");
  std::vector<std::string> order;
  for (const auto& command : data.Log().executed) order.push_back(command.connectionString);
  EXPECT_EQ(order, (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(frmMDITest, AFailureOnTheSecondOfThreeAsksByItsCaptionAndCancelLeavesTheThird) {
  Start();
  for (const char* name : {"A", "B", "C"}) {
    if (std::string(name) == "B")
      data.ServerOf(name).AnswerError("select 1", MemoryError("no such table"));
    else data.ServerOf(name).AnswerNothing("select 1");
    Connect(name);
  }
  Select("select 1");
  const std::string question = "The query did not complete successfully on:-\r\n    B "
                               "caption\r\n\r\nContinue executing on the remaining "
                               "connections?";
  desktop.ExpectMessage(question, MessageResult::Cancel, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::OkCancel);
    EXPECT_EQ(message.icon, MessageIcon::Exclamation);
    EXPECT_TRUE(message.help);
  });
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_TRUE(Executed("C").empty());
  desktop.ExpectMessage(question, MessageResult::Ok);
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_EQ(Executed("C").size(), 1U);
}

/// What is pending in the rows of a connection is asked about before they go.
TEST_F(frmMDITest, AChangeThatIsToStayCountsAsAQueryThatDidNotComplete) {
  Start();
  for (const char* name : {"A", "B"}) {
    data.ServerOf(name).Answer("select", MemoryFields({"a"}), {{Value(std::string("x"))}});
    Connect(name);
  }
  Window& first = *desktop.WindowsOf("frmRecords").front();
  first.PressKey('L', shiftState::ctrl);
  Select("select");
  mdi().ChooseMenu("mnuDBExecute");
  first.Activate();
  first.ClickGridCell("DataGrid", 0, 0);
  first.Type("DataGrid", "typed");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::Cancel);
  desktop.ExpectMessage("The query did not complete successfully on:-\r\n    A "
                        "caption\r\n\r\nContinue executing on the remaining "
                        "connections?",
                        MessageResult::Ok);
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_EQ(Executed("A").size(), 1U);
  EXPECT_EQ(Executed("B").size(), 2U);
  EXPECT_EQ(first.Find<DataGrid>("DataGrid").CellText(), "typed");
  first.PressKey('R', shiftState::ctrl);
}

TEST_F(frmMDITest, AFailureOnTheLastConnectionAsksNothing) {
  Start();
  Connect("A");
  data.AnswerError("select 1", MemoryError("no such table"));
  Select("select 1");
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmMDITest, PreviewShowsTheSqlOnEveryConnectionFirst) {
  Start();
  Connect("A");
  data.AnswerNothing("select 1");
  Select("select 1");
  desktop.OnModal("frmText", [](Window& w) { w.Click("cmdOK"); });
  mdi().ChooseMenu("mnuDBPreview");
  EXPECT_EQ(data.ExecutedSql().size(), 1U);
}

TEST_F(frmMDITest, ConnectAsksWhichInstanceOnlyWithExactlyOneConnection) {
  Start();
  Connect("A");
  desktop.ExpectMessage(connectQuestion, MessageResult::Cancel, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::YesNoCancel);
    EXPECT_EQ(message.icon, MessageIcon::Question);
  });
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(frame().RecordsWindowCount(), 1);
  Connect("B");
  Connect("C");
  EXPECT_EQ(frame().RecordsWindowCount(), 3);
  EXPECT_EQ(desktop.Messages().size(), 2U);
}

TEST_F(frmMDITest, AnsweringNoStartsANewInstance) {
  Start();
  Connect("A");
  desktop.ExpectMessage(connectQuestion, MessageResult::No);
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(desktop.StartedProcesses(), (std::vector<std::string>{folder.File("Tessel")}));
}

TEST_F(frmMDITest, ANewInstanceThatCannotStartIsReported) {
  Start();
  desktop.FailProcesses("No such file or directory");
  desktop.ExpectMessage(
      "Error executing " + folder.File("Tessel") +
          ": No such file or directory\r\nPlease try starting another instance of Tessel yourself.",
      MessageResult::Ok, [](const Message& message) {
        EXPECT_EQ(message.icon, MessageIcon::Critical);
        EXPECT_FALSE(message.help);
      });
  mdi().ChooseMenu("mnuNewInstance");
}

TEST_F(frmMDITest, WindowNumbersCountUpAndAreNeverReused) {
  Start();
  Connect("A");
  EXPECT_EQ(frame().RecordsWindows().at(0)->WindowID(), 1);
  desktop.WindowOf("frmRecords").CloseByControlBox();
  desktop.RunDeferred();
  Connect("B");
  EXPECT_EQ(frame().RecordsWindows().at(0)->WindowID(), 2);
  EXPECT_EQ(frame().GetNextID(), 3);
}

TEST_F(frmMDITest, AClosedRecordsWindowIsForgottenAndTheOthersGoOn) {
  Start();
  Connect("A");
  Connect("B");
  desktop.WindowsOf("frmRecords").front()->CloseByControlBox();
  EXPECT_EQ(frame().RecordsWindowCount(), 1);
  data.AnswerNothing("select 1");
  Select("select 1");
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_TRUE(Executed("A").empty());
  EXPECT_EQ(Executed("B").size(), 1U);
  desktop.RunDeferred();
  EXPECT_EQ(frame().RecordsWindows().size(), 1U);
}

TEST_F(frmMDITest, AFailedConnectionReturnsToTheDialogAndLeavesNoWindow) {
  Start();
  data.ServerOf("A").openFailure = MemoryError("refused");
  desktop.ExpectMessage("refused", MessageResult::Ok);
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("A");
    w.Click("cmdConnect");
  });
  desktop.OnModal("dlgConnect", [](Window& w) { w.Click("cmdCancel"); });
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(frame().RecordsWindowCount(), 0);
  EXPECT_TRUE(frame().RecordsWindows().empty());
}

TEST_F(frmMDITest, FileCommandsGoToTheQueryWindow) {
  Start();
  query().Type("txtQuery", "select 1");
  desktop.AnswerFile(folder.File("a.sql"));
  mdi().ChooseMenu("mnuFileSave");
  EXPECT_EQ(Content("a.sql"), "select 1");
  desktop.AnswerFile(folder.File("b.sql"));
  mdi().ChooseMenu("mnuFileSaveAs");
  EXPECT_EQ(query().Caption(), "SQL [b.sql]");
  desktop.AnswerFile(folder.File("a.sql"));
  mdi().ChooseMenu("mnuFileOpen");
  EXPECT_EQ(query().Caption(), "SQL [a.sql]");
  mdi().ChooseMenu("mnuFileNew");
  EXPECT_EQ(query().Caption(), "SQL [untitled]");
}

TEST_F(frmMDITest, TheEditMenuFlipsAndShowsTheWordWrap) {
  Start();
  auto& box = query().Find<CheckBox>("chkWordWrap");
  ASSERT_TRUE(box.Value());
  mdi().ChooseMenu("mnuEditWordWrap");
  EXPECT_FALSE(box.Value());
  mdi().Menu("menuEdit").Choose();
  EXPECT_FALSE(mdi().Menu("mnuEditWordWrap").Checked());
}

TEST_F(frmMDITest, TheVocabularyIsEditedAndWritten) {
  folder.Write("Tessel.vocab.txt", "  indented\r\ntrailing  \r\n\r\nthird");
  Start();
  desktop.OnModal("frmText", [](Window& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "indented\r\ntrailing  \r\nthird\r\n");
    EXPECT_EQ(w.Bounds().width, 4800);
    w.Find<RichTextBox>("txtText").SetText("a\r\n  b\r\n\r\n");
    w.Click("cmdOK");
  });
  mdi().ChooseMenu("mnuEditVocab");
  EXPECT_EQ(Content("Tessel.vocab.txt"), "a\r\nb\r\n");
  desktop.OnModal("frmText", [](Window& w) {
    w.Find<RichTextBox>("txtText").SetText("lost");
    w.Click("cmdCancel");
  });
  mdi().ChooseMenu("mnuEditVocab");
  EXPECT_EQ(Content("Tessel.vocab.txt"), "a\r\nb\r\n");
}

TEST_F(frmMDITest, AVocabularyThatCannotBeWrittenIsReported) {
  Start();
  files.FailWrites("No space left on device");
  desktop.OnModal("frmText", [](Window& w) { w.Click("cmdOK"); });
  desktop.ExpectMessage("Error saving vocabulary: " + folder.File("Tessel.vocab.txt") +
                            ": No space left on device",
                        MessageResult::Ok);
  mdi().ChooseMenu("mnuEditVocab");
}

TEST_F(frmMDITest, TheSidebarShowsAndHides) {
  Start();
  EXPECT_TRUE(mdi().VisibleInFact("box"));
  mdi().Click("cmdCloseBox");
  EXPECT_FALSE(mdi().VisibleInFact("box"));
  mdi().Menu("menuWindow").Choose();
  EXPECT_FALSE(mdi().Menu("mnuWindowSidebar").Checked());
  mdi().ChooseMenu("mnuWindowSidebar");
  EXPECT_TRUE(mdi().VisibleInFact("box"));
  mdi().Menu("menuWindow").Choose();
  EXPECT_TRUE(mdi().Menu("mnuWindowSidebar").Checked());
}

TEST_F(frmMDITest, TheSidebarPlacesItsPanels) {
  Start();
  mdi().ResizeControl("box", 4000, 10480);
  EXPECT_EQ(mdi().Find<Button>("cmdCloseBox").Bounds().left, 4000 - 315);
  const Rect tags = mdi().Find<PictureBox>("fraTags").Bounds();
  const Rect browser = mdi().Find<PictureBox>("fraBrowser").Bounds();
  EXPECT_EQ(tags.width, 3700);
  EXPECT_EQ(browser.width, 3700);
  EXPECT_EQ(tags.height, 3000);
  EXPECT_EQ(browser.height, 7000);
  EXPECT_EQ(mdi().Find<ListView>("lsvTags").ColumnWidth(1), 3700 - 1020);
}

TEST_F(frmMDITest, DraggingTheSidebarsRightEdgeSetsItsWidth) {
  Start();
  mdi().ResizeTo(15000, 10000);
  mdi().ResizeControl("box", 3600, 9000);
  mdi().MouseMove("box", {MouseButton::None, 0, 3590, 100});
  EXPECT_EQ(mdi().PointerOver("box"), MousePointer::SizeWestEast);
  mdi().MouseMove("box", {MouseButton::None, 0, 1000, 100});
  EXPECT_EQ(mdi().PointerOver("box"), MousePointer::Default);
  mdi().MouseDown("box", {MouseButton::Left, 0, 1000, 100});
  mdi().MouseMove("box", {MouseButton::Left, 0, 1200, 100});
  EXPECT_EQ(mdi().Find<PictureBox>("box").Bounds().width, 3600) << "not at the edge";
  mdi().MouseDown("box", {MouseButton::Left, 0, 3590, 100});
  EXPECT_EQ(mdi().Find<PictureBox>("box").Bounds().width, 3600);
  mdi().MouseMove("box", {MouseButton::Left, 0, 4200, 100});
  EXPECT_EQ(mdi().Find<PictureBox>("box").Bounds().width, 4200);
  mdi().MouseMove("box", {MouseButton::Left, 0, 10, 100});
  EXPECT_EQ(mdi().Find<PictureBox>("box").Bounds().width, 1800);
  mdi().MouseMove("box", {MouseButton::None, 0, 1790, 100});
  mdi().MouseMove("box", {MouseButton::Left, 0, 3000, 100});
  EXPECT_EQ(mdi().Find<PictureBox>("box").Bounds().width, 1800) << "the drag has ended";
}

TEST_F(frmMDITest, WindowsAreTiled) {
  Start();
  mdi().ChooseMenu("mnuWindowTileHoriz");
  EXPECT_EQ(mdi().Arranged(), Tiling::Horizontal);
  mdi().ChooseMenu("mnuWindowTileVert");
  EXPECT_EQ(mdi().Arranged(), Tiling::Vertical);
}

TEST_F(frmMDITest, TheProgressWindowNamesTheConnectionItWorksFor) {
  Start();
  for (const char* name : {"A", "B"}) {
    data.ServerOf(name).AnswerNothing("select 1").HoldExecuting();
    Connect(name);
  }
  std::vector<std::string> titles;
  for (int i = 0; i < 2; ++i)
    desktop.OnModal("dlgAsync", [&](Window& w) {
      titles.push_back(w.Caption());
      data.Resume();
    });
  Select("select 1");
  query().PressKey(key::f5);
  EXPECT_EQ(titles, (std::vector<std::string>{"A caption", "B caption"}));
}

TEST_F(frmMDITest, EachConnectionIsTiledAsTheUserTiledLast) {
  Start();
  EXPECT_EQ(mdi().Arranged(), Tiling::Horizontal);
  Connect("A");
  EXPECT_EQ(mdi().Arranged(), Tiling::Horizontal);
  EXPECT_EQ(query().Bounds().height, mdi().Bounds().height / 2);
  mdi().ChooseMenu("mnuWindowTileVert");
  Connect("B");
  EXPECT_EQ(mdi().Arranged(), Tiling::Vertical);
  EXPECT_EQ(query().Bounds().width, mdi().Bounds().width / 3);
}

TEST_F(frmMDITest, AHandMadeLayoutIsLeftAloneByANewConnection) {
  Start();
  Connect("A");
  query().ResizeTo(4000, 3000);
  const Rect placed = query().Bounds();
  Connect("B");
  EXPECT_EQ(query().Bounds(), placed);
  EXPECT_EQ(mdi().Arranged(), std::nullopt);
  query().Maximize(true);
  Connect("C");
  EXPECT_TRUE(query().Maximized());
}

TEST_F(frmMDITest, ARunShowsItsResultWhereADocumentFilledTheFrame) {
  Start();
  data.ServerOf("A").AnswerError("select 1", MemoryError("no such table"));
  Connect("A");
  Connect("B");
  mdi().ChooseMenu("mnuWindowTileVert");
  Select("select 1");
  query().Maximize(true);
  desktop.ExpectMessage("The query did not complete successfully on:-\r\n    A caption\r\n\r\n"
                        "Continue executing on the remaining connections?",
                        MessageResult::Cancel,
                        [this](const Message&) { EXPECT_FALSE(query().Maximized()); });
  query().PressKey(key::f5);
  EXPECT_EQ(mdi().Arranged(), Tiling::Vertical);
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(frmMDITest, ARunLeavesAHandMadeLayoutInWhichNoDocumentFillsTheFrame) {
  Start();
  Connect("A");
  data.AnswerNothing("select 1");
  query().ResizeTo(4000, 3000);
  const Rect placed = query().Bounds();
  Select("select 1");
  query().PressKey(key::f5);
  EXPECT_EQ(query().Bounds(), placed);
}

TEST_F(frmMDITest, TheWindowMenuListsTheWindows) {
  Start();
  Connect("A&B");
  Connect("C");
  Window& records = *desktop.WindowsOf("frmRecords").front();
  records.PressKey(key::f6);
  mdi().Menu("menuWindow").Choose();
  EXPECT_EQ(mdi().Menu("mnuWindowList_0").Caption(), "&1 SQL [untitled]");
  EXPECT_EQ(mdi().Menu("mnuWindowList_1").Caption(), "&2 A&&B caption");
  EXPECT_EQ(mdi().Menu("mnuWindowList_2").Caption(), "&3 C caption");
  EXPECT_TRUE(mdi().Menu("mnuWindowList_0").Checked());
  EXPECT_FALSE(mdi().Menu("mnuWindowList_1").Checked());
  EXPECT_FALSE(mdi().Menu("mnuWindowList_3").Visible());
  mdi().ChooseMenu("mnuWindowList_1");
  EXPECT_TRUE(records.Active());
  records.Menu("menuWindow").Choose();
  EXPECT_TRUE(records.Menu("mnuWindowList_1").Checked());
  records.ChooseMenu("mnuWindowList_0");
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(frmMDITest, NoMoreThanNineWindowsAreListed) {
  Start();
  for (int i = 0; i < 9; ++i) Connect("C" + std::to_string(i));
  mdi().Menu("menuWindow").Choose();
  EXPECT_EQ(mdi().Menu("mnuWindowList_8").Caption(), "&9 C7 caption");
}

TEST_F(frmMDITest, CtrlF4ClosesARecordsWindowAndNoOther) {
  Start();
  Connect("A");
  desktop.WindowOf("frmRecords").PressKey(key::f4, shiftState::ctrl);
  desktop.RunDeferred();
  EXPECT_EQ(frame().RecordsWindowCount(), 0);
  EXPECT_EQ(data.Log().openSessions, 0);
  query().PressKey(key::f4, shiftState::ctrl);
  EXPECT_TRUE(query().Visible());
}

TEST_F(frmMDITest, NewAndOpenHaveTheirKeysInARecordsWindowToo) {
  folder.Write("a.sql", "select 2");
  Start();
  Connect("A");
  query().Find<RichTextBox>("txtQuery").SetText("x");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  desktop.WindowOf("frmRecords").PressKey('N', shiftState::ctrl);
  EXPECT_EQ(query().Find<RichTextBox>("txtQuery").Text(), "");
  desktop.AnswerFile(folder.File("a.sql"));
  desktop.WindowOf("frmRecords").PressKey('O', shiftState::ctrl);
  EXPECT_EQ(query().Find<RichTextBox>("txtQuery").Text(), "select 2");
}

TEST_F(frmMDITest, TheQueryTextShowsTheColourOfTheConnectionConnectedLast) {
  Start();
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("A");
    w.Find<Label>("labColor").SetBackColor(0x1020F0);
    w.Click("cmdConnect");
  });
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(query().Find<RichTextBox>("txtQuery").BackColor(), 0x1020F0U);
}

TEST_F(frmMDITest, HelpCommandsOpenTheHelpFile) {
  Start();
  mdi().ChooseMenu("mnuHelpContents");
  mdi().ChooseMenu("mnuHelpIndex");
  const std::string file = folder.File("Tessel.chm");
  EXPECT_EQ(desktop.HelpRequests(), (std::vector<test::HelpRequest>{{file, 1, 0}, {file, 2, 0}}));
}

TEST_F(frmMDITest, TheShortcutTextIsShownCharacterForCharacter) {
  Start();
  desktop.OnModal("frmText", [](Window& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), ExpectedShortcuts());
    EXPECT_EQ(w.Bounds().width, 9600);
    EXPECT_EQ(w.Bounds().height, 6300);
    w.CloseByControlBox();
  });
  mdi().ChooseMenu("mnuHelpShortcuts");
}

TEST_F(frmMDITest, TheAboutBoxShowsTheVersion) {
  Start();
  desktop.OnModal("dlgAbout", [](Window& w) {
    EXPECT_EQ(w.Find<Label>("lblVersion").Caption(), "Version 1.0");
    w.Click("cmdOK");
  });
  mdi().ChooseMenu("mnuHelpAbout");
}

TEST_F(frmMDITest, F6AndF7WalkBetweenTheWindows) {
  Start();
  Connect("A");
  Connect("B");
  query().PressKey(key::f6);
  EXPECT_TRUE(desktop.WindowsOf("frmRecords").front()->Active());
  desktop.WindowsOf("frmRecords").front()->PressKey(key::f6);
  EXPECT_TRUE(query().Active());
  EXPECT_EQ(query().FocusName(), "txtQuery");
  query().PressKey(key::f7);
  EXPECT_TRUE(mdi().Find<TreeView>("trvBrowser").HasFocus());
}

TEST_F(frmMDITest, AConnectionHasItsNodeInTheSchemaBrowserAsLongAsItIsOpen) {
  folder.Write("A.schema.xml", "<Database><Table name='Orders'/></Database>");
  Start();
  Connect("Database=A");
  Connect("Database=B");
  auto& tree = mdi().Find<TreeView>("trvBrowser");
  EXPECT_EQ(tree.Children(""), (std::vector<std::string>{"d1", "d2"}));
  EXPECT_EQ(tree.Text("d1"), "Database=A caption");
  EXPECT_EQ(tree.Text("td1.ORDERS"), "Orders");
  EXPECT_TRUE(tree.Children("d2").empty());
  desktop.WindowsOf("frmRecords").front()->CloseByControlBox();
  EXPECT_EQ(tree.Children(""), (std::vector<std::string>{"d2"}));
}

TEST_F(frmMDITest, ASchemaIsReadFromTheDatabaseOfItsNodeAndWhenTheConnectionAsksForIt) {
  for (const char* name : {"Database=A", "Database=B"})
    AnswerViews(data.ServerOf(name), {{std::string("Table of ") + name, {"field"}}});
  Start();
  Connect("Database=A");
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<CheckBox>("chkLoadSchemaFromDB").SetValue(true);
    w.Find<TextBox>("txtCnStr").SetText("Database=B");
    w.Click("cmdConnect");
  });
  desktop.ExpectMessage(connectQuestion, MessageResult::Yes);
  mdi().ChooseMenu("mnuDBConnect");
  auto& tree = mdi().Find<TreeView>("trvBrowser");
  EXPECT_TRUE(tree.Exists("td2.TABLE OF DATABASE=B"));
  EXPECT_TRUE(realFiles.FileExists(folder.File("B.schema.xml")));
  EXPECT_TRUE(tree.Children("d1").empty());
  tree.SelectNode("d1");
  mdi().Menu("mnuDBLoadSchemaFromDB").Choose();
  EXPECT_TRUE(tree.Exists("td1.TABLE OF DATABASE=A"));
}

TEST_F(frmMDITest, ANodeOfTheSchemaBrowserGoesIntoTheQueryWindow) {
  folder.Write("A.schema.xml", "<Database><Table name='Order Details'/></Database>");
  Start();
  Connect("Database=A");
  mdi().Find<TreeView>("trvBrowser").SelectNode("td1.ORDER DETAILS");
  query().PressKey(key::f7);
  mdi().PressKey(key::enter);
  EXPECT_EQ(query().Find<RichTextBox>("txtQuery").Text(), "[Order Details]");
  EXPECT_EQ(query().FocusName(), "txtQuery");
  query().PressKey(key::f7);
  mdi().PressKey(key::f7);
  EXPECT_EQ(query().FocusName(), "txtQuery");
}

TEST_F(frmMDITest, ExitAsksAboutUnsavedSqlOnceAndClosesTheConnections) {
  Start();
  Connect("A");
  query().Type("txtQuery", "x");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel);
  mdi().ChooseMenu("mnuFileExit");
  EXPECT_TRUE(mdi().Loaded());
  EXPECT_EQ(data.Log().openSessions, 1);
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  mdi().ChooseMenu("mnuFileExit");
  EXPECT_TRUE(desktop.WindowsOf("frmMDI").empty());
  EXPECT_TRUE(desktop.WindowsOf("frmRecords").empty());
  EXPECT_EQ(data.Log().openSessions, 0);
  EXPECT_EQ(frame().RecordsWindowCount(), 0);
}

TEST_F(frmMDITest, TheDataLinkTestTellsHowItWent) {
  Start();
  data.ServerOf("Bad=1").openFailure = MemoryError("refused");
  desktop.OnModal("dlgDataLink", [this](Window& w) {
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(w.Find<Label>("lblResult").Caption(), "refused");
    w.Find<TextBox>("txtKey").SetText("Bad");
    w.Find<TextBox>("txtValue").SetText("0");
    w.Click("cmdSet");
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(w.Find<Label>("lblResult").Caption(), "The connection works.");
    w.Click("cmdCancel");
  });
  desktop.OnModal("dlgConnect", [](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("Bad=1");
    w.Click("cmdOLEDB");
    w.Click("cmdCancel");
  });
  mdi().ChooseMenu("mnuDBConnect");
  EXPECT_EQ(data.Log().openSessions, 0);
}

TEST_F(frmMDITest, AConnectionThatCouldNotBeSavedSaysSoOnTheStatusLineOfItsWindow) {
  Start();
  files.FailWrites();
  Connect("A");
  EXPECT_EQ(frame().RecordsWindowCount(), 1);
  const std::string status = desktop.WindowOf("frmRecords").Find<TextBox>("txtStatus").Text();
  EXPECT_TRUE(status.ends_with("Connected. The list of connections was not saved: " +
                               folder.File("Tessel.ini.xml") + ": No space left on device."))
      << status;
}

TEST_F(frmMDITest, TheEndOfTheSessionKeepsUnsavedSqlAndClosesConnectionsWithoutAQuestion) {
  Start();
  Connect("A");
  query().Type("txtQuery", "SELECT 1");
  desktop.EndSession();
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_EQ(frame().RecordsWindowCount(), 0);
  EXPECT_FALSE(frame().TheWindow().Loaded());
  EXPECT_TRUE(std::filesystem::exists(folder.File("Tessel.recovery-1")));
}

}  // namespace
}  // namespace tessel
