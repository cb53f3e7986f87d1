#include "contract/text/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessel {
namespace {

std::string ShortestForm(double number) {
  char text[40];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string Appended(double number) {
  std::string text = ">";
  AppendNumber(number, text);
  return text.substr(1);
}

TEST(AppendNumberTest, AmountsTakeTheirShortestForm) {
  EXPECT_EQ(Appended(19.99), "19.99");
  EXPECT_EQ(Appended(-0.05), "-0.05");
  EXPECT_EQ(Appended(2.5), "2.5");
  EXPECT_EQ(Appended(99999), "99999");
  EXPECT_EQ(Appended(100000), "1e+05");
  EXPECT_EQ(Appended(-0.0), "-0");
}

TEST(AppendNumberTest, EveryAmountIsWrittenAsAnyOtherNumberIs) {
  for (std::int64_t hundredths = -1'500'000; hundredths <= 20'500'000; hundredths += 7)
    ASSERT_EQ(Appended(static_cast<double>(hundredths) / 100),
              ShortestForm(static_cast<double>(hundredths) / 100));
  std::mt19937_64 random(1);
  for (int i = 0; i < 300'000; ++i) {
    const double amount = std::floor(std::exp2(static_cast<double>(random() % 5300) / 100)) / 100;
    for (const double near : {amount, -amount, std::nextafter(amount, 0), amount / 10,
                              std::nextafter(amount, std::numeric_limits<double>::max())})
      ASSERT_EQ(Appended(near), ShortestForm(near));
  }
}

TEST(AppendNumberTest, NumbersThatAreNoAmounts) {
  using Limits = std::numeric_limits<double>;
  for (const double number :
       {0.0, 0.001, 0.125, 1e13, 1e15 + 0.5, 1e300, Limits::min(), Limits::denorm_min(),
        Limits::max(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()})
    EXPECT_EQ(Appended(number), ShortestForm(number));
}

TEST(ByteToHexTest, WritesTwoUpperCaseDigits) {
  EXPECT_EQ(ByteToHex(0), "00");
  EXPECT_EQ(ByteToHex(10), "0A");
  EXPECT_EQ(ByteToHex(255), "FF");
}

}  // namespace
}  // namespace tessel
