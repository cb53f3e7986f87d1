#include "logic/results/cells/ExactSum.h"

#include <limits>

#include <gtest/gtest.h>

#include "contract/base/Value.h"
#include "logic/results/cells/CellHits.h"

namespace tessel {
namespace {

std::string Sum(const std::vector<const char*>& numbers) {
  ExactSum sum;
  for (const char* number : numbers) EXPECT_TRUE(sum.Add(number)) << number;
  return sum.Text();
}

TEST(ExactSum, AddsDecimalsToTheLastDigit) {
  EXPECT_EQ(Sum({}), "0");
  EXPECT_EQ(Sum({"0.1", "0.2"}), "0.3");
  EXPECT_EQ(Sum({"12345678901234567890.5", "0.000000000000000000001"}),
            "12345678901234567890.500000000000000000001");
  EXPECT_EQ(Sum({"999999999", "1"}), "1000000000");
  EXPECT_EQ(Sum({"1.50", "+2.50"}), "4");
  EXPECT_EQ(Sum({"1e3", "1E-3", "2.5e+2"}), "1250.001");
}

TEST(ExactSum, GoesBelowZeroAndBack) {
  EXPECT_EQ(Sum({"-1"}), "-1");
  EXPECT_EQ(Sum({"-1000000000"}), "-1000000000");
  EXPECT_EQ(Sum({"1000000000", "-1000000001"}), "-1");
  EXPECT_EQ(Sum({"-0.5", "0.25"}), "-0.25");
  EXPECT_EQ(Sum({"-5", "5"}), "0");
  EXPECT_EQ(Sum({"-999999999.999999999", "-0.000000001"}), "-1000000000");
  EXPECT_EQ(Sum({"1000000000000000000", "-1"}), "999999999999999999");
}

TEST(ExactSum, WholeNumbersDoNotOverflow) {
  ExactSum sum;
  for (int i = 0; i < 4; ++i) sum.Add(std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(sum.Text(), "36893488147419103228");
  for (int i = 0; i < 8; ++i) sum.Add(std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(sum.Text(), "-36893488147419103236");
}

TEST(ExactSum, WhatIsNoNumberChangesNothing) {
  ExactSum sum;
  sum.Add(7);
  for (const char* text : {"nan", "inf", "", "-", ".", "1x", "1e", "1e99999999", "--1"})
    EXPECT_FALSE(sum.Add(text)) << text;
  EXPECT_EQ(sum.Text(), "7");
}

// --- cells that were found -----------------------------------------------------------------------

TEST(CellHits, AreGoneThroughBothWaysAndCounted) {
  CellHits hits(200);
  for (const std::size_t cell : {3U, 63U, 64U, 130U, 199U, 130U}) hits.Add(cell);
  hits.Add(200);
  EXPECT_EQ(hits.Count(), 5);
  EXPECT_TRUE(hits.Has(64));
  EXPECT_FALSE(hits.Has(65));
  EXPECT_FALSE(hits.Has(200));
  EXPECT_EQ(hits.FirstFrom(0), 3U);
  EXPECT_EQ(hits.FirstFrom(64), 64U);
  EXPECT_EQ(hits.FirstFrom(131), 199U);
  EXPECT_EQ(hits.FirstFrom(200), std::nullopt);
  EXPECT_EQ(hits.LastBefore(1000), 199U);
  EXPECT_EQ(hits.LastBefore(199), 130U);
  EXPECT_EQ(hits.LastBefore(64), 63U);
  EXPECT_EQ(hits.LastBefore(3), std::nullopt);
  EXPECT_EQ(hits.CountBefore(0), 0);
  EXPECT_EQ(hits.CountBefore(64), 2);
  EXPECT_EQ(hits.CountBefore(200), 5);
}

}  // namespace
}  // namespace tessel
