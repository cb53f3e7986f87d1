#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "contract/base/Value.h"

namespace tessel::test {

namespace {

constexpr DataType numberTypes[] = {
    DataType::TinyInt,     DataType::SmallInt,        DataType::Integer,
    DataType::BigInt,      DataType::UnsignedTinyInt, DataType::UnsignedSmallInt,
    DataType::UnsignedInt, DataType::UnsignedBigInt,  DataType::Single,
    DataType::Double,      DataType::Currency,        DataType::Decimal,
    DataType::Numeric,
};

constexpr DataType textTypes[] = {DataType::Char,        DataType::WChar,
                                  DataType::VarChar,     DataType::VarWChar,
                                  DataType::LongVarChar, DataType::LongVarWChar};

struct Case {
  DataType type;
  const char* text;
  Value value;
};

Value Whole(std::int64_t number) { return number; }
Value Digits(const char* digits) { return Decimal{digits}; }
Value At(const char* text) { return Moment{text}; }

}  // namespace

TEST(ParseValue, EmptyTextIsNullWhereItIsNoText) {
  for (const DataType type : textTypes) EXPECT_EQ(ParseValue(type, ""), Value(std::string()));
  for (const DataType type : numberTypes) EXPECT_EQ(ParseValue(type, ""), Value());
  for (const DataType type : {DataType::Boolean, DataType::DBDate, DataType::DBTime,
                              DataType::DBTimeStamp, DataType::Date, DataType::Guid,
                              DataType::Binary, DataType::VarBinary, DataType::LongVarBinary})
    EXPECT_EQ(ParseValue(type, ""), Value());
}

TEST(ParseValue, TextIsKeptAsItIs) {
  for (const DataType type : textTypes)
    for (const char* text : {" a ", "0x00", "{1,2}", "\xF0\x9F\x90\x98", "'"})
      EXPECT_EQ(ParseValue(type, text), Value(std::string(text)));
}

/// What ToText makes of each value is read as that value.
TEST(ParseValue, IsTheInverseOfToText) {
  const std::vector<std::pair<DataType, Value>> values = {
      {DataType::Boolean, true},
      {DataType::Boolean, false},
      {DataType::TinyInt, Whole(-128)},
      {DataType::UnsignedTinyInt, Whole(255)},
      {DataType::SmallInt, Whole(-32768)},
      {DataType::UnsignedSmallInt, Whole(65535)},
      {DataType::Integer, Whole(std::numeric_limits<std::int32_t>::min())},
      {DataType::UnsignedInt, Whole(std::numeric_limits<std::uint32_t>::max())},
      {DataType::BigInt, Whole(std::numeric_limits<std::int64_t>::min())},
      {DataType::BigInt, Whole(std::numeric_limits<std::int64_t>::max())},
      {DataType::UnsignedBigInt, std::numeric_limits<std::uint64_t>::max()},
      {DataType::Single, 0.1F},
      {DataType::Single, std::numeric_limits<float>::denorm_min()},
      {DataType::Single, -std::numeric_limits<float>::infinity()},
      {DataType::Double, 1e300},
      {DataType::Double, std::numeric_limits<double>::denorm_min()},
      {DataType::Double, -0.0},
      {DataType::Double, std::numeric_limits<double>::infinity()},
      {DataType::Numeric, Digits("-99999999999999999999999999999999999999")},
      {DataType::Numeric, Digits("NaN")},
      {DataType::Numeric, Digits("-Infinity")},
      {DataType::DBDate, At("0044-03-15 BC")},
      {DataType::DBDate, At("0000-00-00")},
      {DataType::DBDate, At("5874897-12-31")},
      {DataType::DBDate, At("infinity")},
      {DataType::DBTime, At("-838:59:59.999999")},
      {DataType::DBTime, At("24:00:00")},
      {DataType::DBTime, At("10:00:00+02")},
      {DataType::DBTimeStamp, At("2024-01-02 03:04:05.12345")},
      {DataType::DBTimeStamp, At("2024-01-02 03:04:05+05:30")},
      {DataType::DBTimeStamp, At("0044-03-15 10:00:00+00 BC")},
      {DataType::DBTimeStamp, At("-infinity")},
      {DataType::Guid, std::string("123e4567-e89b-12d3-a456-426614174000")},
      {DataType::LongVarWChar, std::string("{\"a\": 1}")},
  };
  for (const auto& [type, value] : values) {
    const std::string text = ToText(ToView(value));
    const std::optional<Value> parsed = ParseValue(type, text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(*parsed, value) << text;
  }
}

TEST(ParseValue, ReadsWhatAPersonTypes) {
  const std::vector<Case> cases = {
      {DataType::Boolean, "YES", true},
      {DataType::Boolean, "t", true},
      {DataType::Boolean, "1", true},
      {DataType::Boolean, "no", false},
      {DataType::Boolean, "F", false},
      {DataType::Boolean, "0", false},
      {DataType::Boolean, "tRUE", true},
      {DataType::Integer, "007", Whole(7)},
      {DataType::Double, "1", 1.0},
      {DataType::Double, "-1.5E3", -1500.0},
      {DataType::Numeric, "+1.50", Digits("+1.50")},
      {DataType::Currency, ".5", Digits(".5")},
      {DataType::Numeric, "1e-7", Digits("1e-7")},
      {DataType::DBTime, "10:30", At("10:30")},
      {DataType::DBTimeStamp, "2024-01-02", At("2024-01-02")},
      {DataType::DBTimeStamp, "2024-01-02T03:04:05Z", At("2024-01-02T03:04:05Z")},
      {DataType::Binary, "0x", Bytes()},
      {DataType::VarBinary, "0X00fF", Bytes{std::byte{0}, std::byte{255}}},
  };
  for (const Case& one : cases) {
    const std::optional<Value> parsed = ParseValue(one.type, one.text);
    ASSERT_TRUE(parsed) << one.text;
    EXPECT_EQ(*parsed, one.value) << one.text;
  }
}

TEST(ParseValue, RefusesWhatIsNone) {
  const std::vector<std::pair<DataType, std::vector<const char*>>> cases = {
      {DataType::Boolean, {"2", "y", "on", "truee", " t"}},
      {DataType::TinyInt, {"128", "-129"}},
      {DataType::UnsignedTinyInt, {"256", "-1"}},
      {DataType::SmallInt, {"32768"}},
      {DataType::Integer, {"2147483648", "1.0", "1e3", "+1", " 1", "1 ", "0x1", "1,000", "one"}},
      {DataType::UnsignedInt, {"4294967296", "-1"}},
      {DataType::BigInt, {"9223372036854775808"}},
      {DataType::UnsignedBigInt, {"18446744073709551616", "-1"}},
      {DataType::Single, {"1e39", "x", "1,5", "nan(1)"}},
      {DataType::Double, {"1e400", "1.5 ", "--1", "0x10"}},
      {DataType::Numeric, {".", "-", "1.2.3", "1e", "1e+", "$5", "1,5", "infinite"}},
      {DataType::DBDate, {"2024-1-2", "24-01-02", "2024/01/02", "2024-01-02x", "soon", "10:00"}},
      {DataType::DBTime, {"1:00", "10", "10:0", "10:00:00.", "2024-01-02", "10:00 PM"}},
      {DataType::DBTimeStamp, {"2024-01-02 ", "2024-01-02 25", "2024-01-02 -10:00", "10:00:00"}},
      {DataType::Guid, {"123e4567", "123e4567-e89b-12d3-a456-42661417400g"}},
      {DataType::Binary, {"00ff", "0x0", "0xgg", "0x 00"}},
  };
  for (const auto& [type, texts] : cases)
    for (const char* text : texts) EXPECT_FALSE(ParseValue(type, text)) << text;
}

}  // namespace tessel::test
