#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "contract/base/Error.h"
#include "data/rows/RowSink.h"
#include "data/rows/RowStore.h"
#include "data/rows/order/SortOrder.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;

constexpr std::byte low{1};
constexpr std::byte high{200};

int Compare(const Value& a, const Value& b) { return CompareValues(ToView(a), ToView(b)); }

std::vector<std::int64_t> Sorted(const std::vector<std::vector<Value>>& rows,
                                 const std::vector<SortField>& fields) {
  RowSink sink(rows.at(0).size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) sink.Column(i).Append(row[i]);
    sink.EndRow();
  }
  sink.CloseChunk();
  RowStore store;
  for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(store.Rows()));
  std::iota(numbers.begin(), numbers.end(), 0);
  SortRows(numbers, fields,
           [&](std::int64_t row, std::size_t field) { return store.At(row, field); });
  return numbers;
}

std::optional<std::size_t> FindField(std::string_view name) {
  const std::vector<std::string> names = {"a", "b c", "d,e", "order", "DESC"};
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i] == name) return i;
  return std::nullopt;
}

std::vector<std::pair<std::size_t, bool>> Parsed(std::string_view text) {
  std::vector<std::pair<std::size_t, bool>> fields;
  for (const SortField& field : ParseSort(text, FindField))
    fields.emplace_back(field.field, field.descending);
  return fields;
}

using P = std::pair<std::size_t, bool>;

TEST(SortOrder, RowsThatStandInOrderAreGoneThroughOnce) {
  constexpr std::int64_t count = 1000;
  std::vector<std::int64_t> rows(count);
  std::iota(rows.begin(), rows.end(), 0);
  const std::vector<std::int64_t> asTheyStood = rows;
  std::int64_t looks = 0;
  const auto at = [&](std::int64_t row, std::size_t field) -> ValueView {
    ++looks;
    return field == 0 ? row / 10 : row % 10;
  };
  SortRows(rows, {{0, false}, {1, false}}, at);
  EXPECT_EQ(rows, asTheyStood);
  EXPECT_LE(looks, 3 * count);
  SortRows(rows, {{0, true}, {1, false}}, at);
  EXPECT_EQ(rows.front(), count - 10) << "and others are sorted as ever";
}

}  // namespace

/// Each stands before the next.
TEST(SortOrder, RanksValues) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<Value> values = {
      Value(),
      Value(false),
      Value(true),
      Value(nan),
      Value(-infinity),
      Value(Decimal{"-12345678901234567890.5"}),
      Value(std::numeric_limits<std::int64_t>::min()),
      Value(-1.5),
      Value(std::int64_t{-1}),
      Value(Decimal{"-0.001"}),
      Value(0.0),
      Value(Decimal{"1e-5"}),
      Value(Decimal{".5"}),
      Value(std::int64_t{1}),
      Value(1.25F),
      Value(Decimal{"+2.00"}),
      Value(std::int64_t{9007199254740992}),
      Value(std::int64_t{9007199254740993}),
      Value(9007199254740994.0),
      Value(std::numeric_limits<std::int64_t>::max()),
      Value(9223372036854775808.0),
      Value(std::uint64_t{9223372036854775809U}),
      Value(Decimal{"1e30"}),
      Value(infinity),
      Value(std::string()),
      Value(std::string("a")),
      Value(std::string("B")),
      Value(std::string("b ")),
      Value(std::string("[")),
      Value(std::string("\xC3\xA4")),
      Value(std::string("\xF0\x9F\x90\x98")),
      Value(Moment{"1999-12-31"}),
      Value(Moment{"2000-01-01 00:00:00"}),
      Value(Bytes{}),
      Value(Bytes{low}),
      Value(Bytes{low, low}),
      Value(Bytes{high}),
  };
  for (std::size_t i = 0; i < values.size(); ++i)
    for (std::size_t j = 0; j < values.size(); ++j)
      EXPECT_EQ(Compare(values[i], values[j]), i < j ? -1 : i > j ? 1 : 0) << i << " " << j;
}

TEST(SortOrder, EqualNumbersAreEqualWhateverTheirKind) {
  const std::vector<Value> ones = {Value(std::int64_t{1}),
                                   Value(std::uint64_t{1}),
                                   Value(1.0F),
                                   Value(1.0),
                                   Value(Decimal{"1"}),
                                   Value(Decimal{"+01.000"}),
                                   Value(Decimal{"10e-1"})};
  for (const Value& a : ones)
    for (const Value& b : ones) EXPECT_EQ(Compare(a, b), 0);
  EXPECT_EQ(Compare(Value(0.0), Value(-0.0)), 0);
  EXPECT_EQ(Compare(Value(Decimal{"-0.00"}), Value(std::int64_t{0})), 0);
  EXPECT_EQ(Compare(Value(Decimal{"NaN"}), Value(std::nan(""))), 0);
  EXPECT_EQ(Compare(Value(Decimal{"Infinity"}), Value(Decimal{"1e999"})), 1);
  EXPECT_EQ(Compare(Value(0.1), Value(Decimal{"0.1"})), 1) << "the double is a little more";
}

TEST(SortOrder, TextIsComparedWithoutAsciiCase) {
  EXPECT_EQ(Compare(Value(std::string("aBc")), Value(std::string("AbC"))), 0);
  EXPECT_EQ(Compare(Value(std::string("\xC3\xA4")), Value(std::string("\xC3\x84"))), 1)
      << "other letters by their code points";
}

TEST(SortOrder, RowsThatCompareEqualKeepTheirOrder) {
  const std::vector<std::vector<Value>> rows = {{Value(std::string("b"))},
                                                {Value(std::string("A"))},
                                                {Value(std::string("B"))},
                                                {Value(std::string("a"))},
                                                {Value()}};
  EXPECT_THAT(Sorted(rows, {{0, false}}), ElementsAre(4, 1, 3, 0, 2));
  EXPECT_THAT(Sorted(rows, {{0, true}}), ElementsAre(0, 2, 1, 3, 4));
  EXPECT_THAT(Sorted(rows, {}), ElementsAre(0, 1, 2, 3, 4));
}

TEST(SortOrder, LaterFieldsDecideBetweenEquals) {
  const auto number = [](std::int64_t n) { return Value(n); };
  const std::vector<std::vector<Value>> rows = {{number(2), number(1)},
                                                {number(1), number(1)},
                                                {number(2), number(2)},
                                                {number(1), number(2)}};
  EXPECT_THAT(Sorted(rows, {{0, false}, {1, true}}), ElementsAre(3, 1, 2, 0));
}

TEST(SortOrder, ManyMixedValuesAreSortedConsistently) {
  std::mt19937 random(7);
  std::vector<std::vector<Value>> rows;
  for (int i = 0; i < 3000; ++i) {
    const auto n = static_cast<std::int64_t>(random() % 50);
    const std::vector<Value> kinds = {Value(n), Value(static_cast<double>(n)),
                                      Value(Decimal{std::to_string(n) + ".0"}), Value(),
                                      Value(std::to_string(n))};
    rows.push_back({kinds[random() % kinds.size()]});
  }
  const auto order = Sorted(rows, {{0, false}});
  for (std::size_t i = 1; i < order.size(); ++i) {
    const auto& before = rows[static_cast<std::size_t>(order[i - 1])][0];
    const auto& after = rows[static_cast<std::size_t>(order[i])][0];
    ASSERT_LE(Compare(before, after), 0);
    ASSERT_TRUE(Compare(before, after) < 0 || order[i - 1] < order[i]);
  }
}

TEST(SortOrder, ReadsNamesAndWays) {
  EXPECT_THAT(Parsed(""), ElementsAre());
  EXPECT_THAT(Parsed("  "), ElementsAre());
  EXPECT_THAT(Parsed("a"), ElementsAre(P{0, false}));
  EXPECT_THAT(Parsed("a ASC, order desc"), ElementsAre(P{0, false}, P{3, true}));
  EXPECT_THAT(Parsed("[b c] DESC,[d,e],  a"), ElementsAre(P{1, true}, P{2, false}, P{0, false}));
  EXPECT_THAT(Parsed("b c"), ElementsAre(P{1, false}));
  EXPECT_THAT(Parsed("DESC DESC"), ElementsAre(P{4, true}));
  EXPECT_THAT(Parsed("[DESC]"), ElementsAre(P{4, false}));
}

TEST(SortOrder, RefusesUnknownNames) {
  for (const char* text : {"x", "a, x", "a,,b c", "[a", "a DESC DESC"}) {
    try {
      (void)ParseSort(text, FindField);
      ADD_FAILURE() << text;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::itemNotFound);
    }
  }
}

}  // namespace tessel::test
