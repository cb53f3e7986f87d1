#include <cstdint>
#include <limits>
#include <span>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/odbc/OdbcFixture.h"

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

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr const char* wideText = "h\u00e9 \U0001F600";
const std::string wideLiteral = std::string("'") + wideText + "'";

/// A database whose driver has every row before it shows one.
class OdbcDatabase : public Database {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override { return {.rowsBeforeLast = false}; }
  [[nodiscard]] std::string FailsAfter(std::int64_t /*goodRows*/) const override { return {}; }
};

class PostgresOdbc : public OdbcDatabase {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.keepsStatementsBeforeError = false, .rowsBeforeLast = false};
  }
  [[nodiscard]] std::string ConnectionString() const override { return PostgresString(); }
  [[nodiscard]] std::string BadConnectionString() const override {
    return PostgresString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return "select pg_sleep(60)"; }
  [[nodiscard]] std::string Series(std::int64_t rows) const override {
    return "select n, 'row ' || n as t, n / 2e0::double precision as d from generate_series(1, " +
           std::to_string(rows) + ") n";
  }
  [[nodiscard]] std::string LongText(std::size_t length) const override {
    return "repeat('x', " + std::to_string(length) + ")";
  }
  [[nodiscard]] std::string LongBinary(std::size_t length) const override {
    return "decode(repeat('00', " + std::to_string(length) + "), 'hex')";
  }
  [[nodiscard]] std::string BinaryType() const override { return "bytea"; }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string TableCatalog() const override { return "shop"; }
  [[nodiscard]] std::string TableSchema() const override { return "public"; }
};

std::vector<TypeCase> PostgresOdbc::TypeCases() const {
  return {
      {"boolean", "true", DataType::Boolean, true},
      {"boolean", "false", DataType::Boolean, false},
      {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
      {"integer", "2147483647", DataType::Integer, Whole(2147483647)},
      {"bigint", "-9223372036854775808", DataType::BigInt, Whole(least)},
      {"numeric(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
      {"numeric", "123456789012345678901234567890.123456789012345678901234567890",
       DataType::Numeric, Digits("123456789012345678901234567890.123456789012345678901234567890")},
      {"numeric", "'NaN'", DataType::Numeric, Digits("NaN")},
      {"real", "1.5e10", DataType::Single, 1.5e10F},
      {"double precision", "0.1", DataType::Double, 0.1},
      {"double precision", "'-infinity'", DataType::Double,
       -std::numeric_limits<double>::infinity()},
      {"char(5)", "'ab'", DataType::Char, Text("ab   ")},
      {"varchar(30)", wideLiteral, DataType::VarChar, Text(wideText)},
      {"text", "''", DataType::LongVarChar, Text("")},
      {"bytea", "'\\x00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
      {"bytea", "''", DataType::LongVarBinary, Octets("")},
      {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
      {"time", "'23:59:58.5'", DataType::DBTime, At("23:59:58.5")},
      {"timetz", "'10:00:00+02'", DataType::VarChar, Text("10:00:00+02")},
      {"timestamp", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"timestamp", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
       At("2024-01-02 03:04:05.12345")},
      {"timestamptz", "'2024-01-02 03:04:05+00'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"interval", "'1 day 2 hours'", DataType::VarChar, Text("1 day 02:00:00")},
      {"json", "'{\"a\": 1}'", DataType::VarChar, Text("{\"a\": 1}")},
      {"jsonb", "'[1,2]'", DataType::VarChar, Text("[1, 2]")},
      {"integer[]", "'{1,2}'", DataType::VarChar, Text("{1,2}")},
      {"uuid", "'123e4567-e89b-12d3-a456-426614174000'", DataType::Guid,
       Text("123E4567-E89B-12D3-A456-426614174000")},
      {"xml", "'<a/>'", DataType::LongVarChar, Text("<a/>")},
      {"bit(8)", "B'10100001'", DataType::VarChar, Text("10100001")},
      {"inet", "'10.0.0.1/8'", DataType::VarChar, Text("10.0.0.1/8")},
      {"money", "1234.5", DataType::VarChar, Text("$1,234.50")},
      {"oid", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
  };
}

class MariaDbOdbc : public OdbcDatabase {
 public:
  [[nodiscard]] std::string ConnectionString() const override { return MariaDbString(); }
  [[nodiscard]] std::string BadConnectionString() const override {
    return MariaDbString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return "select sleep(60)"; }
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
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string TableCatalog() const override { return "shop"; }
};

std::vector<TypeCase> MariaDbOdbc::TypeCases() const {
  return {
      {"boolean", "true", DataType::TinyInt, Whole(1)},
      {"tinyint unsigned", "255", DataType::UnsignedTinyInt, Whole(255)},
      {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
      {"smallint unsigned", "65535", DataType::UnsignedSmallInt, Whole(65535)},
      {"mediumint", "-8388608", DataType::Integer, Whole(-8388608)},
      {"int", "2147483647", DataType::Integer, Whole(2147483647)},
      {"int unsigned", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
      {"bigint", "-9223372036854775808", DataType::BigInt, Whole(least)},
      {"bigint unsigned", "18446744073709551615", DataType::UnsignedBigInt,
       std::numeric_limits<std::uint64_t>::max()},
      {"decimal(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
      {"float", "1.5", DataType::Single, 1.5F},
      {"double", "0.1", DataType::Double, 0.1},
      {"char(5)", "'ab'", DataType::Char, Text("ab")},
      {"varchar(30)", wideLiteral, DataType::VarChar, Text(wideText)},
      {"text", "''", DataType::LongVarChar, Text("")},
      {"json", "'{\"a\": 1}'", DataType::LongVarChar, Text("{\"a\": 1}")},
      {"enum('a','b')", "'b'", DataType::Char, Text("b")},
      {"binary(3)", "x'00ff10'", DataType::Binary, Octets({"\x00\xff\x10", 3})},
      {"varbinary(10)", "x'00ff10'", DataType::VarBinary, Octets({"\x00\xff\x10", 3})},
      {"blob", "x'00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
      {"blob", "''", DataType::LongVarBinary, Octets("")},
      {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
      {"time", "'23:59:58'", DataType::DBTime, At("23:59:58")},
      {"time", "'-838:59:59'", DataType::DBTime, At("-838:59:59")},
      {"datetime", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"datetime(6)", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
       At("2024-01-02 03:04:05.12345")},
      {"datetime(6)", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"datetime", "'0000-00-00 00:00:00'", DataType::DBTimeStamp, At("0000-00-00 00:00:00")},
      {"timestamp", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"year", "2024", DataType::UnsignedSmallInt, Whole(2024)},
      {"uuid", "'123e4567-e89b-12d3-a456-426614174000'", DataType::Char,
       Text("123e4567-e89b-12d3-a456-426614174000")},
      {"bit(1)", "b'1'", DataType::Boolean, true},
      {"bit(1)", "b'0'", DataType::Boolean, false},
      {"bit(8)", "b'10100001'", DataType::Binary, Octets("\xa1")},
  };
}

/// Takes an alias for the base column's name and runs one statement at a time.
class SqliteOdbc : public OdbcDatabase {
 public:
  [[nodiscard]] std::string WhyUnavailable() override {
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    return test.starts_with("TextOfComments") || test.starts_with("CommentsAndQuotes")
               ? "its driver takes a semicolon in a comment for the end of a statement"
               : "";
  }
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.severalStatements = false,
            .rowsBeforeLast = false,
            .baseColumns = false,
            .uniqueRows = false};
  }
  [[nodiscard]] std::string ConnectionString() const override { return SqliteString("shared.db"); }
  [[nodiscard]] std::string BadConnectionString() const override {
    return "Driver=SQLite3;Database=/nowhere/at/all.db";
  }
  [[nodiscard]] std::string SlowStatement() const override {
    return Numbers(4'000'000'000'000) + "select count(*) from c where n < 0";
  }
  [[nodiscard]] std::string Series(std::int64_t rows) const override {
    return Numbers(rows) + "select n, 'row ' || n as t, n / 2.0 as d from c";
  }
  [[nodiscard]] std::string LongText(std::size_t length) const override {
    const std::string size = std::to_string(length);
    return "substr(replace(hex(zeroblob(" + size + ")), '0', 'x'), 1, " + size + ")";
  }
  [[nodiscard]] std::string LongBinary(std::size_t length) const override {
    return "zeroblob(" + std::to_string(length) + ")";
  }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;

 private:
  static std::string Numbers(std::int64_t rows) {
    return "with recursive c(n) as (select 1 union all select n + 1 from c where n < " +
           std::to_string(rows) + ") ";
  }
};

std::vector<TypeCase> SqliteOdbc::TypeCases() const {
  return {
      {"boolean", "1", DataType::Boolean, true},
      {"integer", "-9223372036854775808", DataType::Integer, Whole(least)},
      {"bigint", "9223372036854775807", DataType::BigInt, Whole(most)},
      {"real", "0.1", DataType::Double, 0.1},
      {"varchar(30)", wideLiteral, DataType::VarChar, Text(wideText)},
      {"text", "''", DataType::LongVarChar, Text("")},
      {"blob", "x'00ff10'", DataType::Binary, Octets({"\x00\xff\x10", 3})},
      {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
      {"datetime", "'2024-01-02T03:04:05.500'", DataType::DBTimeStamp, At("2024-01-02 03:04:05.5")},
      {"datetime", "'soon'", DataType::DBTimeStamp, Text("soon")},
      {"integer", "'many'", DataType::Integer, Text("many")},
  };
}

const DatabaseParam sqlite{"Sqlite", [] { return std::make_shared<SqliteOdbc>(); }};
const DatabaseParam postgres{"PostgreSql", [] { return std::make_shared<PostgresOdbc>(); }};
const DatabaseParam mariaDb{"MariaDb", [] { return std::make_shared<MariaDbOdbc>(); }};

TESSEL_RUN_BODIES(Odbc, testing::Values(sqlite, postgres, mariaDb));

}  // namespace

}  // namespace tessel::test
