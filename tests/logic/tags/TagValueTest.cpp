#include "logic/tags/TagValue.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(FormatTagValueTest, NullIsNeverQuoted) {
  EXPECT_EQ(FormatTagValue(ValueView(), true), "NULL");
  EXPECT_EQ(FormatTagValue(ValueView(), false), "NULL");
}

TEST(FormatTagValueTest, QuotesTextsAndNumbersWhenAsked) {
  EXPECT_EQ(FormatTagValue(std::string_view("O'Hara"), true), "'O''Hara'");
  EXPECT_EQ(FormatTagValue(std::string_view("O'Hara"), false), "O'Hara");
  EXPECT_EQ(FormatTagValue(std::int64_t{7}, true), "'7'");
}

TEST(FormatTagValueTest, WritesBooleansAsDigits) {
  EXPECT_EQ(FormatTagValue(true, false), "1");
  EXPECT_EQ(FormatTagValue(false, true), "'0'");
}

}  // namespace
}  // namespace tessel
