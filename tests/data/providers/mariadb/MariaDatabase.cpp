#include "tests/data/providers/mariadb/MariaDatabase.h"

#include <limits>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

constexpr const char* digits38 = "-99999999999999999999999999999999999999";

const std::vector<TypeCase> numbers = {
    {"tinyint", "-128", DataType::TinyInt, Whole(-128)},
    {"mediumint unsigned", "16777215", DataType::UnsignedInt, Whole(16777215)},
    {"int", "-2147483648", DataType::Integer, Whole(-2147483648)},
    {"int(6) zerofill", "42", DataType::UnsignedInt, Whole(42)},
    {"bigint", "9223372036854775807", DataType::BigInt, Whole(INT64_MAX)},
    {"decimal(65,0)", "99999999999999999999999999999999999999999999999999999999999999999",
     DataType::Numeric,
     Digits("99999999999999999999999999999999999999999999999999999999999999999")},
    {"decimal(38,0)", digits38, DataType::Numeric, Digits(digits38)},
    {"decimal(65,38)", "0.00000000000000000000000000000000000001", DataType::Numeric,
     Digits("0.00000000000000000000000000000000000001")},
    {"float", "0.1", DataType::Single, 0.1F},
    {"float", "1.5e30", DataType::Single, 1.5e30F},
    {"double", "-1.7976931348623157e308", DataType::Double, std::numeric_limits<double>::lowest()},
    {"double", "2.2250738585072014e-308", DataType::Double, std::numeric_limits<double>::min()},
    {"float", "-3.40282e38", DataType::Single, -3.40282e38F},
    {"double", "0", DataType::Double, 0.0},
    {"bit(64)", "b'1111111111111111111111111111111111111111111111111111111111111111'",
     DataType::Binary, Octets("\xff\xff\xff\xff\xff\xff\xff\xff")},
    {"bit(12)", "b'100000000001'", DataType::Binary, Octets("\x08\x01")},
};

const std::vector<TypeCase> moments = {
    {"date", "'0000-00-00'", DataType::DBDate, At("0000-00-00")},
    {"date", "'2024-00-00'", DataType::DBDate, At("2024-00-00")},
    {"date", "'9999-12-31'", DataType::DBDate, At("9999-12-31")},
    {"time(6)", "'838:59:59.999999'", DataType::DBTime, At("838:59:59.999999")},
    {"time(3)", "'00:00:00.500'", DataType::DBTime, At("00:00:00.5")},
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
    {"longblob", "x'01'", DataType::LongVarBinary, Octets("\x01")},
};

}  // namespace

std::vector<TypeCase> MariaDatabase::TypeCases() const {
  return Joined(PlainTypes(), numbers, moments, others);
}

namespace {

const DatabaseParam mariaDb{"MariaDb", [] { return std::make_shared<MariaDatabase>(); }};

TESSEL_RUN_BODIES(NativeMariaDb, testing::Values(mariaDb));
TESSEL_RUN_WRITE_BODIES(NativeMariaDb, testing::Values(mariaDb));
TESSEL_RUN_LOAD_BODIES(NativeMariaDb, testing::Values(mariaDb));
TESSEL_RUN_READ_ONLY_BODIES(NativeMariaDb, testing::Values(mariaDb));

}  // namespace

}  // namespace tessel::test
