// How a records window fills in the tags of its SQL.

#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

class RecordsTagsTest : public test::RecordsFixture {};

// --- values for tags -----------------------------------------------------------------------------

TEST_F(RecordsTagsTest, AListTakesTheSelectedRowsInTheirOrderOfSelection) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  W().SelectGridRows("DataGrid", {2, 0, 1});
  EXPECT_EQ(records->GetTagFieldValue("ID", true, false), "(3, 1, 2)");
  EXPECT_EQ(records->GetTagFieldValue("name", true, true), "('c', 'a''b', NULL)");
}

TEST_F(RecordsTagsTest, AListWithoutSelectionTakesEveryRowInOrderAndKeepsTheCurrentOne) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  W().ClickGridCell("DataGrid", 1, 0);
  EXPECT_EQ(records->GetTagFieldValue("id", true, false), "(1, 2, 3)");
  EXPECT_EQ(records->GetTagFieldValue("id", false, false), "2");
  EXPECT_EQ(records->GetTagFieldValue("name", false, true), "NULL");
}

TEST_F(RecordsTagsTest, AListCanBeCancelledBetweenRows) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  async.InitProcess("Preprocessing SQL...");
  desktop.OnProcessPending([this](int call) {
    if (call == 2) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  EXPECT_THROW(static_cast<void>(records->GetTagFieldValue("id", true, false)), Error);
  async.Unload();
}

TEST_F(RecordsTagsTest, TagValuesThatCannotBeTakenSayWhy) {
  const auto reason = [this](const std::string& field) -> std::string {
    try {
      return records->GetTagFieldValue(field, false, false);
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::application);
      return error.Description();
    }
  };
  ASSERT_TRUE(Connect());
  EXPECT_EQ(reason("id"), "No records available.");
  data.Answer("none", MemoryFields({"id"}), {});
  EXPECT_TRUE(Run("none"));
  EXPECT_EQ(reason("id"), "No data available.");
  EXPECT_EQ(reason("other"), "Field 'other' not available.");
  W().Click("chkLock");
  RunThreeRows();
  W().GoToNewRow("DataGrid");
  EXPECT_EQ(reason("id"), "Select an existing record.");
}

TEST_F(RecordsTagsTest, AListThatBeginsWithAnEmptyTextKeepsItsCommas) {
  ASSERT_TRUE(Connect());
  data.Answer("select", MemoryFields({"name"}),
              {{Value(std::string())}, {Value(std::string())}, {Value(std::string("c"))}});
  EXPECT_TRUE(Run("select"));
  EXPECT_EQ(records->GetTagFieldValue("name", true, false), "(, , c)");
}

// --- SQL with tags -------------------------------------------------------------------------------

TEST_F(RecordsTagsTest, TagsOfAllThreeSourcesAreFilledInBeforeTheSqlRuns) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  host.tagValues["City"] = "L'Aquila";
  desktop.TheClipboard().SetText("5");
  data.AnswerCount("update t set a = 1, b = 'L''Aquila' where c in ('a''b', NULL, 'c') or d = (5)",
                   1);
  EXPECT_TRUE(Run("update t set a = <%=id%>, b = <*?City*> where c in {*=name*} or d = {%^%}"));
  EXPECT_EQ(Status(), "[12:00:00]  1 record(s) affected.");
}

TEST_F(RecordsTagsTest, AListTagTakesAllRowsOrTheSelectedOnes) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  data.AnswerNothing("a (1, 2, 3)");
  EXPECT_TRUE(Run("a {%=ID%}"));
  RunThreeRows();
  W().SelectGridRows("DataGrid", {2, 0});
  data.AnswerNothing("b (3, 1)");
  EXPECT_TRUE(Run("b {%=ID%}"));
}

TEST_F(RecordsTagsTest, TagsOfNullAndOfBooleansTakeTheirOwnForms) {
  ASSERT_TRUE(Connect());
  data.Answer("select", {MemoryField("n"), MemoryField("b", DataType::Boolean)},
              {{Value(), Value(true)}});
  EXPECT_TRUE(Run("select"));
  data.AnswerNothing("NULL NULL 1 '1'");
  EXPECT_TRUE(Run("<%=n%> <*=n*> <%=b%> <*=b*>"));
}

TEST_F(RecordsTagsTest, TheProgressWindowShowsWhileTagsAreFilledIn) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  data.AnswerNothing("1");
  std::vector<std::string> shown;
  desktop.OnProcessPending([&](int) {
    auto& w = desktop.WindowOf("dlgAsync");
    if (!w.Visible()) return;
    shown.push_back(w.Find<Label>("lblMessage").Caption());
    EXPECT_FALSE(w.VisibleInFact("prgProgress"));
  });
  EXPECT_TRUE(Run("<%?a%>"));
  ASSERT_FALSE(shown.empty());
  EXPECT_EQ(shown.front(), "\nPreprocessing SQL...");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(RecordsTagsTest, ATagThatCannotBeFilledInIsShownAndNothingRuns) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<%#x%>", "Unknown tag type: '#'"},
      {"<%\xC3\xA4%>", "Unknown tag type: '\xC3\xA4'"},
      {"<%?Name", "Missing '%>'"},
      {"{*?Name*>", "Missing '*}'"},
      {"<%?Name%>", "Undefined tag: 'Name'"},
      {"<%^x%>", "Unsupported tag: 'x'"},
      {"<%^%>", "The clipboard is empty."},
      {"<%=other%>", "Field 'other' not available."}};
  for (const auto& [sql, message] : cases) {
    desktop.ExpectMessage(message, MessageResult::Ok, [this](const Message& box) {
      EXPECT_EQ(box.icon, MessageIcon::Exclamation);
      EXPECT_EQ(box.buttons, MessageButtons::Ok);
      EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
      box.help();
      EXPECT_EQ(desktop.HelpRequests().back(), (test::HelpRequest{global.HelpFile(), 15, 9200}));
    });
    EXPECT_FALSE(Run("select " + sql)) << sql;
  }
  EXPECT_EQ(data.ExecutedSql(), std::vector<std::string>{"select"});
  EXPECT_EQ(Status(), "[12:00:00]  3 record(s).");
  EXPECT_TRUE(Shows("DataGrid"));
}

TEST_F(RecordsTagsTest, FieldTagsNeedRowsAndACurrentRecord) {
  ASSERT_TRUE(Connect());
  desktop.ExpectMessage("No records available.");
  EXPECT_FALSE(Run("<%=id%>"));
  data.Answer("none", MemoryFields({"id"}), {});
  EXPECT_TRUE(Run("none"));
  desktop.ExpectMessage("No data available.");
  EXPECT_FALSE(Run("{%=id%}"));
  W().Click("chkLock");
  RunThreeRows();
  W().GoToNewRow("DataGrid");
  desktop.ExpectMessage("Select an existing record.");
  EXPECT_FALSE(Run("<%=id%>"));
  data.AnswerNothing("(1, 2, 3)");
  EXPECT_TRUE(Run("{%=id%}"));
}

TEST_F(RecordsTagsTest, ACancelBetweenTagsRunsNothing) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  const int before = desktop.ProcessPendingCount();
  desktop.OnProcessPending([this, before](int call) {
    if (call == before + 2) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  desktop.ExpectMessage("Cancelled.");
  EXPECT_FALSE(Run("<%?a%> <%?a%> <%?a%>"));
  EXPECT_EQ(desktop.ProcessPendingCount(), before + 2);
  EXPECT_TRUE(data.ExecutedSql().empty());
}

TEST_F(RecordsTagsTest, ACancelBetweenTheRowsOfAListRunsNothing) {
  ASSERT_TRUE(Connect());
  RunThreeRows();
  const int before = desktop.ProcessPendingCount();
  desktop.OnProcessPending([this, before](int call) {
    if (call == before + 3) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  desktop.ExpectMessage("Cancelled.");
  EXPECT_FALSE(Run("x {%=id%}"));
  EXPECT_EQ(desktop.ProcessPendingCount(), before + 3);
  EXPECT_EQ(data.ExecutedSql(), std::vector<std::string>{"select"});
  EXPECT_TRUE(Shows("DataGrid"));
}

TEST_F(RecordsTagsTest, ThePreviewShowsTheTextWithItsTagsFilledIn) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "update 1");
    w.Click("cmdCancel");
  });
  EXPECT_FALSE(records->DoQueryTags("update <%?a%>", true, newQuery));
  EXPECT_TRUE(data.ExecutedSql().empty());
}

TEST_F(RecordsTagsTest, ARequeryFillsTheTagsAnewAndAPlainOneDoesNot) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  RunThreeRows("select <%?a%>", "select 1");
  EXPECT_TRUE(Shows("cmdRequeryTags"));
  EXPECT_EQ(W().Find<Button>("cmdRequeryTags").BackColor(), 0xFFFF00U);
  host.tagValues["a"] = "2";
  W().PressKey(key::f5);
  EXPECT_EQ(data.ExecutedSql().back(), "select 1");
  EXPECT_TRUE(Shows("cmdRequeryTags"));
  data.Answer("select 2", MemoryFields({"n"}), {});
  W().PressKey(key::f5, shiftState::ctrl);
  EXPECT_EQ(data.ExecutedSql().back(), "select 2");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryBack").Enabled());
  host.tagValues["a"] = "3";
  W().PressKey(key::f5);
  EXPECT_EQ(data.ExecutedSql().back(), "select 2");
}

TEST_F(RecordsTagsTest, ForwardFillsTheTagsFromTheRowsOnShow) {
  ASSERT_TRUE(Connect());
  RunThreeRows("first");
  W().ClickGridCell("DataGrid", 0, 0);
  RunThreeRows("second <%=id%>", "second 1");
  EXPECT_EQ(W().Find<Button>("cmdRequeryTags").BackColor(), 0x00FF00U);
  W().Click("cmdHistoryBack");
  EXPECT_FALSE(Shows("cmdRequeryTags"));
  ASSERT_TRUE(Shows("cmdHistoryForwardTags"));
  EXPECT_EQ(W().Find<Button>("cmdHistoryForwardTags").ToolTip(),
            "Forward (resubstitute tags) to: second <%=id%>");
  W().ClickGridCell("DataGrid", 2, 0);
  data.Answer("second 3", MemoryFields({"n"}), {});
  W().PressKey(key::right, shiftState::ctrl | shiftState::alt);
  EXPECT_EQ(data.ExecutedSql().back(), "second 3");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryForward").Enabled());
}

TEST_F(RecordsTagsTest, TheColourOfTheRequeryTellsTheSourcesOfItsTags) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  desktop.TheClipboard().SetText("1");
  RunThreeRows("first");
  RunThreeRows("x <%=id%> <%^%>", "x 1 1");
  EXPECT_EQ(W().Find<Button>("cmdRequeryTags").BackColor(), 0x00FFFFU);
  RunThreeRows("y <%^%> <%?a%>", "y 1 1");
  EXPECT_EQ(W().Find<Button>("cmdRequeryTags").BackColor(), 0xFFFF00U);
  RunThreeRows("z '<%=id%>'");
  EXPECT_FALSE(Shows("cmdRequeryTags"));
}

TEST_F(RecordsTagsTest, ARequeryWhoseTagsFailLeavesRowsAndHistoryAlone) {
  ASSERT_TRUE(Connect());
  host.tagValues["a"] = "1";
  RunThreeRows("select <%?a%>", "select 1");
  host.tagValues.clear();
  desktop.ExpectMessage("Undefined tag: 'a'");
  W().Click("cmdRequeryTags");
  EXPECT_EQ(data.ExecutedSql().size(), 1U);
  EXPECT_TRUE(Shows("DataGrid"));
  host.tagValues["a"] = "1";
  W().Click("cmdRequeryTags");
  EXPECT_EQ(data.ExecutedSql().size(), 2U);
}

}  // namespace
}  // namespace tessel
