#include "logic/results/frmRecords.h"

#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

class frmRecordsTest : public test::RecordsFixture {};

// --- connecting ----------------------------------------------------------------------------------

TEST_F(frmRecordsTest, AConnectedWindowShowsItsCaptionColoursAndStatus) {
  ASSERT_TRUE(Connect());
  EXPECT_EQ(W().Caption(), "Shop");
  EXPECT_EQ(Status(), "[12:00:00]  Connected.");
  EXPECT_EQ(StatusColor(), 0x000000U);
  EXPECT_TRUE(W().Visible());
  for (const char* control : {"DataGrid", "cboCatalog", "lblTimer"}) {
    EXPECT_EQ(W().Find<Control>(control).BackColor(), 0x112233U) << control;
    EXPECT_EQ(W().Find<Control>(control).ForeColor(), 0x445566U) << control;
  }
  EXPECT_EQ(host.nodes, (std::map<std::string, std::string>{{"d1", "Shop"}}));
  EXPECT_EQ(host.loads, (std::vector<std::string>{"d1 Provider=Fake from the file"}));
  EXPECT_EQ(host.count, 1);
  EXPECT_EQ(data.Log().opened.at(0).user, "me");
}

TEST_F(frmRecordsTest, TheSchemaBrowserFollowsACatalogChosenInACommand) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  ASSERT_TRUE(Connect());
  host.loads.clear();
  data.AnswerNothing("use test").NewCatalog("test").Notices({MemoryError("beware")});
  data.AnswerNothing("do nothing");
  ASSERT_TRUE(Run("use test"));
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").Text(), "test");
  EXPECT_TRUE(host.loads.empty()) << "the warning would be lost";
  EXPECT_EQ(data.Log().catalogs, std::vector<std::string>()) << "it is in use already";
  ASSERT_TRUE(Run("do nothing"));
  EXPECT_EQ(host.loads, (std::vector<std::string>{"d1 follows test from the file"}));
}

TEST_F(frmRecordsTest, WithoutACaptionTheConnectionStringStandsForIt) {
  ASSERT_TRUE(Connect("Provider=Fake", ""));
  EXPECT_EQ(W().Caption(), "Provider=Fake");
}

TEST_F(frmRecordsTest, AFailedConnectionShowsWhyAndUnloadsTheWindow) {
  data.openFailure = MemoryError("unable to open database file");
  desktop.ExpectMessage(
      "unable to open database file", MessageResult::Ok,
      [](const Message& message) { EXPECT_EQ(message.icon, MessageIcon::Critical); });
  EXPECT_FALSE(Connect());
  EXPECT_TRUE(desktop.WindowsOf("frmRecords").empty());
  EXPECT_EQ(host.count, 0);
  EXPECT_EQ(host.lastID, 0);
}

TEST_F(frmRecordsTest, ACancelledConnectionIsSilent) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(Connect());
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_TRUE(desktop.WindowsOf("frmRecords").empty());
  EXPECT_EQ(host.count, 0);
}

TEST_F(frmRecordsTest, WithoutADefaultDatabaseThereIsNoCatalogList) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(Shows("cboCatalog"));
}

TEST_F(frmRecordsTest, TheCatalogListHoldsTheOneInUseFirstAndTheOthersOnce) {
  data.defaultDatabase = "shop";
  data.catalogs = {"archive", "SHOP", "test"};
  ASSERT_TRUE(Connect());
  auto& list = W().Find<ComboBox>("cboCatalog");
  ASSERT_TRUE(Shows("cboCatalog"));
  ASSERT_EQ(list.ListCount(), 3);
  EXPECT_EQ(list.Text(), "shop");
  EXPECT_EQ(list.List(1), "archive");
  EXPECT_EQ(list.List(2), "test");
  EXPECT_EQ(Status(), "[12:00:00]  Connected.");
}

TEST_F(frmRecordsTest, AProviderWithoutAListOfCatalogsStillConnects) {
  data.defaultDatabase = "shop";
  data.schemaFailures[SchemaRowset::Catalogs] =
      MemoryError("not supported", errorNumber::notSupported);
  ASSERT_TRUE(Connect());
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").ListCount(), 1);
}

/// A server that stops answering right after the connect does not hold the window.
TEST_F(frmRecordsTest, ReadingTheCatalogsCanBeCancelled) {
  data.defaultDatabase = "shop";
  data.catalogs = {"archive"};
  data.holdSchemas = {SchemaRowset::Catalogs};
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  ASSERT_TRUE(Connect());
  EXPECT_EQ(data.Log().cancels, 1);
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").ListCount(), 1);
  EXPECT_EQ(Status(), "[12:00:00]  Connected.");
}

TEST_F(frmRecordsTest, ACancelThatCostsTheConnectionIsACancelledConnect) {
  data.defaultDatabase = "shop";
  data.holdSchemas = {SchemaRowset::Catalogs};
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    data.LoseSessions();
    w.Click("cmdCancel");
  });
  EXPECT_FALSE(Connect());
}

TEST_F(frmRecordsTest, ChoosingACatalogUsesItInBracketsOrBare) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  for (const bool brackets : {false, true}) {
    data.takesBrackets = brackets;
    records = std::make_unique<frmRecords>(global, async, host);
    ASSERT_TRUE(Connect());
    W().SelectItem("cboCatalog", 1);
    EXPECT_EQ(records->TheConnection()->DefaultDatabase(), "test");
    EXPECT_EQ(Status(), "[12:00:00]  Using 'test'.");
  }
  EXPECT_EQ(data.Log().catalogs, (std::vector<std::string>{"[test]", "test", "[test]"}));
}

TEST_F(frmRecordsTest, TheSchemaBrowserFollowsTheCatalog) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  ASSERT_TRUE(Connect());
  host.loads.clear();
  W().SelectItem("cboCatalog", 1);
  EXPECT_EQ(host.loads, (std::vector<std::string>{"d1 follows test from the file"}));
  W().SelectItem("cboCatalog", 1);
  W().Click("cmdReconnect");
  EXPECT_EQ(host.loads.size(), 1U) << "it is the same catalog";
}

TEST_F(frmRecordsTest, TheSchemaBrowserFollowsAReconnectThatLosesTheCatalogChosen) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  ASSERT_TRUE(Connect());
  W().SelectItem("cboCatalog", 1);
  host.loads.clear();
  data.catalogFailures["test"] = MemoryError("access denied");
  desktop.ExpectMessage("Error using 'test': access denied");
  W().Click("cmdReconnect");
  EXPECT_EQ(host.loads, (std::vector<std::string>{"d1 follows shop from the file"}));
}

TEST_F(frmRecordsTest, WithoutACaptionTheConnectionStringIsShownWithoutItsPassword) {
  ASSERT_TRUE(Connect("Provider=Fake;PWD={se;cret};Server=s", ""));
  EXPECT_EQ(W().Caption(), "Provider=Fake;PWD=*****;Server=s");
  EXPECT_EQ(host.nodes.at("d1"), "Provider=Fake;PWD=*****;Server=s");
}

TEST_F(frmRecordsTest, ACatalogThatCannotBeUsedIsReportedAndTheListGoesBack) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  data.catalogFailures["test"] = MemoryError("access denied");
  ASSERT_TRUE(Connect());
  desktop.ExpectMessage(
      "Error using 'test': access denied", MessageResult::Ok,
      [](const Message& message) { EXPECT_EQ(message.icon, MessageIcon::Critical); });
  W().SelectItem("cboCatalog", 1);
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").Text(), "shop");
}

/// A server that stops answering just then does not hold the window.
TEST_F(frmRecordsTest, UsingAnotherCatalogCanBeCancelled) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  ASSERT_TRUE(Connect());
  data.holdCatalogChanges = true;
  data.takesBrackets = true;
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  W().SelectItem("cboCatalog", 1);
  EXPECT_EQ(data.Log().cancels, 1);
  EXPECT_TRUE(data.Log().catalogs.empty()) << "neither in brackets nor without";
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").Text(), "shop");
  EXPECT_EQ(Status(), "[12:00:00]  Connected.");
}

TEST_F(frmRecordsTest, ReconnectReopensWithTheSameUserAndKeepsTheCatalogChosen) {
  data.defaultDatabase = "shop";
  data.catalogs = {"shop", "test"};
  ASSERT_TRUE(Connect());
  W().SelectItem("cboCatalog", 1);
  W().Click("cmdReconnect");
  EXPECT_EQ(Status(), "[12:00:00]  Re-connected.");
  EXPECT_EQ(StatusColor(), 0x000000U);
  EXPECT_EQ(data.Log().opened.size(), 2U);
  EXPECT_EQ(data.Log().opened.at(1).password, "secret");
  EXPECT_EQ(records->TheConnection()->DefaultDatabase(), "test");
  EXPECT_EQ(W().FocusName(), "txtStatus");
}

TEST_F(frmRecordsTest, ReconnectHidesTheRowsOnShow) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  W().PressKey('C', shiftState::ctrl | shiftState::alt);
  EXPECT_FALSE(Shows("DataGrid"));
  EXPECT_EQ(Grid().DataSource(), nullptr);
  EXPECT_EQ(Status(), "[12:00:00]  Re-connected.");
}

TEST_F(frmRecordsTest, ACancelledReconnectSaysDisconnected) {
  ASSERT_TRUE(Connect());
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  W().Click("cmdReconnect");
  EXPECT_EQ(Status(), "[12:00:00]  Disconnected.");
}

TEST_F(frmRecordsTest, AFailedReconnectShowsWhyAndTheNextOneWorks) {
  ASSERT_TRUE(Connect());
  data.openFailure = MemoryError("connection refused");
  W().Click("cmdReconnect");
  EXPECT_EQ(Status(), "[12:00:00]  connection refused");
  EXPECT_EQ(StatusColor(), 0x0000BFU);
  data.openFailure.reset();
  W().Click("cmdReconnect");
  EXPECT_EQ(Status(), "[12:00:00]  Re-connected.");
}

TEST_F(frmRecordsTest, UnloadingClosesTheConnectionAndUnregisters) {
  ASSERT_TRUE(Connect());
  W().CloseByControlBox();
  EXPECT_EQ(data.Log().openSessions, 0);
  EXPECT_EQ(host.count, 0);
  EXPECT_TRUE(host.nodes.empty());
}

TEST_F(frmRecordsTest, AFailureToCloseDoesNotKeepTheWindow) {
  ASSERT_TRUE(Connect());
  data.closeFailure = MemoryError("close failed");
  W().CloseByControlBox();
  EXPECT_TRUE(desktop.WindowsOf("frmRecords").empty());
  EXPECT_EQ(host.count, 0);
}

// --- running SQL ---------------------------------------------------------------------------------

TEST_F(frmRecordsTest, RowsShowInTheGridWithTheirCount) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(Shows("DataGrid"));
  RunThreeRows();
  EXPECT_EQ(Status(), "[12:00:00]  3 record(s).");
  EXPECT_EQ(StatusColor(), 0xBF0000U);
  EXPECT_TRUE(Shows("DataGrid"));
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 3);
  EXPECT_TRUE(W().Menu("menuRecords").Enabled());
  EXPECT_TRUE(W().Find<CheckBox>("chkRecords").Enabled());
  EXPECT_EQ(Grid().DataSource()->Lock(), LockType::ReadOnly);
}

TEST_F(frmRecordsTest, TheWholeTextGoesToTheProviderAsOneCommand) {
  ASSERT_TRUE(Connect());
  data.AnswerCount("update a;\r\nselect b", 2);
  EXPECT_TRUE(Run("update a;\r\nselect b"));
  EXPECT_EQ(data.ExecutedSql(), (std::vector<std::string>{"update a;\r\nselect b"}));
}

TEST_F(frmRecordsTest, AnActionStatementShowsItsCount) {
  ASSERT_TRUE(Connect());
  data.AnswerCount("update", 0);
  EXPECT_TRUE(Run("update"));
  EXPECT_EQ(Status(), "[12:00:00]  0 record(s) affected.");
  EXPECT_EQ(StatusColor(), 0x00BF00U);
  EXPECT_FALSE(Shows("DataGrid"));
  EXPECT_FALSE(W().Menu("menuRecords").Enabled());
}

TEST_F(frmRecordsTest, AStatementWithoutRowsOrCountIsCompleted) {
  ASSERT_TRUE(Connect());
  data.AnswerNothing("create");
  EXPECT_TRUE(Run("create"));
  EXPECT_EQ(Status(), "[12:00:00]  Execution completed.");
  EXPECT_EQ(StatusColor(), 0x007F00U);
}

TEST_F(frmRecordsTest, AFailedStatementShowsTheErrorInRedGrown) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  std::string lines = "ERROR:  relation \"x\" does not exist\nDETAIL: 2\nHINT: 3";
  data.AnswerError("bad", MemoryError(lines));
  EXPECT_FALSE(Run("bad"));
  EXPECT_EQ(Status(), "[12:00:00]  " + lines);
  EXPECT_EQ(StatusColor(), 0x0000BFU);
  EXPECT_EQ(W().Find<TextBox>("txtStatus").Bounds().height, 3 * 240 + 90);
  EXPECT_FALSE(Shows("DataGrid"));
  EXPECT_TRUE(Shows("cmdCnErrors"));
  RunThreeRows("select again");
  EXPECT_EQ(W().Find<TextBox>("txtStatus").Bounds().height, 330);
  EXPECT_FALSE(Shows("cmdCnErrors"));
}

TEST_F(frmRecordsTest, AVeryLongErrorGrowsOnlyAsFarAsThereIsRoom) {
  ASSERT_TRUE(Connect());
  std::string lines;
  for (int i = 0; i < 100; ++i) lines += "line\n";
  data.AnswerError("bad", MemoryError(lines));
  EXPECT_FALSE(Run("bad"));
  const Rect bounds = W().Find<TextBox>("txtStatus").Bounds();
  EXPECT_EQ(bounds.height, W().ScaleHeight() - 240 - bounds.top);
}

TEST_F(frmRecordsTest, ACancelBeforeRowsSaysSoAndReturnsFalse) {
  ASSERT_TRUE(Connect());
  data.Answer("slow", MemoryFields({"a"}), {}).HoldExecuting();
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(Run("slow"));
  EXPECT_EQ(Status(), "[12:00:00]  Execution cancelled.");
  EXPECT_EQ(StatusColor(), 0x00007FU);
}

TEST_F(frmRecordsTest, ACancelDuringTheFetchShowsTheRowsSoFarAsInterrupted) {
  ASSERT_TRUE(Connect());
  MemoryRows rows;
  for (int i = 0; i < 500; ++i) rows.push_back({Value(std::int64_t{i})});
  data.Answer("slow", {MemoryField("n", DataType::Integer)}, rows).HoldAtRow(200);
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(Run("slow"));
  EXPECT_EQ(Status(), "[12:00:00]  200 record(s). [Interrupted]");
  EXPECT_EQ(StatusColor(), 0xBF0000U | 0x00007FU);
  EXPECT_TRUE(Shows("DataGrid"));
}

TEST_F(frmRecordsTest, TheStatusLinesTextIsBlackOrWhiteByItsGround) {
  ASSERT_TRUE(Connect());
  const auto text = [this] { return W().Find<TextBox>("txtStatus").ForeColor(); };
  EXPECT_EQ(text(), color::white);
  data.AnswerCount("update", 3);
  EXPECT_TRUE(Run("update"));
  EXPECT_EQ(text(), color::black) << "on bright green";
  data.AnswerError("bad", MemoryError("no such table"));
  EXPECT_FALSE(Run("bad"));
  EXPECT_EQ(text(), color::white);
}

TEST_F(frmRecordsTest, ErrorsBesideASuccessAreCountedWithoutTheNoInterfaceOnes) {
  ASSERT_TRUE(Connect());
  const std::vector<ErrorInfo> notices = {MemoryError("first"),
                                          MemoryError("ignored", errorNumber::noInterface),
                                          MemoryError("second")};
  data.AnswerNothing("noisy").Notices(notices);
  EXPECT_TRUE(Run("noisy"));
  EXPECT_EQ(Status(), "[12:00:00]  Execution completed. [2 error(s) occurred]");
  EXPECT_EQ(StatusColor(), 0x007F00U | 0x0000FFU);
  ASSERT_TRUE(Shows("cmdCnErrors"));
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "first\r\nsecond\r\n");
    EXPECT_EQ(w.HelpContext(), 8403);
    w.CloseByControlBox();
  });
  W().PressKey('E', shiftState::ctrl | shiftState::alt);
}

TEST_F(frmRecordsTest, OnlyNoInterfaceErrorsAreNoErrors) {
  ASSERT_TRUE(Connect());
  data.AnswerNothing("quiet").Notices({MemoryError("ignored", errorNumber::noInterface)});
  EXPECT_TRUE(Run("quiet"));
  EXPECT_EQ(Status(), "[12:00:00]  Execution completed.");
  EXPECT_FALSE(Shows("cmdCnErrors"));
}

TEST_F(frmRecordsTest, AppendedStatusCombinesTheColoursBitByBit) {
  auto& box = W().Find<TextBox>("txtStatus");
  StatusLine status(desktop.TheClock(), box, W().Find<Button>("cmdCnErrors"));
  status.SetStatus("Execution completed.", 0x007F00, {false, false, false});
  status.SetStatus("[Interrupted]", 0x00007F, {true, false, false});
  EXPECT_EQ(box.BackColor(), 0x007F7FU);
  EXPECT_EQ(box.Text(), "[12:00:00]  Execution completed. [Interrupted]");
}

TEST_F(frmRecordsTest, ThePreviewRunsTheTextThatTheWindowHandsBack) {
  ASSERT_TRUE(Connect());
  data.AnswerCount("update edited", 1);
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "update");
    EXPECT_EQ(w.Bounds().width, 9600);
    EXPECT_EQ(w.Bounds().height, 2400);
    w.Find<RichTextBox>("txtText").SetText("update edited");
    w.Click("cmdOK");
  });
  EXPECT_TRUE(records->DoQueryTags("update", true, newQuery));
  EXPECT_EQ(data.ExecutedSql(), (std::vector<std::string>{"update edited"}));
}

TEST_F(frmRecordsTest, ACancelledPreviewRunsAndChangesNothing) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(records->DoQueryTags("update", true, newQuery));
  EXPECT_EQ(Status(), "[12:00:00]  3 record(s).");
  EXPECT_TRUE(Shows("DataGrid"));
}

TEST_F(frmRecordsTest, TheTimerShowsHowLongTheQueryTook) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(Shows("lblTimer"));
  data.AnswerCount("slow", 1).HoldExecuting();
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow&) {
    desktop.AdvanceTime(65'000);
    data.Resume();
  });
  EXPECT_TRUE(Run("slow"));
  EXPECT_TRUE(Shows("lblTimer"));
  EXPECT_EQ(W().Find<Label>("lblTimer").Caption(), "00:01:05");
  EXPECT_EQ(Status(), "[12:01:05]  1 record(s) affected.");
}

TEST_F(frmRecordsTest, AProviderWithoutThreadsRunsBlocking) {
  data.properties.Set("Data Source Object Threading Model", std::int64_t{2});
  ASSERT_TRUE(Connect());
  NoteWaiting();
  RunThreeRows();
  EXPECT_TRUE(waited);
}

TEST_F(frmRecordsTest, ALostSessionShowsAnErrorAndReconnectWorks) {
  ASSERT_TRUE(Connect());
  data.LoseSessions();
  data.AnswerNothing("select");
  EXPECT_FALSE(Run("select"));
  EXPECT_EQ(StatusColor(), 0x0000BFU);
  W().Click("cmdReconnect");
  EXPECT_TRUE(Run("select"));
}

// --- the lock and the warning --------------------------------------------------------------------

TEST_F(frmRecordsTest, UnlockedRowsWithoutAUniqueKeyShowTheWarningAndMoveTheGridDown) {
  ASSERT_TRUE(Connect());
  data.Answer("select", MemoryFields({"a"}), {{Value(std::string("x"))}}).UniqueRows(false);
  EXPECT_TRUE(Run("select"));
  EXPECT_FALSE(Shows("lblWarning"));
  EXPECT_EQ(Grid().Bounds().top, 840);
  W().PressKey('L', shiftState::ctrl);
  EXPECT_TRUE(Run("select"));
  EXPECT_TRUE(Shows("lblWarning"));
  EXPECT_EQ(Grid().Bounds().top, 960);
  EXPECT_EQ(Grid().Bounds().height, W().ScaleHeight() - 60 - 960);
  EXPECT_EQ(Grid().DataSource()->Lock(), LockType::Optimistic);
  EXPECT_TRUE(Grid().AllowUpdate() && Grid().AllowDelete() && Grid().AllowAddNew());
  EXPECT_TRUE(W().Menu("mnuBLOBLoad").Enabled());
}

TEST_F(frmRecordsTest, UniqueRowsShowNoWarning) {
  ASSERT_TRUE(Connect());
  W().Click("chkLock");
  RunThreeRows();
  EXPECT_FALSE(Shows("lblWarning"));
  EXPECT_EQ(Grid().Bounds().top, 840);
}

TEST_F(frmRecordsTest, TheLockAppliesToSubsequentQueriesAndItsTooltipSaysSo) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  W().Click("chkLock");
  EXPECT_EQ(W().Find<CheckBox>("chkLock").ToolTip(),
            "Click to make records read-only on subsequent queries (Ctrl+L)");
  EXPECT_FALSE(Grid().AllowUpdate());
  W().Click("chkLock");
  EXPECT_EQ(W().Find<CheckBox>("chkLock").ToolTip(),
            "Click to make records editable on subsequent queries (Ctrl+L)");
}

TEST_F(frmRecordsTest, BinaryColumnsShowSizesAndCarryAButton) {
  ASSERT_TRUE(Connect());
  data.Answer("select",
              {MemoryField("id", DataType::Integer), MemoryField("pic", DataType::LongVarBinary)},
              {{Value(std::int64_t{1}), Value(Bytes(2048))},
               {Value(std::int64_t{2}), Value()},
               {Value(std::int64_t{3}), Value(Bytes())}});
  EXPECT_TRUE(Run("select"));
  EXPECT_EQ(Grid().ShownText(0, 1), "[2048]");
  EXPECT_EQ(Grid().ShownText(2, 1), "[0]");
  EXPECT_TRUE(Grid().ColumnButton(1) && Grid().ColumnLocked(1));
  EXPECT_FALSE(Grid().ColumnButton(0) || Grid().ColumnLocked(0));
}

// --- history -------------------------------------------------------------------------------------

TEST_F(frmRecordsTest, BackAndForwardStepThroughTheQueriesThatGaveRows) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(W().Find<Button>("cmdRequery").Enabled());
  RunThreeRows("select 1");
  data.AnswerCount("update", 1);
  Run("update");
  RunThreeRows("select 2");
  EXPECT_EQ(W().Find<Button>("cmdHistoryBack").ToolTip(), "Back to 3 record(s) of: select 1");
  W().PressKey(key::left, shiftState::alt);
  EXPECT_EQ(data.ExecutedSql().back(), "select 1");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryBack").Enabled());
  EXPECT_EQ(W().Find<Button>("cmdHistoryForward").ToolTip(), "Forward to 3 record(s) of: select 2");
  W().Click("cmdHistoryForward");
  EXPECT_EQ(data.ExecutedSql().back(), "select 2");
  W().PressKey(key::f5);
  EXPECT_EQ(data.ExecutedSql().back(), "select 2");
  EXPECT_EQ(data.ExecutedSql().size(), 6U);
}

TEST_F(frmRecordsTest, AFailedRerunLeavesThePositionWhereItWas) {
  ASSERT_TRUE(Connect());
  RunThreeRows("select 1");
  RunThreeRows("select 2");
  data.AnswerError("select 1", MemoryError("gone"));
  W().Click("cmdHistoryBack");
  W().Click("cmdHistoryBack");
  EXPECT_EQ(W().Find<Button>("cmdHistoryBack").Enabled(), true);
  EXPECT_FALSE(W().Find<Button>("cmdHistoryForward").Enabled());
}

TEST_F(frmRecordsTest, TheTipsOfTheHistoryShowEightyCharactersOfAQuery) {
  ASSERT_TRUE(Connect());
  const std::string eighty = "select '" + std::string(71, 'x') + "'";
  RunThreeRows(eighty);
  RunThreeRows(eighty + "y");
  const auto tip = [&](const char* button) { return W().Find<Button>(button).ToolTip(); };
  EXPECT_EQ(tip("cmdHistoryBack"), "Back to 3 record(s) of: " + eighty);
  W().Click("cmdHistoryBack");
  EXPECT_EQ(tip("cmdHistoryForward"), "Forward to 3 record(s) of: " + eighty + "...");
}

TEST_F(frmRecordsTest, TheHistoryMenuShowsAtMostEightNearestFirst) {
  ASSERT_TRUE(Connect());
  for (int i = 0; i < 12; ++i) RunThreeRows("select\t" + std::to_string(i) + " & x");
  desktop.ExpectPopup("menuHistory", "mnuHistorical_2", [this] {
    EXPECT_EQ(W().Menu("mnuHistorical_0").Caption(), "select 10 && x   [3]");
    EXPECT_EQ(W().Menu("mnuHistorical_7").Caption(), "select 3 && x   [3]");
  });
  W().MouseUp("cmdHistoryBack", MouseButton::Right);
  EXPECT_EQ(data.ExecutedSql().back(), "select\t8 & x");
  desktop.ExpectPopup("menuHistory", "", [this] {
    EXPECT_TRUE(W().Menu("mnuHistorical_2").Visible());
    EXPECT_FALSE(W().Menu("mnuHistorical_3").Visible());
  });
  W().PressKey(key::down, shiftState::alt);
}

TEST_F(frmRecordsTest, TheHistoryMenuShowsAtMostEightOfThoseAhead) {
  ASSERT_TRUE(Connect());
  for (int i = 0; i < 12; ++i) RunThreeRows("select " + std::to_string(i));
  for (int i = 0; i < 11; ++i) W().PressKey(key::left, shiftState::alt);
  EXPECT_EQ(data.ExecutedSql().back(), "select 0");
  desktop.ExpectPopup("menuHistory", "mnuHistorical_7", [this] {
    EXPECT_EQ(W().Menu("mnuHistorical_0").Caption(), "select 1   [3]");
    EXPECT_EQ(W().Menu("mnuHistorical_7").Caption(), "select 8   [3]");
  });
  W().MouseUp("cmdHistoryForward", MouseButton::Right);
  EXPECT_EQ(data.ExecutedSql().back(), "select 8");
}

TEST_F(frmRecordsTest, TheRightButtonOnADisabledHistoryButtonShowsNoMenu) {
  ASSERT_TRUE(Connect());
  RunThreeRows("select 1");
  W().MouseUp("cmdHistoryBack", MouseButton::Right);
  W().MouseUp("cmdHistoryForward", MouseButton::Right);
}

TEST_F(frmRecordsTest, ANewQueryAfterSteppingBackLeavesNothingAhead) {
  ASSERT_TRUE(Connect());
  for (const char* sql : {"select 1", "select 2", "select 3"}) RunThreeRows(sql);
  W().PressKey(key::left, shiftState::alt);
  W().PressKey(key::left, shiftState::alt);
  EXPECT_TRUE(W().Find<Button>("cmdHistoryForward").Enabled());
  RunThreeRows("select 4");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryForward").Enabled());
  EXPECT_EQ(W().Find<Button>("cmdHistoryBack").ToolTip(), "Back to 3 record(s) of: select 1");
}

TEST_F(frmRecordsTest, HistoryKeysWithShiftShowTheQueryFirst) {
  ASSERT_TRUE(Connect());
  RunThreeRows("select 1");
  RunThreeRows("select 2");
  desktop.HoldKey(key::shift);
  std::vector<std::string> shown;
  const auto notNow = [&](test::HeadlessWindow& w) {
    shown.push_back(w.Find<RichTextBox>("txtText").Text());
    w.Click("cmdCancel");
  };
  for (const auto& [keyCode, shift] :
       {std::pair(int{key::left}, shiftState::alt), std::pair(int{key::f5}, shiftState::none)}) {
    desktop.OnModal("frmText", notNow);
    W().PressKey(keyCode, shift | shiftState::shift);
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"select 1", "select 2"}));
  EXPECT_EQ(data.ExecutedSql().back(), "select 2") << "none ran";
  EXPECT_TRUE(W().Find<Button>("cmdHistoryBack").Enabled());
}

TEST_F(frmRecordsTest, QueryPropertiesShowTheSqlBehindTheRows) {
  ASSERT_TRUE(Connect());
  RunThreeRows("select 1");
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "select 1");
    w.CloseByControlBox();
  });
  W().PressKey('Q', shiftState::ctrl);
}

// --- the window ----------------------------------------------------------------------------------

TEST_F(frmRecordsTest, PropertiesOfTheProviderShowByName) {
  data.properties.Set("DBMS Name", std::string("Fake"));
  ASSERT_TRUE(Connect());
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    const std::string text = w.Find<RichTextBox>("txtText").Text();
    EXPECT_NE(text.find("Data Source Object Threading Model=1\r\n"), std::string::npos) << text;
    EXPECT_NE(text.find("DBMS Name=Fake\r\n"), std::string::npos) << text;
    EXPECT_EQ(w.HelpContext(), 8404);
    w.CloseByControlBox();
  });
  W().PressKey('P', shiftState::ctrl | shiftState::alt);
}

TEST_F(frmRecordsTest, KeysReachTheCatalogListAndTheQueryWindow) {
  data.defaultDatabase = "shop";
  ASSERT_TRUE(Connect());
  W().PressKey('D', shiftState::ctrl | shiftState::alt);
  EXPECT_EQ(W().FocusName(), "cboCatalog");
  W().PressKey(key::f6);
  EXPECT_EQ(host.commands, (std::vector<std::string>{"focus query"}));
}

TEST_F(frmRecordsTest, ImportIsAskedForByKeyAndByMenu) {
  ASSERT_TRUE(Connect());
  W().PressKey('I', shiftState::ctrl | shiftState::shift);
  W().ChooseMenu("mnuCnImport");
  EXPECT_EQ(host.commands, (std::vector<std::string>{"import", "import"}));
}

TEST_F(frmRecordsTest, ResizingStretchesAndKeepsTheRightEnd) {
  data.defaultDatabase = "shop";
  ASSERT_TRUE(Connect());
  RunThreeRows();
  W().ResizeTo(12000, 6000);
  EXPECT_EQ(W().Find<TextBox>("txtStatus").Bounds().width, 12000 - 120);
  EXPECT_EQ(Grid().Bounds(), (Rect{60, 840, 12000 - 120, 6000 - 60 - 840}));
  const Rect catalog = W().Find<ComboBox>("cboCatalog").Bounds();
  EXPECT_EQ(catalog.left + catalog.width, 12000 - 60);
  EXPECT_LT(W().Find<Button>("cmdReconnect").Bounds().left, catalog.left);
  W().ResizeTo(100, 100);
  EXPECT_EQ(W().Bounds().width, 1800);
  EXPECT_EQ(W().Bounds().height, 2400);
}

TEST_F(frmRecordsTest, ItSaysWhichRowIsTheCurrentOne) {
  ASSERT_TRUE(Connect());
  W().ResizeTo(12000, 6000);
  EXPECT_FALSE(Shows("lblRow"));
  RunThreeRows();
  EXPECT_TRUE(Shows("lblRow"));
  const auto& row = W().Find<Label>("lblRow");
  EXPECT_EQ(row.Caption(), "row 1 of 3");
  W().ClickGridCell("DataGrid", 2, 1);
  EXPECT_EQ(row.Caption(), "row 3 of 3");
  EXPECT_EQ(Status(), "[12:00:00]  3 record(s).") << "the status line says what it always said";
  data.AnswerCount("delete", 2);
  Run("delete");
  EXPECT_FALSE(Shows("lblRow"));
  data.Answer("none", {MemoryField("id", DataType::Integer)}, {});
  Run("none");
  EXPECT_FALSE(Shows("lblRow")) << "there is no current row";
}

TEST_F(frmRecordsTest, OnTheRowForANewRecordItSaysSo) {
  ASSERT_TRUE(Connect());
  W().ResizeTo(12000, 6000);
  W().PressKey('L', shiftState::ctrl);
  RunThreeRows();
  W().GoToNewRow("DataGrid");
  EXPECT_EQ(W().Find<Label>("lblRow").Caption(), "new row");
}

TEST_F(frmRecordsTest, AMenuEntryShowsTheRowsInTheirOrdinarySize) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  Grid().SetZoom(150);
  W().ChooseMenu("mnuZoomReset");
  EXPECT_EQ(Grid().Zoom(), 100);
}

TEST_F(frmRecordsTest, WindowAndHelpCommandsAreTheFrames) {
  ASSERT_TRUE(Connect());
  for (const char* item : {"mnuNewInstance", "mnuWindowSidebar", "mnuWindowTileHoriz",
                           "mnuWindowTileVert", "mnuWindowTabs", "mnuWindowMaximize",
                           "mnuHelpContents", "mnuHelpIndex", "mnuHelpShortcuts", "mnuHelpAbout"})
    W().ChooseMenu(item);
  EXPECT_EQ(host.commands, (std::vector<std::string>{"new instance", "sidebar", "tile horizontally",
                                                     "tile vertically", "tabs", "maximize",
                                                     "contents", "index", "shortcuts", "about"}));
  EXPECT_TRUE(W().Menu("mnuWindowSidebar").Checked());
}

}  // namespace
}  // namespace tessel
