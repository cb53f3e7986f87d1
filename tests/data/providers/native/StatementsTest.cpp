// Scripts are divided as the databases themselves do it: a script gives as many results as it has
// statements, and each statement alone gives one.

#include "contract/sql/SqlStatements.h"

#include "tests/data/providers/native/NativeFixture.h"
#include "tests/data/providers/sqlite/SqliteTest.h"

namespace tessel::test {

namespace {

void ExpectDividedAlike(Connection& connection, SqlDialect dialect, const std::string& script,
                        std::size_t count) {
  const auto statements = SplitStatements(script, dialect);
  EXPECT_EQ(statements.size(), count) << script;
  EXPECT_EQ(QueryNow(connection, script).Operation().Results().size(), count) << script;
  for (const auto& [begin, end] : statements) {
    const std::string statement = script.substr(begin, end - begin);
    EXPECT_EQ(QueryNow(connection, statement).Operation().Results().size(), 1U) << statement;
  }
}

}  // namespace

TEST_F(SqliteTest, AScriptIsDividedAsSqliteDoesIt) {
  const auto connection = OpenMemory();
  const auto expect = [&](const std::string& script, std::size_t count) {
    ExpectDividedAlike(*connection, SqlDialect::SQLite, script, count);
  };
  expect("select ';', 'it''s;', '\\'; select \"a;b\", `a;b`, [a;'b] from "
         "(select 1 \"a;b\", 2 [a;'b]);",
         2);
  expect(" ; select 1 /* ; /* ; */; -- ;'\n; select 2 -- ;\r;\n + 1; -- ;", 2);
  expect("drop table if exists t; create table t (a, end_ int); "
         "create trigger u after insert on t when case new.a when 1 then 1 end begin\n"
         "select case new.a when 1 then 2 end; delete from t where a = ';'; end; "
         "create temp trigger v after delete on t begin select \"end\" from (select 1 \"end\");\n"
         "/* end; */ select 1 ; end ; insert into t values (1, 2); begin; delete from t; end;",
         8);
  expect("explain create trigger w after insert on t begin select 1; end; select 2", 2);
}

TEST_F(PostgresTest, AScriptIsDividedAsPostgresDoesIt) {
  const auto expect = [&](const std::string& script, std::size_t count) {
    ExpectDividedAlike(*connection_, SqlDialect::PostgreSQL, script, count);
  };
  expect(R"(select ';', 'it''s;', '\', E'it\'s;\\', U&'\0441;'; select 1 as "a;""b";)", 2);
  expect("select $$;'$$, $t$;$$;$t$, 1 as a$b$c; select 2 as d$b$e;", 2);
  expect("select E'a'\n '\\';'; select 1 /* ; /* ; */ ; */; ; -- ;'\rselect 2", 3);
  expect("create or replace function pg_temp.f(begin int) returns int language sql begin atomic\n"
         "select case when true then case 1 when 1 then 2 end end; select 1 as end; select 2 end;\n"
         "select (case when true then 3 end); end; select pg_temp.f(1); begin; commit;",
         4);
  expect("create or replace procedure pg_temp.p() begin atomic end; call pg_temp.p()", 2);
  expect("drop table if exists split_t; create table split_t (a int);\n"
         "create rule r as on insert to split_t do also (select ';'; select 2; );\n"
         "drop table split_t",
         4);
}

TEST_F(MariaTest, AScriptIsDividedAsMariaDbDoesIt) {
  const auto expect = [&](const std::string& script, std::size_t count) {
    ExpectDividedAlike(*connection_, SqlDialect::MariaDB, script, count);
  };
  expect(R"(select ';', 'it''s;', 'it\'s;', "a\";b", "a"";b"; select `a``;b` from
            (select 1 as `a``;b`) x)",
         2);
  expect("select 5--5; select 1 /* ; /* ; */; select 2 # ;'\n + 1; select 3 -- ;'\n + 1 -- ;", 4);
  expect("/*!40101 set @a = ';' */; select /*M!100100 1 + /* ; */ */ 2; select '/*!', 1 /*! + 1 */",
         3);
  expect(
      "drop procedure if exists p; create definer=current_user() procedure p(a int)\n"
      "language sql comment 'x;' l: begin declare d, end int default if(a, 1, 2);\n"
      "declare continue handler for not found, sqlexception begin set d = 1; end;\n"
      "declare exit handler for 1062 if d then set d = 2; end if;\n"
      "if exists (select 1) then set d = repeat('a', 2); elseif (d = 1) then begin end;\n"
      "else case d when 1 then set d = case d when 1 then 2 end; else set d = 3; end case;\n"
      "end if; m: loop leave m; end loop m; repeat set d = 4; until d > case d when 1 then 1\n"
      "else 2 end end repeat; while d < 3 do set d = d + 1; end while;\n"
      "for i in 1..3 do set end = i; end for; select end into d; drop table if exists no_table;\n"
      "end l; create or replace function f(a int) returns char(9) character set utf8\n"
      "deterministic return if(a, case a when 1 then 'a;' end, repeat('b', 2)); select f(1);",
      4);
  expect("create or replace table split_t (a int); create trigger if not exists u\n"
         "after insert on split_t for each row begin set @a = new.a; set @a = 2; end;\n"
         "create or replace trigger v after insert on split_t for each row follows u\n"
         "if new.a then set @a = 3; end if; create or replace event e on schedule every 1 day\n"
         "disable do begin delete from split_t; set @a = 1; end;\n"
         "alter event e do delete from split_t; drop event e; drop table split_t",
         7);
  expect("begin not atomic declare a int; if a then set @a = 1; end if; begin end; end;\n"
         "if 1 then set @a = 1; end if; while @a < 3 do set @a = @a + 1; end while;\n"
         "case when 1 then set @a = 1; end case; for i in 1..2 do set @a = i; end for;\n"
         "repeat set @a = 5; until @a end repeat; begin; commit; begin work; commit;\n"
         "set statement max_statement_time = 9 for begin not atomic set @a = 1; end; select 1",
         12);
}

TEST_F(MariaTest, AScriptInOraclesModeIsDividedAsMariaDbDoesIt) {
  Run("set sql_mode = oracle");
  const auto expect = [&](const std::string& script, std::size_t count) {
    ExpectDividedAlike(*connection_, SqlDialect::MariaDB, script, count);
  };
  expect(
      "create or replace procedure q(x int) as a int; b varchar(9) := ';'; begin a := 1; end q;\n"
      "create or replace function g return int is begin return if(1, 2, 3); end; select g();",
      3);
  expect("begin set @a = 1; end; declare a int; begin a := 1; begin a := 2; end; end; begin\n"
         "while @a < 3 loop set @a = @a + 1; end loop; for i in 1..3 loop set @a = i; end loop;\n"
         "<<l>> loop exit l when 1; end loop; exception when others then set @a = 1; end; select 1",
         4);
  expect("create or replace package k as procedure a(x int); function b return int; end;\n"
         "create or replace package body k as c int := 1;\n"
         "function b return int as d int; begin return 1; end;\n"
         "procedure a(x int) is begin if x then set @a = 1; end if; end;\n"
         "begin c := 1; set @a = c; end; select k.b(); drop package k",
         4);
}

}  // namespace tessel::test
