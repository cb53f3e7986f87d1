#include "tests/data/providers/postgresql/PostgresDatabase.h"

#include <limits>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

template <class Number>
constexpr Number infinity = std::numeric_limits<Number>::infinity();

constexpr const char* digits38 = "-99999999999999999999999999999999999999";

const std::vector<TypeCase> numbers = {
    {"smallint", "32767", DataType::SmallInt, Whole(32767)},
    {"integer", "-2147483648", DataType::Integer, Whole(-2147483648)},
    {"bigint", "9223372036854775807", DataType::BigInt, Whole(INT64_MAX)},
    {"numeric(38)", digits38, DataType::Numeric, Digits(digits38)},
    {"numeric(38,38)", "0.00000000000000000000000000000000000001", DataType::Numeric,
     Digits("0.00000000000000000000000000000000000001")},
    {"numeric(4,-2)", "123456", DataType::Numeric, Digits("123500")},
    {"numeric", "'-infinity'", DataType::Numeric, Digits("-Infinity")},
    {"real", "1e-45", DataType::Single, std::numeric_limits<float>::denorm_min()},
    {"real", "3.4028235e38", DataType::Single, std::numeric_limits<float>::max()},
    {"real", "0.1", DataType::Single, 0.1F},
    {"real", "'infinity'", DataType::Single, infinity<float>},
    {"double precision", "5e-324", DataType::Double, std::numeric_limits<double>::denorm_min()},
    {"double precision", "1.7976931348623157e308", DataType::Double,
     std::numeric_limits<double>::max()},
    {"money", "1234.5", DataType::VarWChar, Text("$1,234.50")},
    {"money", "-92233720368547758.08", DataType::VarWChar, Text("-$92,233,720,368,547,758.08")},
    {"double precision", "1e15", DataType::Double, 1e15},
};

const std::vector<TypeCase> moments = {
    {"date", "'0044-03-15 BC'", DataType::DBDate, At("0044-03-15 BC")},
    {"date", "'4713-01-01 BC'", DataType::DBDate, At("4713-01-01 BC")},
    {"date", "'5874897-12-31'", DataType::DBDate, At("5874897-12-31")},
    {"date", "'infinity'", DataType::DBDate, At("infinity")},
    {"time", "'00:00'", DataType::DBTime, At("00:00:00")},
    {"time", "'24:00:00'", DataType::DBTime, At("24:00:00")},
    {"timetz", "'10:00:00+02'", DataType::DBTime, At("10:00:00+02")},
    {"timestamp", "'0044-03-15 10:00 BC'", DataType::DBTimeStamp, At("0044-03-15 10:00:00 BC")},
    {"timestamp", "'294276-12-31 23:59:59.999999'", DataType::DBTimeStamp,
     At("294276-12-31 23:59:59.999999")},
    {"timestamp", "'-infinity'", DataType::DBTimeStamp, At("-infinity")},
    {"timestamptz", "'2024-01-02 03:04:05+02'", DataType::DBTimeStamp,
     At("2024-01-02 01:04:05+00")},
    {"date", "'-infinity'", DataType::DBDate, At("-infinity")},
    {"timetz", "'00:00:00+15:59:59'", DataType::DBTime, At("00:00:00+15:59:59")},
    {"timestamptz", "'infinity'", DataType::DBTimeStamp, At("infinity")},
    {"timestamptz", "'0044-03-15 10:00:00+00 BC'", DataType::DBTimeStamp,
     At("0044-03-15 10:00:00+00 BC")},
    {"timestamp(0)", "'4713-01-01 00:00:00 BC'", DataType::DBTimeStamp,
     At("4713-01-01 00:00:00 BC")},
    {"interval", "'0'", DataType::VarWChar, Text("00:00:00")},
    {"interval", "'178000000 years'", DataType::VarWChar, Text("178000000 years")},
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
    {"bytea", "'\\\\x'", DataType::LongVarBinary, Octets("\\x")},
    {"json", "'{\"a\": 1}'", DataType::LongVarWChar, Text("{\"a\": 1}")},
    {"jsonb", "'[1,null]'", DataType::LongVarWChar, Text("[1, null]")},
    {"integer[]", "'{1,null,2}'", DataType::LongVarWChar, Text("{1,NULL,2}")},
    {"text[]", "array['a', 'b,c']", DataType::LongVarWChar, Text("{a,\"b,c\"}")},
    {"json", "'null'", DataType::LongVarWChar, Text("null")},
    {"jsonb", "'{\"k\": [\"\U0001F418\", 1.50]}'", DataType::LongVarWChar,
     Text("{\"k\": [\"\U0001F418\", 1.50]}")},
    {"json[]", "array['{\"a\":1}'::json]", DataType::VarWChar, Text("{\"{\\\"a\\\":1}\"}")},
    {"text[]", "array['', null, 'null', '\"', '\\', '{}']", DataType::LongVarWChar,
     Text("{\"\",NULL,\"null\",\"\\\"\",\"\\\\\",\"{}\"}")},
    {"integer[]", "'{{1,2},{3,4}}'", DataType::LongVarWChar, Text("{{1,2},{3,4}}")},
    {"integer[]", "'{}'", DataType::LongVarWChar, Text("{}")},
    {"timestamp[]", "array[timestamp '2024-01-02 03:04:05']", DataType::VarWChar,
     Text("{\"2024-01-02 03:04:05\"}")},
    {"mood", "'h\u00e4ppy'", DataType::VarWChar, Text("h\u00e4ppy")},
    {"mood[]", "'{sad,\"so so\"}'", DataType::VarWChar, Text("{sad,\"so so\"}")},
    {"shortage", "-5", DataType::Integer, Whole(-5)},
    {"pair", "row(1, 'a b')", DataType::VarWChar, Text("(1,\"a b\")")},
    {"cidr", "'10.0.0.0/8'", DataType::VarWChar, Text("10.0.0.0/8")},
    {"inet", "'::1'", DataType::VarWChar, Text("::1")},
    {"macaddr", "'08:00:2b:01:02:03'", DataType::VarWChar, Text("08:00:2b:01:02:03")},
    {"line", "'{1,2,3}'", DataType::VarWChar, Text("{1,2,3}")},
    {"lseg", "'[(0,0),(1,1)]'", DataType::VarWChar, Text("[(0,0),(1,1)]")},
    {"box", "'(1,1),(0,0)'", DataType::VarWChar, Text("(1,1),(0,0)")},
    {"path", "'[(0,0),(1,1)]'", DataType::VarWChar, Text("[(0,0),(1,1)]")},
    {"polygon", "'((0,0),(1,1),(1,0))'", DataType::VarWChar, Text("((0,0),(1,1),(1,0))")},
    {"circle", "'<(0,0),2>'", DataType::VarWChar, Text("<(0,0),2>")},
    {"tsquery", "'a & b'", DataType::VarWChar, Text("'a' & 'b'")},
    {"numrange", "'(1.5,)'", DataType::VarWChar, Text("(1.5,)")},
    {"pg_lsn", "'16/B374D848'", DataType::VarWChar, Text("16/B374D848")},
    {"jsonpath", "'$.a'", DataType::VarWChar, Text("$.\"a\"")},
    {"bit(64)", "repeat('10', 32)::bit(64)", DataType::VarWChar,
     Text("1010101010101010101010101010101010101010101010101010101010101010")},
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

}  // namespace

std::vector<TypeCase> PostgresDatabase::TypeCases() const {
  return Joined(PlainTypes(), numbers, moments, others);
}

namespace {

const DatabaseParam postgres{"PostgreSql", [] { return std::make_shared<PostgresDatabase>(); }};

TESSEL_RUN_BODIES(NativePostgres, testing::Values(postgres));
TESSEL_RUN_WRITE_BODIES(NativePostgres, testing::Values(postgres));
TESSEL_RUN_LOAD_BODIES(NativePostgres, testing::Values(postgres));
TESSEL_RUN_READ_ONLY_BODIES(NativePostgres, testing::Values(postgres));

}  // namespace

}  // namespace tessel::test
