// Records that are exported to a file and imported from it are those that they were: every hard
// value and every type, through every format, into a table like the one that they came from and
// into one that is made for them.

#include <algorithm>
#include <set>

#include "contract/sql/ColumnTypes.h"
#include "logic/text/TextFile.h"
#include "tests/data/bodies/AllBodies.h"
#include "tests/data/conversion/HardValues.h"
#include "tests/data/conversion/RoundTrip.h"
#include "tests/data/support/ListFeed.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

/// Texts that a reader may take for something else.
std::vector<HardValue> MisleadingTexts() {
  std::vector<HardValue> values;
  for (const char* text :
       {"null", "\\N",  "-",      "N/A",    "\\.",        "0x00",      "\\x41", "true", "False",
        "1",    "-0",   "1e5",    "1,5",    "2026-11-21", "10:00",     " ",     "\t",   "\n",
        "\r",   "\"\"", "'",      ",",      ";",          "|",         "#",     "=1+1", "{}",
        "[1]",  "NaN",  "\uFEFF", "\u00A0", "\uFFFD",     "\U0010FFFF"})
    values.push_back({"text " + std::to_string(values.size()), ValueKind::Text, Text(text)});
  return values;
}

/// What a database, or its driver, has no value for. The driver that ends a text at a zero tells
/// floating numbers by 15 digits, too.
std::vector<std::string> Unknown(SqlDialect dialect, const DatabaseTraits& traits) {
  if (!traits.zeroInText)
    return {"NUL inside", "a third", "greatest number", "least normal number"};
  if (dialect == SqlDialect::PostgreSQL) return {"NUL inside"};
  if (dialect == SqlDialect::MariaDB) return {"infinity", "no number"};
  return {};
}

ColumnType WideColumn(DataType type) {
  const bool exact = type == DataType::Numeric;
  return {.type = type, .precision = exact ? 30 : 0, .scale = exact ? 4 : 0};
}

}  // namespace

void RoundTripBodies::SetUp() {
  DatabaseTest::SetUp();
  if (IsSkipped()) return;
  connection_ = Connect();
  trip_ = std::make_unique<RoundTrip>(connection_);
}

std::vector<TableColumn> RoundTripBodies::ColumnsOf(const std::string& table) const {
  return trip_->ColumnsOf(Db().TableCatalog(), Db().TableSchema(), table);
}

std::string RoundTripBodies::HardColumns() const {
  std::string columns = "row_no integer";
  for (const FieldInfo& field : TypedRows({}).fields)
    columns += ", " + field.name + " " + ColumnTypeName(trip_->Dialect(), WideColumn(field.type));
  return columns;
}

void RoundTripBodies::FillWithHardValues(const std::string& table) {
  std::vector<HardValue> values = HardValuesWithout(Unknown(trip_->Dialect(), Db().Traits()));
  std::ranges::move(MisleadingTexts(), std::back_inserter(values));
  ExportRows rows = TypedRows(values);
  LoadRequest request{.table = table, .columns = {{"row_no", DataType::Integer}}, .rows = {}};
  for (const FieldInfo& field : rows.fields) request.columns.push_back({field.name, field.type});
  for (std::size_t i = 0; i < rows.rows.size(); ++i)
    rows.rows[i].insert(rows.rows[i].begin(), Whole(static_cast<std::int64_t>(i)));
  request.rows = std::make_shared<ListFeed>(std::move(rows.rows));
  ExpectLoaded(*connection_->StartLoad(std::move(request)));
}

void RoundTripBodies::ExpectLoaded(LoadOperation& load) {
  load.Wait();
  const auto& refused = load.Refused();
  EXPECT_EQ(load.Outcome(), OperationOutcome::Done)
      << (load.Failure() ? load.Failure()->description : "")
      << (refused ? " line " + std::to_string(refused->line) : "");
}

/// Value by value, and where the database can say so as a set.
void RoundTripBodies::ExpectSame(const std::string& a, const std::string& b,
                                 const std::string& key) {
  const auto query = [&](const std::string& table) {
    return "select * from " + table + " order by " + key;
  };
  EXPECT_EQ(trip_->Lines(query(b)), trip_->Lines(query(a)));
  ExpectNoMore(a, b);
}

void RoundTripBodies::ExpectNoMore(const std::string& a, const std::string& b) {
  EXPECT_EQ(trip_->Lines("select * from " + a + " except select * from " + b),
            std::vector<std::string>());
}

void RoundTripBodies::RunFile(const std::string& path) {
  Run(*connection_, PosixFiles().ReadWhole(path));
}

/// What tells that a million rows came back tells of each value that did not.
TEST_P(RoundTripBodies, ASumIsAnotherForEveryOtherValue) {
  const std::string columns = "id integer, a varchar(60), b varchar(60)";
  std::set<std::uint64_t> sums;
  const std::vector<std::string> rows = {"(1, 'x', 'y')",  "(1, 'x', 'Y')",  "(1, 'xy', '')",
                                         "(1, 'x ', 'y')", "(1, null, 'y')", "(1, '', 'y')",
                                         "(2, 'x', 'y')",  "(1, 'y', 'x')"};
  for (const std::string& row : rows) {
    const ScratchTable table(Db(), connection_, columns);
    table.Insert(row);
    const RowSum sum = trip_->SumOf("select * from " + table.Name());
    EXPECT_EQ(sum.rows, 1);
    EXPECT_EQ(sum, trip_->SumOf("select * from " + table.Name()));
    sums.insert(sum.sum);
  }
  EXPECT_EQ(sums.size(), rows.size());
}

TEST_P(RoundTripBodies, EveryHardValueComesBackIntoATableLikeItsOwn) {
  const ScratchTable from(Db(), connection_, HardColumns());
  FillWithHardValues(from.Name());
  for (const Passage& passage : Passages()) {
    SCOPED_TRACE(passage.name);
    const ScratchTable to(Db(), connection_, HardColumns());
    const std::string file = trip_->Exported("select * from " + from.Name(), passage.choices);
    ExpectLoaded(*trip_->IntoTable(file, passage, to.Name(), ColumnsOf(to.Name())));
    ExpectSame(from.Name(), to.Name(), "row_no");
  }
}

TEST_P(RoundTripBodies, EveryHardValueComesBackIntoATableThatIsMadeForIt) {
  const ScratchTable from(Db(), connection_, HardColumns());
  FillWithHardValues(from.Name());
  for (const Passage& passage : Passages()) {
    SCOPED_TRACE(passage.name);
    const bool tellsBytes = !passage.IsJson() && passage.choices.binary == BinaryForm::Hexadecimal;
    const std::string file = trip_->Exported("select * from " + from.Name(), passage.choices);
    const std::string to = from.Name() + "_made";
    const auto bytes = tellsBytes ? std::vector<std::string>() : std::vector<std::string>{"v7"};
    ExpectLoaded(*trip_->IntoNewTable(file, passage, to, bytes));
    ExpectSame(from.Name(), to, "row_no");
    Run(*connection_, "drop table " + to);
  }
}

TEST_P(RoundTripBodies, EveryHardValueComesBackAsStatements) {
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "takes one statement at a time";
  const ScratchTable from(Db(), connection_, HardColumns());
  FillWithHardValues(from.Name());
  const std::string to = from.Name() + "_made";
  ExportChoices choices;
  choices.format = ExportFormat::Sql;
  choices.database = trip_->Dialect();
  choices.table = to;
  choices.createTable = true;
  RunFile(trip_->Exported("select * from " + from.Name(), choices));
  ExpectSame(from.Name(), to, "row_no");
  Run(*connection_, "drop table " + to);
}

TEST_P(RoundTripBodies, EveryTypeComesBackIntoATableLikeItsOwn) {
  for (const std::string& statement : Db().TypeSetup()) Run(*connection_, statement);
  for (const TypeCase& type : Db().TypeCases()) {
    if (!type.notWritten.empty() || !type.notImported.empty()) continue;
    SCOPED_TRACE(type.declaration + " " + type.literal);
    const std::string columns = "id " + Db().KeyType() + ", v " + type.declaration;
    const ScratchTable from(Db(), connection_, columns);
    from.Insert("(1, " + type.literal + "), (2, null)");
    const std::vector<std::string> expected =
        trip_->Lines("select * from " + from.Name() + " order by id");
    for (const Passage& passage : Passages()) {
      SCOPED_TRACE(passage.name);
      const ScratchTable to(Db(), connection_, columns);
      const std::string file = trip_->Exported("select * from " + from.Name(), passage.choices);
      ExpectLoaded(*trip_->IntoTable(file, passage, to.Name(), ColumnsOf(to.Name())));
      EXPECT_EQ(trip_->Lines("select * from " + to.Name() + " order by id"), expected);
    }
  }
}

}  // namespace tessel::test
