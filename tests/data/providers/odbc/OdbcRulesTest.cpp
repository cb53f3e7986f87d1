#include <gtest/gtest.h>

#include "data/providers/odbc/driver/OdbcErrors.h"
#include "data/providers/odbc/driver/OdbcKeys.h"
#include "data/rows/RowSink.h"

/// The rules of the ODBC provider that need no database.
namespace tessel::odbc {

namespace {

Value Cell(CellForm form, std::string_view text) {
  RowSink rows(1);
  AppendCell(form, text, rows.Column(0));
  rows.EndRow();
  rows.CloseChunk();
  return ToValue(rows.TakeChunks()[0]->columns[0].At(0));
}

ConnectionKeys Translated(std::string_view connectionString, std::string_view provider) {
  for (const ProviderDialect& dialect : Dialects())
    if (dialect.provider == provider)
      return ToOdbcKeys(ConnectionKeys::Parse(connectionString), dialect);
  throw std::runtime_error("no such provider");
}

}  // namespace

// --- cells ---------------------------------------------------------------------------------------

TEST(OdbcCells, BooleansComeAsDigitsLettersAndBytes) {
  for (const char* yes : {"1", "t", "TRUE", "-1", "\x01"})
    EXPECT_EQ(Cell(CellForm::Boolean, yes), Value(true)) << yes;
  for (const char* no : {"0", "f", "No"})
    EXPECT_EQ(Cell(CellForm::Boolean, no), Value(false)) << no;
  EXPECT_EQ(Cell(CellForm::Boolean, std::string_view("\0", 1)), Value(false));
  EXPECT_EQ(Cell(CellForm::Boolean, "perhaps"), Value("perhaps"));
}

TEST(OdbcCells, WhatIsNoNumberStaysText) {
  EXPECT_EQ(Cell(CellForm::Integer, "12"), Value(std::int64_t{12}));
  EXPECT_EQ(Cell(CellForm::Integer, "12x"), Value("12x"));
  EXPECT_EQ(Cell(CellForm::Integer, "99999999999999999999"), Value("99999999999999999999"));
  EXPECT_EQ(Cell(CellForm::Unsigned, "18446744073709551615"),
            Value(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(Cell(CellForm::Double, "1e5"), Value(1e5));
  EXPECT_EQ(Cell(CellForm::Double, ""), Value(""));
  EXPECT_EQ(Cell(CellForm::Single, "0.1"), Value(0.1F));
}

TEST(OdbcCells, MomentsGetTheirFixedForm) {
  const auto moment = [](std::string_view text) { return Cell(CellForm::Moment, text); };
  EXPECT_EQ(moment("2024-01-02T03:04:05"), Value(Moment{"2024-01-02 03:04:05"}));
  EXPECT_EQ(moment("2024-01-02 03:04:05.120"), Value(Moment{"2024-01-02 03:04:05.12"}));
  EXPECT_EQ(moment("2024-01-02 03:04:05.000"), Value(Moment{"2024-01-02 03:04:05"}));
  EXPECT_EQ(moment("2024-01-02 03:04:05.10+02"), Value(Moment{"2024-01-02 03:04:05.10+02"}));
  EXPECT_EQ(moment("-12:00:00"), Value(Moment{"-12:00:00"}));
  EXPECT_EQ(moment("soon"), Value("soon"));
  EXPECT_EQ(moment(""), Value(""));
  EXPECT_EQ(Cell(CellForm::Date, "2024-01-02 00:00:00"), Value(Moment{"2024-01-02"}));
  EXPECT_EQ(moment("2024-01-02 00:00:00"), Value(Moment{"2024-01-02 00:00:00"}));
}

TEST(OdbcCells, UnknownTypesAreText) {
  EXPECT_EQ(TypeOf(-9999, false, "", {}).form, CellForm::Text);
  EXPECT_EQ(TypeOf(SQL_BIGINT, true, "", {}).type, DataType::UnsignedBigInt);
  EXPECT_EQ(TypeOf(SQL_DOUBLE, false, "Money", ProfileOf("psqlodbcw.so").typeRules).form,
            CellForm::Text);
}

// --- connection strings --------------------------------------------------------------------------

TEST(OdbcKeys, OfSqlServerAreTranslated) {
  const ConnectionKeys keys =
      Translated("Provider=SQLOLEDB.1;Data Source=host\\one;Initial Catalog=shop;"
                 "Integrated Security=SSPI;Persist Security Info=False;Encrypt=yes",
                 "SQLOLEDB*");
  EXPECT_EQ(keys.Compose(), "Encrypt=yes;Server=host\\one;Trusted_Connection=yes;Database=shop");
}

TEST(OdbcKeys, OfAccessAndOracleAreTranslated) {
  EXPECT_EQ(Translated("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\x.mdb;User ID=Admin",
                       "Microsoft.Jet.OLEDB.*")
                .Compose(),
            "DBQ=C:\\x.mdb;UID=Admin");
  EXPECT_EQ(Translated("Provider=MSDAORA;Data Source=orcl;Password=p", "MSDAORA*").Compose(),
            "DBQ=orcl;PWD=p");
}

TEST(OdbcKeys, ASourceBesideADriverIsTheDriversOwnKey) {
  EXPECT_EQ(Translated("Data Source=x", "MSDASQL*").Compose(), "DSN=x");
  EXPECT_EQ(Translated("Driver=d;Data Source=x", "MSDASQL*").Compose(), "Driver=d;Data Source=x");
}

TEST(OdbcKeys, BracesArePassedOnAsWritten) {
  EXPECT_EQ(Translated("Provider=MSDASQL;Driver={My Driver};PWD={a;b}}c}", "MSDASQL*").Compose(),
            "Driver={My Driver};PWD={a;b}}c}");
}

TEST(OdbcKeys, ALoginAppliesWhereNoneIsNamed) {
  ConnectionKeys keys = ConnectionKeys::Parse("UID=a");
  AddLogin(keys, "b", "x;y");
  EXPECT_EQ(keys.Compose(), "UID=a;PWD={x;y}");
  EXPECT_EQ(PasswordOf(keys), "x;y");
}

TEST(OdbcKeys, DefaultsAreAddedUnlessGiven) {
  ConnectionKeys postgres = ConnectionKeys::Parse("Protocol=7.4-1");
  AddDefaults(postgres, ProfileOf("PostgreSQL Unicode"));
  EXPECT_EQ(postgres.Compose(), "Protocol=7.4-1;BoolsAsChar=0");
  ConnectionKeys mariaDb = ConnectionKeys::Parse("OPTION=8;CHARSET=latin1");
  AddDefaults(mariaDb, ProfileOf("libmaodbc.so"));
  EXPECT_EQ(mariaDb.Get("OPTION"), "67108874");
  EXPECT_EQ(mariaDb.Get("CHARSET"), "latin1");
  EXPECT_EQ(mariaDb.Get("CONN_TIMEOUT"), "15");
}

// --- writing -------------------------------------------------------------------------------------

TEST(OdbcWriting, SqlServerIsKnownByItsNameThroughEveryDriver) {
  for (const char* driver : {"FreeTDS", "ODBC Driver 18 for SQL Server"}) {
    const WriteDialect dialect =
        ProfileOf(driver).writing({.name = "Microsoft SQL Server", .version = "16", .quote = "\""});
    EXPECT_TRUE(dialect.needsKey) << driver;
    EXPECT_TRUE(dialect.namesCatalog) << driver;
    EXPECT_GT(dialect.comparisons.size(), 1U) << driver;
  }
  const WriteDialect other =
      ProfileOf("Something")
          .writing({.name = "Other", .version = "1", .quote = " ", .namesCatalog = false});
  EXPECT_EQ(other.quote, '\0');
  EXPECT_TRUE(other.needsKey);
  EXPECT_FALSE(other.namesCatalog);
  EXPECT_EQ(ProfileOf("MDBTools").writing, nullptr);
}

// --- texts ---------------------------------------------------------------------------------------

TEST(OdbcNotices, AreToldApartWhereTheDriverJoinsThem) {
  const Diagnostics records = {{"00000", -1, "NOTICE: a;b;WARNING: c\nDETAIL: d;INFO: "}};
  const auto joined = ToNotices(records, "d", ProfileOf("psqlodbcw.so"));
  ASSERT_EQ(joined.size(), 3U);
  EXPECT_EQ(joined[0].description, "NOTICE: a;b");
  EXPECT_EQ(joined[1].description, "WARNING: c\nDETAIL: d");
  EXPECT_EQ(joined[2].description, "INFO: ");
  EXPECT_EQ(ToNotices(records, "d", ProfileOf("other")).size(), 1U);
}

}  // namespace tessel::odbc
