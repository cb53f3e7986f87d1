#include "logic/tags/TagScanner.h"

#include <gtest/gtest.h>

#include <ctime>
#include <map>
#include <random>
#include <vector>

#include "contract/base/Error.h"
#include "logic/program/Global.h"
#include "logic/tags/TagValue.h"
#include "tests/headless/HeadlessServices.h"
#include "tests/support/TagScannerProperty.h"

namespace tessel {
namespace {

/// Knows texts by name and writes down what it is asked.
class Names final : public TagResolver {
 public:
  bool Yield() override { return ++yields != cancelAt; }
  std::string Resolve(const Tag& tag) override {
    asked.push_back(tag);
    const auto found = texts.find(tag.name);
    if (found == texts.end()) RaiseAppError("no " + tag.name);
    return FormatTagText(found->second, tag.List(), tag.Quoted());
  }

  std::map<std::string, std::string> texts = {{"T", "5"}, {"Q", "a'b"}, {"", "pasted"}};
  std::vector<Tag> asked;
  int yields = 0;
  int cancelAt = 0;
};

class SubstituteTagsTest : public ::testing::Test {
 protected:
  std::string Filled(std::string_view sql) {
    const SubstitutedText result = SubstituteTags(sql, names);
    used = result.usedSources;
    return result.text;
  }
  std::string Failure(std::string_view sql) {
    try {
      return "no failure: " + Filled(sql);
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::application);
      EXPECT_EQ(error.Info().source, "Tessel");
      return error.Description();
    }
  }
  void ExpectUnchanged(std::string_view sql) {
    EXPECT_EQ(Filled(sql), sql);
    EXPECT_EQ(used, 0);
    EXPECT_TRUE(names.asked.empty());
  }

  Names names;
  int used = -1;
};

TEST_F(SubstituteTagsTest, ATextWithoutTagsIsUnchanged) {
  for (const char* sql : {"", "<", "<%", "a", "ab", "select 1", "a > b } c % d * e", "\r\n\t"})
    ExpectUnchanged(sql);
}

TEST_F(SubstituteTagsTest, AnOpeningWithoutMarkerIsOrdinaryText) {
  ExpectUnchanged("a<b AND c{d");
  ExpectUnchanged("a<=b, c<>d, {fn now()}, {d '2020-01-01'}, << %, {{ *");
}

TEST_F(SubstituteTagsTest, ATagInAStringLiteralIsLeftAsItStands) {
  ExpectUnchanged("WHERE x = '<%?T%>'");
  EXPECT_EQ(Filled("'<%?T%>' <%?T%> '<%?T%>'"), "'<%?T%>' 5 '<%?T%>'");
}

TEST_F(SubstituteTagsTest, ADoubledQuoteEndsAndReopensTheLiteral) {
  EXPECT_EQ(Filled("'it''s <%?T%>' <%?T%>"), "'it''s <%?T%>' 5");
  EXPECT_EQ(Filled("'' <%?T%>"), "'' 5");
}

TEST_F(SubstituteTagsTest, EveryTagAfterAnUnterminatedLiteralIsLeft) {
  EXPECT_EQ(Filled("<%?T%> 'x <%?T%> <%#%>"), "5 'x <%?T%> <%#%>");
  EXPECT_EQ(used, tagSource::named);
}

TEST_F(SubstituteTagsTest, PlacesAreFoundAgainInTheTaggedText) {
  names.texts["L"] = "a long text";
  names.texts["E"] = "";
  const std::string sql = "x <%?L%> y <%?E%>z <%?T%>";
  const SubstitutedText result = SubstituteTags(sql, names);
  ASSERT_EQ(result.text, "x a long text y z 5");
  const auto tagged = [&](std::size_t begin, std::size_t end) {
    const TextRange range = InTaggedText({begin, end}, result.tags);
    return sql.substr(range.begin, range.end - range.begin);
  };
  EXPECT_EQ(tagged(0, 1), "x");
  EXPECT_EQ(tagged(4, 8), "<%?L%>");
  EXPECT_EQ(tagged(14, 15), "y");
  EXPECT_EQ(tagged(16, 17), "z");
  EXPECT_EQ(tagged(18, 19), "<%?T%>");
  EXPECT_EQ(tagged(0, 19), sql);
  EXPECT_EQ(tagged(0, 4), "x <%?L%>");
}

TEST_F(SubstituteTagsTest, AnOpeningInTheLastTwoPositionsIsNotLookedAt) {
  ExpectUnchanged("SELECT 1 <%");
  ExpectUnchanged("SELECT 1 {*");
  ExpectUnchanged("SELECT 1 <");
  EXPECT_EQ(Failure("SELECT 1 <%x"), "Unknown tag type: 'x'");
}

TEST_F(SubstituteTagsTest, TheLastTwoPositionsAreThoseOfTheTextSoFar) {
  names.texts["T"] = "a long text in the place of the tag";
  EXPECT_EQ(Filled("<%?T%><%"), names.texts["T"] + "<%");
  names.texts["T"] = "";
  EXPECT_EQ(Filled("<%?T%><%"), "<%");
  EXPECT_EQ(Failure("<%?T%><%?"), "Missing '%>'");
}

TEST_F(SubstituteTagsTest, ATagWithoutEndSaysWhatIsMissing) {
  EXPECT_EQ(Failure("<%?Name"), "Missing '%>'");
  EXPECT_EQ(Failure("{%?Name%>"), "Missing '%}'");
  EXPECT_EQ(Failure("<*?Name%>"), "Missing '*>'");
  EXPECT_EQ(Failure("<%?"), "Missing '%>'");
}

TEST_F(SubstituteTagsTest, TheEndIsThatOfTheOpeningEvenWhenItComesLater) {
  EXPECT_EQ(Failure("{*?Name*>"), "Missing '*}'");
  EXPECT_EQ(Failure("{*?Name*> x *}"), "no Name*> x ");
  EXPECT_EQ(names.asked.at(0).name, "Name*> x ");
}

TEST_F(SubstituteTagsTest, AnUnknownTypeIsNamed) {
  EXPECT_EQ(Failure("<%#x%>"), "Unknown tag type: '#'");
  EXPECT_EQ(Failure("x {* y"), "Unknown tag type: ' '");
  EXPECT_EQ(Failure("<%'%>"), "Unknown tag type: '''");
}

TEST_F(SubstituteTagsTest, AnUnknownTypeIsNamedAsAWholeCharacter) {
  EXPECT_EQ(Failure("<%\xC3\xA4x%>"), "Unknown tag type: '\xC3\xA4'");
  EXPECT_EQ(Failure("<%\xF0\x9F\x98\x80"), "Unknown tag type: '\xF0\x9F\x98\x80'");
  EXPECT_EQ(Failure("<%\xFFx%>"), "Unknown tag type: '\xFF'");
}

TEST_F(SubstituteTagsTest, TheFourFormsOfATagGiveTheirFlags) {
  names.texts["F"] = "v";
  EXPECT_EQ(Filled("<%=F%><*=F*>{%=F%}{*=F*}"), "v'v'(v)('v')");
  ASSERT_EQ(names.asked.size(), 4U);
  for (int flags = 0; flags < 4; ++flags) {
    const Tag& tag = names.asked.at(static_cast<std::size_t>(flags));
    EXPECT_EQ(tag.flags, flags);
    EXPECT_EQ(tag.type, '=');
    EXPECT_EQ(tag.name, "F");
  }
}

TEST_F(SubstituteTagsTest, ANumberInParenthesesAndAQuotedTextInParentheses) {
  EXPECT_EQ(Filled("{%?T%}"), "(5)");
  EXPECT_EQ(Filled("{*?Q*}"), "('a''b')");
}

TEST_F(SubstituteTagsTest, ATextThatLooksLikeATagIsNotExpandedAgain) {
  names.texts["T"] = "<%?T%> {%#";
  EXPECT_EQ(Filled("<%?T%>;<%?T%>"), "<%?T%> {%#;<%?T%> {%#");
  names.texts["T"] = "it's";
  EXPECT_EQ(Filled("<%?T%> <%?T%>"), "it's it's");
}

TEST_F(SubstituteTagsTest, TheUsedSourcesAreThoseOfTheTypesMet) {
  names.texts["x"] = "1";
  const std::vector<std::pair<std::string, int>> cases = {{"x", 0},
                                                          {"<%=x%>", 1},
                                                          {"<%?x%>", 2},
                                                          {"<%^%>", 4},
                                                          {"<%=x%><%?x%>", 3},
                                                          {"{*^*}{*=x*}", 5},
                                                          {"<%?x%>'<%=x%>'", 2},
                                                          {"<%=x%><%?x%><%^%><%=x%>", 7}};
  for (const auto& [sql, expected] : cases) {
    static_cast<void>(Filled(sql));
    EXPECT_EQ(used, expected) << sql;
  }
}

TEST_F(SubstituteTagsTest, NamesMayBeEmptyAndHoldAnything) {
  names.texts["a 'b\r\n<%?T% >"] = "odd";
  EXPECT_EQ(Filled("<%?a 'b\r\n<%?T% >%>"), "odd");
  names.texts["n\xC3\xA4me"] = "utf";
  EXPECT_EQ(Filled("<%?n\xC3\xA4me%>"), "utf");
  EXPECT_EQ(Filled("<%?%>"), "pasted");
}

TEST_F(SubstituteTagsTest, TheFirstBadTagStopsTheScan) {
  EXPECT_EQ(Failure("<%?T%> <%?none%> <%#"), "no none");
  EXPECT_EQ(names.asked.size(), 2U);
}

TEST_F(SubstituteTagsTest, ItYieldsBeforeEachTagAndACancelIsRaised) {
  EXPECT_EQ(Filled("<%?T%><%?T%><%?T%>"), "555");
  EXPECT_EQ(names.yields, 3);
  names.cancelAt = 5;
  EXPECT_EQ(Failure("<%?T%><%?T%><%?T%>"), "Cancelled.");
  EXPECT_EQ(names.asked.size(), 4U);
}

TEST_F(SubstituteTagsTest, ABadTagIsReportedBeforeTheCancel) {
  names.cancelAt = 1;
  EXPECT_EQ(Failure("<%#"), "Unknown tag type: '#'");
  EXPECT_EQ(Failure("<%?T"), "Missing '%>'");
  EXPECT_EQ(names.yields, 0);
}

/// Half a million tags take under a second; work that grows with the square takes minutes.
/// In processor time, which other work on the machine does not add to: four times the text would
/// take sixteen times as long if any of it were done again for each tag.
TEST_F(SubstituteTagsTest, LargeTextsTakeLinearTime) {
  const auto ticksFor = [this](int tags) {
    std::string sql;
    for (int i = 0; i < tags; ++i) sql += "<%?T%> < 'x' ";
    const std::clock_t start = std::clock();
    const std::string filled = Filled(sql);
    const std::clock_t ticks = std::clock() - start;
    EXPECT_EQ(filled.size(), std::string("5 < 'x' ").size() * static_cast<std::size_t>(tags));
    return ticks;
  };
  constexpr int tags = 50'000;
  const std::clock_t once = ticksFor(tags);
  EXPECT_LT(ticksFor(4 * tags), 10 * once);
  EXPECT_EQ(names.yields, 5 * tags);
}

TEST(MakeTagTextTest, WritesTheFormOfTheFlags) {
  EXPECT_EQ(MakeTagText("Value", 0, '='), "<%=Value%>");
  EXPECT_EQ(MakeTagText("String", 1, '='), "<*=String*>");
  EXPECT_EQ(MakeTagText("ValueSet", 2, '='), "{%=ValueSet%}");
  EXPECT_EQ(MakeTagText("StringSet", 3, '='), "{*=StringSet*}");
  EXPECT_EQ(MakeTagText("Value", 0, '?'), "<%?Value%>");
  EXPECT_EQ(MakeTagText("", 0, '^'), "<%^%>");
}

/// Texts put together from the pieces that mean something, and some that are cut or strange.
std::string RandomText(std::mt19937& random) {
  static const std::vector<std::string> pieces = {
      "<",  "{",  "%",  "*",  "=",  "?",      "^",   "'",        ">",      "}",
      "%>", "*>", "%}", "*}", "<%", "{*",     "<%?", "{*=",      "<%?a%>", "{%=b c%}",
      "!",  "#",  " ",  "x",  "\n", "select", "''",  "\xC3\xA4", "\xFF",   std::string(1, '\0')};
  std::string text;
  for (unsigned left = random() % 24; left > 0; --left) text += pieces[random() % pieces.size()];
  return text;
}

TEST(TagScannerPropertyTest, RandomTextsComeOutAsStepByStep) {
  std::mt19937 random(20240607);
  for (int i = 0; i < 20'000; ++i)
    ASSERT_EQ(test::ComplaintAboutTags(RandomText(random)), "") << "text number " << i;
}

TEST(FormatTagTextTest, QuotesFirstAndThenPutsInParentheses) {
  EXPECT_EQ(FormatTagText("a'b", false, false), "a'b");
  EXPECT_EQ(FormatTagText("a'b", false, true), "'a''b'");
  EXPECT_EQ(FormatTagText("a'b", true, false), "(a'b)");
  EXPECT_EQ(FormatTagText("a'b", true, true), "('a''b')");
}

class ClipboardTagTest : public ::testing::Test {
 protected:
  std::string Failure(const std::string& name) {
    try {
      return "no failure: " + GetClipboardTag(clipboard, name, false, false);
    } catch (const Error& error) {
      return error.Description();
    }
  }
  test::HeadlessClipboard clipboard;
};

TEST_F(ClipboardTagTest, StandsForTheClipboardInTheFormOfTheTag) {
  clipboard.SetText("it's");
  EXPECT_EQ(GetClipboardTag(clipboard, "", false, false), "it's");
  EXPECT_EQ(GetClipboardTag(clipboard, "", true, true), "('it''s')");
}

TEST_F(ClipboardTagTest, AnEmptyClipboardIsAFailure) {
  EXPECT_EQ(Failure(""), "The clipboard is empty.");
}

TEST_F(ClipboardTagTest, ANameIsAFailureBeforeTheClipboardIsRead) {
  EXPECT_EQ(Failure("x"), "Unsupported tag: 'x'");
  clipboard.SetText("text");
  EXPECT_EQ(Failure("x"), "Unsupported tag: 'x'");
}

}  // namespace
}  // namespace tessel
