// What each format of text makes of values.

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "logic/results/export/formats/Cells.h"
#include "logic/results/export/formats/RecordWriter.h"
#include "tests/support/ExportRows.h"

namespace tessel::test {
namespace {

using namespace std::string_literals;
using Limits = std::numeric_limits<double>;

/// The whole text of the rows, written in batches of `perBatch` records.
std::string Written(const ExportChoices& choices, const ExportRows& rows,
                    std::size_t perBatch = 100) {
  const auto writer = MakeWriter(choices, rows.fields);
  TextSink sink;
  writer->Open(sink);
  for (std::size_t from = 0; from < rows.rows.size(); from += perBatch)
    writer->Write(sink, rows.Batch(from, std::min(from + perBatch, rows.rows.size())));
  writer->Close(sink, static_cast<std::int64_t>(rows.rows.size()));
  return sink.Taken();
}

std::string FailureOf(const ExportChoices& choices, const ExportRows& rows) {
  try {
    return "no failure, but " + Written(choices, rows);
  } catch (const Error& error) {
    return error.Description();
  }
}

/// The values of one column, without the header and with LF alone.
ExportChoices Plain(ExportFormat format) {
  ExportChoices choices;
  choices.format = format;
  choices.header = false;
  choices.lineEndWithReturn = false;
  choices.table = "t";
  return choices;
}

const std::vector<Value> kinds = {Value(),
                                  TextValue("a"),
                                  WholeValue(-7),
                                  Value(std::uint64_t{18'446'744'073'709'551'615U}),
                                  Value(0.1),
                                  Value(0.1F),
                                  Value(Decimal{"12.50"}),
                                  Value(Moment{"2026-11-22 10:00:00.5"}),
                                  Value(true),
                                  Value(Bytes{std::byte{0}, std::byte{0xAB}}),
                                  Value(Bytes{})};

// --- text with delimiters ------------------------------------------------------------------------

TEST(DelimitedWriterTest, EachKindHasItsForm) {
  EXPECT_EQ(
      Written(Plain(ExportFormat::Csv), ColumnOf(DataType::Variant, kinds)),
      "\na\n-7\n18446744073709551615\n0.1\n0.1\n12.50\n2026-11-22 10:00:00.5\ntrue\n0x00AB\n0x\n");
}

TEST(DelimitedWriterTest, TheHeaderAndLineEndsAreAsChosen) {
  ExportRows rows{{MemoryField("id"), MemoryField("a,b")}, {{WholeValue(1), TextValue("x")}}};
  ExportChoices choices;
  EXPECT_EQ(Written(choices, rows), "id,\"a,b\"\r\n1,x\r\n");
  choices.delimiter = ';';
  EXPECT_EQ(Written(choices, rows), "id;a,b\r\n1;x\r\n");
  choices.format = ExportFormat::Tabs;
  choices.header = false;
  choices.lineEndWithReturn = false;
  EXPECT_EQ(Written(choices, rows), "1\tx\n");
}

TEST(DelimitedWriterTest, QuotesStandWhereTheTextWouldBeReadAsSomethingElse) {
  const std::vector<Value> texts = {TextValue(""),       TextValue("a,b"),  TextValue("say \"hi\""),
                                    TextValue("a\nb"),   TextValue("a\rb"), TextValue(" a"),
                                    TextValue("a\t"),    TextValue("\\."),  TextValue("a;b"),
                                    TextValue("it's"),   TextValue("NULL"), TextValue("a b"),
                                    TextValue("\uFEFFx")};
  EXPECT_EQ(
      Written(Plain(ExportFormat::Csv), ColumnOf(DataType::VarWChar, texts)),
      "\"\"\n\"a,b\"\n\"say \"\"hi\"\"\"\n\"a\nb\"\n\"a\rb\"\n\" a\"\n\"a\t\"\n\"\\.\"\na;b\nit's\n"
      "NULL\na b\n\"\uFEFFx\"\n");
}

TEST(DelimitedWriterTest, ANullIsToldFromTheSameText) {
  ExportChoices choices = Plain(ExportFormat::Csv);
  choices.nullText = "NULL";
  EXPECT_EQ(
      Written(choices, ColumnOf(DataType::VarWChar, {Value(), TextValue("NULL"), TextValue("")})),
      "NULL\n\"NULL\"\n\n");
}

TEST(DelimitedWriterTest, TheQuoteRulesQuoteTextsOrAll) {
  ExportChoices choices = Plain(ExportFormat::Csv);
  choices.quotes = QuoteRule::Texts;
  const ExportRows rows =
      ColumnOf(DataType::Variant,
               {Value(), TextValue("a"), WholeValue(1), Value(true), Value(Moment{"2026-11-22"}),
                Value(Decimal{"1.0"}), Value(0.5), Value(Bytes{std::byte{1}})});
  EXPECT_EQ(Written(choices, rows), "\n\"a\"\n1\ntrue\n\"2026-11-22\"\n1.0\n0.5\n\"0x01\"\n");
  choices.quotes = QuoteRule::All;
  EXPECT_EQ(Written(choices, rows),
            "\n\"a\"\n\"1\"\n\"true\"\n\"2026-11-22\"\n\"1.0\"\n\"0.5\"\n\"0x01\"\n");
}

TEST(DelimitedWriterTest, ADecimalCommaIsQuotedBetweenCommasAlone) {
  ExportChoices choices = Plain(ExportFormat::Csv);
  choices.decimalSign = ',';
  const ExportRows rows =
      ColumnOf(DataType::Variant, {Value(0.5), Value(Decimal{"-12.50"}), WholeValue(3),
                                   Value(1e300), TextValue("1.5")});
  EXPECT_EQ(Written(choices, rows), "\"0,5\"\n\"-12,50\"\n3\n1e+300\n1.5\n");
  choices.delimiter = ';';
  EXPECT_EQ(Written(choices, rows), "0,5\n-12,50\n3\n1e+300\n1.5\n");
}

TEST(DelimitedWriterTest, BinaryValuesAreBase64ByChoice) {
  ExportChoices choices = Plain(ExportFormat::Csv);
  choices.binary = BinaryForm::Base64;
  const auto bytes = [](const char* text) {
    Bytes of;
    for (; *text != '\0'; ++text) of.push_back(static_cast<std::byte>(*text));
    return Value(of);
  };
  EXPECT_EQ(Written(choices, ColumnOf(DataType::Binary, {bytes(""), bytes("f"), bytes("fo"),
                                                         bytes("foo"), bytes("foobar"), Value()})),
            "\"\"\nZg==\nZm8=\nZm9v\nZm9vYmFy\n\n");
}

TEST(DelimitedWriterTest, ALongValueIsHandedOnInPieces) {
  std::string text;
  for (int i = 0; i < 300'000; ++i) text += i % 7 == 0 ? "\"" : "\u00FC";
  std::string expected = "\"";
  for (int i = 0; i < 300'000; ++i) expected += i % 7 == 0 ? "\"\"" : "\u00FC";
  expected += "\"\n";
  const ExportRows rows = ColumnOf(DataType::VarWChar, {TextValue(text)});
  std::string whole;
  std::size_t largest = 0;
  TextSink sink([&](std::string_view piece) {
    whole += piece;
    largest = std::max(largest, piece.size());
  });
  MakeWriter(Plain(ExportFormat::Csv), rows.fields)->Write(sink, rows.Batch(0, 1));
  sink.HandOn();
  EXPECT_TRUE(whole == expected);
  EXPECT_LT(largest, 500'000U);
  EXPECT_GT(whole.size(), 500'000U);
}

// --- JSON ----------------------------------------------------------------------------------------

TEST(JsonWriterTest, EachKindHasItsForm) {
  EXPECT_EQ(Written(Plain(ExportFormat::JsonLines), ColumnOf(DataType::Variant, kinds)),
            R"({"c":null}
{"c":"a"}
{"c":-7}
{"c":18446744073709551615}
{"c":0.1}
{"c":0.1}
{"c":12.50}
{"c":"2026-11-22 10:00:00.5"}
{"c":true}
{"c":"AKs="}
{"c":""}
)");
}

TEST(JsonWriterTest, AnArrayIsOneWhateverTheBatches) {
  const ExportRows rows =
      ColumnOf(DataType::Integer, {WholeValue(1), WholeValue(2), WholeValue(3)});
  const std::string expected = "[\n{\"c\":1},\n{\"c\":2},\n{\"c\":3}\n]\n";
  EXPECT_EQ(Written(Plain(ExportFormat::JsonArray), rows), expected);
  EXPECT_EQ(Written(Plain(ExportFormat::JsonArray), rows, 1), expected);
  EXPECT_EQ(Written(Plain(ExportFormat::JsonArray), rows, 2), expected);
  EXPECT_EQ(Written(Plain(ExportFormat::JsonArray), ColumnOf(DataType::Integer, {})), "[\n]\n");
}

TEST(JsonWriterTest, WhatIsNoNumberIsAText) {
  const ExportRows rows = ColumnOf(
      DataType::Double, {Value(Limits::quiet_NaN()), Value(Limits::infinity()),
                         Value(-std::numeric_limits<float>::infinity()), Value(Decimal{"NaN"}),
                         Value(Decimal{"-Infinity"}), Value(Decimal{"0012"}), Value(-0.0)});
  EXPECT_EQ(Written(Plain(ExportFormat::JsonLines), rows),
            "{\"c\":\"NaN\"}\n{\"c\":\"Infinity\"}\n{\"c\":\"-Infinity\"}\n{\"c\":\"NaN\"}\n"
            "{\"c\":\"-Infinity\"}\n{\"c\":\"0012\"}\n{\"c\":-0}\n");
}

TEST(JsonWriterTest, TextsAreEscapedAndNamesDiffer) {
  ExportRows rows{{MemoryField("a"), MemoryField("A"), MemoryField(""), MemoryField("q\"")},
                  {{TextValue("\"\\\b\n\r\t\x7F/"), TextValue("z\0z"s),
                    TextValue("\u00FC\U0001F600"), Value()}}};
  EXPECT_EQ(Written(Plain(ExportFormat::JsonLines), rows),
            "{\"a\":\"\\\"\\\\\\u0008\\n\\r\\t\x7F/"
            "\",\"A_2\":\"z\\u0000z\",\"column_3\":\"\u00FC\U0001F600\","
            "\"q\\\"\":null}\n");
}

TEST(JsonWriterTest, ATextThatIsNoneIsToldWithItsPlace) {
  const ExportRows rows = ColumnOf(DataType::VarWChar, {TextValue("a"), TextValue("\xFF")});
  EXPECT_EQ(FailureOf(Plain(ExportFormat::JsonArray), rows),
            "Record 2, column \"c\": the text is no valid UTF-8, and JSON can hold no other.");
}

// --- Markdown ------------------------------------------------------------------------------------

TEST(MarkdownWriterTest, IsATableWithMarkupEscaped) {
  ExportChoices choices = Plain(ExportFormat::Markdown);
  choices.nullText = "-";
  ExportRows rows{{MemoryField("n", DataType::Integer), MemoryField("a|b")},
                  {{WholeValue(1), TextValue("x|y <b>\r\n*z*")}, {Value(), Value(true)}}};
  EXPECT_EQ(Written(choices, rows),
            "| n | a\\|b |\n| ---: | --- |\n| 1 | x\\|y &lt;b&gt;<br>\\*z\\* |\n| - | true |\n");
}

// --- SQL -----------------------------------------------------------------------------------------

ExportChoices SqlFor(SqlDialect dialect) {
  ExportChoices choices = Plain(ExportFormat::Sql);
  choices.database = dialect;
  return choices;
}

/// The literals of one column, one a line.
std::string Literals(SqlDialect dialect, DataType type, const std::vector<Value>& values) {
  std::string text = Written(SqlFor(dialect), ColumnOf(type, values));
  text.erase(0, text.find("VALUES\n") + 7);
  return text;
}

TEST(SqlWriterTest, ValuesAreLiteralsOfTheDatabase) {
  const std::vector<Value> values = {Value(),
                                     TextValue("O'B\\n"),
                                     WholeValue(1),
                                     Value(2.0),
                                     Value(Decimal{"1.50"}),
                                     Value(true),
                                     Value(Bytes{std::byte{0xAB}}),
                                     Value(Moment{"2026-11-22"})};
  EXPECT_EQ(Literals(SqlDialect::SQLite, DataType::Variant, values),
            "(NULL),\n('O''B\\n'),\n(1),\n(2.0),\n('1.50'),\n(1),\n(X'AB'),\n('2026-11-22');\n");
  EXPECT_EQ(Literals(SqlDialect::PostgreSQL, DataType::Variant, values),
            "(NULL),\n('O''B\\n'),\n(1),\n(2.0),\n(1.50),\n(TRUE),\n('\\xAB'),\n('2026-11-22');\n");
  EXPECT_EQ(Literals(SqlDialect::MariaDB, DataType::Variant, values),
            "(NULL),\n('O''B\\\\n'),\n(1),\n(2.0),\n(1.50),\n(1),\n(X'AB'),\n('2026-11-22');\n");
  EXPECT_EQ(Literals(SqlDialect::SqlServer, DataType::Variant, values),
            "(NULL),\n(N'O''B\\n'),\n(1),\n(2.0),\n(1.50),\n(1),\n(0xAB),\n('2026-11-22');\n");
  EXPECT_EQ(Literals(SqlDialect::Standard, DataType::Variant, values),
            "(NULL),\n('O''B\\n'),\n(1),\n(2.0),\n(1.50),\n(TRUE),\n(X'AB'),\n('2026-11-22');\n");
}

TEST(SqlWriterTest, NumbersThatAreNoneAreWordsWhereTheDatabaseHasSome) {
  const std::vector<Value> values = {Value(Limits::infinity()), Value(-Limits::infinity())};
  EXPECT_EQ(Literals(SqlDialect::PostgreSQL, DataType::Double, values),
            "('Infinity'),\n('-Infinity');\n");
  EXPECT_EQ(Literals(SqlDialect::SQLite, DataType::Double, values), "(9e999),\n(-9e999);\n");
  EXPECT_EQ(Literals(SqlDialect::PostgreSQL, DataType::Double, {Value(Limits::quiet_NaN())}),
            "('NaN');\n");
  EXPECT_EQ(FailureOf(SqlFor(SqlDialect::MariaDB), ColumnOf(DataType::Double, values)),
            "Record 1, column \"c\": infinity is no number of MariaDB.");
  EXPECT_EQ(FailureOf(SqlFor(SqlDialect::SQLite),
                      ColumnOf(DataType::Double, {Value(Limits::quiet_NaN())})),
            "Record 1, column \"c\": not-a-number is no number of SQLite.");
}

TEST(SqlWriterTest, ATextThatALiteralCannotHoldIsCastOrRefused) {
  const std::vector<Value> nul = {TextValue("a\0z"s)};
  EXPECT_EQ(Literals(SqlDialect::SQLite, DataType::VarWChar, nul), "(CAST(X'61007A' AS TEXT));\n");
  EXPECT_EQ(Literals(SqlDialect::SQLite, DataType::VarWChar, {TextValue("\xFF")}),
            "(CAST(X'FF' AS TEXT));\n");
  EXPECT_EQ(Literals(SqlDialect::MariaDB, DataType::VarWChar, nul), "('a\\0z');\n");
  EXPECT_EQ(FailureOf(SqlFor(SqlDialect::PostgreSQL), ColumnOf(DataType::VarWChar, nul)),
            "Record 1, column \"c\": the text holds a NUL character, and PostgreSQL has no literal "
            "for it.");
  EXPECT_EQ(
      FailureOf(SqlFor(SqlDialect::MariaDB), ColumnOf(DataType::VarWChar, {TextValue("\xFF")})),
      "Record 1, column \"c\": the text is no valid UTF-8, and MariaDB takes no other.");
}

TEST(SqlWriterTest, AReturnOutlivesTheProgramsThatReadStatements) {
  const std::vector<Value> lines = {TextValue("a\r\nb"), TextValue("a\nb")};
  EXPECT_EQ(Literals(SqlDialect::SQLite, DataType::VarWChar, lines),
            "(CAST(X'610D0A62' AS TEXT)),\n('a\nb');\n");
  EXPECT_EQ(Literals(SqlDialect::MariaDB, DataType::VarWChar, lines), "('a\\r\nb'),\n('a\nb');\n");
  EXPECT_EQ(Literals(SqlDialect::PostgreSQL, DataType::VarWChar, lines),
            "('a\r\nb'),\n('a\nb');\n");
}

TEST(SqlWriterTest, TruthsThatCameAsNumbersFitABooleanColumn) {
  const std::vector<Value> values = {WholeValue(0), WholeValue(1), WholeValue(2)};
  EXPECT_EQ(Literals(SqlDialect::PostgreSQL, DataType::Boolean, values),
            "(FALSE),\n(TRUE),\n(2);\n");
}

TEST(SqlWriterTest, NamesStandInTheQuotesOfTheDatabase) {
  ExportRows rows{{MemoryField("a b"), MemoryField("q]\"`")}, {{Value(), Value()}}};
  const auto head = [&](SqlDialect dialect, const std::string& table) {
    ExportChoices choices = SqlFor(dialect);
    choices.table = table;
    const std::string text = Written(choices, rows);
    const std::size_t start = text.find("INSERT");
    return text.substr(start, text.find(" VALUES") - start);
  };
  EXPECT_EQ(head(SqlDialect::SQLite, "my table"),
            "INSERT INTO \"my table\" (\"a b\", \"q]\"\"`\")");
  EXPECT_EQ(head(SqlDialect::PostgreSQL, "s.t"), "INSERT INTO s.t (\"a b\", \"q]\"\"`\")");
  EXPECT_EQ(head(SqlDialect::MariaDB, "[my table]"), "INSERT INTO `my table` (`a b`, `q]\"```)");
  EXPECT_EQ(head(SqlDialect::SqlServer, "t"), "INSERT INTO t ([a b], [q]]\"`])");
}

TEST(SqlWriterTest, RowsStandInStatementsOfSoMany) {
  ExportChoices choices = SqlFor(SqlDialect::SQLite);
  choices.rowsPerInsert = 2;
  const ExportRows rows =
      ColumnOf(DataType::Integer, {WholeValue(1), WholeValue(2), WholeValue(3)});
  EXPECT_EQ(Written(choices, rows),
            "INSERT INTO t (\"c\") VALUES\n(1),\n(2);\nINSERT INTO t (\"c\") VALUES\n(3);\n");
  const std::string big(400'000, 'x');
  const ExportRows long3 =
      ColumnOf(DataType::VarWChar, {TextValue(big), TextValue(big), TextValue(big)});
  choices.rowsPerInsert = 100;
  const std::string text = Written(choices, long3);
  EXPECT_EQ(text.find(";\n"),
            std::string("INSERT INTO t (\"c\") VALUES\n").size() + 2 * (big.size() + 4) + 2)
      << "a statement of much text ends";
}

TEST(SqlWriterTest, CreateTableFitsTheRows) {
  ExportChoices choices = SqlFor(SqlDialect::PostgreSQL);
  choices.createTable = true;
  FieldInfo id = MemoryField("id", DataType::Integer);
  id.nullable = false;
  FieldInfo price = MemoryField("price", DataType::Numeric);
  price.precision = 10;
  price.scale = 2;
  const ExportRows rows{{id, price, MemoryField("on", DataType::Boolean)}, {}};
  EXPECT_EQ(Written(choices, rows),
            "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n"
            "CREATE TABLE t (\n  \"id\" integer NOT NULL,\n  \"price\" numeric(10,2),\n  \"on\" "
            "boolean\n);\n");
}

TEST(SqlWriterTest, AMomentKeepsItsOffset) {
  FieldInfo at = MemoryField("at", DataType::DBTimeStamp);
  at.typeName = "timestamp with time zone";
  const auto type = [&at](SqlDialect dialect) {
    ExportChoices choices = SqlFor(dialect);
    choices.createTable = true;
    const std::string text = Written(choices, ExportRows{{at}, {}});
    const std::size_t begin = text.find("at") + 4;
    return text.substr(begin, text.find('\n', begin) - begin);
  };
  EXPECT_EQ(type(SqlDialect::PostgreSQL), "timestamp with time zone");
  EXPECT_EQ(type(SqlDialect::MariaDB), "longtext");
  EXPECT_EQ(type(SqlDialect::SqlServer), "datetimeoffset");
  EXPECT_EQ(type(SqlDialect::SQLite), "timestamp");
  at.typeName = "timestamp without time zone";
  EXPECT_EQ(type(SqlDialect::PostgreSQL), "timestamp");
}

TEST(SqlWriterTest, AColumnOfSqliteWithoutATypeStaysOne) {
  ExportChoices choices = SqlFor(SqlDialect::SQLite);
  choices.createTable = true;
  FieldInfo typed = MemoryField("typed");
  typed.typeName = "varchar(10)";
  const ExportRows rows{{MemoryField("any"), typed}, {}};
  EXPECT_THAT(Written(choices, rows),
              testing::HasSubstr("CREATE TABLE t (\n  \"any\",\n  \"typed\" text\n);"));
}

// --- what they share -----------------------------------------------------------------------------

TEST(CellsTest, KnowsNumbersAsJsonHasThem) {
  for (const char* number :
       {"0", "-0", "12", "1.50", "-0.001", "1e5", "1E+5", "12345678901234567890.5"})
    EXPECT_TRUE(IsPlainNumber(number)) << number;
  for (const char* other : {"", "-", "01", "1.", ".5", "1e", "+1", "NaN", "1 ", "0x1", "1,5"})
    EXPECT_FALSE(IsPlainNumber(other)) << other;
}

}  // namespace
}  // namespace tessel::test
