#include "contract/text/ConnectionParts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessel {
namespace {

using testing::ElementsAre;

std::vector<std::string> Read(std::string_view text, Wrapping wrapping = Wrapping::Braces) {
  std::vector<std::string> parts;
  for (const ConnectionPart& part : ConnectionParts(text, wrapping))
    parts.push_back(std::string(part.name) + (part.hasValue ? "=" : "") + std::string(part.text));
  return parts;
}

std::vector<std::string> ReadWithQuotes(std::string_view text) {
  return Read(text, Wrapping::BracesAndQuotes);
}

TEST(ConnectionPartsTest, KeepTheirOrderAndSpelling) {
  EXPECT_THAT(Read(" Server = s ;x;Database={a;b};=y;Port="),
              ElementsAre("Server= s ", "x", "Database={a;b}", "=y", "Port="));
  EXPECT_THAT(Read(""), ElementsAre());
  EXPECT_THAT(Read(";;A=b=c"), ElementsAre("", "", "A=b=c"));
}

TEST(ConnectionPartsTest, ABracedValueGoesOnToTheBraceThatIsNotDoubled) {
  EXPECT_THAT(Read("PWD={a}};b};B=2"), ElementsAre("PWD={a}};b}", "B=2"));
  EXPECT_THAT(Read("A= {x;y=z} ;B=2"), ElementsAre("A= {x;y=z} ", "B=2"));
  EXPECT_THAT(Read("A={}}};B=2"), ElementsAre("A={}}}", "B=2"));
  EXPECT_THAT(Read("A={x}y;B=2"), ElementsAre("A={x}y", "B=2"));
}

TEST(ConnectionPartsTest, AValueWithoutItsEndGoesOnToTheEndOfTheText) {
  EXPECT_THAT(Read("A={x;B=2"), ElementsAre("A={x;B=2"));
  EXPECT_THAT(Read("A={x}};B=2"), ElementsAre("A={x}};B=2"));
  EXPECT_THAT(Read("A=x{y;B=2"), ElementsAre("A=x{y", "B=2"));
  EXPECT_THAT(ReadWithQuotes("A='x;B=2"), ElementsAre("A='x;B=2"));
}

TEST(ConnectionPartsTest, QuotesWrapOnlyWhereTheyAreAskedFor) {
  EXPECT_THAT(Read("A='x;y';B=2"), ElementsAre("A='x", "y'", "B=2"));
  EXPECT_THAT(ReadWithQuotes("A='x;y';B=2"), ElementsAre("A='x;y'", "B=2"));
  EXPECT_THAT(ReadWithQuotes("A=\"x;\"\"y\";B={z;}"), ElementsAre("A=\"x;\"\"y\"", "B={z;}"));
}

TEST(ConnectionPartsTest, ABareValueHasNothingAroundItAndNothingDoubled) {
  EXPECT_EQ(BareValue("{a}};b}", Wrapping::Braces), "a};b");
  EXPECT_EQ(BareValue("{}", Wrapping::Braces), "");
  EXPECT_EQ(BareValue("{}}}", Wrapping::Braces), "}");
  EXPECT_EQ(BareValue("'it''s'", Wrapping::BracesAndQuotes), "it's");
  for (const char* plain : {"", "{", "}", "{x", "x}", "'x'", "a''b"})
    EXPECT_EQ(BareValue(plain, Wrapping::Braces), plain);
  EXPECT_EQ(BareValue("'", Wrapping::BracesAndQuotes), "'");
}

TEST(ConnectionPartsTest, EveryValueSurvivesBraces) {
  for (const std::string value :
       {"plain", "", " x", "x ", "a;b", "a=b", "{", "}", "}}", "{a}", "};", "'", "'a;b'"}) {
    const std::string text = "K=" + BracedValue(value) + ";L=1";
    const auto parts = ConnectionParts(text, Wrapping::Braces);
    ASSERT_EQ(parts.size(), 2U) << text;
    EXPECT_EQ(BareValue(parts[0].Value(), Wrapping::Braces), value) << text;
  }
  EXPECT_EQ(BracedValue("plain text"), "plain text");
}

}  // namespace
}  // namespace tessel
