#include <cstdint>
#include <limits>
#include <span>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/native/NativeServers.h"

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

template <class Number>
constexpr Number infinity = std::numeric_limits<Number>::infinity();

class PostgresDatabase : public Database {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.keepsStatementsBeforeError = false};
  }
  [[nodiscard]] std::string ConnectionString() const override {
    return PostgresNative().ConnectionString();
  }
  [[nodiscard]] std::string BadConnectionString() const override {
    return ConnectionString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return PostgresNative().sleep; }
  /// In FROM the server would make all rows before it gives the first.
  [[nodiscard]] std::string Series(std::int64_t rows) const override {
    return "select n, 'row ' || n as t, n / 2e0::double precision as d from (select "
           "generate_series(1, " +
           std::to_string(rows) + ") as n) as s";
  }
  [[nodiscard]] std::string LongText(std::size_t length) const override {
    return "repeat('x', " + std::to_string(length) + ")";
  }
  [[nodiscard]] std::string LongBinary(std::size_t length) const override {
    return "decode(repeat('00', " + std::to_string(length) + "), 'hex')";
  }
  [[nodiscard]] std::string FailsAfter(std::int64_t goodRows) const override {
    return "select n, 1 / (" + std::to_string(goodRows + 1) +
           " - n) as q from (select generate_series(1, " + std::to_string(2 * goodRows) +
           ") as n) as s";
  }
  [[nodiscard]] std::string BinaryType() const override { return "bytea"; }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string TableCatalog() const override { return "shop"; }
  [[nodiscard]] std::string TableSchema() const override { return "public"; }
};

constexpr const char* digits38 = "-99999999999999999999999999999999999999";

const std::vector<TypeCase> numbers = {
    {"boolean", "true", DataType::Boolean, true},
    {"boolean", "false", DataType::Boolean, false},
    {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
    {"smallint", "32767", DataType::SmallInt, Whole(32767)},
    {"integer", "-2147483648", DataType::Integer, Whole(-2147483648)},
    {"integer", "2147483647", DataType::Integer, Whole(2147483647)},
    {"bigint", "-9223372036854775808", DataType::BigInt, Whole(INT64_MIN)},
    {"bigint", "9223372036854775807", DataType::BigInt, Whole(INT64_MAX)},
    {"oid", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
    {"numeric(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
    {"numeric(38)", digits38, DataType::Numeric, Digits(digits38)},
    {"numeric(38,38)", "0.00000000000000000000000000000000000001", DataType::Numeric,
     Digits("0.00000000000000000000000000000000000001")},
    {"numeric(4,-2)", "123456", DataType::Numeric, Digits("123500")},
    {"numeric", "123456789012345678901234567890.123456789012345678901234567890", DataType::Numeric,
     Digits("123456789012345678901234567890.123456789012345678901234567890")},
    {"numeric", "'NaN'", DataType::Numeric, Digits("NaN")},
    {"numeric", "'-infinity'", DataType::Numeric, Digits("-Infinity")},
    {"real", "1e-45", DataType::Single, std::numeric_limits<float>::denorm_min()},
    {"real", "3.4028235e38", DataType::Single, std::numeric_limits<float>::max()},
    {"real", "0.1", DataType::Single, 0.1F},
    {"real", "'infinity'", DataType::Single, infinity<float>},
    {"double precision", "0.1", DataType::Double, 0.1},
    {"double precision", "5e-324", DataType::Double, std::numeric_limits<double>::denorm_min()},
    {"double precision", "1.7976931348623157e308", DataType::Double,
     std::numeric_limits<double>::max()},
    {"double precision", "'-infinity'", DataType::Double, -infinity<double>},
    {"money", "1234.5", DataType::VarWChar, Text("$1,234.50")},
};

const std::vector<TypeCase> moments = {
    {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
    {"date", "'0044-03-15 BC'", DataType::DBDate, At("0044-03-15 BC")},
    {"date", "'4713-01-01 BC'", DataType::DBDate, At("4713-01-01 BC")},
    {"date", "'5874897-12-31'", DataType::DBDate, At("5874897-12-31")},
    {"date", "'infinity'", DataType::DBDate, At("infinity")},
    {"time", "'00:00'", DataType::DBTime, At("00:00:00")},
    {"time", "'24:00:00'", DataType::DBTime, At("24:00:00")},
    {"time", "'23:59:58.5'", DataType::DBTime, At("23:59:58.5")},
    {"timetz", "'10:00:00+02'", DataType::DBTime, At("10:00:00+02")},
    {"timestamp", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
    {"timestamp", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
     At("2024-01-02 03:04:05.12345")},
    {"timestamp", "'0044-03-15 10:00 BC'", DataType::DBTimeStamp, At("0044-03-15 10:00:00 BC")},
    {"timestamp", "'294276-12-31 23:59:59.999999'", DataType::DBTimeStamp,
     At("294276-12-31 23:59:59.999999")},
    {"timestamp", "'-infinity'", DataType::DBTimeStamp, At("-infinity")},
    {"timestamptz", "'2024-01-02 03:04:05+02'", DataType::DBTimeStamp,
     At("2024-01-02 01:04:05+00")},
    {"interval", "'-1 year 2 days 3.5 hours'", DataType::VarWChar,
     Text("-1 years +2 days 03:30:00")},
};

const std::vector<TypeCase> others = {
    {"char(5)", "'ab'", DataType::WChar, Text("ab   ")},
    {"\"char\"", "'z'", DataType::WChar, Text("z")},
    {"name", "'some name'", DataType::VarWChar, Text("some name")},
    {"varchar(30)", "'h\u00e9 \U0001F600'", DataType::VarWChar, Text("h\u00e9 \U0001F600")},
    {"varchar(30)", "''", DataType::VarWChar, Text("")},
    {"text", "''", DataType::LongVarWChar, Text("")},
    {"text", "E'a\\tb\\r\\nc\\\\'", DataType::LongVarWChar, Text("a\tb\r\nc\\")},
    {"bytea", "'\\x00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
    {"bytea", "'\\\\x'", DataType::LongVarBinary, Octets("\\x")},
    {"bytea", "''", DataType::LongVarBinary, Octets("")},
    {"json", "'{\"a\": 1}'", DataType::LongVarWChar, Text("{\"a\": 1}")},
    {"jsonb", "'[1,null]'", DataType::LongVarWChar, Text("[1, null]")},
    {"integer[]", "'{1,null,2}'", DataType::LongVarWChar, Text("{1,NULL,2}")},
    {"text[]", "array['a', 'b,c']", DataType::LongVarWChar, Text("{a,\"b,c\"}")},
    {"uuid", "'123E4567-e89b-12d3-a456-426614174000'", DataType::Guid,
     Text("123e4567-e89b-12d3-a456-426614174000")},
    {"xml", "'<a/>'", DataType::LongVarWChar, Text("<a/>")},
    {"bit(1)", "B'1'", DataType::VarWChar, Text("1")},
    {"bit(8)", "B'10100001'", DataType::VarWChar, Text("10100001")},
    {"bit varying", "B''", DataType::VarWChar, Text("")},
    {"inet", "'10.0.0.1/8'", DataType::VarWChar, Text("10.0.0.1/8")},
    {"point", "'(1,2.5)'", DataType::VarWChar, Text("(1,2.5)")},
    {"int4range", "'[1,5)'", DataType::VarWChar, Text("[1,5)")},
    {"tsvector", "'a b'", DataType::VarWChar, Text("'a' 'b'")},
};

std::vector<TypeCase> PostgresDatabase::TypeCases() const {
  std::vector<TypeCase> all = numbers;
  all.insert(all.end(), moments.begin(), moments.end());
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

const DatabaseParam postgres{"PostgreSql", [] { return std::make_shared<PostgresDatabase>(); }};

TESSEL_RUN_BODIES(NativePostgres, testing::Values(postgres));

}  // namespace

}  // namespace tessel::test
