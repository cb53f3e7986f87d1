#include "contract/sql/SqlStatements.h"

#include <ctime>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/contract/base/SqlCorpus.h"
#include "tests/support/SqlStatementsProperty.h"

namespace tessel::test {
namespace {

using testing::SizeIs;
using enum SqlDialect;

std::string NameOf(SqlDialect dialect) {
  switch (dialect) {
    case Standard: return "Standard";
    case PostgreSQL: return "PostgreSQL";
    case MariaDB: return "MariaDB";
    case SQLite: return "SQLite";
    case SqlServer: return "SqlServer";
  }
  return "?";
}

// --- The table of cases -------------------------------------------------------------------------

class SqlStatementsCase : public testing::TestWithParam<SqlCase> {};

TEST_P(SqlStatementsCase, IsDividedAsMarked) {
  const SqlCase& one = GetParam();
  const MarkedSql plain = WithoutMarks(one.marked);
  for (const SqlDialect dialect : one.dialects) {
    const auto found = SplitStatements(plain.text, dialect, one.clientWords);
    EXPECT_EQ(WithMarks(plain.text, found), one.marked) << NameOf(dialect);
    EXPECT_EQ(ComplaintAboutStatements(plain.text, dialect, one.clientWords), "")
        << NameOf(dialect);
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, SqlStatementsCase, testing::ValuesIn(SqlCorpus()),
                         [](const auto& info) { return std::string(info.param.name); });

// --- Dialects -----------------------------------------------------------------------------------

TEST(SqlStatements, ADialectIsKnownByTheNameOfItsServer) {
  EXPECT_EQ(DialectOf("PostgreSQL"), PostgreSQL);
  EXPECT_EQ(DialectOf("MariaDB"), MariaDB);
  EXPECT_EQ(DialectOf("MySQL"), MariaDB);
  EXPECT_EQ(DialectOf("SQLite"), SQLite);
  EXPECT_EQ(DialectOf("Microsoft SQL Server"), SqlServer);
  EXPECT_EQ(DialectOf("postgresql unicode"), PostgreSQL);
  for (const char* other : {"", "Oracle", "ACCESS", "Memory", "SQL", "Post gres"})
    EXPECT_EQ(DialectOf(other), Standard) << other;
}

// --- The caret ----------------------------------------------------------------------------------

/// The caret stands at "‸", and the statement that it is in between "«" and "»".
void ExpectAtCaret(std::string_view marked, SqlDialect dialect = PostgreSQL,
                   ClientWords clientWords = ClientWords::No) {
  const MarkedSql plain = WithoutMarks(marked);
  const auto found = StatementAt(plain.text, plain.caret, dialect, clientWords);
  std::vector<SqlStatement> statements;
  if (found) statements.push_back(*found);
  EXPECT_EQ(WithMarks(plain.text, statements), WithMarks(plain.text, plain.statements)) << marked;
}

TEST(SqlStatementAtCaret, IsTheOneAroundIt) {
  ExpectAtCaret("«‸select 1»; select 2");
  ExpectAtCaret("«sel‸ect 1»; select 2");
  ExpectAtCaret("select 1; «select ‸2»; select 3");
  ExpectAtCaret("select 1;«‸select 2»;");
  ExpectAtCaret("select 1; «select ';‸'»; select 3");
  ExpectAtCaret("select 1; «select /* ; ‸ */ 2»; select 3");
}

TEST(SqlStatementAtCaret, IsTheOneBeforeOnItsDelimiterAndInTheBlanksBehind) {
  ExpectAtCaret("«select 1»‸; select 2");
  ExpectAtCaret("«select 1»;‸ select 2");
  ExpectAtCaret("«select 1»; \t‸ select 2");
  ExpectAtCaret("«select 1» \n ‸ \n ; select 2");
  ExpectAtCaret("«select 1»; ‸\nselect 2");
  ExpectAtCaret("«select 1»; ‸-- one\nselect 2");
  ExpectAtCaret("«select 1»;‸");
  ExpectAtCaret("«select 1»;  ‸ ");
}

TEST(SqlStatementAtCaret, IsTheNextOneElsewhere) {
  ExpectAtCaret("‸ \n «select 1»; select 2");
  ExpectAtCaret("-- ‸one\n«select 1»; select 2");
  ExpectAtCaret("select 1;\n‸«select 2»");
  ExpectAtCaret("select 1;\n ‸\n «select 2»; select 3");
  ExpectAtCaret("select 1; -- ‸ two\n«select 2»; select 3");
  ExpectAtCaret("select 1; ; ‸ «select 2»");
  ExpectAtCaret("‸; «select 1»");
}

TEST(SqlStatementAtCaret, IsNoneBehindTheLast) {
  ExpectAtCaret("‸");
  ExpectAtCaret("-- ‸");
  ExpectAtCaret("select 1;\n‸");
  ExpectAtCaret("select 1; -- ‸ done");
  ExpectAtCaret("select 1; ;‸");
}

TEST(SqlStatementAtCaret, IsTheLastUpToTheEndOfTheTextWithoutADelimiter) {
  ExpectAtCaret("«select 1»‸");
  ExpectAtCaret("select 1; «select 2»\n\n‸");
  ExpectAtCaret("select 1; «select 'a;‸ select 3»");
}

TEST(SqlStatementAtCaret, IsTheBatchInFrontOfItsLine) {
  const auto yes = ClientWords::Yes;
  ExpectAtCaret("«select 1; sel‸ect 2;»\ngo\nselect 3", SqlServer, yes);
  ExpectAtCaret("«select 1»\n‸go 5\nselect 3", SqlServer, yes);
  ExpectAtCaret("«select 1»\ngo‸ 5\nselect 3", SqlServer, yes);
  ExpectAtCaret("select 1\ngo\n‸«select 3»", SqlServer, yes);
  ExpectAtCaret("select 1;\nDELIMITER‸ //\n«select 2;»//", MariaDB, yes);
  ExpectAtCaret("select 1;\nDELIMITER //\n«select 2;»/‸/ select 3", MariaDB, yes);
}

TEST(SqlStatementAtCaret, APositionBehindTheEndMeansTheEnd) {
  EXPECT_EQ(StatementAt("select 1", 1000, Standard), (SqlStatement{0, 8}));
  EXPECT_EQ(StatementAt("select 1;\n", std::string_view::npos, Standard), std::nullopt);
}

// --- Any text -----------------------------------------------------------------------------------

using Random = std::minstd_rand;
using Pieces = std::vector<std::string_view>;

std::string_view AnyOf(const Pieces& pieces, Random& random) {
  return pieces[random() % pieces.size()];
}

/// What statements of a dialect are made of.
struct Grammar {
  SqlDialect dialect;
  ClientWords clientWords;
  std::string_view head;  ///< Of the text.
  Pieces delimiters;
  Pieces fillers;
  Pieces words;
  Pieces bodies;  ///< Whole statements.
};

Pieces With(Pieces pieces, const Pieces& more) {
  pieces.insert(pieces.end(), more.begin(), more.end());
  return pieces;
}

std::vector<Grammar> Grammars() {
  const Pieces fillers{" ", "\n", "\r\n\t", " /* ; ' */ ", " -- ; \" '\n"};
  const Pieces words{"select",  "a", "1", "''",  "'a;b'", "'it''s;'",
                     "\"x;y\"", "+", ",", "(b)", "é"};
  const Pieces compound{"create procedure p() begin if a then select 1; end if; end",
                        "begin not atomic loop select 1; end loop; end"};
  const Pieces hash = With(fillers, {" # ; '\n", " /*;/* */ "});
  const Pieces nested = With(fillers, {" /* /* ; */ ; */ "});
  const Pieces my = With(words, {"`a;b`", "'a\\';'", "\"\\\";\"", "5--5", "@a", "/*! 1 */"});
  return {
      {Standard, ClientWords::No, "", {";"}, fillers, With(words, {"`a;b`"}), compound},
      {PostgreSQL,
       ClientWords::No,
       "\xEF\xBB\xBF",
       {";", ";;"},
       nested,
       With(words, {"$$;'$$", "$t$;$$;$t$", "E'\\';'", "a$b$c", "$1", "(;)", "e'a' \n '\\';'"}),
       {"create function f() returns int begin atomic select case 1 when 1 then 2 end; end",
        "begin", "end"}},
      {MariaDB, ClientWords::No, "", {";"}, hash, my, compound},
      {MariaDB,
       ClientWords::Yes,
       "delimiter //\n",
       {"//", "// //"},
       hash,
       With(my, {";"}),
       compound},
      {SQLite,
       ClientWords::No,
       "",
       {";"},
       fillers,
       With(words, {"`a;b`", "[a;b']", "x''", "$a"}),
       {"create temp trigger t after insert on a begin select 1; select 2; end", "begin", "end"}},
      {SqlServer,
       ClientWords::No,
       "",
       {";"},
       nested,
       With(words, {"[a;b]];']", "@begin", "#a"}),
       {"begin select case when 1 = 1 then 2 end; end", "begin tran"}},
      {SqlServer,
       ClientWords::Yes,
       "",
       {"\ngo\n", "\r\n GO 5 \r\n", "\ngo\nGO -- x\n"},
       nested,
       With(words, {"[a;b]];']", "goto", ";"}),
       {"create proc p as select 1; select 2;"}},
  };
}

void AddFiller(const Grammar& grammar, std::string& text, Random& random) {
  for (auto count = random() % 3; count > 0; --count) text += AnyOf(grammar.fillers, random);
}

void AddStatement(const Grammar& grammar, std::string& text, Random& random) {
  if (random() % 4 == 0) {
    text += AnyOf(grammar.bodies, random);
    return;
  }
  text += "select";
  for (auto count = random() % 6; count > 0; --count) {
    text.append(" ").append(AnyOf(grammar.words, random));
    AddFiller(grammar, text, random);
  }
}

/// Behind the last sign of the text that is no blank.
std::size_t EndOf(std::string_view text) { return text.find_last_not_of(" \t\r\n") + 1; }

/// A text with its statements, known from how it is made.
MarkedSql Generate(const Grammar& grammar, Random& random) {
  MarkedSql made;
  made.text = grammar.head;
  bool open = false;  // Whether the last one has no delimiter.
  for (auto count = random() % 8; count > 0; --count) {
    AddFiller(grammar, made.text, random);
    const std::size_t begin = made.text.size();
    AddStatement(grammar, made.text, random);
    AddFiller(grammar, made.text, random);
    made.statements.push_back({begin, EndOf(made.text)});
    open = count == 1 && random() % 2 == 0;
    if (!open) made.text += AnyOf(grammar.delimiters, random);
  }
  AddFiller(grammar, made.text, random);
  if (open) made.statements.back().end = EndOf(made.text);
  return made;
}

TEST(SqlStatements, EveryByteOfAMadeTextIsInTheStatementItWasMadeFor) {
  Random random(7);
  for (const Grammar& grammar : Grammars()) {
    for (int i = 0; i < 1500; ++i) {
      const MarkedSql made = Generate(grammar, random);
      const auto found = SplitStatements(made.text, grammar.dialect, grammar.clientWords);
      ASSERT_EQ(WithMarks(made.text, found), WithMarks(made.text, made.statements))
          << NameOf(grammar.dialect) << " text number " << i;
    }
  }
}

std::string RandomText(Random& random) {
  static const Pieces pieces{";",
                             "'",
                             "\"",
                             "`",
                             "[",
                             "]",
                             "(",
                             ")",
                             "--",
                             "-- ",
                             "#",
                             "/*",
                             "*/",
                             "/*!",
                             "/*M!999999",
                             "\\",
                             "E'",
                             "$$",
                             "$a$",
                             "$",
                             "\n",
                             "\r",
                             " ",
                             "\t",
                             "\xEF\xBB\xBF",
                             "é",
                             ":",
                             "=",
                             "<<",
                             ".",
                             "@",
                             "a",
                             "1",
                             "GO",
                             "\nGO 2\n",
                             "\ndelimiter //\n",
                             "\ndelimiter ;\n",
                             "//",
                             " begin ",
                             " end ",
                             " case ",
                             " create ",
                             " procedure ",
                             " function ",
                             " trigger ",
                             " package ",
                             " each row ",
                             " if ",
                             " then ",
                             " loop ",
                             " repeat ",
                             " until ",
                             " for ",
                             " do ",
                             " not ",
                             " atomic ",
                             " declare ",
                             " as ",
                             " returns ",
                             " return ",
                             " select ",
                             " else ",
                             " tran ",
                             " explain ",
                             " temp ",
                             " handler for "};
  std::string text;
  for (auto count = random() % 40; count > 0; --count) text += AnyOf(pieces, random);
  if (random() % 8 == 0) text.insert(text.size() / 2, 1, '\0');
  return text;
}

TEST(SqlStatements, HoldTogetherWhateverTheText) {
  Random random(13);
  for (int i = 0; i < 4000; ++i) {
    const std::string text = RandomText(random);
    ASSERT_EQ(ComplaintAboutStatements(text), "") << "text number " << i << ": " << text;
  }
}

// --- Long texts ---------------------------------------------------------------------------------

/// Where work were done again for each of many pieces, this would take minutes.
TEST(SqlStatements, AHostileTextTakesNoLongerThanAnyOther) {
  const Pieces pieces{"'",
                      "\"a",
                      "`",
                      "[",
                      "(",
                      "/*",
                      "/*/",
                      "/*!",
                      "--",
                      "-- ",
                      "#",
                      "$",
                      "$a",
                      "$a$b",
                      "E'",
                      "E'a'\n",
                      "\\",
                      ";",
                      "; ",
                      ";else ",
                      "begin ",
                      "begin;",
                      "case ",
                      "create ",
                      "end;",
                      "if a then ",
                      "create procedure p as ",
                      "go ",
                      "\ngo",
                      " \t",
                      "delimiter ;",
                      "\ndelimiter $\n",
                      "a$",
                      ":",
                      "<"};
  for (const std::string_view piece : pieces) {
    std::string text;
    while (text.size() < 100'000) text += piece;
    for (const SqlDialect dialect : {Standard, PostgreSQL, MariaDB, SQLite, SqlServer}) {
      const std::clock_t start = std::clock();  // A busy machine counts for nothing.
      (void)SplitStatements(text, dialect, ClientWords::Yes);
      (void)StatementAt(text, text.size(), dialect, ClientWords::No);
      EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC) << piece << " of " << NameOf(dialect);
    }
  }
}

TEST(SqlStatements, ManyStatementsAreAllFound) {
  std::string text;
  for (int i = 0; i < 20'000; ++i) text += "insert into t values (1, 'a;b'); ";
  EXPECT_THAT(SplitStatements(text, SQLite), SizeIs(20'000));
  EXPECT_EQ(StatementAt(text, text.size() - 4, SQLite)->end, text.size() - 2);
}

}  // namespace
}  // namespace tessel::test
