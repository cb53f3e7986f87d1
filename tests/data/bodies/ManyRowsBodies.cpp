// A million rows are taken out to a file and in again. All of it takes minutes in an optimised
// build (preset `bench` with -DTESSEL_TESTS=ON) and is run by name: data_tests
// --gtest_also_run_disabled_tests --gtest_filter='*ManyRowsBodies*'

#include <chrono>
#include <iostream>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/ListFeed.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

constexpr std::int64_t manyRows = 1'000'000;
constexpr const char* manyColumns =
    "id integer, a varchar(60), b varchar(60), c integer, d integer, e varchar(60), "
    "f varchar(60), g varchar(60), h varchar(60), i integer";

/// Rows of ten columns with something of what readers get wrong in each.
std::optional<std::vector<Value>> ManyRow(std::int64_t number) {
  if (number == manyRows) return std::nullopt;
  const std::string text = std::to_string(number * 7919 % 1'000'003);
  return std::vector<Value>{Whole(number),
                            Text("row, " + text),
                            number % 7 == 0 ? Value() : Text(number % 5 == 0 ? "" : text),
                            Whole(-number),
                            number % 3 == 0 ? Value() : Whole(number * 31 % 2'147'483'647),
                            Text("O'Brien said \"" + text + "\""),
                            Text("line\r\nand\n\ttab " + text),
                            Text("\u00FC\u6F22 \U0001F600 e\u0301 " + text),
                            Text(" " + text + "\\ "),
                            Whole(number % 2)};
}

/// Seconds since it was asked the last time.
class Lap {
 public:
  double operator()() {
    const auto now = std::chrono::steady_clock::now();
    return std::chrono::duration<double>(now - std::exchange(start_, now)).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

std::string InOrder(const std::string& table) { return "select * from " + table + " order by id"; }

}  // namespace

void ManyRowsBodies::SetUp() {
  RoundTripBodies::SetUp();
  if (IsSkipped()) return;
  from_ = std::make_unique<ScratchTable>(Db(), connection_, manyColumns);
  LoadRequest request{.table = from_->Name(), .columns = {}, .rows = {}};
  for (const TableColumn& column : ColumnsOf(from_->Name()))
    request.columns.push_back({column.name, column.type});
  request.rows = std::make_shared<ListFeed>(ManyRow);
  ExpectLoaded(*connection_->StartLoad(std::move(request)));
  sum_ = trip_->SumOf(InOrder(from_->Name()));
  ASSERT_EQ(sum_.rows, manyRows);
}

void ManyRowsBodies::ExpectBack(const Passage& passage) {
  SCOPED_TRACE(passage.name);
  const ScratchTable to(Db(), connection_, manyColumns);
  Lap lap;
  const std::string file = trip_->Exported(InOrder(from_->Name()), passage.choices);
  const double out = lap();
  ExpectLoaded(*trip_->IntoTable(file, passage, to.Name(), ColumnsOf(to.Name())));
  const double in = lap();
  ExpectSameRows(to.Name());
  std::cout << passage.name << ": " << PosixFiles().Size(file) << " bytes, out " << out << " s, in "
            << in << " s, compared " << lap() << " s, " << testing::PrintToString(sum_)
            << std::endl;
  ExpectOneOtherValueFound(to.Name());
  PosixFiles().Remove(file);
}

void ManyRowsBodies::ExpectBack(const std::function<bool(const Passage&)>& chosen) {
  for (const Passage& passage : Passages())
    if (chosen(passage)) ExpectBack(passage);
}

void ManyRowsBodies::ExpectSameRows(const std::string& table) {
  EXPECT_EQ(trip_->SumOf(InOrder(table)), sum_);
  EXPECT_EQ(OwnSum(table), OwnSum(from_->Name()));
}

std::string ManyRowsBodies::OwnSum(const std::string& table) const {
  if (trip_->Dialect() == SqlDialect::PostgreSQL)
    return trip_->Lines("select sum(hashtextextended(t::text, 0)) from " + table + " t").front();
  if (trip_->Dialect() != SqlDialect::MariaDB) return {};
  const std::string line = trip_->Lines("checksum table " + table + " extended").front();
  return line.substr(line.find('|'));
}

void ManyRowsBodies::ExpectOneOtherValueFound(const std::string& table) {
  const std::string own = OwnSum(table);
  Run(*connection_, "update " + table + " set h = ' 1\\ ' where id = 900001");
  const RowSum other = trip_->SumOf(InOrder(table));
  EXPECT_EQ(other.rows, manyRows);
  EXPECT_NE(other, sum_);
  EXPECT_EQ(OwnSum(table) == own, own.empty());
}

TEST_P(ManyRowsBodies, DISABLED_ComeBackFromValuesWithDelimiters) {
  ExpectBack([](const Passage& passage) {
    return passage.choices.format == ExportFormat::Csv &&
           passage.choices.code != TextCode::Utf8WithMark;
  });
}

TEST_P(ManyRowsBodies, DISABLED_ComeBackFromTabs) {
  ExpectBack([](const Passage& passage) { return passage.choices.format == ExportFormat::Tabs; });
}

TEST_P(ManyRowsBodies, DISABLED_ComeBackFromJson) { ExpectBack(&Passage::IsJson); }

TEST_P(ManyRowsBodies, DISABLED_OfTheRefusedOneTheLineIsToldAndNothingStays) {
  constexpr std::int64_t bad = 900'000;
  const ScratchTable table(Db(), connection_, "id " + Db().KeyType() + ", a varchar(60)");
  const auto make = [](std::int64_t number) -> std::optional<std::vector<Value>> {
    if (number == manyRows) return std::nullopt;
    return std::vector<Value>{Whole(number == bad ? 1 : number), Text("row")};
  };
  const auto load =
      connection_->StartLoad({.table = table.Name(),
                              .columns = {{"id", DataType::Integer}, {"a", DataType::VarWChar}},
                              .rows = std::make_shared<ListFeed>(make)});
  load->Wait();
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused());
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(bad));
  EXPECT_EQ(load->RowsKept(), 0);
  EXPECT_EQ(trip_->Lines("select count(*) from " + table.Name()), std::vector<std::string>{"2:0"});
}

}  // namespace tessel::test
