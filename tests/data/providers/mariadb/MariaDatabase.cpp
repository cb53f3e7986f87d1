#include <cstdint>
#include <limits>
#include <span>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/native/NativeServers.h"

namespace tessel::test {

namespace {

Value Text(const char* text) { return std::string(text); }
Value Whole(std::int64_t number) { return number; }
Value Digits(const char* digits) { return Decimal{digits}; }
Value At(const char* text) { return Moment{text}; }
Value Octets(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return Bytes(bytes.begin(), bytes.end());
}

class MariaDatabase : public Database {
 public:
  [[nodiscard]] std::string ConnectionString() const override {
    return MariaNative().ConnectionString();
  }
  [[nodiscard]] std::string BadConnectionString() const override {
    return ConnectionString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return MariaNative().sleep; }
  [[nodiscard]] std::string Series(std::int64_t rows) const override {
    return "select seq as n, concat('row ', seq) as t, seq / 2e0 as d from seq_1_to_" +
           std::to_string(rows);
  }
  [[nodiscard]] std::string LongText(std::size_t length) const override {
    return "repeat('x', " + std::to_string(length) + ")";
  }
  [[nodiscard]] std::string LongBinary(std::size_t length) const override {
    return "cast(repeat(x'00', " + std::to_string(length) + ") as binary)";
  }
  /// A query of more than one row where one was to be.
  [[nodiscard]] std::string FailsAfter(std::int64_t goodRows) const override {
    return "select seq as n, if(seq <= " + std::to_string(goodRows) +
           ", 0, (select seq from seq_1_to_2)) as q from seq_1_to_" + std::to_string(2 * goodRows);
  }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string CountedKeyType() const override {
    return "integer not null auto_increment primary key";
  }
  [[nodiscard]] std::string BinaryType() const override { return "longblob"; }
  [[nodiscard]] std::string LongTextType() const override { return "longtext"; }
  void KillServer() override { MariaNative().server().Kill(); }
  void RestartServer() override { MariaNative().server().Restart(); }
  [[nodiscard]] std::string TableCatalog() const override { return "shop"; }
  [[nodiscard]] std::string OtherCatalog() const override { return "elsewhere"; }
  [[nodiscard]] std::vector<std::string> OtherCatalogSetup() const override {
    return {"create database if not exists elsewhere character set utf8mb4"};
  }
  [[nodiscard]] std::string UseStatement(const std::string& catalog) const override {
    return "use " + catalog;
  }
};

constexpr const char* digits38 = "-99999999999999999999999999999999999999";

const std::vector<TypeCase> numbers = {
    {"boolean", "true", DataType::TinyInt, Whole(1)},
    {"tinyint", "-128", DataType::TinyInt, Whole(-128)},
    {"tinyint unsigned", "255", DataType::UnsignedTinyInt, Whole(255)},
    {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
    {"smallint unsigned", "65535", DataType::UnsignedSmallInt, Whole(65535)},
    {"mediumint", "-8388608", DataType::Integer, Whole(-8388608)},
    {"mediumint unsigned", "16777215", DataType::UnsignedInt, Whole(16777215)},
    {"int", "-2147483648", DataType::Integer, Whole(-2147483648)},
    {"int unsigned", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
    {"int(6) zerofill", "42", DataType::UnsignedInt, Whole(42)},
    {"bigint", "-9223372036854775808", DataType::BigInt, Whole(INT64_MIN)},
    {"bigint", "9223372036854775807", DataType::BigInt, Whole(INT64_MAX)},
    {"bigint unsigned", "18446744073709551615", DataType::UnsignedBigInt,
     std::numeric_limits<std::uint64_t>::max()},
    {"decimal(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
    {"decimal(65,0)", "99999999999999999999999999999999999999999999999999999999999999999",
     DataType::Numeric,
     Digits("99999999999999999999999999999999999999999999999999999999999999999")},
    {"decimal(38,0)", digits38, DataType::Numeric, Digits(digits38)},
    {"decimal(65,38)", "0.00000000000000000000000000000000000001", DataType::Numeric,
     Digits("0.00000000000000000000000000000000000001")},
    {"float", "0.1", DataType::Single, 0.1F},
    {"float", "1.5e30", DataType::Single, 1.5e30F},
    {"double", "0.1", DataType::Double, 0.1},
    {"double", "-1.7976931348623157e308", DataType::Double, std::numeric_limits<double>::lowest()},
    {"double", "2.2250738585072014e-308", DataType::Double, std::numeric_limits<double>::min()},
    {"float", "-3.40282e38", DataType::Single, -3.40282e38F},
    {"double", "0", DataType::Double, 0.0},
    {"bit(64)", "b'1111111111111111111111111111111111111111111111111111111111111111'",
     DataType::Binary, Octets("\xff\xff\xff\xff\xff\xff\xff\xff")},
    {"bit(1)", "b'1'", DataType::Boolean, true},
    {"bit(1)", "b'0'", DataType::Boolean, false},
    {"bit(8)", "b'10100001'", DataType::Binary, Octets("\xa1")},
    {"bit(12)", "b'100000000001'", DataType::Binary, Octets("\x08\x01")},
};

const std::vector<TypeCase> moments = {
    {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
    {"date", "'0000-00-00'", DataType::DBDate, At("0000-00-00")},
    {"date", "'2024-00-00'", DataType::DBDate, At("2024-00-00")},
    {"date", "'9999-12-31'", DataType::DBDate, At("9999-12-31")},
    {"time", "'23:59:58'", DataType::DBTime, At("23:59:58")},
    {"time", "'-838:59:59'", DataType::DBTime, At("-838:59:59")},
    {"time(6)", "'838:59:59.999999'", DataType::DBTime, At("838:59:59.999999")},
    {"time(3)", "'00:00:00.500'", DataType::DBTime, At("00:00:00.5")},
    {"datetime", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
    {"datetime(6)", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
     At("2024-01-02 03:04:05.12345")},
    {"datetime(6)", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
    {"datetime", "'0000-00-00 00:00:00'", DataType::DBTimeStamp, At("0000-00-00 00:00:00")},
    {"timestamp null", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
    {"date", "'1000-01-01'", DataType::DBDate, At("1000-01-01")},
    {"time(6)", "'-838:59:59.999999'", DataType::DBTime, At("-838:59:59.999999")},
    {"datetime(6)", "'9999-12-31 23:59:59.999999'", DataType::DBTimeStamp,
     At("9999-12-31 23:59:59.999999")},
    {"timestamp null", "'1970-01-01 00:00:01'", DataType::DBTimeStamp, At("1970-01-01 00:00:01")},
    {"timestamp(6) null", "'2038-01-19 03:14:07.999999'", DataType::DBTimeStamp,
     At("2038-01-19 03:14:07.999999")},
    {"year", "1901", DataType::UnsignedSmallInt, Whole(1901)},
    {"year", "2155", DataType::UnsignedSmallInt, Whole(2155)},
    {"year", "2024", DataType::UnsignedSmallInt, Whole(2024)},
    {"year", "0", DataType::UnsignedSmallInt, Whole(0)},
};

const std::vector<TypeCase> others = {
    {"char(5)", "'ab'", DataType::WChar, Text("ab")},
    {"varchar(30)", "'h\u00e9 \U0001F600'", DataType::VarWChar, Text("h\u00e9 \U0001F600")},
    {"varchar(30) character set latin1", "'h\u00e9'", DataType::VarWChar, Text("h\u00e9")},
    {"varchar(30)", "''", DataType::VarWChar, Text("")},
    {"varchar(30)", "'a\\0b'", DataType::VarWChar, Value(std::string("a\0b", 3))},
    {"varchar(30) collate utf8mb4_bin", "'A'", DataType::VarWChar, Text("A")},
    {"tinytext", "'a'", DataType::LongVarWChar, Text("a")},
    {"text", "''", DataType::LongVarWChar, Text("")},
    {"longtext", "'b'", DataType::LongVarWChar, Text("b")},
    {"json", "'{\"a\": 1}'", DataType::LongVarWChar, Text("{\"a\": 1}")},
    {"enum('a','b')", "'b'", DataType::WChar, Text("b")},
    {"set('a','b')", "'b,a'", DataType::WChar, Text("a,b")},
    {"uuid", "'123E4567-e89b-12d3-a456-426614174000'", DataType::Guid,
     Text("123e4567-e89b-12d3-a456-426614174000")},
    {"inet6", "'::1'", DataType::WChar, Text("::1")},
    {"mediumtext", "'\U0001F418'", DataType::LongVarWChar, Text("\U0001F418")},
    {"varchar(30)", "' a '", DataType::VarWChar, Text(" a ")},
    {"set('a','b')", "''", DataType::WChar, Text("")},
    {"json", "'[]'", DataType::LongVarWChar, Text("[]")},
    {"inet4", "'10.0.0.1'", DataType::WChar, Text("10.0.0.1")},
    {"point", "point(1, 2.5)", DataType::LongVarBinary,
     Octets({"\0\0\0\0\x01\x01\0\0\0\0\0\0\0\0\0\xf0\x3f\0\0\0\0\0\0\x04\x40", 25}), "",
     "the server cannot tell whether two places are the same"},
    {"tinyblob", "x'ff'", DataType::LongVarBinary, Octets("\xff")},
    {"mediumblob", "x'00'", DataType::LongVarBinary, Octets({"\0", 1})},
    {"varbinary(10)", "''", DataType::VarBinary, Octets("")},
    {"binary(3)", "x'00ff10'", DataType::Binary, Octets({"\x00\xff\x10", 3})},
    {"varbinary(10)", "x'00ff10'", DataType::VarBinary, Octets({"\x00\xff\x10", 3})},
    {"blob", "x'00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
    {"blob", "''", DataType::LongVarBinary, Octets("")},
    {"longblob", "x'01'", DataType::LongVarBinary, Octets("\x01")},
};

std::vector<TypeCase> MariaDatabase::TypeCases() const {
  std::vector<TypeCase> all = numbers;
  all.insert(all.end(), moments.begin(), moments.end());
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

const DatabaseParam mariaDb{"MariaDb", [] { return std::make_shared<MariaDatabase>(); }};

TESSEL_RUN_BODIES(NativeMariaDb, testing::Values(mariaDb));
TESSEL_RUN_WRITE_BODIES(NativeMariaDb, testing::Values(mariaDb));

}  // namespace

}  // namespace tessel::test
