// The plan of what is selected in the query window: which command asks for it, inside of which
// transaction, and what the window shows.

#include <gmock/gmock.h>

#include "contract/desktop/controls/ListView.h"
#include "logic/plan/ExplainText.h"
#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string orders = "select * from orders";
const std::string asked = "EXPLAIN (FORMAT JSON) " + orders;
const std::string measured = "EXPLAIN (ANALYZE, BUFFERS, FORMAT JSON) " + orders;
const std::string plan =
    R"json([{"Plan": {"Node Type": "Sort", "Total Cost": 30.0, "Plan Rows": 5, "Plans": [
       {"Node Type": "Seq Scan", "Relation Name": "orders", "Alias": "orders",
        "Total Cost": 20.0, "Plan Rows": 1000}]}}])json";
const std::string realPlan =
    R"json([{"Plan": {"Node Type": "Seq Scan", "Relation Name": "orders", "Alias": "orders",
       "Plan Rows": 1000, "Actual Total Time": 2.5, "Actual Rows": 1500, "Actual Loops": 1},
       "Planning Time": 0.1, "Execution Time": 2.7}])json";

class ExplainTest : public test::FrameFixture {
 protected:
  void ConnectTo(const std::string& dbms) {
    data.properties.Set("DBMS Name", dbms);
    Start();
    Connect("A");
  }
  void Answer(const std::string& command, const std::string& text) {
    data.Answer(command, MemoryFields({"QUERY PLAN"}), {{Value(text)}});
  }
  void ExplainSelected(const std::string& sql) {
    Select(sql);
    mdi().ChooseMenu("mnuDBExplain");
  }
  static std::string Line(Window& w, int row) {
    const ListRow& shown = w.Find<ListView>("lsvPlan").Row(row);
    std::string text = shown.text;
    for (const std::string& cell : shown.subItems) text += "|" + cell;
    return text;
  }
  /// Answers the commands that begin and end a transaction.
  void AnswerTransactions() {
    data.AnswerNothing("BEGIN").Leaves(UserTransaction::Open);
    data.AnswerNothing("ROLLBACK").Leaves(UserTransaction::None);
    for (const char* command : {"SAVEPOINT tessel_plan", "ROLLBACK TO SAVEPOINT tessel_plan",
                                "RELEASE SAVEPOINT tessel_plan"})
      data.AnswerNothing(command);
  }
  void OpenTransaction() {
    data.AnswerNothing("begin").Leaves(UserTransaction::Open);
    Select("begin");
    mdi().ChooseMenu("mnuDBExecute");
  }
};

TEST_F(ExplainTest, ThePlanIsShownWithTheCostliestStepMarked) {
  ConnectTo("PostgreSQL");
  Answer(asked, plan);
  desktop.OnModal("dlgPlan", [](Window& w) {
    EXPECT_EQ(w.Caption(), "A caption - Plan");
    EXPECT_EQ(Line(w, 0), "Sort|5||||33 %|");
    EXPECT_EQ(Line(w, 1), "   Seq Scan on orders|1000||||67 %, the most|");
    EXPECT_EQ(w.Find<ListView>("lsvPlan").SelectedIndex(), 1);
    EXPECT_GT(w.Find<ListView>("lsvPlan").ColumnWidth(0), 4000) << "a step has a long name";
    EXPECT_NE(w.Find<ListView>("lsvPlan").Row(1).foreColor, color::windowText);
    EXPECT_EQ(w.Find<Label>("lblPlan").Caption(), "The share is that of the estimated cost.");
    w.Click("cmdCopy");
    w.Click("cmdClose");
  });
  ExplainSelected(orders);
  EXPECT_EQ(desktop.TheClipboard().Text(), plan);
  EXPECT_THAT(data.ExecutedSql(), ElementsAre(asked)) << "nothing else runs";
}

/// A letter of the ordinary font takes about 120 twips.
TEST_F(ExplainTest, TheHeadsOfTheColumnsStandApart) {
  ConnectTo("PostgreSQL");
  Answer(asked, plan);
  desktop.OnModal("dlgPlan", [](Window& w) {
    const std::vector<std::string> heads = {"Step", "Rows expected", "Rows real", "Loops",
                                            "ms",   "Share"};
    for (std::size_t column = 0; column < heads.size(); ++column)
      EXPECT_GE(w.Find<ListView>("lsvPlan").ColumnWidth(static_cast<int>(column)),
                static_cast<int>(heads[column].size()) * 120 + 240)
          << heads[column];
    w.Click("cmdClose");
  });
  ExplainSelected(orders);
}

TEST_F(ExplainTest, RealTimesComeOfARunThatIsTakenBack) {
  ConnectTo("PostgreSQL");
  AnswerTransactions();
  Answer(asked, plan);
  Answer(measured, realPlan);
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdMeasure"); });
  desktop.OnModal("dlgPlan", [](Window& w) {
    EXPECT_EQ(Line(w, 0), "Seq Scan on orders|1000|1500|1|2.500|100 %, the most|");
    EXPECT_THAT(w.Find<Label>("lblPlan").Caption(), HasSubstr("Execution Time 2.7 ms"));
    EXPECT_FALSE(w.Find<Button>("cmdMeasure").Visible());
    w.Click("cmdClose");
  });
  ExplainSelected(orders);
  EXPECT_THAT(data.ExecutedSql(), ElementsAre(asked, "BEGIN", measured, "ROLLBACK"));
}

TEST_F(ExplainTest, TheUsersOwnTransactionIsKeptByASavepoint) {
  ConnectTo("PostgreSQL");
  AnswerTransactions();
  OpenTransaction();
  data.AnswerError(asked, MemoryError("relation does not exist"));
  desktop.ExpectMessage("relation does not exist");
  ExplainSelected(orders);
  EXPECT_THAT(data.ExecutedSql(),
              ElementsAre("begin", "SAVEPOINT tessel_plan", asked,
                          "ROLLBACK TO SAVEPOINT tessel_plan", "RELEASE SAVEPOINT tessel_plan"));
}

TEST_F(ExplainTest, AFailedTransactionIsLeftAlone) {
  ConnectTo("PostgreSQL");
  data.AnswerNothing("begin").Leaves(UserTransaction::Failed);
  Select("begin");
  mdi().ChooseMenu("mnuDBExecute");
  Answer(asked, plan);
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdMeasure"); });
  desktop.ExpectMessage("The transaction that is open on this connection has failed: end it with "
                        "ROLLBACK first.");
  ExplainSelected(orders);
  EXPECT_THAT(data.ExecutedSql(), ElementsAre("begin", asked));
}

TEST_F(ExplainTest, AStatementThatWritesIsAskedAboutBeforeItRuns) {
  ConnectTo("MariaDB");
  const std::string update = "update t set a = 1";
  Answer(
      "EXPLAIN FORMAT=JSON " + update,
      R"json({"query_block": {"table": {"table_name": "t", "access_type": "ALL", "rows": 4}}})json");
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdMeasure"); });
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdClose"); });  // It is still there.
  desktop.ExpectMessage(
      "To tell real rows and times the statement is run, and what it changes is taken back at "
      "once. Tables without transactions, counters and what triggers do outside of the database "
      "are not taken back. Run it?",
      MessageResult::Cancel);
  ExplainSelected(update);
  EXPECT_EQ(data.ExecutedSql().size(), 1U);
}

TEST_F(ExplainTest, AFailureOfTheRunIsTakenBackToo) {
  ConnectTo("PostgreSQL");
  AnswerTransactions();
  Answer(asked, plan);
  data.AnswerError(measured, MemoryError("division by zero"));
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdMeasure"); });
  desktop.ExpectMessage("division by zero");
  ExplainSelected(orders);
  EXPECT_EQ(data.ExecutedSql().back(), "ROLLBACK");
}

TEST_F(ExplainTest, ARunThatCannotBeTakenBackIsSaid) {
  ConnectTo("PostgreSQL");
  data.AnswerNothing("BEGIN");
  data.AnswerError("ROLLBACK", MemoryError("no"));
  Answer(asked, plan);
  Answer(measured, realPlan);
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdMeasure"); });
  desktop.ExpectMessage("What was run for the plan could not be taken back: no");
  ExplainSelected(orders);
}

TEST_F(ExplainTest, APlanThatIsNoJsonIsSaid) {
  ConnectTo("PostgreSQL");
  Answer(asked, "Seq Scan on orders");
  desktop.ExpectMessage("This is no JSON: a value is expected, at byte 1.");
  ExplainSelected(orders);
}

TEST_F(ExplainTest, SqliteTellsATreeOfWords) {
  ConnectTo("SQLite");
  data.Answer("EXPLAIN QUERY PLAN " + orders, MemoryFields({"id", "parent", "notused", "detail"}),
              {{Value(std::int64_t{2}), Value(std::int64_t{0}), Value(std::int64_t{0}),
                Value(std::string("SCAN orders"))}});
  desktop.OnModal("dlgPlan", [](Window& w) {
    EXPECT_EQ(Line(w, 1), "   SCAN orders||||||");
    EXPECT_FALSE(w.Find<Button>("cmdMeasure").Visible());
    EXPECT_EQ(w.Find<Label>("lblPlan").Caption(), "SQLite tells neither rows nor times.");
    w.Click("cmdClose");
  });
  ExplainSelected(orders);
}

TEST_F(ExplainTest, TagsAreFilledInAsWhenItRuns) {
  ConnectTo("PostgreSQL");
  desktop.TheClipboard().SetText("orders");
  Answer(asked, plan);
  desktop.OnModal("dlgPlan", [](Window& w) { w.Click("cmdClose"); });
  ExplainSelected("select * from <%^%>");
  EXPECT_THAT(data.ExecutedSql(), ElementsAre(asked));
}

TEST_F(ExplainTest, NothingSelectedAndOtherDatabasesAreSaid) {
  ConnectTo("Some Server");
  desktop.ExpectMessage("Please select the SQL to be executed.");
  ExplainSelected("");
  desktop.ExpectMessage(
      "Plans are shown of PostgreSQL, MariaDB and SQLite; this is another database.");
  ExplainSelected(orders);
  EXPECT_TRUE(data.ExecutedSql().empty());
}

TEST_F(ExplainTest, OfAConnectionThatWasLostThatIsSaid) {
  ConnectTo("PostgreSQL");
  data.LoseSessions();
  Answer(asked, plan);
  desktop.ExpectMessage("The server has gone away.");
  ExplainSelected(orders);
  desktop.ExpectMessage("The connection is closed: connect again.");
  ExplainSelected(orders);
}

// --- statements ----------------------------------------------------------------------------------

std::string RefusalOf(const std::string& sql) {
  try {
    static_cast<void>(StatementToExplain(sql, SqlDialect::PostgreSQL));
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}

TEST(StatementToExplain, IsOneThatHasAPlan) {
  EXPECT_EQ(RefusalOf("select 1; select 2"),
            "Please select one statement: 2 are selected, and a plan is of one.");
  EXPECT_EQ(RefusalOf("-- nothing"), "There is no statement in what is selected.");
  EXPECT_EQ(RefusalOf("create table t (a int)json"),
            "A statement that begins with CREATE has no plan.");
  EXPECT_EQ(RefusalOf("explain select 1"),
            "This statement asks for a plan already: select it without EXPLAIN.");
  EXPECT_EQ(StatementToExplain(" select ';' ; ", SqlDialect::PostgreSQL).sql, "select ';'");
}

TEST(StatementToExplain, TellsWhatWrites) {
  const auto writes = [](const char* sql) {
    return StatementToExplain(sql, SqlDialect::PostgreSQL).writes;
  };
  EXPECT_FALSE(writes("select 'delete' from t"));
  EXPECT_TRUE(writes("delete from t"));
  EXPECT_TRUE(writes("with x as (insert into t values (1) returning *) select * from x"));
  EXPECT_TRUE(writes("select * from t for update"));
}

}  // namespace
}  // namespace tessel
