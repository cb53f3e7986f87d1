// Texts of MariaDB, and the bodies of routines that the standard has in common with it.

#include "tests/contract/base/SqlCorpus.h"

namespace tessel::test {

using enum SqlDialect;

namespace {

const std::vector<SqlDialect> maria{MariaDB};
const std::vector<SqlDialect> compound{MariaDB, Standard};
constexpr ClientWords yes = ClientWords::Yes;

std::vector<SqlCase> LexicalCases() {
  return {
      {"MyBackslashInAString", maria, R"(«select 'it\'s;'»;«select '\\'»;«select 3»)"},
      {"MyBackslashInDoubleQuotes", maria, R"(«select "a\";b"»;«select "\\"»;«select 3»)"},
      {"MyDoubledQuotes", maria, R"(«select 'it''s;', "a"";b"»;«select 2»)"},
      {"MyBackslashAtTheEnd", maria, "«select '\\»"},
      {"MyStringWithACharacterSet", maria, "«select _utf8'a;', N'b;', x'00'»;«select 2»"},
      {"MyHashComment", maria, "«select 1 # a; b's\n, 2»;«select 3»"},
      {"MyHashCommentAtTheEnd", maria, "«select 1»; # done; really"},
      {"MyHashCommentGoesOnBehindCr", maria, "# a;\rb;\n«select 1»"},
      {"MyMinusesWithoutABlank", maria, "«select 5--5»;«select 2»"},
      {"MyMinusesInFrontOfAQuote", maria, "«select 5--';'»;«select 2»"},
      {"MyMinusesWithATab", maria, "«select 5 --\ta; b»\n;«select 2»"},
      {"MyMinusesAtTheEndOfALine", maria, "«select 5 --\n, 6»;«select 2»"},
      {"MyMinusesAtTheEndOfTheText", maria, "«select 5»; --"},
      {"MyExecutableComment", maria, "«/*!40101 SET NAMES utf8 */»;«select 2»"},
      {"MyExecutableCommentOfItsOwnKind", maria, "«/*M!100100 SET @a = ';' */»;«select 2»"},
      {"MyExecutableCommentWithoutAVersion", maria, "«select 1 /*! + 1 */»;«select 2»"},
      {"MySemicolonInAnExecutableComment", maria,
       "«/*! select 1; */ -- x»\n;«select /*!1;2*/ + 3»;«select 4»"},
      {"MyStringInAnExecutableComment", maria, "«select /*! '*/;' */ 1»;«select 2»"},
      {"MyCommentInAnExecutableComment", maria, "«select /*! 1 /* ; */ + 2 */ + 3»;«select 2»"},
      {"MyLineCommentInAnExecutableComment", maria, "«select /*! 1 -- ;*/\n */»;«select 2»"},
      {"MyExecutableCommentWithoutAnEnd", maria, "«select /*!40101 1; select 2»"},
      {"MyCommentForTheClientOfADump", maria,
       "/*M!999999\\- enable the sandbox mode; */ \n«/*!40101 SET @a = 1 */»;"},
      {"MyHint", maria, "«select /*+ a; */ 1»;«select 2»"},
      {"MyVariables", maria, "«set @a = 1, @`b;` = 2, @'c;' = 3»;«select @@x»;"},
      {"MyAssignment", maria, "«set @a := 1»;«select @b := 2»;"},
      {"MyDollarsInNames", maria, "«select $a, b$, $$»;«select 2»"},
      {"MyBrackets", maria, "«select '[' from [»;«select 2]»"},
      {"MyGoIsNoClientWord", maria, "«select 1\ngo\nselect 2»;", yes},
  };
}

std::vector<SqlCase> PlainCases() {
  return {
      {"MyBeginBeginsATransaction", compound, "«begin»;«insert into t values (1)»;«commit»;"},
      {"MyBeginWork", compound, "«begin work»;«select 1»;«commit work»;"},
      {"MyBeginAlone", compound, "«begin»"},
      {"MyStartTransaction", compound, "«start transaction»;«select 1»;«commit»;"},
      {"MyXaBeginAndEnd", compound, "«xa begin 'x'»;«select 1»;«xa end 'x'»;"},
      {"MyCreateTableIfNotExists", compound, "«create table if not exists t (a int)»;«select 1»;"},
      {"MyDropProcedureIfExists", compound, "«drop procedure if exists p»;«select 1»;"},
      {"MyIfFunction", compound, "«select if(a, 'x;', 2), repeat('a', 3)»;«select 1»;"},
      {"MyReplaceAndInsert", compound, "«replace into t values (1)»;«insert into t set a = 1»;"},
      {"MyCaseWithEndAsAName", compound, "«select case a when 1 then t.end end»;«select end»;"},
      {"MyHandlerStatement", compound,
       "«handler t open»;«handler t read first»;«handler t close»;"},
      {"MyDoStatement", compound, "«do sleep(0), if(1, 2, 3)»;«select 1»;"},
      {"MyCreateUserFunctionOfALibrary", compound,
       "«create aggregate function f returns string soname 'f.so'»;«select 1»;"},
      {"MyCreateDatabaseAndUser", compound, "«create database d»;«create user 'a;'@'%'»;"},
      {"MyViewWithADefiner", compound,
       "«create definer=`a`@`b` sql security invoker view v as select 1»;«select 2»;"},
      {"MyLockAndUnlock", compound, "«lock tables t write»;«unlock tables»;"},
      {"MyWithForUpdate", compound, "«select 1 from t for update»;«select 2»;"},
      {"MySetStatement", compound, "«set statement a = 1 for select 1»;«set b = 2»;«select 3»;"},
      {"MySetStatementForABlock", compound,
       "«set statement a = 1, b = 2 for begin not atomic select 1; end»;«select 3»;"},
      {"MySetStatementForAnIf", compound,
       "«set statement a = 1 for if a then select 1; end if»;«select 3»;"},
      {"MyPrepareAndExecute", compound, "«prepare s from 'select 1;'»;«execute s»;"},
  };
}

std::vector<SqlCase> RoutineCases() {
  return {
      {"MyProcedure", compound, "«create procedure p() begin select 1; select 2; end»;«call p()»;"},
      {"MyProcedureReplaced", compound,
       "«CREATE OR REPLACE PROCEDURE p(a INT) BEGIN SELECT 1; END»;\n«CALL p(1)»;"},
      {"MyProcedureWithADefiner", compound,
       "«create definer=`root`@`localhost` procedure p() begin select 1; end»;«select 2»;"},
      {"MyProcedureWithAPlainDefiner", compound,
       "«create definer = root@localhost procedure p() begin select 1; end»;«select 2»;"},
      {"MyProcedureOfTheCurrentUser", compound,
       "«create definer=current_user() procedure p() begin select 1; end»;«select 2»;"},
      {"MyProcedureIfNotExists", compound,
       "«create procedure if not exists p() begin select 1; end»;«select 2»;"},
      {"MyProcedureOfOneStatement", compound, "«create procedure p() select 1»;«select 2»;"},
      {"MyProcedureOfOneSelectWithAnAlias", compound,
       "«create procedure p() select 1 as x, 2 is null»;«select 2»;"},
      {"MyProcedureOfAnIf", compound,
       "«create procedure p(a int) if (a = 1) then select 1; else select 2; end if»;«select 3»;"},
      {"MyProcedureOfAnIfFunction", compound,
       "«create procedure p() set @a = if(1, 2, 3)»;«select 3»;"},
      {"MyProcedureWithCharacteristics", compound,
       "«create procedure p() language sql not deterministic contains sql sql security invoker\n"
       "comment 'a; b' begin select 1; end»;«select 2»;"},
      {"MyProcedureWithALabel", compound,
       "«create procedure p() l: begin leave l; end l»;«select 2»;"},
      {"MyProcedureWithAQuotedLabel", maria,
       "«create procedure p() `l;`: begin l2: loop leave l2; end loop l2; end `l;`»;«select 2»;"},
      {"MyProcedureInADatabase", compound,
       "«create procedure d.begin() begin select 1; end»;«select 2»;"},
      {"MyFunction", compound,
       "«create function f() returns int begin declare a int; set a = 1; return a; end»;«select "
       "2»;"},
      {"MyFunctionOfOneStatement", compound,
       "«create function f(a int) returns int deterministic return if(a, 1, 2)»;«select 2»;"},
      {"MyFunctionOfACase", compound,
       "«create function f(a int) returns int return case a when 1 then 2 end»;«select 2»;"},
      {"MyFunctionOfRepeat", compound,
       "«create function f() returns char(9) return repeat('a;', 3)»;«select 2»;"},
      {"MyFunctionOfACharacterSet", compound,
       "«create function f() returns char(9) character set utf8 begin return 'a'; end»;«select "
       "2»;"},
      {"MyFunctionOfASet", compound,
       "«create function f() returns set('a', 'b') begin return 'a'; end»;«select 2»;"},
      {"MyAggregateFunction", compound,
       "«create aggregate function f(x int) returns int begin\n"
       "declare continue handler for not found return 1;\n"
       "loop fetch group next row; end loop; end»;«select 2»;"},
      {"MyTrigger", compound,
       "«create trigger t before insert on a for each row begin set new.b = 1; end»;«select 2»;"},
      {"MyTriggerOfOneStatement", compound,
       "«create trigger t before update on a for each row set new.b = if(old.b, 1, 2)»;«select "
       "2»;"},
      {"MyTriggerOfAnIf", compound,
       "«create or replace trigger t after delete on a for each row if old.b then\n"
       "insert into c values (1); end if»;«select 2»;"},
      {"MyTriggerThatFollows", compound,
       "«create trigger t before insert on a for each row follows u begin set @a = 1; end»;"
       "«select 2»;"},
      {"MyTriggerIfNotExists", compound,
       "«create trigger if not exists t before insert on a for each row begin set @a = 1; end»;"
       "«select 2»;"},
      {"MyEvent", compound,
       "«create event e on schedule every 1 day starts now() on completion preserve enable\n"
       "comment 'x;' do begin delete from a; delete from b; end»;«select 2»;"},
      {"MyEventOfOneStatement", compound,
       "«create event e on schedule every if(1, 2, 3) day do delete from a»;«select 2»;"},
      {"MyEventChanged", compound,
       "«alter event e do begin delete from a; delete from b; end»;«select 2»;"},
      {"MyProcedureChanged", compound, "«alter procedure p comment 'if'»;«select 2»;"},
      {"MyTwoProcedures", compound,
       "«create procedure p() begin select 1; end»;\n«create procedure q() begin select 2; end»;\n"
       "«begin»;«commit»;"},
      {"MyProcedureWithoutAnEnd", compound, "«create procedure p() begin select 1; select 2»"},
      {"MyProcedureInExecutableComments", maria,
       "«/*!50003 CREATE*/ /*!50020 DEFINER=`root`@`localhost`*/ /*!50003 TRIGGER t\n"
       "BEFORE INSERT ON a FOR EACH ROW BEGIN SET NEW.b = 1; SET NEW.c = 2; END */»;«select 2»;"},
  };
}

std::vector<SqlCase> BlockCases() {
  return {
      {"MyNestedBegins", compound,
       "«create procedure p() begin begin select 1; end; begin end; select 2; end»;«select 3»;"},
      {"MyNestedIfs", compound,
       "«create procedure p() begin if a then if b then select 1; end if; elseif c then select 2;\n"
       "else if d then select 3; end if; end if; end»;«select 4»;"},
      {"MyIfExists", compound,
       "«create procedure p() begin if exists (select 1) then select 2; end if;\n"
       "if not exists (select 1) then select 2; end if; end»;«select 3»;"},
      {"MyDropsIfExistsInABlock", compound,
       "«create procedure p() begin drop table if exists t; create table if not exists t (a int);\n"
       "end»;«select 3»;"},
      {"MyIfFunctionInABlock", compound,
       "«create procedure p() begin select if(1, 2, 3); set @a = if(a, b, c) + 1; end»;«select "
       "3»;"},
      {"MyIfFunctionBehindThenOfAnExpression", compound,
       "«create procedure p() begin\n"
       "select case a when 1 then if(a, b, c) else repeat('a', 2) end; end»;«select 3»;"},
      {"MyCaseStatement", compound,
       "«create procedure p() begin case a when 1 then select 1; when 2 then begin end;\n"
       "else select 3; end case; end»;«select 4»;"},
      {"MyCaseStatementWithCaseExpressions", compound,
       "«create procedure p() begin case case a when 1 then 2 end when 1 then\n"
       "select case when a then case b when 1 then 2 end else 3 end; end case; end»;«select 4»;"},
      {"MyCaseExpressionInASet", compound,
       "«create procedure p() begin set @a = case a when 1 then 2 end; select 1; end»;«select 4»;"},
      {"MyLoop", compound,
       "«create procedure p() begin l: loop set @a = 1; leave l; end loop l; end»;«select 3»;"},
      {"MyRepeat", compound,
       "«create procedure p() begin repeat set @a = 1; until @a > 1 end repeat; end»;«select 3»;"},
      {"MyRepeatUntilACase", compound,
       "«create procedure p() begin repeat select repeat('a', 2); until case a when 1 then 1 end\n"
       "end repeat; end»;«select 3»;"},
      {"MyWhile", compound,
       "«create procedure p() begin while @a < 3 do set @a = @a + 1; end while; end»;«select 3»;"},
      {"MyFor", compound,
       "«create procedure p() begin for i in 1..10 do insert into t values (i); end for; end»;"
       "«select 3»;"},
      {"MyForOfASelect", compound,
       "«create procedure p() begin for r in (select a from t) do select r.a; end for; end»;"
       "«select 3»;"},
      {"MyForUpdateInABlock", compound,
       "«create procedure p() begin select a from t for update; select 2; end»;«select 3»;"},
      {"MyCursorAndHandler", compound,
       "«create procedure p() begin declare d int default 0; declare c cursor for select a from "
       "t;\n"
       "declare continue handler for not found set d = 1; open c; fetch c into d; close c; end»;"
       "«select 3»;"},
      {"MyHandlerWithABlock", compound,
       "«create procedure p() begin declare exit handler for sqlexception, sqlstate '23000'\n"
       "begin rollback; resignal; end; select 1; end»;«select 3»;"},
      {"MyHandlerWithAnIf", compound,
       "«create procedure p() begin declare continue handler for 1062 if a then set @a = 1; end "
       "if;\n"
       "select 1; end»;«select 3»;"},
      {"MyHandlerWithAnIfFunction", compound,
       "«create procedure p() begin declare continue handler for 1062 set @a = if(1, 2, 3);\n"
       "select 1; end»;«select 3»;"},
      {"MyHandlerAsAName", compound,
       "«create procedure p() begin select handler, if(1, 2, 3) from t; end»;«select 3»;"},
      {"MyDoStatementInABlock", compound,
       "«create procedure p() begin do if(1, 2, 3); do repeat('a', 2); end»;«select 3»;"},
      {"MyBeginAndEndAsNames", compound,
       "«create procedure p() begin select begin, end from t order by end; select t.begin; end»;"
       "«select 3»;"},
      {"MyEndAsAnAlias", compound,
       "«create procedure p() begin select 1 as end, 2 as begin; end»;«select 3»;"},
      {"MyVariablesLikeKeywords", compound,
       "«create procedure p() begin set @end = 1, @begin = 2; select @end; end»;«select 3»;"},
      {"MyAssignmentInABlock", compound,
       "«create procedure p() begin set @a := if(1, 2, 3); end»;«select 3»;"},
      {"MyTransactionInABlock", compound,
       "«create procedure p() begin start transaction; commit; end»;«select 3»;"},
      {"MyParenthesesWithoutAnEndInABlock", compound,
       "«create procedure p() begin select (1; end»;«select 3»;"},
      {"MyCommentsInABlock", compound,
       "«create procedure p() begin -- end;\n/* end; */ select 1; end»;«select 3»;"},
      {"MyBeginNotAtomic", compound, "«begin not atomic select 1; select 2; end»;«select 3»;"},
      {"MyBeginNotAtomicWithBlocks", compound,
       "«BEGIN NOT ATOMIC DECLARE a INT; IF a THEN SELECT 1; END IF; BEGIN END; END»;«select 3»;"},
      {"MyBeginNotAtomicWithoutAnEnd", compound, "«begin not atomic select 1; select 2»"},
      {"MyBlocksAtTheTop", compound,
       "«if a then select 1; end if»;«while a do select 1; end while»;«loop select 1; end loop»;"
       "«repeat select 1; until a end repeat»;«case a when 1 then select 1; end case»;"
       "«for i in 1..2 do select i; end for»;«select 3»;"},
      {"MyManyBlocks", compound,
       "«create procedure p() begin if a then loop repeat while b do case c when 1 then begin\n"
       "select 1; end; end case; end while; until d end repeat; end loop; end if; end»;«select "
       "3»;"},
      {"StandardAtomic", compound,
       "«create procedure p() begin atomic select 1; select 2; end»;«select 3»;"},
      {"StandardTriggerOfAStatement", compound,
       "«create trigger t after insert on a for each statement begin atomic select 1; end»;"
       "«select 3»;"},
      {"StandardTriggerWithoutEach", compound,
       "«create trigger t after insert on a begin select 1; end»;«select 3»;"},
  };
}

/// As MariaDB has them in its mode for Oracle.
std::vector<SqlCase> OracleCases() {
  return {
      {"OraProcedure", compound,
       "«create procedure p as begin select 1; end»;«create or replace procedure q(a int) is b "
       "int;\n"
       "c char(9) := ';'; begin select 1; end q»;«select 3»;"},
      {"OraFunction", compound,
       "«create function f(a int) return varchar(9) as begin return if(a, 1, 2); end»;«select 3»;"},
      {"OraBlock", compound, "«begin insert into t values (1); end»;«select 3»;"},
      {"OraBlockThatDeclares", compound,
       "«declare a int; b int := 2; begin select a; begin select b; end; end»;«select 3»;"},
      {"OraExceptions", compound,
       "«begin select 1; exception when too_many_rows then begin select 2; end; when others then\n"
       "select 3; end»;«select 3»;"},
      {"OraLoops", compound,
       "«begin while a < 3 loop a := a + 1; end loop; for i in 1..3 loop select i; end loop; end»;"
       "«select 3»;"},
      {"OraLabels", compound, "«begin <<l>> loop exit l when a; end loop; end»;«select 3»;"},
      {"OraPackage", compound,
       "«create package p as procedure a(x int); function b return int; end»;«select 3»;"},
      {"OraPackageBody", compound,
       "«create or replace package body p as c int := 1;\n"
       "function b return int as d int; begin return d; end;\n"
       "procedure a(x int) is begin if x then select 1; end if; end; end»;«select 3»;"},
      {"OraPackageBodyThatBegins", compound,
       "«create package body p as c int; procedure a as begin select 1; end;\n"
       "begin c := 1; select c; end»;«select 3»;"},
      {"MyPackage", compound,
       "«create package p procedure a(); function b() returns int; end»;«select 3»;"},
      {"MyPackageBody", compound,
       "«create package body p function b() returns int return if(1, 2, 3);\n"
       "procedure a() begin select 1; end; end»;«select 3»;"},
  };
}

std::vector<SqlCase> DelimiterCases() {
  return {
      {"MyDelimiter", maria,
       "DELIMITER //\n«create procedure p() begin select 1; end»//\nDELIMITER ;\n«call p()»;", yes},
      {"MyDelimiterInAnyCase", maria, "delimiter |\n«select 1; select 2;»\n|\n«select 3»|", yes},
      {"MyDelimiterOfDollars", maria,
       "DELIMITER $$\n«begin not atomic select 1; END»$$\n«select a»$$\nDELIMITER ;\n«select 1»;",
       yes},
      {"MyDelimiterOfTwoSemicolons", maria,
       "DELIMITER ;;\n«/*!50003 CREATE TRIGGER t BEFORE INSERT ON a FOR EACH ROW BEGIN SET @a = 1; "
       "END */»;;\n"
       "DELIMITER ;\n«select 1»;",
       yes},
      {"MyDelimiterOfAWord", maria, "DELIMITER go\n«select gone, a_go»\ngo\n«select 2» go\n", yes},
      {"MyDelimiterInQuotes", maria, "DELIMITER '//'\n«select 1;»//«select 2»//", yes},
      {"MyDelimiterBehindBlanks", maria, "  \tDELIMITER \t //  \r\n«select 1; 2»//\r\n", yes},
      {"MyDelimiterInTheLastLine", maria, "«select 1»;\nDELIMITER //", yes},
      {"MyDelimiterInAString", maria, "DELIMITER //\n«select '//'»//«select \"//\", `//`»//", yes},
      {"MyDelimiterInAComment", maria, "DELIMITER //\n«select 1 /* // */, 2 -- //»\n//", yes},
      {"MyDelimiterLineInAString", maria, "«select '\nDELIMITER //\n'»;«select 2»;", yes},
      {"MyDelimiterLineInAComment", maria, "/*\nDELIMITER //\n*/\n«select 1»;«select 2»;", yes},
      {"MyDelimiterLineInAStatement", maria,
       "DELIMITER //\n«create procedure p() begin end»\nDELIMITER ;\n«select 1»;«select 2»;", yes},
      {"MyDelimiterAsAName", maria, "«select a,\n delimiter from t»;«select 2»;", yes},
      {"MyDelimiterNotInFront", maria, "«select 1 delimiter //»;", yes},
      {"MyDelimiterWithoutAnArgument", maria, "«delimiter\nselect 1»;", yes},
      {"MyDelimiterIsCutAsTheClientDoes", maria,
       "DELIMITER 123456789012345xyz\n«select 1» 123456789012345 «select 2»", yes},
      {"MyDelimiterTwice", maria, "DELIMITER //\n«select 1»//\nDELIMITER $$\n«select 2//»$$", yes},
      {"MyDelimiterBehindAMarkOfTheByteOrder", maria,
       "\xEF\xBB\xBF"
       "DELIMITER //\n«select 1;»//",
       yes},
      {"MyEmptyStatementsWithADelimiter", maria, "DELIMITER //\n//;//\n//«select 1»//;", yes},
      {"MyRoutineWithoutADelimiterLine", maria,
       "«create procedure p() begin select 1; end»;\n«call p()»;", yes},
      {"MyDelimiterIsSqlForTheServer", maria, "«DELIMITER //\nselect 1»;«select 2//\nDELIMITER»;"},
  };
}

}  // namespace

std::vector<SqlCase> MariaDbSqlCases() {
  std::vector<SqlCase> cases;
  for (const auto& some : {LexicalCases(), PlainCases(), RoutineCases(), BlockCases(),
                           OracleCases(), DelimiterCases()})
    cases.insert(cases.end(), some.begin(), some.end());
  return cases;
}

}  // namespace tessel::test
