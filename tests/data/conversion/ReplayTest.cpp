// The INSERT statements of the conversions, run on fresh tables of real databases.

#include <algorithm>
#include <map>

#include "logic/tags/ValueFormat.h"
#include "tests/data/conversion/HardValues.h"
#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

/// A value that does not come back from a database, and why.
struct Exception {
  std::string value;
  std::string reason;
};

/// What a database makes of the statements.
struct Dialect {
  std::string name;
  std::function<std::string()> connectionString;
  std::map<ValueKind, std::string> types;
  std::vector<Exception> exceptions;
};

void PrintTo(const Dialect& dialect, std::ostream* out) { *out << dialect.name; }

const std::string nulInStatement = "a statement ends at a NUL character";
const std::string notFinite = "the text of a number that is none is not a literal of SQL";

/// Made anew with every run of the tests.
const TemporaryFolder& SqliteFolder() {
  static const TemporaryFolder folder;
  return folder;
}

Dialect Sqlite() {
  const std::string hex = "0x and digits are a whole number here, bytes are x'...'";
  return {"Sqlite",
          [] {
            return "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" +
                   SqliteFolder().File("replay.db");
          },
          {{ValueKind::Text, "text"},
           {ValueKind::Whole, "integer"},
           {ValueKind::Floating, "real"},
           {ValueKind::Exact, "decimal(30,4)"},
           {ValueKind::Date, "date"},
           {ValueKind::TimeStamp, "datetime"},
           {ValueKind::Flag, "boolean"},
           {ValueKind::Bytes, "blob"}},
          {{"NUL inside", nulInStatement},
           {"infinity", notFinite},
           {"no number", notFinite},
           {"price", "there are no exact decimals: the trailing zeros go"},
           {"negative price", "there are no exact decimals: it is written -1e-04"},
           {"many digits", "there are no exact decimals: 16 digits are kept"},
           {"every byte", hex},
           {"one byte", hex},
           {"no bytes", hex}}};
}

Dialect Postgres() {
  const std::string hex = "0x is no literal of bytes here, they are '\\x...'";
  const std::string flag = "1 and 0 are numbers, not booleans";
  return {"PostgreSQL",
          [] { return PostgresNative().ConnectionString(); },
          {{ValueKind::Text, "text"},
           {ValueKind::Whole, "bigint"},
           {ValueKind::Floating, "double precision"},
           {ValueKind::Exact, "numeric(30,4)"},
           {ValueKind::Date, "date"},
           {ValueKind::TimeStamp, "timestamp"},
           {ValueKind::Flag, "boolean"},
           {ValueKind::Bytes, "bytea"}},
          {{"NUL inside", nulInStatement},
           {"infinity", notFinite},
           {"no number", notFinite},
           {"true", flag},
           {"false", flag},
           {"every byte", hex},
           {"one byte", hex},
           {"no bytes", hex}}};
}

Dialect Maria() {
  return {"MariaDB",
          [] { return MariaNative().ConnectionString(); },
          {{ValueKind::Text, "text"},
           {ValueKind::Whole, "bigint"},
           {ValueKind::Floating, "double"},
           {ValueKind::Exact, "decimal(30,4)"},
           {ValueKind::Date, "date"},
           {ValueKind::TimeStamp, "datetime(6)"},
           {ValueKind::Flag, "boolean"},
           {ValueKind::Bytes, "blob"}},
          {{"backslashes", "a backslash is an escape in literals of this database"},
           {"infinity", notFinite},
           {"no number", notFinite},
           {"no bytes", "0x without digits is a name"}}};
}

/// The value as conversions write it, in the form in which two databases agree on it.
std::string Canonical(const Value& value) {
  ValueFormat format;
  format.nullText = "NULL";
  format.quote = "'";
  format.hexBinary = true;
  return FormatValue(ToView(value), format);
}

class ReplayTest : public DataTest, public testing::WithParamInterface<Dialect> {
 protected:
  void SetUp() override { connection_ = ConnectTo(GetParam().connectionString()); }

  /// What a fresh table holds after the statement made of the value has run, and the statement
  /// made of that; or the error.
  std::string Replayed(const HardValue& hard) {
    const ScratchTable table(connection_, "c1 " + GetParam().types.at(hard.kind));
    try {
      const auto source = RecordsetOf({{hard.value}});
      Run(*connection_, Converted(*source, "mnuCvtInsertSQL", table.Name()));
      const auto copy = Run(*connection_, "select c1 from " + table.Name());
      return copy->RecordCount() == 1 ? Canonical(ToValue(copy->ValueAt(0, 0))) : "no row";
    } catch (const Error& error) {
      return "error: " + error.Description();
    }
  }

  std::shared_ptr<Connection> connection_;
};

/// A microsecond column shows its fraction even when it is zero.
std::string WithoutZeroFraction(std::string text) {
  const std::string zeros = ".000000'";
  if (text.ends_with(zeros)) text.replace(text.size() - zeros.size(), zeros.size(), "'");
  return text;
}

TEST_P(ReplayTest, EveryHardValueComesBackEqualOrIsAKnownException) {
  int equal = 0;
  for (const HardValue& hard : HardValues()) {
    const auto& exceptions = GetParam().exceptions;
    const auto known = std::ranges::find(exceptions, hard.name, &Exception::value);
    const std::string back = WithoutZeroFraction(Replayed(hard));
    if (known == exceptions.end()) {
      EXPECT_EQ(back, Canonical(hard.value)) << hard.name;
      ++equal;
    } else {
      EXPECT_NE(back, Canonical(hard.value))
          << hard.name << " comes back after all, although: " << known->reason;
    }
  }
  RecordProperty("equal", equal);
  RecordProperty("exceptions", static_cast<int>(GetParam().exceptions.size()));
}

TEST_P(ReplayTest, RowsOfARealTableBecomeStatementsThatMakeTheSameRows) {
  const auto& types = GetParam().types;
  const std::string columns = "id " + types.at(ValueKind::Whole) + ", name " +
                              types.at(ValueKind::Text) + ", day " + types.at(ValueKind::Date) +
                              ", amount " + types.at(ValueKind::Floating);
  const ScratchTable source(connection_, columns);
  const ScratchTable copy(connection_, columns);
  Run(*connection_, "begin");
  for (int i = 0; i < 200; ++i)
    source.Insert("(" + std::to_string(i) + ", " +
                  (i % 7 == 0 ? "null" : "'it''s " + std::to_string(i) + "'") + ", '18" +
                  std::to_string(10 + i % 90) + "-03-01', " + std::to_string(i) + " / 7.0)");
  const auto rows = Run(*connection_, "select * from " + source.Name() + " order by id");
  for (std::int64_t i = 0; i < rows->RecordCount(); ++i) {
    const auto one = RecordsetOf({RowsOf(*rows).at(static_cast<std::size_t>(i))});
    std::string statement = Converted(*one, "mnuCvtInsertSQL", copy.Name());
    const std::string names = "(c1, c2, c3, c4)";
    statement.replace(statement.find(names), names.size(), "(id, name, day, amount)");
    Run(*connection_, statement);
  }
  Run(*connection_, "commit");
  EXPECT_EQ(RowsOf(*Run(*connection_, "select * from " + copy.Name() + " order by id")),
            RowsOf(*rows));
}

TEST_P(ReplayTest, NamesInBracketsAreUnderstoodBySqliteAlone) {
  const auto source = RecordsetOf({{Value(std::int64_t{7})}});
  const std::string statement = Converted(*source, "mnuCvtInsertSQL", "my table");
  EXPECT_TRUE(statement.starts_with("INSERT INTO [my table](c1)"));
  if (GetParam().name == "Sqlite") {
    Run(*connection_, "create table \"my table\" (c1 integer)");
    Run(*connection_, statement);
    EXPECT_EQ(Cell(*connection_, "select c1 from \"my table\""), Value(std::int64_t{7}));
  } else {
    EXPECT_THAT(ErrorOf([&] { Run(*connection_, statement); }).description,
                testing::HasSubstr("yntax"));
  }
}

TEST_P(ReplayTest, ASetStandsBehindIn) {
  const ScratchTable table(connection_, "c1 " + GetParam().types.at(ValueKind::Text));
  for (const char* value : {"('O''Brien')", "('b')", "('c')"}) table.Insert(value);
  const auto set =
      RecordsetOf({{Value(std::string("O'Brien"))}, {Value(std::string("c"))}, {Value()}});
  const std::string in = Converted(*set, "mnuCvtSetSQL");
  EXPECT_EQ(in, "('O''Brien', 'c', NULL)");
  const auto rows =
      Run(*connection_, "select c1 from " + table.Name() + " where c1 in " + in + " order by c1");
  EXPECT_THAT(TextsOf(*rows), testing::UnorderedElementsAre("O'Brien", "c"));
}

INSTANTIATE_TEST_SUITE_P(Databases, ReplayTest, testing::Values(Sqlite(), Postgres(), Maria()),
                         [](const auto& info) { return info.param.name; });

}  // namespace

}  // namespace tessel::test
