// Texts that all dialects divide alike, and those that several quote or comment in another way.

#include "tests/contract/base/SqlCorpus.h"

namespace tessel::test {

using namespace std::string_view_literals;
using enum SqlDialect;

namespace {

const std::vector<SqlDialect> all{Standard, PostgreSQL, MariaDB, SQLite, SqlServer};
const std::vector<SqlDialect> plainStrings{Standard, PostgreSQL, SQLite, SqlServer};
const std::vector<SqlDialect> nestedComments{PostgreSQL, SqlServer};
const std::vector<SqlDialect> flatComments{Standard, MariaDB, SQLite};
const std::vector<SqlDialect> backticks{Standard, MariaDB, SQLite};

}  // namespace

std::vector<SqlCase> PlainSqlCases() {
  return {
      // Delimiters and blanks.
      {"NothingAtAll", all, ""},
      {"BlanksOnly", all, " \t\r\n\v\f "},
      {"OneStatementWithoutADelimiter", all, "«select 1»"},
      {"OneStatementWithItsDelimiter", all, "«select 1»;"},
      {"TwoStatements", all, "«select 1»;«select 2»"},
      {"BlanksAroundStatements", all, "  «select 1»  ; \t «select 2»  "},
      {"BlanksWithinAStatement", all, "«select\n\n 1»\n\n;"},
      {"DelimitersOnly", all, ";;;"},
      {"EmptyStatementsBetween", all, "«select 1»;; ;«select 2»; ;"},
      {"DelimiterInFront", all, "; «select 1»"},
      {"LinesEndingWithLf", all, "«select 1»;\n«select 2»;\n"},
      {"LinesEndingWithCrLf", all, "«select 1»;\r\n«select 2»;\r\n"},
      {"LinesEndingWithCr", all, "«select 1»;\r«select 2»;\r"},
      {"AMarkOfTheByteOrderInFront", all, "\xEF\xBB\xBF«select 1»;"},
      {"AMarkOfTheByteOrderAlone", all, "\xEF\xBB\xBF"},
      {"ANulByteIsASign", all, "«select \0 1»;«\0»;"sv},
      {"LettersBeyondAscii", all, "«sélect größe»;«選択»"},
      {"BytesThatAreNoUtf8", all, "«select \xFF\x80»;«\xC3»"},
      {"OneSign", all, "«+»"},
      // Strings and quoted names.
      {"ASemicolonInAString", all, "«select ';'»;«select 2»"},
      {"ADoubledQuoteInAString", all, "«select 'it''s;'»;«select 2»"},
      {"AStringOfOneQuote", all, "«select ''''»;«select 2»"},
      {"AnEmptyString", all, "«select ''»;«select 2»"},
      {"AStringOverLines", all, "«select 'a\n;\nb'»;«select 2»"},
      {"StringsSideBySide", all, "«select 'a' ';' 'b'»;«select 2»"},
      {"ACommentMarkInAString", all, "«select '-- /*'»;«select 2»"},
      {"AStringWithoutAnEnd", all, "«select 1»;«select 'a; select 2»"},
      {"AStringOfItsQuoteAlone", all, "«'»"},
      {"ASemicolonInAQuotedName", all, "«select \"a;b\"»;«select 2»"},
      {"ADoubledQuoteInAQuotedName", all, "«select \"a\"\";b\"»;«select 2»"},
      {"AQuoteInAQuotedName", all, "«select \"it's\"»;«select ';'»"},
      {"AQuotedNameInAString", all, "«select '\"'»;«select '\"'»"},
      {"AQuotedNameWithoutAnEnd", all, "«select \"a; select 2»"},
      {"BackslashesAreNoEscapes", plainStrings, "«select '\\'»;«select '\\'»"},
      {"BackslashesInQuotedNamesAreNoEscapes", plainStrings, "«select \"\\\"»;«select \"\\\"»"},
      {"ASemicolonInBackticks", backticks, "«select `a;b`»;«select 2»"},
      {"ADoubledBacktick", backticks, "«select `a``;b`»;«select 2»"},
      {"ABackslashInBackticks", backticks, "«select `\\`»;«select 2»"},
      {"BackticksWithoutAnEnd", backticks, "«select `a; select 2»"},
      {"BackticksQuoteNothing", {PostgreSQL, SqlServer}, "«select `a»;«b`»"},
      {"BracketsQuoteNothing", {Standard, PostgreSQL, MariaDB}, "«select a[1»;«2]»"},
      // Comments.
      {"ALineComment", all, "«select 1 -- a; b\n, 2»;«select 3»"},
      {"ALineCommentInFront", all, "-- a; b\n«select 1»"},
      {"ALineCommentAtTheEnd", all, "«select 1»; -- done"},
      {"ALineCommentInFrontOfTheDelimiter", all, "«select 1 -- one»\n;«select 2»"},
      {"ALineCommentAlone", all, "-- nothing; at all"},
      {"ALineCommentOfCrLf", all, "-- a; b\r\n«select 1»"},
      {"AQuoteInALineComment", all, "-- it's\n«select 1»;«select 2»"},
      {"ABlockCommentMarkInALineComment", all, "-- /*\n«select 1»;«select 2»"},
      {"ABlockComment", all, "«select /* a; b */ 1»;«select 2»"},
      {"ABlockCommentInFront", all, "/* a; b */«select 1»"},
      {"ABlockCommentAlone", all, " /* a; b */ ; /**/"},
      {"ABlockCommentBetween", all, "«select 1»; /* it's; */ «select 2»"},
      {"ABlockCommentBetweenWords", all, "«select/**/1»;«select 2»"},
      {"ABlockCommentOfStars", all, "/***;***/«select 1»"},
      {"ALineCommentMarkInABlockComment", all, "/* -- */«select 1»;«select 2»"},
      {"AnOpeningMarkThatIsNotAClosingOne", all, "/*/;*/«select 1»"},
      {"ABlockCommentWithoutAnEnd", all, "«select 1 /* a; select 2»"},
      {"ABlockCommentWithoutAnEndAlone", all, "«select 1»; /* a; select 2"},
      {"CommentsAndDelimitersOnly", all, "-- a\n; /* b */ ;\n-- c"},
      {"NestedComments", nestedComments, "/* a /* ; */ ; */«select 1»;"},
      {"NestedCommentsOfSeveralLevels", nestedComments, "/*/*/*;*/;*/;*/«select 1»;"},
      {"ANestedCommentWithoutAnEnd", nestedComments, "«select 1»; /* /* */ ; select 2"},
      {"CommentsThatDoNotNest", flatComments, "/* a /* ; */«b */»;«c»"},
      {"MinusSigns", all, "«select 1-1»;«select 1 - -1»"},
      {"DivisionSigns", all, "«select 1/1»;«select 2*/ 2»"},
      // Words that are keywords elsewhere.
      {"ATransaction", all, "«begin transaction»;«insert into t values (1)»;«commit»;"},
      {"ACaseExpression", all, "«select case a when 1 then 2 else 3 end»;«select 2»"},
      {"NestedCaseExpressions", all,
       "«select case when case a when 1 then 2 end = 2 then 3 end»;«select 2»"},
      {"ATableWithParentheses", all, "«create table t (a int, b char(2))»;«select 2»"},
      {"DropsIfExists", all, "«drop table if exists t»;«drop view if exists v»;"},
      {"CreatesAView", all, "«create view v as select 1 as begin_1»;«select 2»"},
      {"CreatesAnIndex", all, "«create index i on t (a)»;«select 2»"},
      {"ParenthesesAroundASelect", all, "«(select 1)»;«(select 2)»"},
      {"AParenthesisThatClosesTooMuch", all, "«select 1)»;«select 2»"},
      {"SemicolonsInParenthesesDivide", {Standard, MariaDB, SQLite, SqlServer}, "«select (1»;«2)»"},
  };
}

}  // namespace tessel::test
