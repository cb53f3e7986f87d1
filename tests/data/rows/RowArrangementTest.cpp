// Rows arranged in steps: in which order they stand, which are on show, and what becomes of both
// when rows are changed, come or go.

#include <stdlib.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/data/Operation.h"
#include "contract/data/RowArrangement.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/rows/RowSink.h"
#include "data/rows/order/TextKeys.h"
#include "tests/data/support/DataTest.h"
#include "tests/data/support/Values.h"
#include "tests/support/CombinedSteps.h"
#include "tests/support/ErrorNumber.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Rows = std::vector<std::vector<Value>>;

std::shared_ptr<ClientRecordset> RecordsetOf(const Rows& rows) {
  const std::size_t columns = rows.at(0).size();
  RowSink sink(columns);
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) sink.Column(i).Append(row[i]);
    sink.EndRow();
  }
  sink.CloseChunk();
  std::vector<FieldInfo> fields(columns);
  for (std::size_t i = 0; i < columns; ++i)
    fields[i].name = std::string(1, 'a' + static_cast<char>(i));
  return ClientRecordset::Of(std::move(fields), sink.TakeChunks());
}

void RunToEnd(RowWork& work) {
  for (int steps = 0; !work.HasEnded(); ++steps) {
    ASSERT_LT(steps, 100'000) << "The work comes to no end.";
    work.Step();
  }
  EXPECT_EQ(work.Percent(), 100);
}

void Arrange(Recordset& rows, RowArrangement arrangement) {
  arrangement.textOrder = TextOrder::CodePoint;
  RunToEnd(*rows.StartArrange(std::move(arrangement)));
}

/// The numbers of the rows on show, from 0.
std::vector<std::int64_t> Shown(const Recordset& rows) {
  std::vector<std::int64_t> numbers;
  for (std::int64_t at = 0; at < rows.RecordCount(); ++at)
    numbers.push_back(rows.BookmarkAt(at) - 1);
  return numbers;
}

/// Texts that hold another one.
class Holding final : public TextTest {
 public:
  explicit Holding(std::string text) : text_(std::move(text)) {}
  [[nodiscard]] bool Holds(std::string_view text) const override {
    return text.find(text_) != std::string_view::npos;
  }

 private:
  std::string text_;
};

RowCondition Holds(const char* text, std::optional<std::size_t> field = {}) {
  return {.field = field, .test = std::make_shared<Holding>(text)};
}

Rows OneColumn(const std::vector<Value>& values) {
  Rows rows;
  for (const Value& value : values) rows.push_back({value});
  return rows;
}

// --- the order -----------------------------------------------------------------------------------

class SortedAlike : public testing::TestWithParam<int> {};

/// Values of a few kinds, many of them equal; which kinds, the seed says.
Value AnyValue(std::mt19937& random, int kinds) {
  const int number = static_cast<int>(random() % 7) - 3;
  switch (random() % 10 % static_cast<unsigned>(kinds)) {
    case 0: return random() % 5 == 0 ? Value() : Whole(number * 1'000'000'007LL);
    case 1: return random() % 9 == 0 ? Value(std::nan("")) : Value(number * 0.5);
    case 2: return Digits(number < 0 ? "-12345678901234567890.5" : number == 0 ? "0.00" : "1.50");
    case 3:
      return Text(std::string(static_cast<std::size_t>(number + 3), 'x') +
                  (number % 2 == 0 ? "A" : "a"));
    case 4: return At(number < 0 ? "2024-02-29" : "2024-02-29 10:00:00");
    case 5: return Octets(number < 0 ? "\x01\x02" : "\xC8");
    case 6: return Value(number > 0);
    case 7:
      return Value(
          static_cast<std::uint64_t>(18446744073709551615ULL - static_cast<unsigned>(number + 3)));
    case 8: return Value(static_cast<float>(number) * 0.1F);
    default: return number < 0 ? Value(-std::numeric_limits<double>::infinity()) : Value(-0.0);
  }
}

TEST_P(SortedAlike, AsBySetSort) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  Rows rows;
  for (int i = 0; i < 2500; ++i)
    rows.push_back({AnyValue(random, GetParam()), AnyValue(random, 4),
                    Whole(static_cast<std::int64_t>(random() % 5))});
  const auto recordset = RecordsetOf(rows);
  const struct {
    const char* text;
    std::vector<SortKey> keys;
  } orders[] = {{"a", {{0}}}, {"a DESC", {{0, true}}}, {"c, a DESC, b", {{2}, {0, true}, {1}}}};
  for (const auto& order : orders) {
    recordset->SetSort(order.text);
    const auto expected = Shown(*recordset);
    recordset->SetSort("");
    Arrange(*recordset, {.sort = order.keys});
    EXPECT_EQ(Shown(*recordset), expected) << order.text;
    EXPECT_EQ(recordset->Arrangement().sort, order.keys);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, SortedAlike, testing::Range(1, 11));

TEST(RowArrangement, NullsStandTogetherFirstAndLastWhereItGoesDown) {
  const auto rows = RecordsetOf(OneColumn({Whole(2), Value(), Whole(-1), Value(), Whole(10)}));
  Arrange(*rows, {.sort = {{0}}});
  EXPECT_THAT(Shown(*rows), ElementsAre(1, 3, 2, 0, 4));
  Arrange(*rows, {.sort = {{0, true}}});
  EXPECT_THAT(Shown(*rows), ElementsAre(4, 0, 2, 1, 3));
  Arrange(*rows, {});
  EXPECT_THAT(Shown(*rows), ElementsAre(0, 1, 2, 3, 4));
}

TEST(RowArrangement, VeryLongTextsAreComparedToTheirEnds) {
  const std::string same(5000, 'x');
  const auto rows =
      RecordsetOf(OneColumn({Text(same + "b"), Text(same + "a"), Text("y"), Text(same)}));
  Arrange(*rows, {.sort = {{0}}});
  EXPECT_THAT(Shown(*rows), ElementsAre(3, 1, 0, 2));
}

/// A language of the tests' own, made from the system's sources.
class LanguageTest : public testing::Test {
 protected:
  void SetUp() override {
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + folder_.File("de_DE.UTF-8") + "' 2>/dev/null";
    if (system(command.c_str()) != 0 && !std::filesystem::exists(folder_.File("de_DE.UTF-8")))
      GTEST_SKIP() << "No sources of languages on this machine.";
    Use("LOCPATH", folder_.Path().c_str());
    Use("LC_ALL", "de_DE.UTF-8");
  }
  /// The last that was set first: one may have been set twice.
  void TearDown() override {
    std::ranges::reverse(before_);
    for (const auto& [name, value] : before_) {
      if (value) setenv(name.c_str(), value->c_str(), 1);
      else unsetenv(name.c_str());
    }
  }

  void Use(const char* name, const char* value) {
    const char* before = getenv(name);
    before_.emplace_back(name,
                         before == nullptr ? std::nullopt : std::optional<std::string>(before));
    setenv(name, value, 1);
  }

 private:
  TemporaryFolder folder_;
  std::vector<std::pair<std::string, std::optional<std::string>>> before_;
};

TEST_F(LanguageTest, TextsStandAsTheDesktopsLanguageHasIt) {
  ASSERT_TRUE(TextKeys().HasLanguage());
  const auto rows = RecordsetOf(OneColumn({Text("Zebra"), Text("apfel"), Text("Äpfel"), Value(),
                                           Text("Birne"), Text("apfel"), Whole(3)}));
  RunToEnd(*rows->StartArrange({.sort = {{0}}}));
  EXPECT_THAT(Shown(*rows), ElementsAre(3, 6, 1, 5, 2, 4, 0));
  RunToEnd(*rows->StartArrange({.sort = {{0, true}}}));
  EXPECT_THAT(Shown(*rows), ElementsAre(0, 4, 2, 1, 5, 6, 3));
}

TEST_F(LanguageTest, WhereItNamesNoneTextsStandByCodePoint) {
  Use("LC_ALL", "C");
  EXPECT_FALSE(TextKeys().HasLanguage());
  const auto rows = RecordsetOf(OneColumn({Text("b"), Text("Ä"), Text("A"), Text("a"), Text("Z")}));
  RunToEnd(*rows->StartArrange({.sort = {{0}}}));
  EXPECT_THAT(Shown(*rows), ElementsAre(2, 3, 0, 4, 1));
}

// --- which are on show ---------------------------------------------------------------------------

TEST(RowArrangement, RowsAreOnShowThatHoldATextInAnyOrInOneField) {
  const auto rows = RecordsetOf({{Text("Wien"), Whole(12)},
                                 {Text("Graz"), Whole(7)},
                                 {Text("Linz 12"), Value()},
                                 {Octets("Wien"), Value(1.25)}});
  Arrange(*rows, {.conditions = {Holds("12")}});
  EXPECT_THAT(Shown(*rows), ElementsAre(0, 2));
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(rows->FullCount(), 4);
  Arrange(*rows, {.conditions = {Holds("12", 1)}});
  EXPECT_THAT(Shown(*rows), ElementsAre(0));
  Arrange(*rows, {.conditions = {Holds("i"), Holds("1.25", 1)}});
  EXPECT_THAT(Shown(*rows), IsEmpty());
  EXPECT_TRUE(rows->Bof() && rows->Eof());
  Arrange(*rows, {.sort = {{1, true}}, .conditions = {Holds("z", 0)}});
  EXPECT_THAT(Shown(*rows), ElementsAre(1, 2));
}

TEST(RowArrangement, CellsAreComparedByWhatTheyAreWorth) {
  const auto rows =
      RecordsetOf(OneColumn({Whole(5), Value(5.5), Digits("5.00"), Text("5"), Value(), Whole(-7)}));
  const auto by = [&](Comparison comparison, Value value) {
    Arrange(*rows,
            {.conditions = {{.field = 0, .comparison = comparison, .value = std::move(value)}}});
    return Shown(*rows);
  };
  EXPECT_THAT(by(Comparison::Equal, Digits("5")), ElementsAre(0, 2));
  EXPECT_THAT(by(Comparison::NotEqual, Digits("5")), ElementsAre(1, 3, 4, 5));
  EXPECT_THAT(by(Comparison::More, Whole(5)), ElementsAre(1));
  EXPECT_THAT(by(Comparison::AtLeast, Whole(5)), ElementsAre(0, 1, 2));
  EXPECT_THAT(by(Comparison::Less, Whole(5)), ElementsAre(5));
  EXPECT_THAT(by(Comparison::AtMost, Whole(5)), ElementsAre(0, 2, 5));
  EXPECT_THAT(by(Comparison::Equal, Value()), ElementsAre(4));
  EXPECT_THAT(by(Comparison::NotEqual, Value()), ElementsAre(0, 1, 2, 3, 5));
  EXPECT_THAT(by(Comparison::AtMost, Value()), IsEmpty());
  EXPECT_THAT(by(Comparison::Equal, Text("5")), ElementsAre(3));
}

TEST(RowArrangement, TheCurrentRecordStaysAsLongAsItIsOnShow) {
  const auto rows = RecordsetOf(OneColumn({Text("b1"), Text("a2"), Text("b3"), Text("a4")}));
  rows->MoveTo(3);
  Arrange(*rows, {.conditions = {Holds("b")}});
  EXPECT_EQ(rows->CurrentBookmark(), 3);
  EXPECT_EQ(rows->PositionOf(3), 1);
  EXPECT_EQ(rows->PositionOf(2), std::nullopt);
  EXPECT_EQ(ErrorNumberOf([&] { rows->MoveTo(2); }), errorNumber::noCurrentRecord);
  Arrange(*rows, {.sort = {{0, true}}, .conditions = {Holds("a")}});
  EXPECT_EQ(rows->CurrentBookmark(), 4) << "the first on show";
  EXPECT_EQ(rows->PositionOf(1), std::nullopt);
  Arrange(*rows, {.sort = {{0, true}}});
  EXPECT_EQ(rows->CurrentBookmark(), 4);
  EXPECT_THAT(Shown(*rows), ElementsAre(2, 0, 3, 1));
}

TEST(RowArrangement, FieldsAreReadByPosition) {
  const auto rows =
      RecordsetOf({{Text("x"), Whole(1), Text("p")}, {Text("y"), Whole(2), Text("q")}});
  Arrange(*rows, {.sort = {{0, true}}});
  rows->MoveLast();
  std::vector<ValueView> values(2);
  rows->ReadFieldsAt(0, 1, values);
  EXPECT_EQ(ToText(values[0]) + ToText(values[1]), "2q");
  EXPECT_EQ(rows->CurrentBookmark(), 1);
  EXPECT_EQ(ErrorNumberOf([&] { rows->ReadFieldsAt(2, 0, values); }), errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorNumberOf([&] { rows->ReadFieldsAt(0, 2, values); }), errorNumber::itemNotFound);
}

TEST(RowArrangement, AnythingElseIsRefused) {
  const auto rows = RecordsetOf(OneColumn({Whole(1)}));
  EXPECT_EQ(ErrorNumberOf([&] { (void)rows->StartArrange({.sort = {{1}}}); }),
            errorNumber::itemNotFound);
  EXPECT_EQ(ErrorNumberOf([&] { (void)rows->StartArrange({.conditions = {Holds("x", 3)}}); }),
            errorNumber::itemNotFound);
  const auto work = rows->StartArrange({.sort = {{0}}});
  rows->Close();
  EXPECT_EQ(ErrorNumberOf([&] { (void)rows->StartArrange({}); }), errorNumber::objectClosed);
  EXPECT_EQ(ErrorNumberOf([&] { (void)rows->FullCount(); }), errorNumber::objectClosed);
  RunToEnd(*work);
}

TEST(RowArrangement, WorkOutlivesItsRecordset) {
  auto rows = RecordsetOf(OneColumn({Whole(2), Whole(1)}));
  const auto arrange = rows->StartArrange({.sort = {{0}}});
  const auto search = rows->StartSearch(
      {.test = std::make_shared<Holding>("1"), .found = [](auto, auto) { FAIL(); }});
  rows.reset();
  RunToEnd(*arrange);
  RunToEnd(*search);
}

TEST(RowArrangement, WorkThatIsLetGoOfLeavesTheRowsAsTheyWere) {
  Rows many;
  for (int i = 0; i < 100'000; ++i) many.push_back({Whole(i * 7919LL % 100'003)});
  const auto rows = RecordsetOf(many);
  auto work = rows->StartArrange({.sort = {{0}}});
  work->Step();
  EXPECT_FALSE(work->HasEnded());
  work.reset();
  EXPECT_EQ(rows->BookmarkAt(0), 1);
  EXPECT_TRUE(rows->Arrangement().sort.empty());
}

// --- looking through -----------------------------------------------------------------------------

std::vector<std::string> Found(const Recordset& rows, const char* text, std::int64_t from,
                               std::optional<std::size_t> field = {}) {
  std::vector<std::string> found;
  CellSearch search{.test = std::make_shared<Holding>(text), .field = field, .from = from};
  search.found = [&](std::int64_t position, std::size_t column) {
    found.push_back(std::to_string(position) + ":" + std::to_string(column));
  };
  RunToEnd(*rows.StartSearch(std::move(search)));
  return found;
}

TEST(RowSearch, FindsCellsOfTheRowsOnShowFromAPositionOnAndRound) {
  const auto rows = RecordsetOf({{Text("a1"), Whole(1)},
                                 {Text("b"), Whole(31)},
                                 {Text("hidden 1"), Value()},
                                 {Text("a"), Value(0.1)}});
  Arrange(*rows,
          {.sort = {{0, true}},
           .conditions = {
               {.field = 0, .comparison = Comparison::NotEqual, .value = Text("hidden 1")}}});
  EXPECT_THAT(Found(*rows, "1", 0), ElementsAre("0:1", "1:0", "1:1", "2:1"));
  EXPECT_THAT(Found(*rows, "1", 1), ElementsAre("1:0", "1:1", "2:1", "0:1"));
  EXPECT_THAT(Found(*rows, "1", 2, 0), ElementsAre("1:0"));
  EXPECT_THAT(Found(*rows, "nothing", 0), IsEmpty());
  EXPECT_EQ(ErrorNumberOf([&] {
              (void)rows->StartSearch({.test = std::make_shared<Holding>("1"), .field = 2});
            }),
            errorNumber::itemNotFound);
}

TEST(RowSearch, EndsWhenTheRowsAreArrangedAnew) {
  const auto rows = RecordsetOf(OneColumn({Text("a"), Text("a")}));
  int found = 0;
  const auto work = rows->StartSearch(
      {.test = std::make_shared<Holding>("a"), .found = [&](auto, auto) { ++found; }});
  rows->SetSort("a DESC");
  RunToEnd(*work);
  EXPECT_EQ(found, 0);
}

}  // namespace

// --- with rows that change -----------------------------------------------------------------------

class ArrangedChangesTest : public DataTest {
 protected:
  void SetUp() override {
    connection_ = ConnectTo("Provider=SQLite;Data Source=:memory:");
    rows_ =
        QueryNow(*connection_,
                 "create table t (id integer primary key, x text);"
                 "insert into t values (1, 'b'), (2, 'a'), (3, 'c'), (4, 'a'); select id, x from t",
                 LockType::Optimistic);
  }
  void Set(const char* text) { rows_->SetFieldValue(1, Text(text)); }
  void Write() { Finish(*rows_->StartUpdate()); }
  void ShowA() { Arrange(*rows_, {.sort = {{0, true}}, .conditions = {Holds("a", 1)}}); }

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Recordset> rows_;
};

TEST_F(ArrangedChangesTest, AChangedRowStaysOnShowWhereItStands) {
  ShowA();
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a", "2|a"));
  rows_->MoveLast();
  Set("zzz");
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a", "2|zzz"));
  Write();
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a", "2|zzz"));
  ShowA();
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a"));
}

TEST_F(ArrangedChangesTest, ANewRowStandsAtTheEndWhateverItHolds) {
  ShowA();
  rows_->AddNew();
  EXPECT_EQ(rows_->PositionOf(rows_->CurrentBookmark()), 2);
  Set("new");
  EXPECT_EQ(ToText(rows_->ValueAt(2, 1)), "new");
  Write();
  EXPECT_EQ(rows_->RecordCount(), 3);
  EXPECT_EQ(rows_->FullCount(), 5);
  EXPECT_EQ(ToText(rows_->FieldValue(1)), "new");
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a", "2|a", "5|new"));
  ShowA();
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("4|a", "2|a"));
  EXPECT_EQ(rows_->CurrentBookmark(), 4);
}

TEST_F(ArrangedChangesTest, ANewRowThatIsDroppedLeavesTheRecordBeforeCurrent) {
  ShowA();
  rows_->MoveLast();
  rows_->AddNew();
  rows_->CancelUpdate();
  EXPECT_EQ(ToText(rows_->FieldValue(0)), "2");
  EXPECT_EQ(rows_->RecordCount(), 2);
}

TEST_F(ArrangedChangesTest, DeletedRowsGoWhetherOnShowOrHidden) {
  const auto clone = rows_->Clone(LockType::Optimistic);
  ShowA();
  Finish(*rows_->StartDelete());
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("2|a"));
  EXPECT_EQ(ToText(rows_->FieldValue(0)), "2");
  clone->MoveFirst();
  Finish(*clone->StartDelete());
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("2|a"));
  EXPECT_EQ(rows_->FullCount(), 2);
  Arrange(*rows_, {});
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("2|a", "3|c"));
}

TEST_F(ArrangedChangesTest, ACloneShowsAllRowsInTheOrderOfOpening) {
  ShowA();
  EXPECT_THAT(LinesOf(*rows_->Clone(LockType::ReadOnly)), ElementsAre("1|b", "2|a", "3|c", "4|a"));
}

TEST_F(ArrangedChangesTest, AChangeThatIsPendingIsSavedFirst) {
  Set("x");
  EXPECT_EQ(ErrorNumberOf([&] { (void)rows_->StartArrange({}); }), errorNumber::changePending);
  rows_->CancelUpdate();
  const auto work = rows_->StartArrange({.sort = {{1}}});
  Set("x");
  const auto finish = [&] {
    while (!work->HasEnded()) work->Step();
  };
  EXPECT_EQ(ErrorNumberOf(finish), errorNumber::changePending);
  EXPECT_TRUE(work->HasEnded());
  EXPECT_TRUE(rows_->Arrangement().sort.empty());
}

TEST_F(ArrangedChangesTest, RowsThatGoMeanwhileMakeTheWorkBeginAnew) {
  const auto work = rows_->StartArrange({.sort = {{1}}, .textOrder = TextOrder::CodePoint});
  Finish(*rows_->StartDelete());
  rows_->AddNew();
  Set("aa");
  Write();
  RunToEnd(*work);
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("2|a", "4|a", "5|aa", "3|c"));
}

TEST_F(ArrangedChangesTest, SetSortShowsAllRowsAgain) {
  ShowA();
  rows_->SetSort("x DESC");
  EXPECT_THAT(LinesOf(*rows_), ElementsAre("3|c", "1|b", "2|a", "4|a"));
  EXPECT_TRUE(rows_->Arrangement().conditions.empty());
}

TEST_F(ArrangedChangesTest, MergedRowsTakeAllOfThem) {
  ShowA();
  const auto merged = data_.MergeRows({{"one", rows_}});
  EXPECT_EQ(merged->RecordCount(), 4);
  Arrange(*merged, {.sort = {{2}}, .conditions = {Holds("a", 2)}});
  EXPECT_THAT(LinesOf(*merged), ElementsAre("one|2|a", "one|4|a"));
}

}  // namespace tessel::test
