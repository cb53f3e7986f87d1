#include "logic/program/Misc.h"

#include <gtest/gtest.h>

#include "tests/headless/HeadlessDesktop.h"

namespace tessel {
namespace {

using namespace std::string_literals;

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

TEST(QuoteIdentifierTest, BracketsNamesWithSpaceOrLeadingDigit) {
  EXPECT_EQ(QuoteIdentifier("Order Details"), "[Order Details]");
  EXPECT_EQ(QuoteIdentifier("2005Sales"), "[2005Sales]");
  EXPECT_EQ(QuoteIdentifier("Sales-2005"), "Sales-2005");
  EXPECT_EQ(QuoteIdentifier("a.b"), "a.b");
  EXPECT_EQ(QuoteIdentifier("a ]b"), "[a ]b]");
  EXPECT_EQ(QuoteIdentifier(""), "");
}

TEST(IsIdentifierCharTest, HoldsTheClassAndNothingElse) {
  std::string members;
  for (int code = 0; code < 256; ++code)
    if (IsIdentifierChar(static_cast<char>(code))) members += static_cast<char>(code);
  EXPECT_EQ(members, "#$0123456789@ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

TEST(MakeInitialsTest, AbbreviatesByWordsAndCapitals) {
  EXPECT_EQ(MakeInitials("customer_order_id", false, true), "COI");
  EXPECT_EQ(MakeInitials("CustomerOrderID", true, false), "COID");
  EXPECT_EQ(MakeInitials("orders", true, true), "O");
  EXPECT_EQ(MakeInitials("", true, true), "");
  EXPECT_EQ(MakeInitials("order details\tx", false, true), "ODX");
  EXPECT_EQ(MakeInitials("order_details", false, false), "O");
  EXPECT_EQ(MakeInitials("fooBar_bazQux", true, true), "FBBQ");
}

TEST(MakeInitialsTest, RaisesTheCaseOfNonAsciiWordStartsOnly) {
  EXPECT_EQ(MakeInitials("älter_öfter", false, true), "ÄÖ");
  EXPECT_EQ(MakeInitials("aÄb", true, false), "A");
}

TEST(ByteToHexTest, WritesTwoUpperCaseDigits) {
  EXPECT_EQ(ByteToHex(0), "00");
  EXPECT_EQ(ByteToHex(10), "0A");
  EXPECT_EQ(ByteToHex(255), "FF");
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

TEST(ParseConnectionStringTest, FirstOfEqualKeysWinsAndValuesKeepTheirEqualsSigns) {
  const ConnectionPairs pairs =
      ParseConnectionString("Provider=X;;Data Source=a=b; user id =sa;PROVIDER=Y");
  EXPECT_EQ(pairs, (ConnectionPairs{{"PROVIDER", "X"}, {"DATA SOURCE", "a=b"}, {"USER ID", "sa"}}));
}

TEST(ParseConnectionStringTest, KeepsValuesUntrimmedAndTakesAPieceWithoutEqualsAsAKey) {
  const ConnectionPairs pairs = ParseConnectionString(" a = x ;flag;=nothing; ");
  EXPECT_EQ(pairs, (ConnectionPairs{{"A", " x "}, {"FLAG", ""}}));
  EXPECT_TRUE(ParseConnectionString("").empty());
}

TEST(GetConnectionStringValueTest, TakesTheFirstNameThatIsAKey) {
  const ConnectionPairs pairs = ParseConnectionString("Server=s;Data Source=");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"data source", "server"}), "");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"host", "server"}), "s");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"host"}), "");
}

TEST(AppendConnectionStringPairTest, LeavesTheStringUntouchedForAnEmptyValue) {
  std::string text;
  AppendConnectionStringPair(text, "A", "");
  EXPECT_EQ(text, "");
  AppendConnectionStringPair(text, "A", "1");
  AppendConnectionStringPair(text, "B", "2;3");
  AppendConnectionStringPair(text, "C", "");
  EXPECT_EQ(text, "A=1;B=2;3");
}

TEST(CutTest, CutsAtTheFirstAndKeepsAfterTheLastDelimiter) {
  std::string text = "a--b--c";
  CutAtFirst(text, "--");
  EXPECT_EQ(text, "a");
  CutAtFirst(text, "x");
  EXPECT_EQ(text, "a");
  text = "/home/me/file.sql";
  KeepAfterLast(text, "/");
  EXPECT_EQ(text, "file.sql");
  text = "a--b--c";
  KeepAfterLast(text, "--");
  EXPECT_EQ(text, "-c");
  KeepAfterLast(text, "zz");
  EXPECT_EQ(text, "-c");
}

TEST(EditableBackColorTest, GreysLockedFields) {
  EXPECT_EQ(EditableBackColor(true), 0x8000000FU);
  EXPECT_EQ(EditableBackColor(false), 0x80000005U);
}

TEST(IsKeyDownTest, AsksTheDesktop) {
  test::HeadlessDesktop desktop;
  EXPECT_FALSE(IsKeyDown(desktop, key::shift));
  desktop.HoldKey(key::shift);
  EXPECT_TRUE(IsKeyDown(desktop, key::shift));
}

}  // namespace
}  // namespace tessel
