#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/rows/order/RowOrder.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using Rows = std::vector<std::int64_t>;

Rows Listed(const RowOrder& order, std::int64_t count) {
  Rows rows;
  for (std::int64_t position = 0; position < count; ++position) {
    rows.push_back(order.RowAt(position));
    EXPECT_EQ(order.PositionOf(rows.back()), position);
  }
  return rows;
}

}  // namespace

TEST(RowOrder, IsThatOfOpeningAtFirst) {
  const RowOrder order;
  EXPECT_THAT(Listed(order, 3), ElementsAre(0, 1, 2));
}

TEST(RowOrder, RowsGoAndComeInTheOrderOfOpening) {
  RowOrder order;
  order.Remove(1, 4);
  EXPECT_THAT(Listed(order, 3), ElementsAre(0, 2, 3));
  order.Append(4, 3);
  order.Append(9, 4);
  EXPECT_THAT(Listed(order, 5), ElementsAre(0, 2, 3, 4, 9));
  order.Remove(0, 5);
  order.Remove(3, 4);
  EXPECT_THAT(Listed(order, 3), ElementsAre(2, 3, 4));
  order.Append(10, 3);
  EXPECT_THAT(Listed(order, 4), ElementsAre(2, 3, 4, 10));
}

TEST(RowOrder, RowsGoAndComeInAnOrderOfTheirOwn) {
  RowOrder order;
  order.Set({2, 0, 1}, 3);
  EXPECT_THAT(Listed(order, 5), ElementsAre(2, 0, 1, 3, 4));
  order.Remove(0, 4);
  order.Append(6, 3);
  EXPECT_THAT(Listed(order, 4), ElementsAre(0, 1, 3, 6));
  order.Set({}, 0);
  EXPECT_THAT(Listed(order, 2), ElementsAre(0, 1));
}

/// Against a plain list.
TEST(RowOrder, IsRightAfterAnyNumberOfChanges) {
  std::mt19937 random(7);
  Rows expected = {5, 3, 1, 4, 2, 0};
  RowOrder order;
  order.Set(expected, 6);
  std::int64_t next = 6;
  for (int round = 0; round < 500; ++round) {
    const auto count = static_cast<std::int64_t>(expected.size());
    if (count == 0 || random() % 2 == 0) {
      next += static_cast<std::int64_t>(random() % 3);
      order.Append(next, count);
      expected.push_back(next++);
    } else {
      const auto position = static_cast<std::int64_t>(random() % expected.size());
      order.Remove(position, count);
      expected.erase(expected.begin() + position);
    }
    ASSERT_EQ(Listed(order, static_cast<std::int64_t>(expected.size())), expected);
  }
}

}  // namespace tessel::test
