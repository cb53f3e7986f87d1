#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "tests/logic/import/ImportSources.h"

namespace tessel {
namespace {

using test::RecordsOf;
using test::SourceOf;
using testing::ElementsAre;

std::string FailureOf(const std::string& text, const ImportFormat& format = {}) {
  try {
    (void)RecordsOf(SourceOf(text), format);
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}

TEST(DelimitedReader, TakesValuesApart) {
  EXPECT_THAT(RecordsOf(SourceOf("a,b,c\n1,,3\r\n\"x\",\"\",\"y,\"\"z\"\"\"\n"), {}),
              ElementsAre("1|a|b|c", "2|1|NULL|3", "3|'x'|''|'y,\"z\"'"));
}

TEST(DelimitedReader, CountsLinesWithinQuotes) {
  EXPECT_THAT(RecordsOf(SourceOf("a\n\"one\ntwo\r\nthree\rfour\"\nb"), {}),
              ElementsAre("1|a", "2|'one\ntwo\r\nthree\rfour'", "6|b"));
}

TEST(DelimitedReader, TakesEveryKindOfLineEnd) {
  EXPECT_THAT(RecordsOf(SourceOf("a,b\rc,d\r\ne,f"), {}), ElementsAre("1|a|b", "2|c|d", "3|e|f"));
  EXPECT_THAT(RecordsOf(SourceOf("a,b\r"), {}), ElementsAre("1|a|b"));
}

TEST(DelimitedReader, LeavesOutEmptyLinesUnlessThereIsOneColumn) {
  EXPECT_THAT(RecordsOf(SourceOf("a,b\n\n1,2\n\n"), {}), ElementsAre("1|a|b", "3|1|2"));
  EXPECT_THAT(RecordsOf(SourceOf("a\n\n1\n"), {}), ElementsAre("1|a", "2|NULL", "3|1"));
}

TEST(DelimitedReader, OnlyAValueWithoutQuotesIsNull) {
  ImportFormat format;
  format.nullText = "\\N";
  EXPECT_THAT(RecordsOf(SourceOf("a,b\n\\N,\"\\N\"\n,x"), format),
              ElementsAre("1|a|b", "2|NULL|'\\N'", "3||x"));
}

TEST(DelimitedReader, OtherDelimitersAreText) {
  ImportFormat format;
  format.delimiter = '\t';
  EXPECT_THAT(RecordsOf(SourceOf("a,b\tc;d\n\"x\"\t\n"), format),
              ElementsAre("1|a,b|c;d", "2|'x'|NULL"));
}

TEST(DelimitedReader, EveryPieceGivesTheSame) {
  const std::string text = "id,text\r\n1,\"a\"\"b\r\n,c\"\r\n22,\"\"\r\n333,plain\r\n";
  const auto whole = RecordsOf(SourceOf(text), {}, 1000);
  for (std::size_t piece = 1; piece < 20; ++piece)
    EXPECT_EQ(RecordsOf(SourceOf(text), {}, piece), whole) << piece;
}

TEST(DelimitedReader, TellsWhereAQuoteIsNotClosed) {
  EXPECT_EQ(FailureOf("a,b\n1,2\n3,\"never\nclosed\n4,5\n"),
            "Line 3, value 2: the quote that begins this value is never closed.");
}

TEST(DelimitedReader, TellsOfWhatStandsBehindAQuote) {
  EXPECT_EQ(FailureOf("a,b\n\"x\" y,2\n"),
            "Line 2, value 1: behind the closing quote of a value comes something else than the "
            "delimiter.");
  EXPECT_THAT(RecordsOf(SourceOf("\"x\" ,2"), {}), ElementsAre("1|'x'|2"));
}

TEST(DelimitedReader, DecodesWhatIsNoUtf8) {
  ImportFormat format;
  format.encoding = TextEncoding::Windows1252;
  EXPECT_THAT(RecordsOf(SourceOf("Z\xFCrich,\x80"), format), ElementsAre("1|Z\u00FCrich|\u20AC"));
  format.encoding = TextEncoding::Utf16LittleEndian;
  EXPECT_THAT(RecordsOf(SourceOf(std::string("\xFF\xFE"
                                             "a\0,\0\x3D\xD8\x00\xDE\n\0b\0",
                                             14)),
                        format),
              ElementsAre("1|a|\U0001F600", "2|b"));
}

TEST(DelimitedReader, LeavesOutAMark) {
  EXPECT_THAT(RecordsOf(SourceOf("\xEF\xBB\xBF"
                                 "a,b\n"),
                        {}),
              ElementsAre("1|a|b"));
}

TEST(JsonReader, ReadsAnArrayAndLines) {
  ImportFormat format;
  format.kind = ImportFormat::Kind::Json;
  const auto expected = ElementsAre("2|1|'x'", "3|2.50|NULL", "4|NULL|{\"y\": [1, \"}\"]}");
  EXPECT_THAT(RecordsOf(SourceOf("[\n{\"a\": 1, \"b\": \"x\"},\n{\"a\":2.50,\"b\":null},\n{\"b\": "
                                 "{\"y\": [1, \"}\"]}}\n]\n"),
                        format),
              expected);
  EXPECT_THAT(RecordsOf(SourceOf("\n{\"a\": 1, \"b\": \"x\"}\n{\"a\":2.50,\"b\":null}\n{\"b\": "
                                 "{\"y\": [1, \"}\"]}}"),
                        format),
              expected);
}

TEST(JsonReader, ReadsEscapes) {
  ImportFormat format;
  format.kind = ImportFormat::Kind::Json;
  EXPECT_THAT(
      RecordsOf(SourceOf(R"({"a": "\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00", "b": true})"), format),
      ElementsAre("1|'\"\\/\b\f\n\r\t\u00E9\U0001F600'|true"));
}

TEST(JsonReader, TellsThePlaceOfWhatIsWrong) {
  ImportFormat format;
  format.kind = ImportFormat::Kind::Json;
  EXPECT_EQ(FailureOf("[{\"a\": 1},\n {\"a\": x}]", format),
            "Line 2, character 8: this is no value of JSON.");
  EXPECT_EQ(FailureOf("[{\"a\": 1}\n {\"a\": 2}]", format),
            "Line 2: behind a record comes something else than the next one.");
  EXPECT_EQ(FailureOf("[{\"a\": 1},\n {\"a\": 2}", format),
            "Line 2: the array of records has no end.");
  EXPECT_EQ(FailureOf("{\"a\": 1}\n{\"a\": \"2", format),
            "Line 2: the object that begins here has no end.");
  EXPECT_EQ(FailureOf("{\"a\": \"\\ud83d\"}", format),
            "Line 1, character 14: half of a character stands alone.");
  EXPECT_EQ(FailureOf("{\"a\": 1}\n{\"b\": 1, \"a\": 2, \"a\": 3}", format),
            "Line 2: \"a\" stands twice in this object.");
  EXPECT_EQ(FailureOf("{\"a\" 1}", format),
            "Line 1, character 6: behind the name of a value a colon is missing.");
}

}  // namespace
}  // namespace tessel
