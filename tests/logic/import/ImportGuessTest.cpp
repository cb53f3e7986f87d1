#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/sql/ColumnTypes.h"
#include "logic/import/ImportMapping.h"
#include "logic/import/guessing/ImportScan.h"
#include "tests/logic/import/ImportSources.h"

namespace tessel {
namespace {

using test::SourceOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// What a column of these values is guessed to be.
std::string TypeOf(const std::vector<std::string>& values, char decimalSign = '.') {
  ColumnGuess guess;
  for (std::string value : values)
    guess.Add({value.data(), value.size(), value == "NULL" ? ImportForm::Null : ImportForm::Bare},
              decimalSign, false);
  return NameOfType(guess.Type());
}

ImportScan Scanned(const std::string& text) {
  const ImportSource source = SourceOf(text);
  ImportScan scan(source, GuessFormat(source));
  while (scan.Step()) continue;
  return scan;
}

TEST(ColumnGuess, KnowsWhatAllValuesAre) {
  EXPECT_EQ(TypeOf({"1", "-2", "NULL", "0"}), "Whole number");
  EXPECT_EQ(TypeOf({"1", "9999999999"}), "Whole number, 64 bits");
  EXPECT_EQ(TypeOf({"9223372036854775807", "-9223372036854775808"}), "Whole number, 64 bits");
  EXPECT_EQ(TypeOf({"9223372036854775808"}), "Exact number (19,0)");
  EXPECT_EQ(TypeOf({"1.50", "-100"}), "Exact number (5,2)");
  EXPECT_EQ(TypeOf({"1e300", "2.5"}), "Floating number");
  EXPECT_EQ(TypeOf({"0.3333333333333333"}), "Floating number");
  EXPECT_EQ(TypeOf({"12345678901234567890123456.1234"}), "Exact number (30,4)");
  EXPECT_EQ(TypeOf({"true", "FALSE"}), "True or false");
  EXPECT_EQ(TypeOf({"2000-02-29"}), "Date");
  EXPECT_EQ(TypeOf({"2000-02-29", "2000-02-29 10:00:00.5"}), "Date and time");
  EXPECT_EQ(TypeOf({"10:00:00"}), "Time");
  EXPECT_EQ(TypeOf({"0x00FF", "0x"}), "Bytes");
  EXPECT_EQ(TypeOf({"c0ffee00-0000-4000-8000-000000000001"}), "GUID");
}

TEST(ColumnGuess, WhatWouldNotComeBackAsItWasIsText) {
  for (const char* text : {"007", "+49", "1.", "1,5", "2000-02-30", "2000-13-01", "x", "", "1 2",
                           "-", "--1", "0x0", "1e", "12:5"})
    EXPECT_EQ(TypeOf({"1", text}), "Text") << text;
  EXPECT_EQ(TypeOf({"12345678901234567890.5", "1e300"}), "Text");
  EXPECT_EQ(TypeOf({"NULL"}), "Text");
}

TEST(ColumnGuess, TakesACommaForTheDecimalSign) {
  EXPECT_EQ(TypeOf({"1,5", "-2"}, ','), "Exact number (2,1)");
  EXPECT_EQ(TypeOf({"1.000,5"}, ','), "Text");
}

TEST(ImportFormat, IsGuessed) {
  const auto delimiterOf = [](const char* text) { return GuessFormat(SourceOf(text)).delimiter; };
  EXPECT_EQ(delimiterOf("a,b\n1,2\n"), ',');
  EXPECT_EQ(delimiterOf("a;b\n1,5;2\n"), ';');
  EXPECT_EQ(delimiterOf("a\tb\n1,5\t2\n"), '\t');
  EXPECT_EQ(delimiterOf("a|b\n\"1|2\"|2\n"), '|');
  EXPECT_TRUE(GuessFormat(SourceOf("a,b\n1,2\n")).hasHeader);
  EXPECT_FALSE(GuessFormat(SourceOf("3,4\n1,2\n")).hasHeader);
  EXPECT_EQ(GuessFormat(SourceOf("[{\"a\":1}]")).kind, ImportFormat::Kind::Json);
  EXPECT_EQ(GuessFormat(SourceOf("{\"a\":1}\n{\"a\":2}")).kind, ImportFormat::Kind::Json);
  EXPECT_EQ(GuessFormat(SourceOf("Z\xFCrich,1\n")).encoding, TextEncoding::Windows1252);
  EXPECT_EQ(GuessFormat(SourceOf("Z\u00FCrich,1\n")).encoding, TextEncoding::Utf8);
}

TEST(ImportFormat, ADecimalCommaIsGuessedWhereItIsNothingElse) {
  const auto signOf = [](const char* text) { return GuessFormat(SourceOf(text)).decimalSign; };
  EXPECT_EQ(signOf("id;price\n1;2,5\n2;-10,25\n3;\n"), ',');
  EXPECT_EQ(signOf("id\tprice\n1\t2,5\n"), ',');
  EXPECT_EQ(signOf("a;b\n1,5;2,125\n"), ',') << "another column has made it sure";
  EXPECT_EQ(signOf("a;b\n1;1,234\n"), '.') << "this may be thousands";
  EXPECT_EQ(signOf("a;b\n1,5;2.5\n"), '.') << "this is the decimal sign";
  EXPECT_EQ(signOf("a;b\n1;1,2,3\n"), '.');
  EXPECT_EQ(signOf("a;b\n1;2,5\n2;nothing\n"), '.');
  EXPECT_EQ(signOf("a;b\n1;007,5\n"), '.');
  EXPECT_EQ(signOf("a,b\n\"1,5\",2\n"), '.');
}

TEST(ImportFormat, WhatIsNoTextIsRefused) {
  for (const std::string start : {"PK\x03\x04rest", "\x1F\x8Brest", "%PDF-1.7", "\x89PNG\r\n"}) {
    try {
      (void)GuessFormat(SourceOf(start));
      ADD_FAILURE() << start;
    } catch (const Error& error) {
      EXPECT_THAT(error.Description(), HasSubstr("This is no text"));
    }
  }
  EXPECT_THROW((void)GuessFormat(SourceOf("")), Error);
}

TEST(ImportScan, TellsColumnsAndFirstRecords) {
  const ImportScan scan = Scanned("id,price,name\n1,1.50,a\n22,,b\n");
  EXPECT_THAT(scan.Names(), ElementsAre("id", "price", "name"));
  EXPECT_EQ(scan.Records(), 2);
  EXPECT_EQ(NameOfType(scan.Columns()[1].guess.Type()), "Exact number (3,2)");
  EXPECT_TRUE(scan.Columns()[1].guess.HasNull());
  EXPECT_EQ(scan.FirstRecords()[1], (std::vector<Value>{std::string("22"), {}, std::string("b")}));
}

TEST(ImportScan, NamesColumnsThatHaveNone) {
  EXPECT_THAT(Scanned("1,2\n3,4\n").Names(), ElementsAre("column_1", "column_2"));
  ImportSource source = SourceOf("a,,A\n1,2,3\n");
  ImportScan scan(source, ImportFormat{});
  while (scan.Step()) continue;
  EXPECT_THAT(scan.Names(), ElementsAre("a", "column_2", "A_2"));
}

TEST(ImportScan, TellsOfARecordOfAnotherLength) {
  try {
    (void)Scanned("a,b\n1,2\n3\n");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "Line 3: this record has 1 values, and the first 2.");
  }
}

TEST(ImportMapping, FindsColumnsByTheirNames) {
  const ImportScan scan = Scanned("Name,ID,other\nx,1,2\n");
  const std::vector<TableColumn> table = {{"id", DataType::Integer, "integer"},
                                          {"name", DataType::VarWChar, "text"}};
  ImportMapping mapping = ImportMapping::ToTable(scan, table, false);
  EXPECT_EQ(mapping.Columns()[0].target, "name");
  EXPECT_EQ(mapping.Columns()[1].target, "id");
  EXPECT_EQ(mapping.Columns()[2].target, "");
  EXPECT_EQ(mapping.Loaded().size(), 2U);
  EXPECT_EQ(mapping.Problem(), "");
  mapping.SetTarget(2, "id");
  EXPECT_EQ(mapping.Problem(), "Two columns go to \"id\".");
  EXPECT_EQ(ImportMapping::ToTable(scan, table, true).Columns()[0].target, "id");
}

TEST(ImportMapping, ANewTableHasTheColumnsOfTheSource) {
  ImportMapping mapping = ImportMapping::ToNew(Scanned("id,price\n1,1.50\n"));
  mapping.SetType(0, DataType::LongVarWChar);
  mapping.SetTarget(1, "cost");
  const std::vector<NewColumn> made = mapping.Made();
  ASSERT_EQ(made.size(), 2U);
  EXPECT_EQ(made[0].type.type, DataType::LongVarWChar);
  EXPECT_EQ(made[1].name, "cost");
  EXPECT_EQ(made[1].type.scale, 2);
}

TEST(ColumnTypes, EachDatabaseHasNamesOfItsOwn) {
  const ColumnType price{.type = DataType::Numeric, .precision = 10, .scale = 2};
  EXPECT_EQ(ColumnTypeName(SqlDialect::PostgreSQL, price), "numeric(10,2)");
  EXPECT_EQ(ColumnTypeName(SqlDialect::MariaDB, price), "decimal(10,2)");
  EXPECT_EQ(ColumnTypeName(SqlDialect::SQLite, price), "numeric(10,2)");
  EXPECT_EQ(ColumnTypeName(SqlDialect::SQLite, {.type = DataType::Numeric, .precision = 30}),
            "text");
  EXPECT_EQ(ColumnTypeName(SqlDialect::MariaDB, {.type = DataType::LongVarWChar}), "longtext");
  EXPECT_EQ(ColumnTypeName(SqlDialect::PostgreSQL, {.type = DataType::LongVarBinary}), "bytea");
  EXPECT_EQ(ColumnTypeName(SqlDialect::SqlServer, {.type = DataType::VarWChar, .size = 20}),
            "nvarchar(20)");
}

}  // namespace
}  // namespace tessel
