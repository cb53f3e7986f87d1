// The main job by keys alone, as somebody without a mouse does it, from the first dialog to the
// end of the program: each step presses keys where the keyboard is, and a pressed mouse button
// anywhere fails the test.

#include <QApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include "contract/desktop/controls/TreeView.h"
#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

using namespace shiftState;

/// Counts the mouse buttons that go down.
class MouseWatch final : public QObject {
 public:
  MouseWatch() { qApp->installEventFilter(this); }
  [[nodiscard]] int Presses() const { return presses_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress) ++presses_;
    return false;
  }

 private:
  int presses_ = 0;
};

class KeyboardJobTest : public ProgramFixture {
 protected:
  ~KeyboardJobTest() override { EXPECT_EQ(mouse_.Presses(), 0); }

  void Press(int keyCode, int shift = none) {
    PressKeyCode(keyCode, shift);
    host.Settle();
  }
  void Write(std::string_view text) {
    TypeText(text);
    host.Settle();
  }
  /// Opens a menu of the menu bar by its letter and chooses the entry of that one.
  void Menu(char title, char entry) {
    Press(title, alt);
    Press(entry);
    WaitForKeyboard();
  }
  void InDialog(const std::string& form, std::function<void(Window&)> keys) {
    host.OnModal(form, std::move(keys));
  }
  void InMessage(const std::string& text, int keyCode) {
    host.Answers().OnMessage(text, [keyCode](QWidget&) { PressKeyCode(keyCode, none); });
  }
  void InPopup(const std::string& menu, int keyCode) {
    host.Answers().OnPopup(menu, [keyCode](QWidget&) { PressKeyCode(keyCode, none); });
  }

  /// What a person types into the dialog of connections.
  void ConnectByKeys(const std::string& connectionString, const std::string& caption) {
    InDialog("dlgConnect", [this, connectionString, caption](Window& w) {
      Press('N', alt);
      Write(caption);
      Press('C', alt);
      Write(connectionString);
      Press('S', alt);
      const auto& box = w.Find<CheckBox>("chkLoadSchemaFromDB");
      EXPECT_TRUE(QTest::qWaitFor([&] { return box.Value(); }));
      Press(key::enter);
    });
  }
  void StartByKeys() {
    ConnectByKeys(SampleConnection(), "Shop");
    program.Main();
    WaitForKeyboard();
  }
  /// Types over all that stands in the query window and runs it.
  void RunByKeys(const std::string& sql, int runKey = key::f5) {
    Press('A', ctrl);
    Write(sql);
    Press('A', ctrl);
    Press(runKey);
    WaitForKeyboard();
  }
  RichTextBox& Box() { return Query().Find<RichTextBox>("txtQuery"); }
  TreeView& Tree() { return Frame().Find<TreeView>("trvBrowser"); }

 private:
  MouseWatch mouse_;
};

TEST_F(KeyboardJobTest, ConnectingWritingRunningAndLooking) {
  StartByKeys();
  ASSERT_EQ(Status(0), "Connected.");
  ASSERT_TRUE(Box().HasFocus()) << "the SQL can be typed at once";
  Write("SELECT CustomerID, Name FROM Custo");
  Press('T', ctrl);
  ASSERT_EQ(Box().Text(), "SELECT CustomerID, Name FROM Customers") << "the schema was loaded";
  Write(" WHERE CustomerID < 4");
  Press('A', ctrl);
  Press(key::f5);
  WaitForKeyboard();
  EXPECT_EQ(Status(0), "3 record(s).");
  Press(key::f6);
  ASSERT_TRUE(Grid(0).HasFocus());
  Press(key::down);
  Press(key::right);
  std::string shown;
  InDialog("frmText", [&](Window& w) {
    shown = w.Find<RichTextBox>("txtText").Text();
    Press(key::escape);
  });
  Press(key::f3);
  EXPECT_EQ(shown, Grid(0).ShownText(1, 1));
  WaitForKeyboard();
  Press(key::f6);
  EXPECT_TRUE(Box().HasFocus());
}

TEST_F(KeyboardJobTest, TheSchemaBrowserWritesSql) {
  StartByKeys();
  Press(key::f7);
  ASSERT_EQ(Tree().SelectedKey(), "d1") << "the first node is there for the keys";
  Press(key::down);
  EXPECT_EQ(Tree().SelectedKey(), "td1.CATEGORIES");
  Press(key::home);
  EXPECT_EQ(Tree().SelectedKey(), "d1");
  Press(key::end);
  EXPECT_NE(Tree().SelectedKey(), "d1");
  Press(key::home);
  Press(key::down);
  InPopup("menuTable", 'S');
  Press(key::contextMenu);
  EXPECT_EQ(Box().Text(), "SELECT * FROM Categories\r\n");
  Press(key::escape);
  ASSERT_TRUE(Box().HasFocus());
  Press(key::f5);
  WaitForKeyboard();
  EXPECT_TRUE(Status(0).ends_with("record(s).")) << Status(0);
}

TEST_F(KeyboardJobTest, EditingARowAndDeletingOne) {
  StartByKeys();
  RunByKeys("CREATE TABLE jobs(id INTEGER PRIMARY KEY, name TEXT)");
  RunByKeys("INSERT INTO jobs VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  Press(key::f6);
  Press('L', ctrl);
  Press(key::f6);
  RunByKeys("SELECT id, name FROM jobs");
  Press(key::f6);
  Press(key::right);
  Press(key::f2);
  Write("x");
  Press('S', ctrl);
  WaitForKeyboard();
  EXPECT_EQ(Grid(0).ShownText(0, 1), "onex");
  EXPECT_FALSE(Records(0).Find<Button>("cmdAccept").Visible());
  Press(key::down);
  Press(key::space, shift);
  InMessage("Delete 1 record(s)?", 'Y');
  Press(key::del);
  WaitForKeyboard();
  EXPECT_EQ(Grid(0).ShownText(1, 1), "three");
  InMessage("Delete 1 record(s)?", 'Y');
  Menu('R', 'D');
  Press(key::f6);
  RunByKeys("SELECT count(*) AS n, min(name) AS name FROM jobs");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "1");
  EXPECT_EQ(Grid(0).ShownText(0, 1), "onex");
}

TEST_F(KeyboardJobTest, RowsAreConvertedAndTakenIntoTheSql) {
  StartByKeys();
  RunByKeys("SELECT 1 AS one, 2 AS two");
  Press(key::f6);
  std::string shown;
  InDialog("frmText", [&](Window& w) {
    shown = w.Find<RichTextBox>("txtText").Text();
    Press('C', ctrl | shift);
    Press(key::escape);
  });
  Menu('R', 'C');
  EXPECT_NE(shown.find("1,2"), std::string::npos) << shown;
  EXPECT_NE(Box().Text().find("1,2"), std::string::npos);
}

TEST_F(KeyboardJobTest, ATagIsMadeGivenAValueWrittenAndUsed) {
  StartByKeys();
  Press('T', alt);
  Press(key::insert);
  Write("town");
  Press(key::enter);
  Press(key::enter);
  Write("Rome");
  Press(key::enter);
  Press(key::escape);
  auto& tags = Frame().Find<ListView>("lsvTags");
  ASSERT_EQ(tags.Count(), 1);
  EXPECT_EQ(tags.Row(0).text, "town");
  EXPECT_EQ(tags.Row(0).subItems.front(), "Rome");
  Press(key::f7);
  RunByKeys("SELECT <*?town*> AS town");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "Rome");
  Press('T', alt);
  InPopup("menuTags", 'V');
  Press(key::contextMenu);
  Write("Oslo");
  Press(key::f7);
  ASSERT_TRUE(Box().HasFocus());
  Press(key::f6);
  Menu('Q', 'T');
  EXPECT_EQ(Grid(0).ShownText(0, 0), "Oslo");
}

TEST_F(KeyboardJobTest, TheHistoryAndTheStatementsOfARun) {
  StartByKeys();
  RunByKeys("SELECT 1 AS n");
  RunByKeys("SELECT 2 AS n");
  Press(key::f6);
  Press(key::left, alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "1");
  host.Answers().OnPopup("menuHistory", [](QWidget&) {
    PressKeyCode(key::down, none);
    PressKeyCode(key::enter, none);
  });
  Press(key::down, alt);
  WaitForKeyboard();
  EXPECT_EQ(Grid(0).ShownText(0, 0), "2");
  Press(key::f6);
  RunByKeys("SELECT 1 AS a; SELECT 2 AS b; SELECT 3 AS c");
  Press(key::f6);
  Press(key::pageDown, ctrl);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "2");
  Menu('Q', 'N');
  EXPECT_EQ(Grid(0).ShownText(0, 0), "3");
  Menu('Q', 'S');
  EXPECT_FALSE(Records(0).Active()) << "the list of statements is in front";
  Press(key::f4, ctrl);
  Press(key::f6, ctrl);
  EXPECT_TRUE(Records(0).Active());
}

TEST_F(KeyboardJobTest, RecordsAreImportedFromTheClipboard) {
  StartByKeys();
  Press(key::f6);
  host.TheDesktop().TheClipboard().SetText("id\tname\n1\tone\n2\t\"two\nlines\"\n");
  InDialog("dlgImport", [this](Window& w) {
    const auto says = [&w](const char* text) {
      return QTest::qWaitFor(
          [&] { return w.Find<Label>("lblStatus").Caption().find(text) != std::string::npos; });
    };
    Press('P', alt);
    EXPECT_TRUE(says("2 records in the clipboard"));
    Press('T', alt);
    Write("imported");
    EXPECT_EQ(w.Find<ComboBox>("cboTable").Text(), "imported");
    Press('I', alt);
    EXPECT_TRUE(says("2 records imported into imported"));
    Press(key::escape);
  });
  Press('I', ctrl | shift);
  WaitForKeyboard();
  EXPECT_TRUE(Tree().Exists("td1.IMPORTED"));
  Press(key::f6);
  RunByKeys("SELECT name FROM imported ORDER BY id");
  EXPECT_EQ(Status(0), "2 record(s).");
  EXPECT_EQ(ToText(Grid(0).DataSource()->ValueAt(1, 0)), "two\nlines");
}

TEST_F(KeyboardJobTest, SeveralConnectionsRunAtOnceComparedAndClosed) {
  StartByKeys();
  InMessage(whichInstance, 'Y');
  ConnectByKeys("Provider=SQLite;Data Source=:memory:", "Empty");
  Menu('D', 'C');
  ASSERT_EQ(program.Frame().RecordsWindowCount(), 2);
  Press(key::f6, ctrl);
  EXPECT_TRUE(Records(0).Active());
  Press(key::tab, ctrl);
  EXPECT_TRUE(Records(1).Active());
  Press(key::f6, ctrl | shift);
  EXPECT_TRUE(Records(0).Active());
  Press(key::f6);
  RunByKeys("SELECT 1 AS id, 'a' AS text", key::f8 + 1);
  EXPECT_EQ(Status(0), "1 record(s).");
  EXPECT_EQ(Status(1), "1 record(s).");
  Press(key::f4, ctrl);
  InDialog("dlgCompare", [this](Window&) { Press(key::enter); });
  Menu('D', 'D');
  EXPECT_FALSE(Query().Active()) << "the differences are in front";
  Press(key::escape);
  EXPECT_TRUE(Query().Active());
  Press(key::f6);
  Press('T', ctrl | shift);
  EXPECT_FALSE(program.Frame().RecordsWindows().front()->TakesPart());
  Press(key::f4, ctrl);
  WaitForKeyboard();
  EXPECT_EQ(program.Frame().RecordsWindowCount(), 1);
}

TEST_F(KeyboardJobTest, TheSidebarIsMadeWiderLeftAndHidden) {
  StartByKeys();
  auto& box = WidgetOf(Frame(), "box");
  const int width = box.width();
  Press(key::f8, shift);
  EXPECT_GT(box.width(), width);
  Press(key::f8, shift | ctrl);
  EXPECT_EQ(box.width(), width);
  Menu('W', 'D');
  EXPECT_GT(box.width(), width);
  Press(key::f7);
  EXPECT_TRUE(Tree().HasFocus());
  Press(key::f8);
  EXPECT_FALSE(box.isVisible());
  Write("typed");
  EXPECT_EQ(Box().Text(), "typed") << "the keyboard is not lost with the sidebar";
}

TEST_F(KeyboardJobTest, TheKeyboardIsNeverLost) {
  InDialog("dlgConnect", [this](Window&) { Press(key::escape); });
  program.Main();
  WaitForKeyboard();
  Write("a");
  EXPECT_EQ(Box().Text(), "a") << "behind a dialog that was left";
  ConnectByKeys(SampleConnection(), "Shop");
  Menu('D', 'C');
  Press(key::f6);
  Press(key::f4, ctrl);
  WaitForKeyboard();
  Write("b");
  EXPECT_EQ(Box().Text(), "ab") << "when its window was closed";
  Press('W', alt);
  Press(key::escape);
  Press(key::escape);
  Write("c");
  EXPECT_EQ(Box().Text(), "abc") << "behind a menu that was left";
}

TEST_F(KeyboardJobTest, TheTextWindowIsLeftByKeys) {
  StartByKeys();
  InDialog("frmText", [this](Window& w) {
    Write("word");
    Press(key::enter);
    Press(key::tab, ctrl);
    EXPECT_TRUE(w.Find<CheckBox>("chkWordWrap").HasFocus());
    Press(key::tab, shift);
    EXPECT_TRUE(w.Find<RichTextBox>("txtText").HasFocus());
    Press(key::enter, ctrl);
  });
  Menu('E', 'V');
  EXPECT_NE(files.ReadWhole(folder.File("Tessel.vocab.txt")).find("word"), std::string::npos);
}

TEST_F(KeyboardJobTest, TheProgramIsLeft) {
  StartByKeys();
  Write("SELECT 1");
  InMessage("Save changes to SQL?", 'N');
  Press('F', alt);
  Press('X');
  EXPECT_FALSE(Frame().Loaded());
}

}  // namespace
}  // namespace tessel::test
