// When two values are the same, and that their hashes are the same then.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/combined/matching/SameValue.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinite = std::numeric_limits<double>::infinity();

Value Large(std::uint64_t number) { return number; }
Value Real(double number) { return number; }
Value Single(float number) { return number; }
Value Exact(std::string digits) { return Decimal{std::move(digits)}; }

std::string Told(const std::vector<Value>& values) {
  std::string text;
  for (const Value& value : values)
    text += std::to_string(value.index()) + ":" + ToText(ToView(value)) + " ";
  return text;
}

/// All of `values` are the same, each of every other and of itself.
void ExpectSame(const std::vector<Value>& values, ValueSameness sameness = {}) {
  for (const Value& a : values)
    for (const Value& b : values) {
      EXPECT_TRUE(sameness.Same(ToView(a), ToView(b))) << Told({a, b});
      EXPECT_EQ(sameness.Hash(ToView(a)), sameness.Hash(ToView(b))) << Told({a, b});
    }
}

/// No two of `values` are the same.
void ExpectDifferent(const std::vector<Value>& values, ValueSameness sameness = {}) {
  for (std::size_t a = 0; a < values.size(); ++a)
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_FALSE(sameness.Same(ToView(values[a]), ToView(values[b])))
          << Told({values[a], values[b]});
      EXPECT_FALSE(sameness.Same(ToView(values[b]), ToView(values[a])))
          << Told({values[a], values[b]});
    }
}

}  // namespace

TEST(SameValue, NumbersAreWhatTheyAreWorth) {
  ExpectSame({Whole(1), Large(1), Single(1), Real(1), Digits("1"), Digits("1.00"), Digits("+1"),
              Digits("0001"), Digits("10e-1"), Digits("0.1E+1")});
  ExpectSame({Real(1.5), Single(1.5F), Digits("1.5"), Digits("1.50"), Digits("15e-1")});
  ExpectSame({Whole(-7), Real(-7), Digits("-7.000")});
  ExpectDifferent({Whole(1), Whole(-1), Real(1.5), Digits("1.51"), Digits("-1.5"), Whole(0)});
}

TEST(SameValue, NoughtHasNoSign) {
  ExpectSame({Whole(0), Large(0), Real(0.0), Real(-0.0), Single(-0.0F), Digits("0"),
              Digits("-0.00"), Digits("0e5"), Digits(".0")});
}

TEST(SameValue, WhatIsNoNumberIsTheSameAsItself) {
  ExpectSame({Real(notANumber), Real(-notANumber), Single(std::nanf("1")), Digits("NaN")});
  ExpectSame({Real(infinite), Single(std::numeric_limits<float>::infinity()), Digits("Infinity")});
  ExpectDifferent({Real(notANumber), Real(infinite), Real(-infinite), Whole(0), Value()});
}

TEST(SameValue, AFloatingNumberIsWorthWhatIsShownOfIt) {
  ExpectSame({Real(0.1), Single(0.1F), Digits("0.1"), Digits("0.10")});
  ExpectSame({Real(19.99), Digits("19.9900")});
  ExpectSame({Real(1e300), Exact("1" + std::string(300, '0') + ".0")});
  ExpectSame({Real(5e-324), Digits("5e-324")});
  ExpectDifferent({Real(0.1), Real(0.1 + 0.2 - 0.2), Real(static_cast<double>(0.1F)),
                   Digits("0.1000000000000000055511151231257827021181583404541015625"),
                   Digits("0.10000000000000000001")});
}

TEST(SameValue, WholeNumbersOf64BitsAreWorthExactlyThemselves) {
  const std::int64_t largest = std::numeric_limits<std::int64_t>::max();
  ExpectSame({Large(1ULL << 63U), Real(9223372036854775808.0), Digits("9223372036854775808")});
  ExpectSame({Whole(std::numeric_limits<std::int64_t>::min()), Real(-9223372036854775808.0),
              Digits("-9223372036854775808.0")});
  ExpectSame({Large(~0ULL), Digits("18446744073709551615")});
  ExpectDifferent({Whole(largest), Whole(largest - 1), Large(1ULL << 63U), Large((1ULL << 63U) + 1),
                   Large(~0ULL), Whole(-1), Digits("18446744073709551616")});
  ExpectDifferent({Whole((1LL << 53) + 1), Real(9007199254740992.0)});
}

TEST(SameValue, DecimalsAreExactHoweverManyDigitsTheyHave) {
  const std::string digits(1000, '7');
  ExpectSame({Exact(digits + ".5"), Exact("0" + digits + ".500")});
  ExpectDifferent({Exact(digits), Exact(digits + ".1"), Exact("-" + digits), Exact(digits + "8"),
                   Digits("1e400"), Digits("2e400"), Digits("1e-400"), Digits("2e-400")});
  ExpectSame({Digits("1e400"), Exact("1" + std::string(400, '0'))});
}

TEST(SameValue, BooleansAreNumbersIfAskedFor) {
  ExpectDifferent({Value(true), Value(false), Whole(1), Whole(0), Text("True")});
  const ValueSameness numbers{.booleansAreNumbers = true};
  ExpectSame({Value(true), Whole(1), Real(1), Digits("1.0"), Large(1)}, numbers);
  ExpectSame({Value(false), Whole(0), Real(-0.0)}, numbers);
  ExpectDifferent({Value(true), Value(false), Whole(2), Text("1"), Value()}, numbers);
}

TEST(SameValue, MomentsAreWhatTheyName) {
  ExpectSame({At("2024-02-29 10:00:00"), At("2024-02-29T10:00:00"), At("2024-02-29 10:00:00.000"),
              At("2024-02-29 10:00")});
  ExpectSame({At("2024-02-29 10:00:00.5"), At("2024-02-29 10:00:00.500000")});
  ExpectSame({At("2024-02-29"), At("2024-02-29 00:00:00")});
  ExpectSame({At("10:00:00.50"), At("10:00:00.5")});
  ExpectSame({At("0044-03-15 BC"), At("0044-03-15 00:00:00 BC")});
  ExpectSame({At("infinity"), At("infinity")});
  ExpectDifferent({At("2024-02-29"), At("2024-03-01"), At("2024-02-29 00:00:00.1"), At("00:00:00"),
                   At("-00:00:00.1"), At("00:00:00.1"), At("-838:59:59"), At("838:59:59"),
                   At("0044-03-15"), At("0044-03-15 BC"), At("12024-02-29"), At("infinity"),
                   At("-infinity"), At("24:00:00")});
}

TEST(SameValue, MomentsWithAZoneAreTheirInstant) {
  ExpectSame({At("2024-01-01 01:30:00+02"), At("2023-12-31 23:30:00Z"),
              At("2023-12-31 23:30:00+00:00"), At("2023-12-31T18:00:00-05:30"),
              At("2023-12-31 23:30:00.000000 +00:00"), At("2023-12-31 18:00:00.0-0530")});
  ExpectSame({At("12:00:00+02"), At("10:00:00Z"), At("11:23:45+01:23:45")});
  ExpectSame({At("0001-12-31 23:00:00+00 BC"), At("0001-01-01 00:00:00+01")});
  ExpectDifferent({At("2024-01-01 10:00:00"), At("2024-01-01 10:00:00+00"),
                   At("2024-01-01 10:00:00+01"), At("10:00:00"), At("10:00:00+00")});
}

TEST(SameValue, TextIsItsCodePointsAndBytesAreBytes) {
  ExpectDifferent({Text(""), Value(), Octets(""), Text("a"), Text("A"), Text("a "), Octets("a"),
                   Text("\xC3\xA9"), Text("e\xCC\x81"), Text(std::string_view("a\0", 2)), Text("1"),
                   Whole(1), Digits("2"), Text("2024-01-01"), At("2024-01-01")});
  ExpectSame({Text(std::string(1000, 'x')), Text(std::string(1000, 'x'))});
}

}  // namespace tessel::test
