#include <gmock/gmock.h>

#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

/// One SQL on all connections at once, and what is told of it.
class RunAllTest : public test::FrameFixture {
 protected:
  void ConnectAll(const std::vector<std::string>& names) {
    Start();
    for (const std::string& name : names) Connect(name);
    Select("select");
  }
  void AnswerRow(const std::string& name) {
    data.ServerOf(name).Answer("select", MemoryFields({"a"}), {{Value(std::string("x"))}});
  }
  void RunAll() { mdi().ChooseMenu("mnuDBExecuteAll"); }
  Window& Records(std::size_t index) { return *desktop.WindowsOf("frmRecords").at(index); }
  std::string StatusOf(std::size_t index) {
    return Records(index).Find<TextBox>("txtStatus").Text();
  }
  /// A line of the list while all run, its cells joined.
  static std::string LineOf(Window& list, int index) {
    const ListRow& row = list.Find<ListView>("lsvRuns").Row(index);
    std::string text = row.text;
    for (const std::string& cell : row.subItems) text += "|" + cell;
    return text;
  }
  DataGrid& Summary() { return desktop.WindowOf("frmRows").Find<DataGrid>("DataGrid"); }
  /// A row of the summary without its times, its cells joined.
  std::string SummaryLine(std::int64_t row) {
    std::string text;
    for (const int column : {0, 1, 2, 3, 6})
      text += (column == 0 ? "" : "|") + ToText(Summary().DataSource()->ValueAt(row, column));
    return text;
  }
};

TEST_F(RunAllTest, AllRunTogether) {
  for (const char* name : {"A", "B", "C"}) {
    data.ServerOf(name)
        .Answer("select", MemoryFields({"a"}), {{Value(std::string("x"))}})
        .HoldExecuting();
  }
  ConnectAll({"A", "B", "C"});
  desktop.OnModal("dlgRunAll", [this](Window& w) {
    EXPECT_EQ(LineOf(w, 0), "A caption|Executing...||00:00:00|Cancel");
    EXPECT_EQ(LineOf(w, 2), "C caption|Executing...||00:00:00|Cancel") << "none waits for another";
    data.ResumeAll();
  });
  RunAll();
  for (const std::size_t window : {0, 1, 2}) {
    EXPECT_THAT(StatusOf(window), testing::HasSubstr("1 record(s)."));
    EXPECT_TRUE(Records(window).VisibleInFact("DataGrid"));
    EXPECT_TRUE(Records(window).Find<Button>("cmdRequery").Enabled()) << "it is in the history";
  }
}

TEST_F(RunAllTest, AUserWhoHasTurnedAwayIsToldOnceAllHaveEnded) {
  data.ServerOf("A").Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  data.ServerOf("B").AnswerError("select", MemoryError("no such table"));
  ConnectAll({"A", "B"});
  desktop.TheNotifications().SetUserHere(false);
  desktop.OnModal("dlgRunAll", [this](Window& /*w*/) {
    desktop.AdvanceTime(12'000);
    data.ResumeAll();
  });
  RunAll();
  const test::HeadlessNotifications::Notice expected = {
      "Tessel", "Executing on all connections has ended after 00:00:12: 1 of 2 have failed."};
  EXPECT_THAT(desktop.TheNotifications().Shown(), testing::ElementsAre(expected));
}

TEST_F(RunAllTest, AFailureOnOneLeavesTheOthersAlone) {
  AnswerRow("A");
  data.ServerOf("B").AnswerError("select", MemoryError("no such table"));
  data.ServerOf("C").AnswerCount("select", 5);
  ConnectAll({"A", "B", "C"});
  RunAll();
  EXPECT_THAT(StatusOf(0), testing::HasSubstr("1 record(s)."));
  EXPECT_THAT(StatusOf(1), testing::HasSubstr("no such table"));
  EXPECT_THAT(StatusOf(2), testing::HasSubstr("5 record(s) affected."));
  EXPECT_EQ(SummaryLine(0), "A caption|done|1||");
  EXPECT_EQ(SummaryLine(1), "B caption|failed|||no such table");
  EXPECT_EQ(SummaryLine(2), "C caption|done||5|");
  EXPECT_EQ(desktop.WindowOf("frmRows").Find<Label>("lblStatus").Caption(),
            "3 connections: 2 done, 1 failed");
  EXPECT_TRUE(desktop.WindowOf("frmRows").Active()) << "nothing hides it";
}

TEST_F(RunAllTest, NothingRunsWhenATagOfOneCannotBeFilledIn) {
  AnswerRow("A");
  data.ServerOf("B").AnswerNothing("select");
  ConnectAll({"A", "B"});
  mdi().ChooseMenu("mnuDBExecute");
  const std::size_t before = data.Log().executed.size();
  data.ServerOf("A").AnswerNothing("select 'x'");
  Select("select {%=a%}");
  desktop.ExpectMessage("No records available.");
  RunAll();
  EXPECT_EQ(data.Log().executed.size(), before);
  EXPECT_TRUE(Records(0).VisibleInFact("DataGrid")) << "the rows stay on show";
}

TEST_F(RunAllTest, APreviewIsShownForAllBeforeAnythingRuns) {
  AnswerRow("A");
  AnswerRow("B");
  ConnectAll({"A", "B"});
  desktop.OnModal("frmText", [](Window& w) { w.Click("cmdOK"); });
  desktop.OnModal("frmText", [this](Window& w) {
    EXPECT_TRUE(data.Log().executed.empty());
    w.Click("cmdCancel");
  });
  mdi().ChooseMenu("mnuDBPreviewAll");
  EXPECT_TRUE(data.Log().executed.empty());
}

TEST_F(RunAllTest, OneIsCancelledByItsCellAndTheOthersGoOn) {
  data.ServerOf("A").Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  data.ServerOf("B").Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  ConnectAll({"A", "B"});
  desktop.OnModal("dlgRunAll",
                  [](Window& w) { w.ClickCell("lsvRuns", 0, 4, {MouseButton::Left}); });
  desktop.OnModal("dlgRunAll", [this](Window& w) {
    EXPECT_EQ(LineOf(w, 0), "A caption|Cancelled||00:00:00|");
    EXPECT_EQ(LineOf(w, 1), "B caption|Executing...||00:00:00|Cancel");
    data.ResumeAll();
  });
  RunAll();
  EXPECT_THAT(StatusOf(0), testing::HasSubstr("Execution cancelled."));
  EXPECT_THAT(StatusOf(1), testing::HasSubstr("0 record(s)."));
  EXPECT_EQ(SummaryLine(0), "A caption|cancelled|||");
  EXPECT_EQ(SummaryLine(1), "B caption|done|0||");
}

TEST_F(RunAllTest, DelCancelsTheSelectedOneAndTheButtonTheRest) {
  for (const char* name : {"A", "B", "C"})
    data.ServerOf(name).Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  ConnectAll({"A", "B", "C"});
  desktop.OnModal("dlgRunAll", [](Window& w) {
    w.Find<ListView>("lsvRuns").SetFocus();
    w.Find<ListView>("lsvRuns").SetSelectedIndex(1);
    w.PressKey(key::del);
  });
  desktop.OnModal("dlgRunAll", [](Window& w) {
    EXPECT_EQ(LineOf(w, 1), "B caption|Cancelled||00:00:00|");
    EXPECT_EQ(w.Find<Label>("lblMessage").Caption(), "1 of 3 connections have ended.");
    w.Click("cmdCancel");
  });
  RunAll();
  for (const std::int64_t row : {0, 1, 2})
    EXPECT_THAT(SummaryLine(row), testing::HasSubstr("|cancelled|"));
}

TEST_F(RunAllTest, AProviderThatCannotWorkAsynchronouslyRunsLast) {
  data.ServerOf("A").properties.Set("Data Source Object Threading Model", std::int64_t{0});
  for (const char* name : {"A", "B"}) AnswerRow(name);
  ConnectAll({"A", "B"});
  RunAll();
  ASSERT_EQ(data.Log().executed.size(), 2U);
  EXPECT_EQ(data.Log().executed[0].connectionString, "B");
  EXPECT_EQ(data.Log().executed[1].connectionString, "A");
  EXPECT_EQ(SummaryLine(0), "A caption|done|1||");
}

TEST_F(RunAllTest, WhatIsCancelledSkipsThoseThatHadNotTheirTurn) {
  data.ServerOf("A").properties.Set("Data Source Object Threading Model", std::int64_t{0});
  AnswerRow("A");
  data.ServerOf("B").Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  ConnectAll({"A", "B"});
  desktop.OnModal("dlgRunAll", [](Window& w) {
    EXPECT_EQ(LineOf(w, 0), "A caption|Waiting|||");
    w.Click("cmdCancel");
  });
  RunAll();
  EXPECT_EQ(SummaryLine(0), "A caption|skipped|||");
  EXPECT_EQ(SummaryLine(1), "B caption|cancelled|||");
}

TEST_F(RunAllTest, AClosedConnectionFailsByItselfAlone) {
  AnswerRow("A");
  AnswerRow("B");
  ConnectAll({"A", "B"});
  frame().RecordsWindows().at(0)->TheConnection()->Close();
  RunAll();
  EXPECT_EQ(SummaryLine(0), "A caption|failed|||The connection is closed.");
  EXPECT_EQ(SummaryLine(1), "B caption|done|1||");
}

TEST_F(RunAllTest, ItRunsAgainWhereItFailedAndNowhereElse) {
  AnswerRow("A");
  data.ServerOf("B").AnswerError("select", MemoryError("locked"));
  AnswerRow("B");
  ConnectAll({"A", "B"});
  RunAll();
  EXPECT_EQ(SummaryLine(1), "B caption|failed|||locked");
  desktop.WindowOf("frmRows").Click("cmdAgain");
  EXPECT_EQ(Executed("A").size(), 1U);
  EXPECT_EQ(Executed("B").size(), 2U);
  EXPECT_EQ(SummaryLine(0), "A caption|done|1||");
  EXPECT_EQ(SummaryLine(1), "B caption|done|1||");
  EXPECT_FALSE(desktop.WindowOf("frmRows").Find<Button>("cmdAgain").Enabled());
}

TEST_F(RunAllTest, EnterInTheSummaryGoesToTheWindow) {
  AnswerRow("A");
  AnswerRow("B");
  ConnectAll({"A", "B"});
  RunAll();
  Window& rows = desktop.WindowOf("frmRows");
  rows.Activate();
  rows.ClickGridCell("DataGrid", 1, 0);
  rows.PressKey(key::enter);
  EXPECT_TRUE(Records(1).Active());
  Records(0).CloseByControlBox();
  desktop.RunDeferred();
  rows.Activate();
  rows.ClickGridCell("DataGrid", 0, 0);
  desktop.ExpectMessage("The window of this connection is closed.");
  rows.Click("cmdGoTo");
}

TEST_F(RunAllTest, TheSummaryConvertsLikeAnyRows) {
  AnswerRow("A");
  AnswerRow("B");
  ConnectAll({"A", "B"});
  RunAll();
  desktop.OnModal("frmText", [](Window& w) {
    EXPECT_THAT(w.Find<RichTextBox>("txtText").Text(), testing::HasSubstr("A caption,done,1,"));
    w.CloseByControlBox();
  });
  desktop.WindowOf("frmRows").ChooseMenu("mnuCvtCSV");
}

TEST_F(RunAllTest, AfterOneAnotherTheMenuShowsTheSummary) {
  AnswerRow("A");
  data.ServerOf("B").AnswerError("select", MemoryError("locked"));
  ConnectAll({"A", "B", "C"});
  desktop.ExpectMessage("No SQL has been executed on two or more connections yet.");
  mdi().ChooseMenu("mnuDBSummary");
  desktop.ExpectMessage("The query did not complete successfully on:-\r\n    B "
                        "caption\r\n\r\nContinue executing on the remaining connections?",
                        MessageResult::Cancel);
  mdi().ChooseMenu("mnuDBExecute");
  mdi().ChooseMenu("mnuDBSummary");
  EXPECT_EQ(SummaryLine(0), "A caption|done|1||");
  EXPECT_EQ(SummaryLine(1), "B caption|failed|||locked");
  EXPECT_EQ(SummaryLine(2), "C caption|skipped|||");
}

TEST_F(RunAllTest, OnlyThoseRunThatTakePart) {
  for (const char* name : {"A", "B", "C"}) AnswerRow(name);
  ConnectAll({"A", "B", "C"});
  Records(1).Click("chkTakesPart");
  EXPECT_EQ(mdi().Find<TreeView>("trvBrowser").ChildTexts(""),
            (std::vector<std::string>{"A caption", "B caption [does not take part]", "C caption"}));
  mdi().ChooseMenu("mnuDBExecute");
  RunAll();
  EXPECT_EQ(Executed("A").size(), 2U);
  EXPECT_TRUE(Executed("B").empty());
  EXPECT_EQ(Executed("C").size(), 2U);
  Records(0).PressKey('T', shiftState::ctrl | shiftState::alt);
  Records(2).Click("chkTakesPart");
  desktop.ExpectMessage("No connection takes part: tick \"Takes Part\" in a records window.");
  RunAll();
}

TEST_F(RunAllTest, TheMarkIsOfferedWhileThereAreSeveralConnections) {
  ConnectAll({"A"});
  EXPECT_FALSE(Records(0).VisibleInFact("chkTakesPart"));
  Connect("B");
  EXPECT_TRUE(Records(0).VisibleInFact("chkTakesPart"));
  Records(0).Click("chkTakesPart");
  Records(1).CloseByControlBox();
  desktop.RunDeferred();
  EXPECT_FALSE(Records(0).VisibleInFact("chkTakesPart"));
  data.AnswerNothing("select");
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_EQ(Executed("A").size(), 1U) << "the only one runs in any case";
}

/// Merged rows and differences of what the connections show.
class CombinedRowsWindowTest : public RunAllTest {
 protected:
  void AnswerOrders(const std::string& name, const MemoryRows& rows) {
    data.ServerOf(name).Answer("select",
                               {MemoryField("id", DataType::Integer), MemoryField("city")}, rows);
  }
  void ShowOrders() {
    AnswerOrders("A", {Order(1, "Rome"), Order(2, "Oslo"), Order(3, "Bern")});
    AnswerOrders("B", {Order(1, "Rome"), Order(2, "Paris"), Order(4, "Kiev")});
    ConnectAll({"A", "B"});
    mdi().ChooseMenu("mnuDBExecute");
  }
  static MemoryRow Order(std::int64_t id, const std::string& city) {
    return {Value(id), Value(city)};
  }
  DataGrid& Grid() { return desktop.WindowOf("frmRows").Find<DataGrid>("DataGrid"); }
  std::string Row(std::int64_t row) {
    std::string text;
    for (std::size_t column = 0; column < Grid().DataSource()->Fields().size(); ++column) {
      const ValueView value = Grid().DataSource()->ValueAt(row, column);
      text += (column == 0 ? "" : "|") + (IsNull(value) ? "NULL" : ToText(value));
    }
    return text;
  }
  std::string RowsStatus() {
    return desktop.WindowOf("frmRows").Find<Label>("lblStatus").Caption();
  }
};

TEST_F(CombinedRowsWindowTest, RowsOfAllStandInOneGrid) {
  ShowOrders();
  mdi().ChooseMenu("mnuDBMergedRows");
  EXPECT_EQ(RowsStatus(), "6 record(s) of 2 connection(s)");
  EXPECT_EQ(Row(0), "A caption|1|Rome");
  EXPECT_EQ(Row(5), "B caption|4|Kiev");
}

TEST_F(CombinedRowsWindowTest, MergedRowsAreFoundSortedAndFiltered) {
  ShowOrders();
  mdi().ChooseMenu("mnuDBMergedRows");
  auto& window = desktop.WindowOf("frmRows");
  window.Find<DataGrid>("DataGrid").SetFocus();
  window.PressKey('F', shiftState::ctrl | shiftState::shift);
  EXPECT_EQ(window.FocusName(), "txtFilterRows");
  window.Type("txtFilterRows", "e");
  desktop.AdvanceTime(1000);
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 4);
  EXPECT_EQ(RowsStatus(), "6 record(s) of 2 connection(s). 4 of 6 record(s).");
  window.PressKey(key::enter);
  window.ClickGridCell("DataGrid", 0, 2);
  window.PressKey('S', shiftState::ctrl | shiftState::shift);
  desktop.AdvanceTime(1000);
  EXPECT_EQ(Row(0), "A caption|3|Bern");
  EXPECT_EQ(RowsStatus(), "6 record(s) of 2 connection(s). 4 of 6 record(s). Sorted by city.");
  window.PressKey('F', shiftState::ctrl);
  window.Type("txtFindRows", "kiev");
  window.PressKey(key::enter);
  desktop.AdvanceTime(1000);
  EXPECT_EQ(ToText(Grid().DataSource()->FieldValue(2)), "Kiev");
  window.PressKey(key::escape);
  EXPECT_EQ(window.FocusName(), "DataGrid") << "it closes the line first";
  window.ChooseMenu("mnuRowsFilter");
  window.PressKey(key::escape);
  window.ChooseMenu("mnuRowsSortNot");
  desktop.AdvanceTime(1000);
  EXPECT_EQ(RowsStatus(), "6 record(s) of 2 connection(s)");
  EXPECT_EQ(Row(0), "A caption|1|Rome");
}

TEST_F(CombinedRowsWindowTest, MergedRowsOutliveTheWindowsTheyCameFrom) {
  ShowOrders();
  mdi().ChooseMenu("mnuDBMergedRows");
  Records(0).CloseByControlBox();
  desktop.RunDeferred();
  Records(0).CloseByControlBox();
  desktop.RunDeferred();
  EXPECT_EQ(Row(1), "A caption|2|Oslo");
  EXPECT_EQ(Row(4), "B caption|2|Paris");
}

TEST_F(CombinedRowsWindowTest, TagsTakeTheirValuesFromTheMergedRowsOnceChosen) {
  ShowOrders();
  mdi().ChooseMenu("mnuDBMergedRows");
  desktop.WindowOf("frmRows").Click("chkTags");
  const std::string filled = "select (1, 2, 3, 1, 2, 4)";
  data.ServerOf("A").AnswerNothing(filled);
  data.ServerOf("B").AnswerNothing(filled);
  Select("select {%=id%}");
  mdi().ChooseMenu("mnuDBExecuteAll");
  EXPECT_EQ(Executed("A").back(), filled);
  EXPECT_EQ(Executed("B").back(), filled);
}

TEST_F(CombinedRowsWindowTest, WithoutRowsThereIsNothingToMergeOrCompare) {
  ConnectAll({"A", "B"});
  desktop.ExpectMessage("No connection that takes part shows any records.");
  mdi().ChooseMenu("mnuDBMergedRows");
  desktop.ExpectMessage(
      "Records are compared when two or more connections that take part show some.");
  mdi().ChooseMenu("mnuDBDifferences");
}

TEST_F(CombinedRowsWindowTest, DifferencesAreFoundByTheKeyAndMarked) {
  ShowOrders();
  desktop.OnModal("dlgCompare", [](Window& w) {
    EXPECT_EQ(w.Find<ComboBox>("cboA").Text(), "A caption");
    EXPECT_EQ(w.Find<ComboBox>("cboB").Text(), "B caption");
    EXPECT_TRUE(w.Find<TreeView>("trvKeys").Checked("0")) << "the key is known";
    EXPECT_FALSE(w.Find<TreeView>("trvKeys").Checked("1"));
    w.Click("cmdOK");
  });
  mdi().ChooseMenu("mnuDBDifferences");
  EXPECT_EQ(RowsStatus(), "1 only in A caption, 1 only in B caption, 1 changed, 1 equal");
  EXPECT_EQ(Row(0), "changed|A caption|city|2|Oslo");
  EXPECT_EQ(Row(1), "changed|B caption|city|2|Paris");
  EXPECT_EQ(Row(2), "only in A caption|A caption|NULL|3|Bern");
  EXPECT_EQ(Row(3), "only in B caption|B caption|NULL|4|Kiev");
  EXPECT_TRUE(Grid().CellMarked(0, 4));
  EXPECT_TRUE(Grid().CellMarked(1, 4));
  EXPECT_FALSE(Grid().CellMarked(0, 3));
  EXPECT_FALSE(Grid().CellMarked(2, 4));
}

TEST_F(CombinedRowsWindowTest, OneIsComparedWithEachOfTheOthers) {
  AnswerOrders("C", {Order(1, "Rome")});
  ShowOrders();
  Connect("C");
  Select("select");
  mdi().ChooseMenu("mnuDBExecute");
  desktop.OnModal("dlgCompare", [](Window& w) {
    w.Find<ComboBox>("cboB").SetText("(each of the others)");
    w.Click("cmdOK");
  });
  mdi().ChooseMenu("mnuDBDifferences");
  const auto windows = desktop.WindowsOf("frmRows");
  ASSERT_EQ(windows.size(), 2U);
  EXPECT_EQ(windows[0]->Caption(), "Differences: A caption / B caption");
  EXPECT_EQ(windows[1]->Caption(), "Differences: A caption / C caption");
}

TEST_F(CombinedRowsWindowTest, ACancelledQuestionComparesNothing) {
  ShowOrders();
  desktop.OnModal("dlgCompare", [](Window& w) { w.Click("cmdCancel"); });
  mdi().ChooseMenu("mnuDBDifferences");
  EXPECT_TRUE(desktop.WindowsOf("frmRows").empty());
}

}  // namespace
}  // namespace tessel
