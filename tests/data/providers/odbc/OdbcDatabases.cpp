#include <cstdint>
#include <limits>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/ServerSql.h"
#include "tests/data/providers/odbc/OdbcFixture.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr const char* wideText = "h\u00e9 \U0001F600";
const std::string wideLiteral = std::string("'") + wideText + "'";

/// A database whose driver has every row before it shows one.
template <class Sql>
class OdbcDatabase : public Sql {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.tellsFailedStatement = false,
            .rowsBeforeLast = false,
            .holdsLongValues = false,
            .tellsRefusedColumn = false,
            .structure = false};
  }
  [[nodiscard]] std::string FailsAfter(std::int64_t /*goodRows*/) const override { return {}; }
};

class PostgresOdbc : public OdbcDatabase<PostgresSql> {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.keepsStatementsBeforeError = false,
            .tellsFailedStatement = false,
            .rowsBeforeLast = false,
            .holdsLongValues = false,
            .tellsRefusedColumn = false,
            .structure = false};
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
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  void KillServer() override { TestServers::Instance().Postgres().Kill(); }
  void RestartServer() override { TestServers::Instance().Postgres().Restart(); }
};

constexpr const char* lostEra = "the driver does not say that a date is before Christ";
constexpr const char* lostBits = "the driver says that bits cannot be written";
constexpr const char* lostInfinity = "the driver tells a time stamp that is none";

std::vector<TypeCase> PostgresOdbc::TypeCases() const {
  return Joined(
      PlainTypes(),
      {
          {"real", "1.5e10", DataType::Single, 1.5e10F},
          {"char(5)", "'ab'", DataType::Char, Text("ab   ")},
          {"varchar(30)", wideLiteral, DataType::VarChar, Text(wideText)},
          {"text", "''", DataType::LongVarChar, Text("")},
          {"date", "'0044-03-15 BC'", DataType::DBDate, At("0044-03-15"), lostEra, lostEra},
          {"timestamp", "'infinity'", DataType::DBTimeStamp, At("9999-12-31 23:59:59"),
           lostInfinity, lostInfinity},
          {"text", "E'a\\tb\\r\\nc\\\\'", DataType::LongVarChar, Text("a\tb\r\nc\\")},
          {"text[]", "array['a', 'b,c']", DataType::VarChar, Text("{a,\"b,c\"}")},
          {"timetz", "'10:00:00+02'", DataType::VarChar, Text("10:00:00+02")},
          {"timestamptz", "'2024-01-02 03:04:05+00'", DataType::DBTimeStamp,
           At("2024-01-02 03:04:05")},
          {"interval", "'1 day 2 hours'", DataType::VarChar, Text("1 day 02:00:00")},
          {"json", "'{\"a\": 1}'", DataType::VarChar, Text("{\"a\": 1}")},
          {"jsonb", "'[1,2]'", DataType::VarChar, Text("[1, 2]")},
          {"integer[]", "'{1,2}'", DataType::VarChar, Text("{1,2}")},
          {"uuid", "'123e4567-e89b-12d3-a456-426614174000'", DataType::Guid,
           Text("123E4567-E89B-12D3-A456-426614174000")},
          {"xml", "'<a/>'", DataType::LongVarChar, Text("<a/>")},
          {"bit(8)", "B'10100001'", DataType::VarChar, Text("10100001"), lostBits, lostBits},
          {"inet", "'10.0.0.1/8'", DataType::VarChar, Text("10.0.0.1/8")},
          {"money", "1234.5", DataType::VarChar, Text("$1,234.50")},
      });
}

class MariaDbOdbc : public OdbcDatabase<MariaSql> {
 public:
  [[nodiscard]] std::string ConnectionString() const override { return MariaDbString(); }
  [[nodiscard]] std::string BadConnectionString() const override {
    return MariaDbString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return "select sleep(60)"; }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  void KillServer() override { TestServers::Instance().MariaDb().Kill(); }
  void RestartServer() override { TestServers::Instance().MariaDb().Restart(); }
};

std::vector<TypeCase> MariaDbOdbc::TypeCases() const {
  return Joined(
      PlainTypes(),
      {
          {"int", "2147483647", DataType::Integer, Whole(2147483647)},
          {"float", "1.5", DataType::Single, 1.5F},
          {"char(5)", "'ab'", DataType::Char, Text("ab")},
          {"varchar(30)", wideLiteral, DataType::VarChar, Text(wideText)},
          {"text", "''", DataType::LongVarChar, Text("")},
          {"json", "'{\"a\": 1}'", DataType::LongVarChar, Text("{\"a\": 1}")},
          {"enum('a','b')", "'b'", DataType::Char, Text("b")},
          {"timestamp", "'2024-01-02 03:04:05'", DataType::DBTimeStamp, At("2024-01-02 03:04:05")},
          {"uuid", "'123e4567-e89b-12d3-a456-426614174000'", DataType::Char,
           Text("123e4567-e89b-12d3-a456-426614174000")},
      });
}

/// Takes an alias for the base column's name and runs one statement at a time.
class SqliteOdbc : public OdbcDatabase<Database> {
 public:
  [[nodiscard]] std::string WhyUnavailable() override {
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    if (test.starts_with("ABlockedUpdate")) return "its driver waits for a lock, cancelled or not";
    return test.starts_with("TextOfComments") || test.starts_with("CommentsAndQuotes")
               ? "its driver takes a semicolon in a comment for the end of a statement"
               : "";
  }
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.severalStatements = false,
            .rowsBeforeLast = false,
            .baseColumns = false,
            .uniqueRows = false,
            .limitsText = false,
            .holdsLongValues = false,
            .hasServer = false,
            .tellsTransaction = false,
            .tellsRefusedColumn = false,
            .structure = false,
            .zeroInText = false};
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
  [[nodiscard]] std::string CountedKeyType() const override { return "integer primary key"; }
  [[nodiscard]] std::string BeginStatement() const override { return "begin immediate"; }

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
      {"datetime", "'2024-01-02T03:04:05.500'", DataType::DBTimeStamp, At("2024-01-02 03:04:05.5"),
       "", "its text was brought into the fixed form"},
      {"datetime", "'soon'", DataType::DBTimeStamp, Text("soon"),
       "what is no time stamp is refused where they are declared"},
      {"integer", "'many'", DataType::Integer, Text("many"),
       "what is no number is refused where numbers are declared"},
  };
}

const DatabaseParam sqlite{"Sqlite", [] { return std::make_shared<SqliteOdbc>(); }};
const DatabaseParam postgres{"PostgreSql", [] { return std::make_shared<PostgresOdbc>(); }};
const DatabaseParam mariaDb{"MariaDb", [] { return std::make_shared<MariaDbOdbc>(); }};

TESSEL_RUN_BODIES(Odbc, testing::Values(sqlite, postgres, mariaDb));
TESSEL_RUN_WRITE_BODIES(Odbc, testing::Values(sqlite, postgres, mariaDb));
TESSEL_RUN_LOAD_BODIES(Odbc, testing::Values(sqlite, postgres, mariaDb));

}  // namespace

}  // namespace tessel::test
