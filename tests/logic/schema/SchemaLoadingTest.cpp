#include "logic/schema/SchemaLoading.h"

#include <ctime>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Label.h"
#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

using test::AnswerViews;

const std::string viewsMissing = "no such table: INFORMATION_SCHEMA.TABLES";
const std::string question =
    "Could not get field names by querying INFORMATION_SCHEMA.COLUMNS. Proceed using OpenSchema?";
const Schema shop = {{"Items", {"id", "Order ID"}}, {"Orders", {"id", "date"}}};

class SchemaLoadingTest : public test::SchemaFixture {
 protected:
  bool Load() { return loading.LoadSchemaFromDB("d1", connection); }
  /// A provider without the standard views, which knows its tables.
  void KnowTables(const Schema& schema) {
    data.AnswerError(test::tablesQuery, MemoryError(viewsMissing));
    for (const TableSchema& table : schema)
      data.tables.push_back({"", "", table.name, "TABLE", MemoryFields(table.fields)});
  }
  void ExpectFailure(const std::string& description) {
    desktop.ExpectMessage("Unable to get database schema information: " + description,
                          MessageResult::Ok, [](const Message& message) {
                            EXPECT_EQ(message.icon, MessageIcon::Critical);
                            EXPECT_EQ(message.buttons, MessageButtons::Ok);
                            EXPECT_TRUE(message.help);
                          });
  }
  void ExpectQuestion(MessageResult answer) {
    desktop.ExpectMessage(question, answer, [](const Message& message) {
      EXPECT_EQ(message.icon, MessageIcon::Question);
      EXPECT_EQ(message.buttons, MessageButtons::YesNo);
    });
  }
  std::string Progress() {
    test::HeadlessWindow& window = desktop.WindowOf("dlgAsync");
    return window.Find<Label>("lblMessage").Caption() + " of " +
           std::to_string(std::llround(window.Find<ProgressBar>("prgProgress").Max()));
  }

  SchemaLoading loading{global, async, tree};
};

TEST_F(SchemaLoadingTest, ReadsTablesAndFieldsThroughTheStandardViews) {
  AnswerViews(data, shop);
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), shop);
  EXPECT_TRUE(view.Expanded("d1"));
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
  EXPECT_EQ(data.ExecutedSql(), (std::vector<std::string>{test::tablesQuery, test::columnsQuery}));
}

TEST_F(SchemaLoadingTest, QueriesRunAsynchronouslyWhereTheProviderAllows) {
  AnswerViews(data, shop);
  EXPECT_TRUE(Load());
  EXPECT_TRUE(data.Log().executed.at(0).async);
  EXPECT_TRUE(data.Log().executed.at(1).async);
}

TEST_F(SchemaLoadingTest, QueriesBlockWhereTheProviderIsOfOneThread) {
  test::MemoryData& server = data;
  auto& other = server.ServerOf("Database=single");
  other.properties.Set("Data Source Object Threading Model", std::int64_t{2});
  AnswerViews(other, shop);
  connection = data.CreateConnection();
  connection->SetConnectionString("Database=single");
  test::OpenNow(*connection);
  NoteWaiting();
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), shop);
  EXPECT_TRUE(waited);
}

TEST_F(SchemaLoadingTest, AProviderWithoutTheViewsLoadsThroughItsRowsetsWithoutAQuestion) {
  KnowTables(shop);
  data.tables.push_back({"", "", "A view", "VIEW", MemoryFields({"x"})});
  data.tables.push_back({"", "", "sys", "SYSTEM TABLE", MemoryFields({"y"})});
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), shop);
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_TRUE(connection->Errors().empty()) << "the failure of the first way is cleared";
}

TEST_F(SchemaLoadingTest, AProviderWhoseRowsetsKnowBetterIsNotAskedForTheViews) {
  data.properties.Set("Schema By Rowsets", std::int64_t{1});
  data.properties.Set("Bracket Identifiers", std::int64_t{0});
  connection->Close();
  test::OpenNow(*connection);
  data.tables = {{"shop", "archive", "orders", "TABLE", MemoryFields({"old", "id"}), true},
                 {"shop", "public", "orders", "TABLE", MemoryFields({"id", "new"})},
                 {"other", "", "a.b", "TABLE", MemoryFields({"x"}), true},
                 {"shop", "public", "seen", "VIEW", MemoryFields({"id"})}};
  EXPECT_TRUE(Load());
  EXPECT_TRUE(loading.Complete());
  EXPECT_TRUE(data.ExecutedSql().empty());
  EXPECT_EQ(Tables(), (Schema{{"archive.orders", {"old", "id"}},
                              {"orders", {"id", "new"}},
                              {"other.\"a.b\"", {"x"}}}));
}

TEST_F(SchemaLoadingTest, OnlyALoadThatReadEverythingIsComplete) {
  AnswerViews(data, shop);
  EXPECT_FALSE(loading.Complete());
  EXPECT_TRUE(Load());
  EXPECT_TRUE(loading.Complete());
  CancelAt(2 + 4 + 1);
  EXPECT_TRUE(Load());
  EXPECT_FALSE(loading.Complete());
}

TEST_F(SchemaLoadingTest, FieldsOfTheRowsetAreSortedIntoColumnOrder) {
  KnowTables({{"b", {"z", "y", "x"}}, {"a", {"2", "1"}}});
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"b", {"z", "y", "x"}}, {"a", {"2", "1"}}}));
}

TEST_F(SchemaLoadingTest, AFailureOfBothWaysIsShownAndLeavesTheTree) {
  tree.AddTables("d1", {"Earlier"});
  KnowTables({});
  data.schemaFailures[SchemaRowset::Tables] = MemoryError("not allowed");
  ExpectFailure("not allowed");
  EXPECT_FALSE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Earlier", {}}}));
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (std::vector<std::string>{"Earlier"}));
}

TEST_F(SchemaLoadingTest, TheFailureOfTheColumnsRowsetIsShownAndKeepsTheTables) {
  KnowTables(shop);
  data.schemaFailures[SchemaRowset::Columns] = MemoryError("not allowed");
  ExpectFailure("not allowed");
  EXPECT_FALSE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Items", {}}, {"Orders", {}}}));
}

TEST_F(SchemaLoadingTest, AColumnsViewThatFailsAsksOnceAndNoLeavesTablesWithoutFields) {
  AnswerViews(data, shop);
  test::MemoryData& server = data;
  auto& other = server.ServerOf("Database=half");
  other.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}});
  other.AnswerError(test::columnsQuery, MemoryError("no such view"));
  connection = data.CreateConnection();
  connection->SetConnectionString("Database=half");
  test::OpenNow(*connection);
  ExpectQuestion(MessageResult::No);
  EXPECT_FALSE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Orders", {}}}));
  EXPECT_EQ(desktop.Messages().size(), 1U);
}

TEST_F(SchemaLoadingTest, YesReadsTheFieldsThroughTheRowset) {
  data.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}});
  data.AnswerError(test::columnsQuery, MemoryError("no such view"));
  data.tables.push_back({"", "", "Orders", "TABLE", MemoryFields({"id", "date"})});
  ExpectQuestion(MessageResult::Yes);
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Orders", {"id", "date"}}}));
  EXPECT_TRUE(view.Expanded("d1"));
}

TEST_F(SchemaLoadingTest, YesMayFailToo) {
  data.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}});
  data.AnswerError(test::columnsQuery, MemoryError("no such view"));
  data.schemaFailures[SchemaRowset::Columns] = MemoryError("not allowed");
  ExpectQuestion(MessageResult::Yes);
  ExpectFailure("not allowed");
  EXPECT_FALSE(Load());
}

TEST_F(SchemaLoadingTest, LoadingAgainReplacesTablesFieldsAndWords) {
  AnswerViews(data, shop);
  AnswerViews(data, {{"New", {"only"}}});
  EXPECT_TRUE(Load());
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"New", {"only"}}}));
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (std::vector<std::string>{"New"}));
  EXPECT_EQ(WordsOf(vocabulary.Fields()), (std::vector<std::string>{"only"}));
}

TEST_F(SchemaLoadingTest, ATableThatDiffersOnlyInCaseIsNotAddedAndTheLoadGoesOn) {
  AnswerViews(data, {{"Orders", {"id"}}, {"ORDERS", {"ID", "other"}}, {"Z", {"z"}}});
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Orders", {"id", "other"}}, {"Z", {"z"}}}));
}

TEST_F(SchemaLoadingTest, FieldsOfWhatIsNotATableAreSkipped) {
  data.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}});
  data.Answer(test::columnsQuery, MemoryFields({"TABLE_NAME", "COLUMN_NAME"}),
              {{std::string("A view"), std::string("x")},
               {std::string("ORDERS"), std::string("id")},
               {std::string("Z view"), std::string("y")}});
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Orders", {"id"}}}));
  EXPECT_EQ(WordsOf(vocabulary.Fields()), (std::vector<std::string>{"id"}));
}

TEST_F(SchemaLoadingTest, AnEmptyDatabaseLoadsWithoutABar) {
  AnswerViews(data, {});
  desktop.OnProcessPending([](int) { FAIL() << "there is nothing to step through"; });
  EXPECT_TRUE(Load());
  EXPECT_TRUE(Tables().empty());
}

TEST_F(SchemaLoadingTest, BothPhasesShowTheirCountAndCaption) {
  AnswerViews(data, shop);
  std::vector<std::string> shown;
  desktop.OnProcessPending([&](int) {
    const std::string progress = Progress();
    if (shown.empty() || shown.back() != progress) shown.push_back(progress);
  });
  EXPECT_TRUE(Load());
  EXPECT_EQ(shown, (std::vector<std::string>{"Reading table names... of 2",
                                             "Reading field names... of 4"}));
}

TEST_F(SchemaLoadingTest, CancellingTheTableNamesKeepsThoseReadAndReadsTheirFields) {
  AnswerViews(data, {{"a", {"1"}}, {"b", {"2"}}, {"c", {"3"}}});
  CancelAt(2);
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"a", {"1"}}, {"b", {"2"}}}));
}

TEST_F(SchemaLoadingTest, CancellingTheFieldNamesKeepsThoseRead) {
  AnswerViews(data, {{"a", {"1", "2"}}, {"b", {"3", "4"}}});
  CancelAt(2 + 3);
  EXPECT_TRUE(Load());
  EXPECT_EQ(Tables(), (Schema{{"a", {"1", "2"}}, {"b", {"3"}}}));
  EXPECT_TRUE(view.Expanded("d1"));
}

TEST_F(SchemaLoadingTest, ThousandsOfNamesLeaveTheInterfaceItsTurnsAndCanBeCancelled) {
  Schema schema;
  for (int i = 0; i < 3'000; ++i) schema.push_back({"t" + std::to_string(10'000 + i), {}});
  AnswerViews(data, schema);
  int turns = 0;
  desktop.OnProcessPending([&](int number) {
    turns = number;
    if (number == 5) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  EXPECT_TRUE(Load());
  EXPECT_EQ(turns, 5);
  EXPECT_EQ(Tables().size(), 5U * 256U);
}

TEST_F(SchemaLoadingTest, CancellingTheQueryForTablesLeavesTheTree) {
  tree.AddTables("d1", {"Earlier"});
  data.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}})
      .HoldExecuting();
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Earlier", {}}}));
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(SchemaLoadingTest, CancellingTheQueryForFieldsKeepsTheTables) {
  data.Answer(test::tablesQuery, MemoryFields({"TABLE_NAME"}), {{std::string("Orders")}});
  data.Answer(test::columnsQuery, MemoryFields({"TABLE_NAME", "COLUMN_NAME"}),
              {{std::string("Orders"), std::string("id")}})
      .HoldAtRow(1);
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(Load());
  EXPECT_EQ(Tables(), (Schema{{"Orders", {}}}));
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(SchemaLoadingTest, RowsWithoutTheExpectedFieldEndInTheMessage) {
  data.Answer(test::tablesQuery, MemoryFields({"odd"}), {{std::string("Orders")}});
  ExpectFailure("The rows have no field TABLE_NAME.");
  EXPECT_FALSE(Load());
}

TEST_F(SchemaLoadingTest, ALostConnectionEndsInTheMessage) {
  AnswerViews(data, shop);
  data.LoseSessions();
  ExpectFailure(
      "The connection is closed: it was lost, or given up because the database did not react to "
      "a cancel. Connect again.");
  EXPECT_FALSE(Load());
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(SchemaLoadingTest, TheTimeGrowsWithTheNumberOfFieldsOnly) {
  const auto secondsFor = [&](int count, const std::string& connectionString) {
    Schema schema;
    for (int i = 0; i < count; ++i) {
      TableSchema& table = schema.emplace_back(TableSchema{"table_" + std::to_string(i), {}});
      for (int f = 0; f < 20; ++f) table.fields.push_back("field_" + std::to_string(f));
    }
    test::MemoryData& server = data;
    AnswerViews(server.ServerOf(connectionString), schema);
    connection = data.CreateConnection();
    connection->SetConnectionString(connectionString);
    test::OpenNow(*connection);
    const std::clock_t start = std::clock();
    EXPECT_TRUE(Load());
    const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    EXPECT_EQ(view.Children("d1").size(), static_cast<std::size_t>(count));
    EXPECT_EQ(view.Children("td1.TABLE_7").size(), 20U);
    return taken;
  };
  const double part = secondsFor(500, "small");
  const double whole = secondsFor(2'500, "large");
  RecordProperty("seconds", std::to_string(whole));
  EXPECT_LT(whole, 3 * 5 * part) << "five times the rows";
}

}  // namespace
}  // namespace tessel
