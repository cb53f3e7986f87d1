#include "tests/data/providers/sqlite/SqliteDatabaseFixture.h"

#include <cstdint>
#include <limits>

#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

namespace {

Bytes ToBytes(std::initializer_list<int> numbers) {
  Bytes bytes;
  for (const int number : numbers) bytes.push_back(static_cast<std::byte>(number));
  return bytes;
}

std::string Numbers(std::int64_t rows) {
  return "with recursive c(n) as (select 1 union all select n + 1 from c where n < " +
         std::to_string(rows) + ") ";
}

}  // namespace

std::string SqliteScratch::ConnectionString() const {
  return "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder_.File("scratch.db");
}

std::string SqliteScratch::BadConnectionString() const {
  return "Provider=SQLite;Data Source=" + folder_.File("missing.db");
}

std::string SqliteScratch::SlowStatement() const {
  return Numbers(4'000'000'000'000) + "select count(*) from c where n < 0";
}

std::string SqliteScratch::Series(std::int64_t rows) const {
  return Numbers(rows) + "select n, 'row ' || n as t, n / 2.0 as d from c";
}

std::string SqliteScratch::LongText(std::size_t length) const {
  const std::string size = std::to_string(length);
  return "substr(replace(hex(zeroblob(" + size + ")), '0', 'x'), 1, " + size + ")";
}

std::string SqliteScratch::LongBinary(std::size_t length) const {
  return "zeroblob(" + std::to_string(length) + ")";
}

std::string SqliteScratch::FailsAfter(std::int64_t goodRows) const {
  return Numbers(goodRows * 2) + "select case when n > " + std::to_string(goodRows) +
         " then abs(-9223372036854775807 - 1) else n end as n from c";
}

std::vector<TypeCase> SqliteScratch::TypeCases() const {
  constexpr const char* otherKind =
      "what is not of the kind of its column is refused with its line";
  constexpr const char* noKind = "a column without a type gets texts";
  return {
      {"integer", "-9223372036854775808", DataType::BigInt, Value(INT64_MIN)},
      {"int", "9223372036854775807", DataType::BigInt, Value(INT64_MAX)},
      {"real", "0.1", DataType::Double, Value(0.1)},
      {"double precision", "1e300", DataType::Double, Value(1e300)},
      {"boolean", "1", DataType::Boolean, Value(true)},
      {"boolean", "0", DataType::Boolean, Value(false)},
      {"boolean", "7", DataType::Boolean, Value(std::int64_t{7}), {}, {}, otherKind},
      {"text", "'a'", DataType::LongVarWChar, Value(std::string("a"))},
      {"varchar(20)", "'b'", DataType::VarWChar, Value(std::string("b"))},
      {"blob", "x'00ff10'", DataType::LongVarBinary, Value(ToBytes({0, 255, 16}))},
      {"blob", "x''", DataType::LongVarBinary, Value(Bytes())},
      {"date", "'2024-02-29'", DataType::DBDate, Value(Moment{"2024-02-29"})},
      {"time", "'23:59:58.5'", DataType::DBTime, Value(Moment{"23:59:58.5"})},
      {"datetime", "'2024-02-29 01:02:03'", DataType::DBTimeStamp,
       Value(Moment{"2024-02-29 01:02:03"})},
      {"timestamp", "'2024-02-29 01:02:03.25+02'", DataType::DBTimeStamp,
       Value(Moment{"2024-02-29 01:02:03.25+02"})},
      {"date", "'soon'", DataType::DBDate, Value(std::string("soon")),
       "what is no date is refused where dates are declared"},
      {"date", "1700000000", DataType::DBDate, Value(std::int64_t{1700000000})},
      {"decimal(30,5)", "'12345678901234567890.12345'", DataType::Numeric,
       Value(1.2345678901234567e19)},
      {"decimal(10,2)", "x'31'", DataType::Numeric, Value(ToBytes({0x31})),
       "bytes are refused where numbers are declared"},
      {"integer", "-1", DataType::BigInt, Value(std::int64_t{-1})},
      {"integer", "0.5", DataType::BigInt, Value(0.5), {}, {}, otherKind},
      {"real", "-1.7976931348623157e308", DataType::Double, Value(-1.7976931348623157e308)},
      {"real", "5e-324", DataType::Double, Value(5e-324)},
      {"real", "9e999", DataType::Double, Value(std::numeric_limits<double>::infinity())},
      {"text", "''", DataType::LongVarWChar, Value(std::string())},
      {"text", "' a '", DataType::LongVarWChar, Value(std::string(" a "))},
      {"text", "'123'", DataType::LongVarWChar, Value(std::string("123"))},
      {"text", "'a' || char(0) || 'b'", DataType::LongVarWChar, Value(std::string("a\0b", 3))},
      {"text", "'\U0001F418'", DataType::LongVarWChar, Value(std::string("\U0001F418"))},
      {"varchar(5) collate nocase", "'ABC'", DataType::VarWChar, Value(std::string("ABC"))},
      {"decimal(10,2)", "12.5", DataType::Numeric, Value(12.5)},
      {"numeric", "'99999999999999999999999999999999999999x'", DataType::Numeric,
       Value(std::string("99999999999999999999999999999999999999x")),
       "what is no number is refused where numbers are declared"},
      {"datetime", "'0000-00-00 00:00:00'", DataType::DBTimeStamp,
       Value(Moment{"0000-00-00 00:00:00"})},
      {"", "x'00'", DataType::LongVarBinary, Value(ToBytes({0})), {}, {}, noKind},
      {"", "'no type'", DataType::LongVarWChar, Value(std::string("no type"))},
      {"", "3.5", DataType::Double, Value(3.5), {}, {}, noKind},
      {"whatever", "'x'", DataType::VarWChar, Value(std::string("x"))},
  };
}

namespace {

const DatabaseParam native{"Sqlite", [] { return std::make_shared<SqliteScratch>(); }};

TESSEL_RUN_BODIES(Native, testing::Values(native));
TESSEL_RUN_WRITE_BODIES(Native, testing::Values(native));
TESSEL_RUN_LOAD_BODIES(Native, testing::Values(native));
TESSEL_RUN_READ_ONLY_BODIES(Native, testing::Values(native));

}  // namespace

}  // namespace tessel::test
