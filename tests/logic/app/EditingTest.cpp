// Editing in the query window as the frame knows it: the statement at the caret, the place of an
// error, the Edit menu, and files that are dropped.

#include "logic/app/frmMDI.h"
#include "tests/headless/HeadlessText.h"
#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

class EditingTest : public test::FrameFixture {
 protected:
  EditorBox& Box() { return query().Find<EditorBox>("txtQuery"); }
  void Put(const std::string& sql, std::size_t caret) {
    Box().SetText(sql);
    Box().Select(caret, 0);
  }
  /// A connection whose server has that name.
  void ConnectTo(const std::string& connectionString, const std::string& dbms) {
    data.ServerOf(connectionString).properties.Set("DBMS Name", dbms);
    Connect(connectionString);
  }
  void RunAtCaret() { query().PressKey(key::enter, shiftState::ctrl); }
  void Drop(const std::vector<std::string>& paths) {
    dynamic_cast<test::HeadlessRichTextBox&>(Box()).DropFiles(paths);
    desktop.RunDeferred();
  }
  MenuItem& Item(const std::string& name) { return mdi().Menu(name); }
};

// --- the statement at the caret ------------------------------------------------------------------

TEST_F(EditingTest, CtrlReturnSelectsTheStatementAtTheCaretAndRunsIt) {
  Start();
  ConnectTo("A", "SQLite");
  data.ServerOf("A").AnswerNothing("select 2");
  Put("select 1;\nselect 2;\nselect 3;", 14);
  query().Find<EditorBox>("txtQuery").SetFocus();
  RunAtCaret();
  EXPECT_EQ(Executed("A"), (std::vector<std::string>{"select 2"}));
  EXPECT_EQ(Box().SelText(), "select 2") << "what ran is seen";
  data.ServerOf("A").AnswerNothing("select 2");
  mdi().ChooseMenu("mnuDBExecuteStatement");
  EXPECT_EQ(Executed("A").size(), 2U);
}

TEST_F(EditingTest, TheStatementIsReadByTheRulesOfTheConnection) {
  Start();
  const std::string sql = "create function f() as $$ a; b $$;\nselect 1;";
  ConnectTo("A", "PostgreSQL");
  data.ServerOf("A").AnswerNothing("create function f() as $$ a; b $$");
  Put(sql, 28);
  RunAtCaret();
  EXPECT_EQ(Executed("A"), (std::vector<std::string>{"create function f() as $$ a; b $$"}));
}

/// Where they differ the connection that was opened first decides.
TEST_F(EditingTest, OfSeveralKindsTheFirstConnectionDecides) {
  Start();
  ConnectTo("A", "MariaDB");
  ConnectTo("B", "PostgreSQL");
  const std::string statement = "select 'it\\'; x'";
  data.ServerOf("A").AnswerNothing(statement);
  data.ServerOf("B").AnswerNothing(statement);
  Put(statement + ";\nselect 1;", 12);
  RunAtCaret();
  EXPECT_EQ(Executed("A"), (std::vector<std::string>{statement}));
  EXPECT_EQ(Executed("B"), (std::vector<std::string>{statement}));
}

TEST_F(EditingTest, AClientsWordsAreNoPartOfAStatement) {
  Start();
  ConnectTo("A", "MariaDB");
  const std::string body = "create procedure p() begin select 1; select 2; end";
  data.ServerOf("A").AnswerNothing(body);
  Put("DELIMITER //\n" + body + "//\nDELIMITER ;\n", 40);
  RunAtCaret();
  EXPECT_EQ(Executed("A"), (std::vector<std::string>{body}));
}

TEST_F(EditingTest, WithoutAStatementNothingRuns) {
  Start();
  ConnectTo("A", "SQLite");
  Put("select 1;\n\n-- nothing more\n", 27);
  desktop.ExpectMessage("There is no statement at the caret.", MessageResult::Ok);
  RunAtCaret();
  EXPECT_TRUE(Executed("A").empty());
}

// --- the place of an error -----------------------------------------------------------------------

class ErrorPlaceTest : public EditingTest {
 protected:
  ErrorPlaceTest() {
    for (const char* server : {"A", "B"}) static_cast<void>(data.ServerOf(server));
    Start();
  }
  /// What is marked, as text; "-" when nothing is.
  std::string Marked() {
    const auto range = Box().MarkedError();
    return range ? Box().Text().substr(range->begin, range->end - range->begin) : "-";
  }
  void Run() { mdi().ChooseMenu("mnuDBExecute"); }
  /// The server of `connection` refuses that text at a byte of it.
  void Refuse(const std::string& connection, const std::string& sql, std::size_t byte) {
    data.ServerOf(connection).AnswerError(sql, MemoryError("syntax error")).FailedAt(byte);
  }
};

TEST_F(ErrorPlaceTest, TheWordThatFailedIsMarked) {
  Connect("A");
  Refuse("A", "select a fro t", 9);
  Box().SetText("-- first\n  select a fro t  ");
  Box().Select(9, 18);
  Run();
  EXPECT_EQ(Marked(), "fro");
  EXPECT_EQ(Box().MarkedError()->begin, 20U);
  Box().Select(0, 0);
  query().PressKey(key::f4);
  EXPECT_EQ(Box().SelStart(), 20U);
}

TEST_F(ErrorPlaceTest, AtTheEndTheLastWordIsMarked) {
  Connect("A");
  Refuse("A", "select a, from_", 15);
  Select("select a, from_");
  Run();
  EXPECT_EQ(Marked(), "from_");
}

TEST_F(ErrorPlaceTest, AnEditThereTakesTheMarkAway) {
  Connect("A");
  Refuse("A", "select fro", 7);
  Select("select fro");
  Run();
  ASSERT_EQ(Marked(), "fro");
  Box().Select(10, 0);
  query().Type("txtQuery", "m");
  EXPECT_EQ(Marked(), "-");
}

TEST_F(ErrorPlaceTest, TheNextRunTakesTheMarkAway) {
  Connect("A");
  Refuse("A", "select fro", 7);
  Select("select fro");
  Run();
  data.ServerOf("A").AnswerNothing("select");
  Box().Select(0, 6);
  Run();
  EXPECT_EQ(Marked(), "-");
}

TEST_F(ErrorPlaceTest, WithoutAPlaceTheStatementIsMarked) {
  Connect("A");
  data.ServerOf("A")
      .AnswerCount("insert 1; insert 2; insert 3", 1)
      .Then(MemoryResult::Failure(MemoryError("duplicate")));
  Select("insert 1; insert 2; insert 3");
  Run();
  EXPECT_EQ(Marked(), "insert 2");
}

TEST_F(ErrorPlaceTest, TheTextOfATagIsTheTag) {
  Connect("A");
  desktop.TheClipboard().SetText("a long list, of columns");
  Refuse("A", "select a long list, of columns fro t", 31);
  Refuse("A", "select a long list, of columns oops t", 12);
  Select("select <%^%> fro t");
  Run();
  EXPECT_EQ(Marked(), "fro");
  Select("select <%^%> oops t");
  Run();
  EXPECT_EQ(Marked(), "<%^%>");
}

TEST_F(ErrorPlaceTest, SqlThatWasChangedInThePreviewHasNoPlace) {
  Connect("A");
  Refuse("A", "select frrr", 7);
  Select("select fro");
  desktop.OnModal("frmText", [](Window& w) {
    w.Find<EditorBox>("txtText").SetText("select frrr");
    w.Click("cmdOK");
  });
  mdi().ChooseMenu("mnuDBPreview");
  EXPECT_EQ(Marked(), "-");
}

TEST_F(ErrorPlaceTest, ATagThatCannotBeFilledMarksNothing) {
  Connect("A");
  Refuse("A", "select fro", 7);
  Select("select fro");
  Run();
  ASSERT_EQ(Marked(), "fro");
  Select("select <%#%> fro");
  desktop.ExpectMessage("Unknown tag type: '#'");
  Run();
  EXPECT_EQ(Marked(), "-");
}

TEST_F(ErrorPlaceTest, OfSeveralConnectionsTheFirstFailureIsMarked) {
  Connect("A");
  Connect("B");
  data.ServerOf("A").AnswerNothing("select a fro t");
  Refuse("B", "select a fro t", 9);
  Select("select a fro t");
  Run();
  EXPECT_EQ(Marked(), "fro");
}

// --- the Edit menu -------------------------------------------------------------------------------

TEST_F(EditingTest, TheEditMenuEditsTheQueryWindow) {
  Start();
  Put("one two", 0);
  mdi().ChooseMenu("mnuEditSelectAll");
  EXPECT_EQ(Box().SelText(), "one two");
  Box().Select(0, 4);
  mdi().ChooseMenu("mnuEditCut");
  EXPECT_EQ(Box().Text(), "two");
  EXPECT_EQ(desktop.TheClipboard().Text(), "one ");
  mdi().ChooseMenu("mnuEditUndo");
  EXPECT_EQ(Box().Text(), "one two");
  mdi().ChooseMenu("mnuEditRedo");
  EXPECT_EQ(Box().Text(), "two");
  Box().Select(3, 0);
  mdi().ChooseMenu("mnuEditPaste");
  EXPECT_EQ(Box().Text(), "twoone ");
  Box().Select(0, 3);
  mdi().ChooseMenu("mnuEditCopy");
  mdi().ChooseMenu("mnuEditDelete");
  EXPECT_EQ(Box().Text(), "one ");
  EXPECT_EQ(desktop.TheClipboard().Text(), "two");
  mdi().ChooseMenu("mnuEditComment");
  EXPECT_EQ(Box().Text(), "-- one ");
  mdi().ChooseMenu("mnuEditFind");
  EXPECT_EQ(query().FocusName(), "txtFind");
}

TEST_F(EditingTest, TheEditMenuOffersWhatCanBeDone) {
  Start();
  Put("", 0);
  Item("menuEdit").Choose();
  for (const char* item : {"mnuEditUndo", "mnuEditRedo", "mnuEditCut", "mnuEditCopy",
                           "mnuEditPaste", "mnuEditDelete", "mnuEditGoToError"})
    EXPECT_FALSE(Item(item).Enabled()) << item;
  query().Type("txtQuery", "x");
  Box().Select(0, 1);
  desktop.TheClipboard().SetText("y");
  Item("menuEdit").Choose();
  for (const char* item :
       {"mnuEditUndo", "mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditDelete"})
    EXPECT_TRUE(Item(item).Enabled()) << item;
}

TEST_F(EditingTest, WhatIsPastedGetsTheLineEndsOfTheText) {
  Start();
  Put("a\r\n", 3);
  desktop.TheClipboard().SetText("b\nc");
  mdi().ChooseMenu("mnuEditPaste");
  EXPECT_EQ(Box().Text(), "a\r\nb\r\nc");
}

// --- files that are dropped ----------------------------------------------------------------------

TEST_F(EditingTest, ADroppedSqlFileIsOpenedAsOpenDoesIt) {
  Start();
  query().Type("txtQuery", "unsaved");
  const std::string path = folder.Write("orders.SQL", "select 1");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel);
  Drop({path});
  EXPECT_EQ(Box().Text(), "unsaved");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  Drop({path});
  EXPECT_EQ(Box().Text(), "select 1");
  EXPECT_EQ(query().Caption(), "SQL [orders.SQL]");
}

TEST_F(EditingTest, ADroppedDatabaseIsConnectedTo) {
  Start();
  const std::string path = folder.Write("my;shop.db", "");
  Drop({path});
  ASSERT_EQ(frame().RecordsWindowCount(), 1);
  EXPECT_EQ(frame().RecordsWindows().front()->TheConnection()->ConnectionString(),
            "Provider=SQLite;Data Source={" + path + "}");
  EXPECT_EQ(frame().RecordsWindows().front()->Caption(), "my;shop.db");
  desktop.ExpectMessage(connectQuestion, MessageResult::Cancel);
  Drop({path});
  EXPECT_EQ(frame().RecordsWindowCount(), 1);
}

TEST_F(EditingTest, OtherFilesAreRefusedByName) {
  Start();
  const std::string path = folder.Write("picture.png", "");
  desktop.ExpectMessage(path + " was not opened: it is neither SQL (.sql, .txt) nor an SQLite "
                               "database (.db, .db3, .sqlite, .sqlite3, .s3db, .sl3).",
                        MessageResult::Ok);
  Drop({path});
  EXPECT_EQ(Box().Text(), "");
}

}  // namespace
}  // namespace tessel
