#include "tests/data/providers/ServerSql.h"

#include <cstdint>
#include <limits>

#include "tests/data/support/Values.h"

namespace tessel::test {

std::vector<TypeCase> PostgresSql::PlainTypes() {
  return {
      {"boolean", "true", DataType::Boolean, true},
      {"boolean", "false", DataType::Boolean, false},
      {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
      {"integer", "2147483647", DataType::Integer, Whole(2147483647)},
      {"bigint", "-9223372036854775808", DataType::BigInt, Whole(INT64_MIN)},
      {"oid", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
      {"numeric(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
      {"numeric", "123456789012345678901234567890.123456789012345678901234567890",
       DataType::Numeric, Digits("123456789012345678901234567890.123456789012345678901234567890")},
      {"numeric", "'NaN'", DataType::Numeric, Digits("NaN")},
      {"double precision", "0.1", DataType::Double, 0.1},
      {"double precision", "'-infinity'", DataType::Double,
       -std::numeric_limits<double>::infinity()},
      {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
      {"time", "'23:59:58.5'", DataType::DBTime, At("23:59:58.5")},
      {"timestamp", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"timestamp", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
       At("2024-01-02 03:04:05.12345")},
      {"bytea", "'\\x00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
      {"bytea", "''", DataType::LongVarBinary, Octets("")},
  };
}

std::vector<TypeCase> MariaSql::PlainTypes() {
  return {
      {"boolean", "true", DataType::TinyInt, Whole(1)},
      {"tinyint unsigned", "255", DataType::UnsignedTinyInt, Whole(255)},
      {"smallint", "-32768", DataType::SmallInt, Whole(-32768)},
      {"smallint unsigned", "65535", DataType::UnsignedSmallInt, Whole(65535)},
      {"mediumint", "-8388608", DataType::Integer, Whole(-8388608)},
      {"int unsigned", "4294967295", DataType::UnsignedInt, Whole(4294967295)},
      {"bigint", "-9223372036854775808", DataType::BigInt, Whole(INT64_MIN)},
      {"bigint unsigned", "18446744073709551615", DataType::UnsignedBigInt,
       std::numeric_limits<std::uint64_t>::max()},
      {"decimal(12,3)", "12.340", DataType::Numeric, Digits("12.340")},
      {"double", "0.1", DataType::Double, 0.1},
      {"bit(1)", "b'1'", DataType::Boolean, true},
      {"bit(1)", "b'0'", DataType::Boolean, false},
      {"bit(8)", "b'10100001'", DataType::Binary, Octets("\xa1")},
      {"date", "'2024-02-29'", DataType::DBDate, At("2024-02-29")},
      {"time", "'23:59:58'", DataType::DBTime, At("23:59:58")},
      {"time", "'-838:59:59'", DataType::DBTime, At("-838:59:59")},
      {"datetime", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"datetime(6)", "'2024-01-02 03:04:05.123450'", DataType::DBTimeStamp,
       At("2024-01-02 03:04:05.12345")},
      {"datetime(6)", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
      {"datetime", "'0000-00-00 00:00:00'", DataType::DBTimeStamp, At("0000-00-00 00:00:00")},
      {"year", "2024", DataType::UnsignedSmallInt, Whole(2024)},
      {"binary(3)", "x'00ff10'", DataType::Binary, Octets({"\x00\xff\x10", 3})},
      {"varbinary(10)", "x'00ff10'", DataType::VarBinary, Octets({"\x00\xff\x10", 3})},
      {"blob", "x'00ff10'", DataType::LongVarBinary, Octets({"\x00\xff\x10", 3})},
      {"blob", "''", DataType::LongVarBinary, Octets("")},
  };
}

}  // namespace tessel::test
