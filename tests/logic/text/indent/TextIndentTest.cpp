#include "logic/text/indent/TextIndent.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

/// Where and why; empty when nothing is wrong.
std::string FaultOf(const std::string& text) {
  const IndentedText indented = Indent(text);
  return indented.fault ? FaultText(text, *indented.fault) : std::string();
}

TEST(TextIndentTest, GuessesByTheFirstSign) {
  EXPECT_EQ(GuessStructure(" \r\n{"), TextStructure::Json);
  EXPECT_EQ(GuessStructure("[1]"), TextStructure::Json);
  EXPECT_EQ(GuessStructure("{}"), TextStructure::Json);
  EXPECT_EQ(GuessStructure("{\"a\\\"b\" : 1"), TextStructure::Json);
  EXPECT_EQ(GuessStructure("{\"a"), TextStructure::Json) << "cut off";
  EXPECT_EQ(GuessStructure("{1,2,NULL}"), TextStructure::None) << "an array";
  EXPECT_EQ(GuessStructure("{\"a b\",c}"), TextStructure::None);
  EXPECT_EQ(GuessStructure("\xEF\xBB\xBF<?xml"), TextStructure::Xml);
  EXPECT_EQ(GuessStructure("<a/>"), TextStructure::Xml);
  EXPECT_EQ(GuessStructure("< 3"), TextStructure::None);
  EXPECT_EQ(GuessStructure("12"), TextStructure::None);
  EXPECT_EQ(GuessStructure("  "), TextStructure::None);
  EXPECT_EQ(GuessStructure(""), TextStructure::None);
}

TEST(TextIndentTest, JsonStandsOnLinesOfItsOwn) {
  EXPECT_EQ(Indent(R"( {"a":[1,{"b":null}],"c":{},"d":[ ],"e":"x\"\u00e9 y"} )").text,
            "{\n"
            "  \"a\": [\n"
            "    1,\n"
            "    {\n"
            "      \"b\": null\n"
            "    }\n"
            "  ],\n"
            "  \"c\": {},\n"
            "  \"d\": [],\n"
            "  \"e\": \"x\\\"\\u00e9 y\"\n"
            "}");
}

TEST(TextIndentTest, JsonKeepsEveryDigit) {
  const std::string number = "-0.100000000000000000000000000000000000001E+4000";
  EXPECT_EQ(Indent("[" + number + ",1.0,123456789012345678901234567890]").text,
            "[\n  " + number + ",\n  1.0,\n  123456789012345678901234567890\n]");
}

TEST(TextIndentTest, JsonThatIsIndentedStaysAsItIs) {
  const std::string once = Indent(R"([{"a":[true,false]},"\\"])").text;
  EXPECT_EQ(Indent(once).text, once);
}

TEST(TextIndentTest, BrokenJsonTellsThePlace) {
  EXPECT_EQ(FaultOf("[1,2"), "line 1, column 5: the text ends before its \"]\"");
  EXPECT_EQ(FaultOf("{\n\"\xC3\xA9\" 1}"), "line 2, column 5: a colon is missing");
  EXPECT_EQ(FaultOf("[1 2]"), "line 1, column 4: a comma is missing");
  EXPECT_EQ(FaultOf("[1]]"), "line 1, column 4: the text goes on behind its end");
  EXPECT_EQ(FaultOf("[1}"), "line 1, column 3: this bracket closes none that is open");
  EXPECT_EQ(FaultOf("[01]"), "line 1, column 3: a number begins with no 0");
  EXPECT_EQ(FaultOf("[1.]"), "line 1, column 4: a digit is missing");
  EXPECT_EQ(FaultOf("[nul]"), "line 1, column 2: this is no value");
  EXPECT_EQ(FaultOf("[1,]"), "line 1, column 4: this is no value");
  EXPECT_EQ(FaultOf("{a:1}"), "line 1, column 2: a name in double quotes should stand here");
  EXPECT_EQ(FaultOf("[\"x]"), "line 1, column 2: this string has no end");
  EXPECT_EQ(FaultOf("[\"\\x\"]"), "line 1, column 3: this is no escape");
  EXPECT_EQ(FaultOf("[\"\\u12g4\"]"), "line 1, column 3: \"\\u\" wants four hexadecimal digits");
  EXPECT_EQ(FaultOf("[\"a\nb\"]"), "line 1, column 4: a control character stands in a string");
  EXPECT_EQ(FaultOf("["), "line 1, column 2: the text ends where a value should stand");
}

TEST(TextIndentTest, XmlStandsOnLinesOfItsOwn) {
  EXPECT_EQ(Indent("<?xml version=\"1.0\"?><!DOCTYPE a [<!ELEMENT b (c)>]>"
                   "<a x='>'><!-- c --> <b/><c></c><d><e>1</e></d></a>")
                .text,
            "<?xml version=\"1.0\"?>\n"
            "<!DOCTYPE a [<!ELEMENT b (c)>]>\n"
            "<a x='>'>\n"
            "  <!-- c -->\n"
            "  <b/>\n"
            "  <c></c>\n"
            "  <d>\n"
            "    <e>1</e>\n"
            "  </d>\n"
            "</a>");
}

TEST(TextIndentTest, TextOfXmlStaysOnItsLine) {
  const std::string mixed = "<p>one <b>two</b>\n three<![CDATA[ <x> ]]></p>";
  EXPECT_EQ(Indent("<a>" + mixed + "</a>").text, "<a>\n  " + mixed + "\n</a>");
  const std::string kept = "<p xml:space=\"preserve\"> <b/> </p>";
  EXPECT_EQ(Indent(kept).text, kept);
}

TEST(TextIndentTest, BrokenXmlTellsThePlace) {
  EXPECT_EQ(FaultOf("<a>\n<b></a>"), "line 2, column 4: this tag should close \"b\"");
  EXPECT_EQ(FaultOf("<a><b></b>"), "line 1, column 1: this element is never closed");
  EXPECT_EQ(FaultOf("<a/><b/>"), "line 1, column 5: a second outermost element begins here");
  EXPECT_EQ(FaultOf("<a/>x"), "line 1, column 5: text stands outside of all elements");
  EXPECT_EQ(FaultOf("<a b='x>"), "line 1, column 1: an attribute of this tag has no closing quote");
  EXPECT_EQ(FaultOf("<a <b/>"), "line 1, column 1: this tag has no end");
  EXPECT_EQ(FaultOf("</a>"), "line 1, column 1: this tag closes no element");
  EXPECT_EQ(FaultOf("<!-- x"), "line 1, column 1: this comment has no end");
  EXPECT_EQ(FaultOf("<?xml?>"), "line 1, column 1: there is no element");
}

TEST(TextIndentTest, NoDepthIsTooMuch) {
  const std::string open(100'000, '[');
  EXPECT_EQ(Indent(open).fault->offset, open.size());
  const std::string nested = open + std::string(open.size(), ']');
  EXPECT_LT(Indent(nested).text.size(), 10'000'000U) << "lines do not begin ever farther in";
  std::string elements;
  for (int i = 0; i < 50'000; ++i) elements += "<a>";
  EXPECT_EQ(FaultOf(elements), "line 1, column 149998: this element is never closed");
}

/// The text without its blanks.
std::string Signs(std::string text) {
  std::erase_if(text, [](char character) { return IsBlank(character); });
  return text;
}

TEST(TextIndentTest, NothingButBlanksIsChangedInALongText) {
  std::string json = "[";
  while (json.size() < 500'000) json += R"({"id":12345,"name":"n","v":[1,2.50]},)";
  json += "1]";
  EXPECT_EQ(Signs(Indent(json).text), json);
  std::string xml = "<r>";
  while (xml.size() < 500'000) xml += "<row><name>some</name><v/></row>";
  xml += "</r>";
  EXPECT_EQ(Signs(Indent(xml).text), xml);
}

TEST(TextIndentTest, StepsComeToTheSameAsOneGo) {
  std::string json = "\xEF\xBB\xBF{\"list\":[";
  while (json.size() < 5'000) json += R"({"id":12345,"name":"n \u00e4","v":[1,2.50],"e":{}},)";
  json += "1]}";
  std::string xml = "<?xml version=\"1.0\"?><r>";
  while (xml.size() < 5'000) xml += "<row a=\"1\"><name>some <b/> text</name><v/></row>";
  xml += "</r>";
  for (const std::string& text : {json, xml, json + "!", xml + "<s/>", std::string("[1 2]")}) {
    const auto work = StartIndenting(text);
    int steps = 1;
    int percent = 0;
    for (; work->Step(100); ++steps) {
      EXPECT_GE(work->Percent(), percent);
      percent = work->Percent();
    }
    const IndentedText at = work->Result();
    const IndentedText whole = Indent(text);
    EXPECT_EQ(at.text, whole.text);
    EXPECT_EQ(at.structure, whole.structure);
    EXPECT_EQ(at.fault.has_value(), whole.fault.has_value());
    if (at.fault) {
      EXPECT_EQ(FaultText(text, *at.fault), FaultText(text, *whole.fault));
    }
    EXPECT_TRUE(text.size() < 4'000 || steps > 20) << steps;
  }
  EXPECT_EQ(StartIndenting("plain"), nullptr);
}

}  // namespace
}  // namespace tessel
