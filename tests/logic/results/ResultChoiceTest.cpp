#include <gmock/gmock.h>

#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

using testing::HasSubstr;

/// Several results of one text in a records window.
class ResultChoiceTest : public test::RecordsFixture {
 protected:
  /// "x" gives two rows, three, and one that cannot be changed; counts stand between them.
  void RunThreeResults() {
    data.Answer(sql, {MemoryField("id", DataType::Integer), MemoryField("name")},
                {{Value(std::int64_t{1}), Text("a")}, {Value(std::int64_t{2}), Text("b")}})
        .Then(MemoryResult::Count(4))
        .Then(MemoryResult::Rows({MemoryField("id", DataType::Integer), MemoryField("city")},
                                 {{Value(std::int64_t{7}), Text("Bonn")},
                                  {Value(std::int64_t{8}), Text("Rome")},
                                  {Value(std::int64_t{9}), Text("Oslo")}}))
        .Then(MemoryResult::Rows({MemoryField("n")}, {{Text("last")}}).Writable(false));
    EXPECT_TRUE(Run(sql));
  }
  static Value Text(const char* text) { return std::string(text); }
  ComboBox& Choice() { return W().Find<ComboBox>("cboResult"); }
  std::string Cell(std::int64_t row, std::size_t field) {
    return ToText(Grid().DataSource()->ValueAt(row, field));
  }

  const std::string sql = "select a; update b; select c; select d";
};

TEST_F(ResultChoiceTest, TheFirstResultIsShownAndTheOthersAreOffered) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(Shows("cboResult"));
  RunThreeResults();
  EXPECT_EQ(Status(), "[12:00:00]  2 record(s).");
  EXPECT_EQ(Cell(0, 1), "a");
  ASSERT_TRUE(Shows("cboResult"));
  EXPECT_EQ(Choice().Text(), "Result 1 of 3: 2 record(s)");
  EXPECT_EQ(Choice().ListCount(), 3);
  EXPECT_EQ(Choice().List(2), "Result 3 of 3: 1 record(s)");
}

TEST_F(ResultChoiceTest, AnotherOneIsChosenFromTheList) {
  ASSERT_TRUE(Connect());
  RunThreeResults();
  Choice().SetListIndex(1);
  EXPECT_EQ(Status(), "[12:00:00]  3 record(s). Result 2 of 3.");
  EXPECT_EQ(Cell(2, 1), "Oslo");
  EXPECT_TRUE(Grid().HasFocus());
  Choice().SetListIndex(0);
  EXPECT_EQ(Cell(1, 1), "b");
}

TEST_F(ResultChoiceTest, KeysGoToTheNextAndThePrevious) {
  ASSERT_TRUE(Connect());
  W().PressKey(key::pageDown, shiftState::ctrl);
  RunThreeResults();
  W().PressKey(key::pageDown, shiftState::ctrl);
  EXPECT_EQ(Choice().ListIndex(), 1);
  EXPECT_EQ(Cell(0, 1), "Bonn");
  W().PressKey(key::pageDown, shiftState::ctrl);
  EXPECT_EQ(Cell(0, 0), "last");
  W().PressKey(key::pageDown, shiftState::ctrl);
  EXPECT_EQ(Choice().ListIndex(), 2) << "it is the last one";
  W().PressKey(key::pageUp, shiftState::ctrl);
  EXPECT_EQ(Cell(0, 1), "Bonn");
}

TEST_F(ResultChoiceTest, ALaterResultIsEditedUnderTheSameRules) {
  ASSERT_TRUE(Connect());
  W().Click("chkLock");
  RunThreeResults();
  Choice().SetListIndex(1);
  W().ClickGridCell("DataGrid", 0, 1);
  W().Type("DataGrid", "Paris");
  W().PressKey('S', shiftState::ctrl);
  EXPECT_EQ(data.Log().changes, 1);
  EXPECT_EQ((*data.FindTable("table1_3")->rows)[0][1], Text("Paris"));
  Choice().SetListIndex(2);
  EXPECT_TRUE(Grid().DataSource()->WhyNotChangeable()) << "they come from no table";
}

TEST_F(ResultChoiceTest, APendingChangeIsAskedAboutFirst) {
  ASSERT_TRUE(Connect());
  W().Click("chkLock");
  RunThreeResults();
  W().ClickGridCell("DataGrid", 0, 1);
  W().Type("DataGrid", "changed");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::Cancel);
  Choice().SetListIndex(1);
  EXPECT_EQ(Choice().ListIndex(), 0) << "the list says what is on show";
  EXPECT_TRUE(Grid().ChangePending());
  EXPECT_EQ(data.Log().changes, 0);
  desktop.ExpectMessage("Save the change to this record?", MessageResult::Yes);
  Choice().SetListIndex(1);
  EXPECT_EQ(Cell(0, 1), "Bonn");
  EXPECT_EQ(data.Log().changes, 1);
}

TEST_F(ResultChoiceTest, TagsAndOtherWindowsTakeTheRowsOnShow) {
  ASSERT_TRUE(Connect());
  RunThreeResults();
  Choice().SetListIndex(1);
  EXPECT_EQ(records->GetTagFieldValue("city", true, true), "('Bonn', 'Rome', 'Oslo')");
  EXPECT_EQ(records->RowsOnShow()->RecordCount(), 3);
}

TEST_F(ResultChoiceTest, TheNextQueryTakesTheChoiceAway) {
  ASSERT_TRUE(Connect());
  RunThreeResults();
  RunThreeRows("select one");
  EXPECT_FALSE(Shows("cboResult"));
  EXPECT_FALSE(Shows("cmdStatements"));
  RunThreeResults();
  EXPECT_TRUE(Shows("cboResult"));
  W().PressKey('C', shiftState::ctrl | shiftState::alt);
  EXPECT_FALSE(Shows("cboResult")) << "connected again: no rows are on show";
}

TEST_F(ResultChoiceTest, CountsAndMessagesOfTheStatementsAreListed) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(Shows("cmdStatements"));
  data.AnswerCount("insert;\n\nselect; delete", 3)
      .Notices({MemoryError("beware")})
      .Then(MemoryResult::Rows({MemoryField("n")}, {{Text("1")}, {Text("2")}}))
      .Then(MemoryResult::Count(0));
  ASSERT_TRUE(Run("insert;\n\nselect; delete"));
  ASSERT_TRUE(Shows("cmdStatements"));
  EXPECT_FALSE(Shows("cboResult")) << "only one of them has rows";
  W().PressKey('S', shiftState::ctrl | shiftState::alt);
  ASSERT_NE(host.statements, nullptr);
  const auto rows = host.statements->Rows(global.Data());
  ASSERT_EQ(rows->RecordCount(), 3);
  const auto line = [&](std::int64_t row) {
    std::string text;
    for (std::size_t field = 0; field < rows->Fields().size(); ++field)
      text += (field == 0 ? "" : "|") + ToText(rows->ValueAt(row, field));
    return text;
  };
  EXPECT_EQ(line(0), "1|1|insert|done||3|beware");
  EXPECT_EQ(line(1), "2|3|select|done|2||");
  EXPECT_EQ(line(2), "3|3|delete|done||0|");
  EXPECT_EQ(host.statements->Status(), "3 statements: 3 done");
}

TEST_F(ResultChoiceTest, AFailureHalfWayTellsItsStatementAndWhatBecameOfTheOthers) {
  ASSERT_TRUE(Connect());
  const std::string text = "begin; insert into a;\n insert\n into b; insert into c";
  data.AnswerNothing(text)
      .Leaves(UserTransaction::Open)
      .Then(MemoryResult::Count(1))
      .Then(MemoryResult::Failure(MemoryError("no such table: b")).Leaves(UserTransaction::None));
  EXPECT_FALSE(Run(text));
  EXPECT_EQ(Status(),
            "[12:00:00]  no such table: b [Statement 3 of 4 failed (line 2): insert into b. "
            "Statements 1 to 2 were rolled back.]");
  EXPECT_EQ(records->LastRun().error,
            "no such table: b [Statement 3 of 4 failed (line 2): insert into b. "
            "Statements 1 to 2 were rolled back.]");
  W().Click("cmdStatements");
  EXPECT_EQ(host.statements->Status(), "4 statements: 2 rolled back, 1 failed, 1 not run");
}

TEST_F(ResultChoiceTest, WhatAFailureLeavesBehindIsSaidAsItIs) {
  ASSERT_TRUE(Connect());
  using enum UserTransaction;
  const auto said = [&](const std::string& text, UserTransaction before, UserTransaction after) {
    data.AnswerCount(text, 1)
        .Leaves(None)
        .Then(MemoryResult::Count(1).Leaves(before))
        .Then(MemoryResult::Failure(MemoryError("no")).Leaves(after));
    EXPECT_FALSE(Run(text));
    return Status().substr(Status().find("c. ") + 3);
  };
  EXPECT_EQ(said("a; b; c", None, None), "Statements 1 to 2 stay done.]");
  EXPECT_EQ(said("a;  b; c", Open, None), "Statement 1 stays done. Statement 2 was rolled back.]");
  EXPECT_EQ(said("a;   b; c", Open, Open),
            "Statement 1 stays done. Statement 2 waits for COMMIT or ROLLBACK.]");
  EXPECT_EQ(said("a;    b; c", Open, Failed),
            "Statement 1 stays done. Statement 2 is undone by ROLLBACK, which has to come next.]");
  EXPECT_EQ(said("a;     b; c", Open, Unknown),
            "Statement 1 stays done. Statement 2 may be undone: the database does not tell.]");
}

TEST_F(ResultChoiceTest, AnErrorBehindTheFirstRowsIsPlacedToo) {
  ASSERT_TRUE(Connect());
  data.Answer("select; bad; select", {MemoryField("n")}, {{Text("1")}})
      .Then(MemoryResult::Failure(MemoryError("bad")));
  EXPECT_TRUE(Run("select; bad; select")) << "as ever: the first rows are there";
  EXPECT_EQ(
      Status(),
      "[12:00:00]  1 record(s). [1 error(s) occurred] [Statement 2 of 3 failed (line 1): bad. "
      "Statement 1 stays done.]");
  EXPECT_TRUE(Shows("cmdCnErrors"));
}

TEST_F(ResultChoiceTest, AnEmptyAnswerToACommentIsNoStatement) {
  ASSERT_TRUE(Connect());
  data.Answer("select; -- bye", {MemoryField("n")}, {{Text("1")}}).Then(MemoryResult::Count(0));
  EXPECT_TRUE(Run("select; -- bye"));
  EXPECT_FALSE(Shows("cmdStatements"));
}

TEST_F(ResultChoiceTest, OneStatementThatFailsIsToldAsEver) {
  ASSERT_TRUE(Connect());
  data.AnswerError("select", MemoryError("no such table"));
  EXPECT_FALSE(Run("select"));
  EXPECT_EQ(Status(), "[12:00:00]  no such table");
  EXPECT_FALSE(Shows("cmdStatements"));
}

}  // namespace
}  // namespace tessel
