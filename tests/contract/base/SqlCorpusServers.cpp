// Texts of PostgreSQL, SQLite and SQL Server.

#include "tests/contract/base/SqlCorpus.h"

namespace tessel::test {

using enum SqlDialect;

std::vector<SqlCase> PostgresSqlCases() {
  const std::vector<SqlDialect> pg{PostgreSQL};
  return {
      {"PgEscapeString", pg, R"(«select E'it\'s;'»;«select e'\\'»;«select 3»)"},
      {"PgEscapeStringWithADoubledQuote", pg, R"(«select E'a''\';'»;«select 2»)"},
      {"PgEscapeStringAtTheEndOfAWord", pg, R"(«select typE'\'»;«select 2»)"},
      {"PgEscapeStringOnSeveralLines", pg, "«select E'a'\n 'b\\';'»;«select 2»"},
      {"PgTwoStringsOnOneLine", pg, "«select E'a' 'b\\'»;«select 2»"},
      {"PgEscapeStringWithoutAnEnd", pg, R"(«select E'\'; select 2»)"},
      {"PgUnicodeString", pg, R"(«select U&'\0441;\'»;«select U&"\0441;"»)"},
      {"PgBitString", pg, "«select B'1;', x'f;'»;«select 2»"},
      {"PgDollarQuotes", pg, "«select $$a;'b$$»;«select 2»"},
      {"PgDollarQuotesWithATag", pg, "«select $tag$a;$$;$ta$;$tag$»;«select 2»"},
      {"PgDollarQuotesWithinOthers", pg, "«select $a$ x; $b$ y; $b$ z; $a$»;«select 2»"},
      {"PgDollarQuotesWithAnotherCase", pg, "«select $A$ ; $a$ ; $A$»;«select 2»"},
      {"PgDollarQuotesWithATagBeyondAscii", pg, "«select $größe$;$größe$»;«select 2»"},
      {"PgDollarQuotesWithoutAnEnd", pg, "«select $a$ ; select 2 $b$»"},
      {"PgDollarsWithinAName", pg, "«select a$b$c»;«select d$b$e»"},
      {"PgDollarsAtTheEndOfAName", pg, "«select a$$»;«select b$$»"},
      {"PgParameters", pg, "«select $1, $2»;«select $1»;«select 3»"},
      {"PgParametersSideBySide", pg, "«select $1$2»;«select 3»"},
      {"PgDollarQuotesBehindAParameter", pg, "«select $1$$;$$»;«select 2»"},
      {"PgDollarQuotesBehindANumber", pg, "«select 1$$;$$»;«select 2»"},
      {"PgATagThatBeginsWithADigit", pg, "«select $1a$»;«select $1a$»"},
      {"PgOneDollar", pg, "«select $»;«select $ $»;«select $a»"},
      {"PgACommentMarkInDollarQuotes", pg, "«select $$ -- /* $$»;«select 2»"},
      {"PgALineCommentEndsAtCr", pg, "-- a;\r«select 1»;\r«select 2»"},
      {"PgOperatorsOfManySigns", pg, "«select a <-> b, c @> d, e ?| f»;«select 2»"},
      {"PgCasts", pg, "«select '1;'::text::int»;«select 2»"},
      {"PgArrays", pg, "«select a[1:2], array[';']»;«select 2»"},
      {"PgBlock", pg, "«do $$ begin perform 1; end $$»;«select 2»"},
      {"PgFunctionInDollarQuotes", pg,
       "«create or replace function f() returns int language plpgsql as $f$\n"
       "begin return 1; end; $f$»;\n«select 2»"},
      {"PgFunctionInQuotes", pg,
       "«create function f() returns int as 'select 1; select 2' language sql»;«select 2»"},
      {"PgFunctionOfOneExpression", pg,
       "«create function f(a int) returns int return a + 1»;«select 2»"},
      {"PgAtomicFunction", pg,
       "«create function f() returns int begin atomic select 1; select 2; end»;«select 3»"},
      {"PgAtomicFunctionReplaced", pg,
       "«CREATE OR REPLACE FUNCTION f() RETURNS int LANGUAGE sql BEGIN ATOMIC; SELECT 1; END»;"
       "«select 3»"},
      {"PgAtomicProcedure", pg,
       "«create procedure p() begin atomic insert into t values (1); delete from u; end»;«call "
       "p()»"},
      {"PgAtomicProcedureOfNothing", pg, "«create procedure p() begin atomic end»;«call p()»"},
      {"PgAtomicWithACase", pg,
       "«create function f() returns int begin atomic select case 1 when 1 then 2 end; end»;"
       "«select 3»"},
      {"PgAtomicWithNestedCases", pg,
       "«create function f() returns int begin atomic\n"
       "select case when case 1 when 1 then true end then case when true then 1 end end; end»;"
       "«select 3»"},
      {"PgAtomicWithACaseInParentheses", pg,
       "«create function f() returns int begin atomic select (case when true then 1 end); end»;"
       "«select 3»"},
      {"PgAtomicWithEndAsALabel", pg,
       "«create function f() returns int begin atomic select 1 as end; select 2 end; end»;"
       "«select 3»"},
      {"PgAtomicWithEndAsAQuotedName", pg,
       "«create function f() returns int begin atomic select \"end\" from \"case\"; end»;«select "
       "3»"},
      {"PgAtomicWithAComment", pg,
       "«create function f() returns int begin /* x */ atomic select 1; -- end;\nend»;«select 3»"},
      {"PgAtomicWithBeginAsAParameter", pg,
       "«create function f(begin int, case_ int) returns int begin atomic select 1; end»;"
       "«select 3»"},
      {"PgAtomicWithASetting", pg,
       "«create function f() returns int set work_mem = '1MB' begin atomic select 1; end»;"
       "«select 3»"},
      {"PgAtomicWithoutAnEnd", pg,
       "«create function f() returns int begin atomic select 1; select 2»"},
      {"PgTwoAtomicFunctions", pg,
       "«create function f() returns int begin atomic select 1; end»;\n"
       "«create function g() returns int begin atomic select 1; end»;\n«begin»;«end»;"},
      {"PgBeginBeginsATransaction", pg, "«begin»;«select 1»;«end»;"},
      {"PgBeginWithModes", pg,
       "«begin isolation level serializable»;«select 1»;«commit and chain»;"},
      {"PgBeginAtomicOutsideOfAFunction", pg, "«begin atomic»;«select 1»;«end»"},
      {"PgTriggerHasNoBody", pg,
       "«create trigger t before insert on u for each row execute function f()»;«select 2»"},
      {"PgRuleWithActions", pg,
       "«create rule r as on insert to t do also (insert into u values (1); select ';'; )»;"
       "«select 2»"},
      {"PgRuleWithOneAction", pg,
       "«create rule r as on delete to t do instead nothing»;«select 2»"},
      {"PgSemicolonsInParentheses", pg, "«select (1; 2)»;«select 3»"},
      {"PgParenthesesInQuotesDoNotCount", pg, "«select '(', \"(\", $$($$ /* ( */»;«select 2»"},
      {"PgParenthesesWithoutAnEnd", pg, "«select (1; select 2»"},
      {"PgCopy", pg, "«copy t to stdout with (format csv, delimiter ';')»;«select 2»"},
      {"PgDelimiterIsNoClientWord", pg, "«delimiter //\nselect 1»;«select 2 //»", ClientWords::Yes},
      {"PgGoIsNoClientWord", pg, "«select 1\ngo\nselect 2»", ClientWords::Yes},
      {"PgHashIsAnOperator", pg, "«select 1 # 2»;«select 3»"},
  };
}

std::vector<SqlCase> SqliteSqlCases() {
  const std::vector<SqlDialect> lite{SQLite};
  return {
      {"LiteBrackets", lite, "«select [a;b'] from t»;«select 2»"},
      {"LiteBracketsEndAtTheFirst", lite, "«select [a]]»;«b]»"},
      {"LiteBracketsWithoutAnEnd", lite, "«select [a; select 2»"},
      {"LiteALineCommentGoesOnBehindCr", lite, "-- a;\rselect 1;\n«select 2»"},
      {"LiteVariables", lite, "«select ?1, :a, @b, $c»;«select 2»"},
      {"LiteDollarsQuoteNothing", lite, "«select $$»;«select 2$$»"},
      {"LiteBlob", lite, "«select x'00', X'3B'»;«select 2»"},
      {"LiteJsonOperators", lite, "«select a -> '$.x;' ->> 'y'»;«select 2»"},
      {"LiteHashIsNoComment", lite, "«select 1 #»;«select 2»"},
      {"LiteTrigger", lite,
       "«create trigger t after insert on a begin insert into b values (1); delete from c; end»;"
       "«select 2»"},
      {"LiteTemporaryTrigger", lite,
       "«CREATE TEMPORARY TRIGGER t AFTER INSERT ON a BEGIN SELECT 1; END»;«select 2»"},
      {"LiteTempTrigger", lite,
       "«create temp trigger if not exists t after insert on a begin select 1; end»;«select 2»"},
      {"LiteTriggerWithComments", lite,
       "«create /* x; */ trigger t after insert on a begin -- end;\nselect 1; /* ; */ end»;"
       "«select 2»"},
      {"LiteTriggerWithACase", lite,
       "«create trigger t after insert on a when case new.b when 1 then 1 end begin\n"
       "select case when new.b then 1 else 2 end; end»;«select 2»"},
      {"LiteTriggerWithEndAsAName", lite,
       "«create trigger t after insert on a begin select \"end\", [end] from b; end»;«select 2»"},
      {"LiteTriggerWithoutAnEnd", lite,
       "«create trigger t after insert on a begin select 1; select 2»"},
      {"LiteTriggerWithSpacedSemicolons", lite,
       "«create trigger t after insert on a begin select 1 ; end»  ;«select 2»"},
      {"LiteTwoTriggers", lite,
       "«create trigger t after insert on a begin select 1; end»;\n"
       "«create trigger u after insert on a begin select 1; end»;\n«begin»;«end»;"},
      {"LiteExplainsATrigger", lite,
       "«explain create trigger t after insert on a begin select 1; end»;«select 2»"},
      {"LiteExplainsAPlanOfATrigger", lite,
       "«explain query plan create trigger t after insert on a begin select 1; end»;«select 2»"},
      {"LiteExplainsASelect", lite, "«explain query plan select 1»;«select 2»"},
      {"LiteCreatesATemporaryTable", lite, "«create temp table t (a)»;«select 2»"},
      {"LiteDropsATrigger", lite, "«drop trigger if exists t»;«select 2»"},
      {"LiteBeginBeginsATransaction", lite, "«begin»;«insert into t values (1)»;«end»;"},
      {"LiteBeginImmediate", lite, "«begin immediate»;«select 1»;«end transaction»;"},
      {"LiteSavepoints", lite, "«savepoint a»;«release a»;«rollback to a»;"},
      {"LitePragma", lite, "«pragma user_version = 5»;«select 2»"},
      {"LiteWithoutDelimiterLines", lite, "«delimiter //\nselect 1»;", ClientWords::Yes},
  };
}

std::vector<SqlCase> SqlServerSqlCases() {
  const std::vector<SqlDialect> ms{SqlServer};
  const auto yes = ClientWords::Yes;
  return {
      {"MsBrackets", ms, "«select [a;b'] from t»;«select 2»"},
      {"MsDoubledBracket", ms, "«select [a]];b]»;«select 2»"},
      {"MsBracketsWithoutAnEnd", ms, "«select [a; select 2»"},
      {"MsVariablesAreNoKeywords", ms, "«select @begin, @@case, #end, a$end»;«select 2»"},
      {"MsNationalString", ms, "«select N'it''s;'»;«select 2»"},
      {"MsBlock", ms, "«begin select 1; select 2; end»;«select 3»"},
      {"MsNestedBlocks", ms, "«begin begin select 1; end; select 2; end»;«select 3»"},
      {"MsBlockOfAnIf", ms, "«if @a = 1 begin select 1; end else begin select 2; end»;«select 3»"},
      {"MsTryAndCatch", ms,
       "«begin try select 1; end try begin catch select 2; throw; end catch»;«select 3»"},
      {"MsLoop", ms, "«while @i < 3 begin set @i += 1; end»;«select 3»"},
      {"MsElseBehindASemicolon", ms, "«if 1 = 1 select 1; else select 2»;«select 3»"},
      {"MsElseBehindASemicolonAndAComment", ms,
       "«if 1 = 1 select 1; -- x;\n ELSE select 2»;«select 3»"},
      {"MsTransaction", ms, "«begin tran»;«select 1»;«begin transaction x»;«commit»"},
      {"MsDistributedTransaction", ms, "«begin distributed tran»;«select 1»;«commit»"},
      {"MsTransactionInABlock", ms, "«begin begin tran; select 1; commit; end»;«select 2»"},
      {"MsConversations", ms,
       "«begin dialog conversation @h from service a»;«end conversation @h»;«select 1»"},
      {"MsConversationInABlock", ms,
       "«begin begin conversation timer (@h) timeout = 1; end conversation @h; select 1; end»;"
       "«select 2»"},
      {"MsCaseInABlock", ms, "«begin select case when 1 = 1 then 2 end; end»;«select 3»"},
      {"MsProcedureTakesAll", ms, "«create procedure p as select 1; select 2;\nselect 3;»"},
      {"MsProcedureChanged", ms, "«select 1»;«alter proc p as select 1; select 2;»"},
      {"MsFunctionTakesAll", ms,
       "«create or alter function f() returns int as begin return 1; end; select 2»"},
      {"MsTriggerTakesAll", ms, "«create trigger t on a after insert as select 1; select 2»"},
      {"MsCommonTableBehindASemicolon", ms, "«select 1»\n;«with a as (select 1) select * from a»;"},
      {"MsBlockWithoutAnEnd", ms, "«begin select 1; select 2»"},
      {"MsGoDividesNothingOnTheServer", ms, "«select 1\ngo\nselect 2»"},
      {"MsGo", ms, "«select 1»\ngo\n«select 2»\ngo\n", yes},
      {"MsABatchIsOneStatement", ms, "«select 1; select 2;»\nGO\n«select 3; select 4»", yes},
      {"MsGoInAnyCase", ms, "«select 1»\nGo\n«select 2»\ngO\n", yes},
      {"MsGoWithACount", ms, "«select 1»\nGO 5\n«select 2»\n  go\t12  \n", yes},
      {"MsGoWithBlanksAndCrLf", ms, "«select 1»\r\n \tGO \r\n«select 2»\r\nGO\r\n", yes},
      {"MsGoWithAComment", ms, "«select 1»\nGO -- one;\n«select 2»\nGO 2 --two\n", yes},
      {"MsGoInTheFirstLine", ms, "GO\n«select 1»\nGO", yes},
      {"MsGoBehindAMarkOfTheByteOrder", ms, "\xEF\xBB\xBFGO\n«select 1»", yes},
      {"MsGoBehindAnother", ms, "GO\nGO\n«select 1»\nGO\n-- nothing\nGO\n;\nGO", yes},
      {"MsGoIsNotAlone", ms, "«select 1 go\nselect 2\ngo select 3\ngoto a»", yes},
      {"MsGoBehindACommentIsNotAlone", ms, "«select 1\n/* x */ go\nselect 2»", yes},
      {"MsGoWithAWordBehind", ms, "«select 1\ngo 5x\ngo x\ngo;»", yes},
      {"MsGoInAString", ms, "«select '\ngo\n'»\ngo\n«select 2»", yes},
      {"MsGoInBrackets", ms, "«select [\ngo\n]»\ngo\n«select 2»", yes},
      {"MsGoInAComment", ms, "«select 1 /*\ngo\n*/ + 1»\ngo\n«select 2»", yes},
      {"MsGoInANestedComment", ms, "«select 1 /* /*\ngo\n*/ \ngo\n */»\ngo\n«select 2»", yes},
      {"MsGoEndsAProcedure", ms, "«create procedure p as begin select 1; end»\ngo\n«select 2»\ngo",
       yes},
      {"MsGoEndsABlockWithoutAnEnd", ms, "«begin select 1;»\ngo\n«select 2»", yes},
      {"MsDelimiterIsNoClientWord", ms, "«delimiter //\nselect 1;»", yes},
  };
}

}  // namespace tessel::test
