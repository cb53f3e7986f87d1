#include "logic/tags/ValueFormat.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

ValueFormat Quoted(std::string quote, std::string escapeStyle = "") {
  ValueFormat format;
  format.quote = std::move(quote);
  format.escapeStyle = std::move(escapeStyle);
  return format;
}

TEST(SqlQuoteTest, DoublesQuotesInsideAndNothingElse) {
  EXPECT_EQ(SqlQuote("O'Brien"), "'O''Brien'");
  EXPECT_EQ(SqlQuote(""), "''");
  EXPECT_EQ(SqlQuote("a\\b\n\"c\""), "'a\\b\n\"c\"'");
  EXPECT_EQ(SqlQuote("''"), "''''''");
}

TEST(FormatValueTest, NullIsTheNullTextAlone) {
  ValueFormat format = Quoted("'");
  format.nullText = "NULL";
  format.delimiters = {",", "<", ">"};
  EXPECT_EQ(FormatValue(ValueView(), format), "NULL");
}

TEST(FormatValueTest, WritesBooleansAsDigitsUnquoted) {
  EXPECT_EQ(FormatValue(true, Quoted("'")), "1");
  EXPECT_EQ(FormatValue(false, Quoted("'")), "0");
}

TEST(FormatValueTest, LeavesNumbersUnquotedBetweenPrefixAndSuffix) {
  ValueFormat format = Quoted("'");
  format.delimiters = {",", "(", ")"};
  EXPECT_EQ(FormatValue(std::int64_t{-5}, format), "(-5)");
  EXPECT_EQ(FormatValue(DecimalView{"12345678901234567890.10"}, format),
            "(12345678901234567890.10)");
  EXPECT_EQ(FormatValue(0.1, format), "(0.1)");
  EXPECT_EQ(FormatValue(0.1F, format), "(0.1)");
}

TEST(FormatValueTest, QuotesTextsAndMomentsInsidePrefixAndSuffix) {
  ValueFormat format = Quoted("'");
  format.delimiters = {",", "(", ")"};
  EXPECT_EQ(FormatValue(std::string_view("it's"), format), "('it''s')");
  EXPECT_EQ(FormatValue(MomentView{"2024-02-29 10:00:00"}, format), "('2024-02-29 10:00:00')");
}

TEST(FormatValueTest, WritesBinaryAsHexadecimalOrAsText) {
  const Bytes bytes = {std::byte{0x41}, std::byte{0x0F}, std::byte{0x27}};
  ValueFormat hex = Quoted("'");
  hex.hexBinary = true;
  EXPECT_EQ(FormatValue(BinaryView{bytes}, hex), "0x410F27");
  EXPECT_EQ(FormatValue(BinaryView{}, hex), "0x");
  EXPECT_EQ(FormatValue(BinaryView{bytes}, Quoted("'")), "'A\x0F'''");
}

TEST(FormatValueTest, EscapesAsInC) {
  EXPECT_EQ(FormatValue(std::string_view("a\"b"), Quoted("\"", "\\")), "\"a\\\"b\"");
  EXPECT_EQ(FormatValue(std::string_view("\\\t\n\r\x01\x1F'"), Quoted("", "\\")),
            "\\\\\\t\\n\\r\\x01\\x1F'");
  EXPECT_EQ(FormatValue(std::string_view("a'b"), Quoted("'", "\\")), "'a'b'");
}

TEST(FormatValueTest, EscapesAsInHtml) {
  EXPECT_EQ(FormatValue(std::string_view("  x"), Quoted("", "&")), " &nbsp;x");
  EXPECT_EQ(FormatValue(std::string_view("<a href=\"b\">&"), Quoted("", "&")),
            "&lt;a href=&quot;b&quot;&gt;&amp;");
  EXPECT_EQ(FormatValue(std::string_view("a\r\nb\tc\x1B"), Quoted("", "&")),
            "a<br>\r\nb&#09;c&#1B;");
  EXPECT_EQ(FormatValue(std::string_view("    "), Quoted("", "&")), " &nbsp;&nbsp;&nbsp;");
}

TEST(FormatValueTest, DoublesAnyOtherEscapeText) {
  EXPECT_EQ(FormatValue(std::string_view("a^^b^"), Quoted("'", "^")), "'a^^^^b^^'");
  EXPECT_EQ(FormatValue(std::string_view("xabab'"), Quoted("'", "ab")), "'xabababab''");
  EXPECT_EQ(FormatValue(std::string_view("a\"b"), Quoted("\"")), "\"a\"\"b\"");
}

TEST(FormatValueTest, KeepsNonAsciiTextInEveryStyle) {
  for (const char* style : {"", "\\", "&", "^"})
    EXPECT_EQ(FormatValue(std::string_view("Ünï😀"), Quoted("", style)), "Ünï😀") << style;
}

}  // namespace
}  // namespace tessel
