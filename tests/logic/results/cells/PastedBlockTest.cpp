#include "logic/results/cells/PastedBlock.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

using Block = TextBlock;

TEST(PastedBlock, RowsAndValuesOfText) {
  EXPECT_EQ(BlockOfText(""), Block{});
  EXPECT_EQ(BlockOfText("a"), (Block{{"a"}}));
  EXPECT_EQ(BlockOfText("a\tb\r\nc\td\r\n"), (Block{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(BlockOfText("a\t\n\n\tb"), (Block{{"a", ""}, {""}, {"", "b"}}));
  EXPECT_EQ(BlockOfText("a\rb"), (Block{{"a"}, {"b"}}));
}

TEST(PastedBlock, ValuesInQuotationMarksHoldWhatElseSeparates) {
  EXPECT_EQ(BlockOfText("\"a\tb\nc\"\td"), (Block{{"a\tb\nc", "d"}}));
  EXPECT_EQ(BlockOfText("\"say \"\"hi\"\"\"\n"), (Block{{"say \"hi\""}}));
  EXPECT_EQ(BlockOfText("\"\""), (Block{{""}}));
}

TEST(PastedBlock, MarksThatAreNoneOfASpreadsheetBelongToTheValue) {
  EXPECT_EQ(BlockOfText("\"a\" b\tc"), (Block{{"\"a\" b", "c"}}));
  EXPECT_EQ(BlockOfText("\"open\tc"), (Block{{"\"open", "c"}}));
  EXPECT_EQ(BlockOfText("5\" pipe\tc"), (Block{{"5\" pipe", "c"}}));
}

TEST(PastedBlock, TheFirstTableOfHtml) {
  EXPECT_EQ(
      BlockOfHtml("<html><style>td {x: '<y>'}</style><table border=1><TR><td>a &amp; b</td>"
                  "<td class=\"x\">\n  1 </td></TR><tr><td>l1<br>l2</td><td></td></tr></table>"
                  "<table><tr><td>no</td></tr></table>"),
      (Block{{"a & b", "1"}, {"l1\nl2", ""}}));
  EXPECT_EQ(BlockOfHtml("<table><tr><td>&#65;&#x42;&nbsp;&bogus;&#xFFFFFFFF;</td></tr></table>"),
            (Block{{"AB &bogus;&#xFFFFFFFF;"}}));
  EXPECT_EQ(BlockOfHtml("<p>no table</p>"), Block{});
  EXPECT_EQ(BlockOfHtml("<table><tr><td>cut"), (Block{{"cut"}}));
  EXPECT_EQ(BlockOfHtml("<table><!-- <tr> --><tr><td>x</td></tr></table"), (Block{{"x"}}));
}

TEST(PastedBlock, EntitiesAreTheirCharacters) {
  EXPECT_EQ(BlockOfHtml("<td>&uuml;&Uuml;&euro;&hellip;&thetasym;&apos;&AMP;&uuml"),
            (Block{{"\u00FC\u00DC\u20AC\u2026\u03D1'&AMP;&uuml"}}));
}

TEST(PastedBlock, ACellOfSeveralPlacesKeepsTheOthersInTheirs) {
  EXPECT_EQ(BlockOfHtml("<table><tr><td colspan=2>a</td><td ROWSPAN=\"2\">b</td><td>c</td></tr>"
                        "<tr><td>d</td><td>e</td><td>f</td></tr>"
                        "<tr><td rowspan='3' colspan='2'>g<td>h<td rowspan=2>i</tr>"
                        "<tr><td>j</td></tr><tr><td>k</td></tr></table>"),
            (Block{{"a", "", "b", "c"},
                   {"d", "e", "", "f"},
                   {"g", "", "h", "i"},
                   {"", "", "j", ""},
                   {"", "", "k"}}));
}

TEST(PastedBlock, ARowOfHeadsIsLeftOut) {
  EXPECT_EQ(
      BlockOfHtml("<table><tr><th>id</th><th>n</th></tr><tr><td>1</td><td>2</td></tr></table>"),
      (Block{{"1", "2"}}));
  EXPECT_EQ(BlockOfHtml("<table><tr><th>id</th><td>1</td></tr></table>"), (Block{{"id", "1"}}));
}

}  // namespace
}  // namespace tessel
