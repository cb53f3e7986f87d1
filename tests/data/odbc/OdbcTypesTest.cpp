#include <cmath>
#include <limits>
#include <span>

#include "tests/data/odbc/OdbcFixture.h"

namespace tessel::test {

namespace {

/// A type of a server, a value as SQL and what arrives.
struct Case {
  const char* declaration;
  const char* literal;
  DataType type;
  Value value;
};

Value Text(const char* text) { return std::string(text); }
Value Digits(const char* digits) { return Decimal{digits}; }
Value At(const char* text) { return Moment{text}; }
Value Octets(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return Bytes(bytes.begin(), bytes.end());
}

class OdbcTypes : public OdbcTest {
 protected:
  /// Also checks a null of the same type, which must not depend on the value beside it.
  void Check(Connection& connection, const Case& type) {
    SCOPED_TRACE(std::string(type.declaration) + " " + type.literal);
    Run(connection, "drop table if exists type_case");
    Run(connection, std::string("create table type_case (v ") + type.declaration + " null)");
    Run(connection, std::string("insert into type_case values (") + type.literal + "), (null)");
    const auto recordset = Run(connection, "select v from type_case order by v is null");
    EXPECT_EQ(recordset->Fields()[0].type, type.type);
    const Rows rows = AllRows(*recordset);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][0].index(), type.value.index());
    EXPECT_EQ(ToText(ToView(rows[0][0])), ToText(ToView(type.value)));
    EXPECT_EQ(rows[0][0], type.value);
    EXPECT_EQ(rows[1][0], Value());
    Run(connection, "drop table type_case");
  }
};

const Case postgresCases[] = {
    {"boolean", "true", DataType::Boolean, true},
    {"boolean", "false", DataType::Boolean, false},
    {"smallint", "-32768", DataType::SmallInt, std::int64_t{-32768}},
    {"integer", "2147483647", DataType::Integer, std::int64_t{2147483647}},
    {"bigint", "-9223372036854775808", DataType::BigInt, std::numeric_limits<std::int64_t>::min()},
    {"numeric(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
    {"numeric", "123456789012345678901234567890.123456789012345678901234567890", DataType::Numeric,
     Digits("123456789012345678901234567890.123456789012345678901234567890")},
    {"numeric", "'NaN'", DataType::Numeric, Digits("NaN")},
    {"real", "1.5e10", DataType::Single, 1.5e10F},
    {"double precision", "0.1", DataType::Double, 0.1},
    {"double precision", "'-infinity'", DataType::Double, -std::numeric_limits<double>::infinity()},
    {"char(5)", "'ab'", DataType::Char, Text("ab   ")},
    {"varchar(30)", "'h\u00e9 \U0001F600'", DataType::VarChar, Text("h\u00e9 \U0001F600")},
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
    {"oid", "4294967295", DataType::UnsignedInt, std::int64_t{4294967295}},
};

const Case mariaDbCases[] = {
    {"boolean", "true", DataType::TinyInt, std::int64_t{1}},
    {"tinyint unsigned", "255", DataType::UnsignedTinyInt, std::int64_t{255}},
    {"smallint", "-32768", DataType::SmallInt, std::int64_t{-32768}},
    {"smallint unsigned", "65535", DataType::UnsignedSmallInt, std::int64_t{65535}},
    {"mediumint", "-8388608", DataType::Integer, std::int64_t{-8388608}},
    {"int", "2147483647", DataType::Integer, std::int64_t{2147483647}},
    {"int unsigned", "4294967295", DataType::UnsignedInt, std::int64_t{4294967295}},
    {"bigint", "-9223372036854775808", DataType::BigInt, std::numeric_limits<std::int64_t>::min()},
    {"bigint unsigned", "18446744073709551615", DataType::UnsignedBigInt,
     std::numeric_limits<std::uint64_t>::max()},
    {"decimal(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
    {"float", "1.5", DataType::Single, 1.5F},
    {"double", "0.1", DataType::Double, 0.1},
    {"char(5)", "'ab'", DataType::Char, Text("ab")},
    {"varchar(30)", "'h\u00e9 \U0001F600'", DataType::VarChar, Text("h\u00e9 \U0001F600")},
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
    {"year", "2024", DataType::UnsignedSmallInt, std::int64_t{2024}},
    {"uuid", "'123e4567-e89b-12d3-a456-426614174000'", DataType::Char,
     Text("123e4567-e89b-12d3-a456-426614174000")},
    {"bit(1)", "b'1'", DataType::Boolean, true},
    {"bit(1)", "b'0'", DataType::Boolean, false},
    {"bit(8)", "b'10100001'", DataType::Binary, Octets("\xa1")},
};

const Case sqliteCases[] = {
    {"boolean", "1", DataType::Boolean, true},
    {"integer", "-9223372036854775808", DataType::Integer,
     std::numeric_limits<std::int64_t>::min()},
    {"bigint", "9223372036854775807", DataType::BigInt, std::numeric_limits<std::int64_t>::max()},
    {"real", "0.1", DataType::Double, 0.1},
    {"varchar(30)", "'h\u00e9 \U0001F600'", DataType::VarChar, Text("h\u00e9 \U0001F600")},
    {"text", "''", DataType::LongVarChar, Text("")},
    {"blob", "x'00ff10'", DataType::Binary, Octets({"\x00\xff\x10", 3})},
    {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
    {"datetime", "'2024-01-02T03:04:05.500'", DataType::DBTimeStamp, At("2024-01-02 03:04:05.5")},
    {"datetime", "'soon'", DataType::DBTimeStamp, Text("soon")},
    {"integer", "'many'", DataType::Integer, Text("many")},
};

}  // namespace

TEST_F(OdbcTypes, OfPostgreSqlArrive) {
  const auto connection = Connect(PostgresString());
  for (const Case& type : postgresCases) Check(*connection, type);
}

TEST_F(OdbcTypes, OfMariaDbArrive) {
  const auto connection = Connect(MariaDbString());
  for (const Case& type : mariaDbCases) Check(*connection, type);
}

TEST_F(OdbcTypes, OfSqliteArrive) {
  const auto connection = Connect(SqliteString("types.db"));
  for (const Case& type : sqliteCases) Check(*connection, type);
}

}  // namespace tessel::test
