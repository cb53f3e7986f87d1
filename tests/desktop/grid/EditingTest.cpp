// Rows changed in the grid with keys and mouse, on a real window and a real database file.

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>
#include <filesystem>

#include <gtest/gtest.h>

#include "data/cursor/DataAccessObjects.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellDelegate.h"
#include "desktop/grid/cells/CellEditor.h"
#include "logic/app/Main.h"
#include "system/PosixFiles.h"
#include "tests/desktop/QtContractHost.h"
#include "tests/desktop/QtUser.h"
#include "tests/support/DataSteps.h"
#include "tests/support/Slowdown.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {
namespace {

/// The program connected to a file with one table of three rows.
class EditingTest : public ::testing::Test {
 protected:
  static constexpr int id = 0;
  static constexpr int name = 1;
  static constexpr int price = 2;
  static constexpr int active = 3;
  static constexpr int photo = 4;

  EditingTest() {
    Execute("CREATE TABLE item(id INTEGER PRIMARY KEY, name TEXT NOT NULL, price REAL, "
            "active BOOLEAN, photo BLOB, photo_FileName TEXT)");
    Execute("INSERT INTO item VALUES (1, 'bolt', 1.5, 1, x'010203', 'bolt.bin'), "
            "(2, 'nut', NULL, NULL, NULL, NULL), (3, 'washer', 0.25, 0, x'', NULL)");
    host.OnModal("dlgConnect", [this](Window& w) {
      w.Find<TextBox>("txtCnStr").SetText(ConnectionString());
      w.Find<TextBox>("txtCaption").SetText("Items");
      host.Click(w, "cmdConnect");
    });
    program.Main();
    WaitForKeyboard(program.Frame().TheWindow());
    records().Activate();
    program.Frame().RecordsWindows().at(0)->FocusRecords();
    host.Settle();
  }
  ~EditingTest() override { std::filesystem::current_path(before_); }

  [[nodiscard]] std::string ConnectionString() const {
    return "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder.File("items.db");
  }
  [[nodiscard]] std::shared_ptr<Recordset> Open(const std::string& sql) {
    if (other_ == nullptr) {
      other_ = data.CreateConnection();
      other_->SetConnectionString(ConnectionString());
      OpenNow(*other_);
    }
    const auto rows = QueryNow(*other_, sql);
    return rows;
  }
  /// On a connection of its own.
  void Execute(const std::string& sql) { static_cast<void>(Open(sql)); }
  [[nodiscard]] std::string Ask(const std::string& sql) {
    const auto rows = Open(sql);
    if (rows->RecordCount() == 0) return "(no row)";
    const ValueView value = rows->ValueAt(0, 0);
    return IsNull(value) ? "NULL" : ToText(value);
  }

  Window& records() { return program.Frame().RecordsWindows().at(0)->TheWindow(); }
  DataGrid& grid() { return records().Find<DataGrid>("DataGrid"); }
  RecordGrid& view() { return WidgetAs<RecordGrid>(records(), "DataGrid"); }
  /// Unlocks and shows the whole table.
  void RunUnlocked(const std::string& sql = "SELECT * FROM item ORDER BY id") {
    Press('L', shiftState::ctrl);
    Run(sql);
  }
  void Run(const std::string& sql) {
    program.Frame().RecordsWindows().at(0)->DoQueryTags(sql, false, newQuery);
    host.Settle();
    WaitForKeyboard(program.Frame().TheWindow());
    grid().SetFocus();
    host.Settle();
  }
  void Press(int keyCode, int shift = shiftState::none) {
    WaitForKeyboard(program.Frame().TheWindow());
    host.PressKey(records(), keyCode, shift);
    host.Settle();
  }
  void Type(std::string_view text) {
    WaitForKeyboard(program.Frame().TheWindow());
    TypeText(text);
    host.Settle();
  }
  void Click(int row, int column) { host.ClickGridCell(records(), "DataGrid", row, column); }
  /// The first press goes to the cell, the second one to its button.
  void PressButton(int row, int column) {
    Click(row, column);
    const QRect cell = view().visualRect(view().model()->index(row, column));
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, CellDelegate::ButtonIn(cell).center());
    host.Settle();
  }
  void AnswerFile(const std::string& path) {
    host.Answers().OnDialog([path](QWidget& dialog) {
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path));
      dynamic_cast<QDialog&>(dialog).accept();
    });
  }
  [[nodiscard]] bool ButtonsShow() { return records().Find<Button>("cmdAccept").Visible(); }

  const std::filesystem::path before_ = std::filesystem::current_path();
  TemporaryFolder folder;
  QtContractHost host;
  PosixFiles files;
  DataAccessObjects data{host.TheDesktop().Events(), nullptr, RowMemory::OfMachine(), slowdown};
  std::shared_ptr<Connection> other_;
  Program program{Platform{
      host.TheDesktop(), data, files, folder.Path().string(), folder.File("Tessel"), "1.0", {}}};
};

TEST_F(EditingTest, AClickIntoAWindowWithoutRowsBringsItTheKeys) {
  program.Frame().QueryWindow().FocusText();
  host.Settle();
  QWidget* body = view().parentWidget();
  QTest::mouseClick(body, Qt::LeftButton, {}, body->rect().center());
  host.Settle();
  EXPECT_TRUE(records().Active());
  const bool locked = records().Find<CheckBox>("chkLock").Value();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_L, Qt::ControlModifier);
  host.Settle();
  EXPECT_NE(records().Find<CheckBox>("chkLock").Value(), locked);
}

TEST_F(EditingTest, LockedRowsTakeNoKeys) {
  Run("SELECT * FROM item");
  Click(0, name);
  Type("x");
  Press(key::f2);
  EXPECT_FALSE(grid().EditActive());
  EXPECT_EQ(view().Model().RowCount(), 3) << "and there is no row for a new record";
}

TEST_F(EditingTest, TypingAndCtrlSChangeTheDatabase) {
  RunUnlocked();
  Click(0, name);
  Type("Screw");
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 1"), "bolt");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 1"), "Screw");
  EXPECT_FALSE(ButtonsShow());
  EXPECT_TRUE(grid().HasFocus());
  EXPECT_EQ(grid().ShownText(0, name), "Screw");
}

TEST_F(EditingTest, F2EditsAtTheEndAndCtrlRTakesItBack) {
  RunUnlocked();
  Click(0, name);
  Press(key::f2);
  Type("s");
  EXPECT_EQ(grid().CellText(), "bolts");
  Press('R', shiftState::ctrl);
  EXPECT_EQ(grid().CellText(), "bolt");
  EXPECT_FALSE(grid().EditActive());
  EXPECT_FALSE(ButtonsShow());
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 1"), "bolt");
}

/// Counts how often a widget is painted.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject* /*widget*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
  int count = 0;
};

TEST_F(EditingTest, ThePencilGoesWithTheTextThatIsTakenBack) {
  RunUnlocked();
  Click(0, name);
  Type("s");
  EXPECT_TRUE(view().RowIsBeingChanged());
  PaintCount paints(*view().verticalHeader()->viewport());
  Press(key::escape);
  EXPECT_FALSE(view().RowIsBeingChanged());
  EXPECT_GT(paints.count, 0);
}

TEST_F(EditingTest, ADoubleClickOpensTheCell) {
  RunUnlocked();
  const QPoint place = view().visualRect(view().model()->index(1, name)).center();
  QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, place);
  host.Settle();
  EXPECT_TRUE(grid().EditActive());
  Type("s");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 2"), "nuts");
}

TEST_F(EditingTest, LeavingTheRowByKeyOrMouseWritesIt) {
  RunUnlocked();
  Click(0, price);
  Type("2.75");
  Press(key::down);
  EXPECT_EQ(Ask("SELECT price FROM item WHERE id = 1"), "2.75");
  Type("4");
  Click(2, name);
  EXPECT_EQ(Ask("SELECT price FROM item WHERE id = 2"), "4");
  EXPECT_FALSE(ButtonsShow());
}

TEST_F(EditingTest, AWholeRecordIsTypedWithTheKeyboardAlone) {
  RunUnlocked();
  Press(key::end, shiftState::ctrl);
  Press(key::home);
  EXPECT_TRUE(grid().OnNewRow());
  Press(key::tab);
  Type("hinge");
  Press(key::tab);
  Type("7.5");
  Press(key::enter);
  Press(key::space);
  EXPECT_FALSE(ButtonsShow()) << "a new record is written when it is left";
  Press(key::down);
  EXPECT_EQ(Ask("SELECT id || name || price || active FROM item WHERE id = 4"), "4hinge7.51");
  EXPECT_EQ(grid().ShownText(3, id), "4") << "the generated key";
  EXPECT_TRUE(grid().OnNewRow());
}

TEST_F(EditingTest, AConstraintKeepsTheUserOnTheRow) {
  RunUnlocked();
  Click(0, name);
  Press('0', shiftState::ctrl);
  EXPECT_EQ(grid().ShownText(0, name), "NULL");
  host.OnMessage("NOT NULL constraint failed: item.name", MessageResult::Ok);
  Press(key::down);
  EXPECT_EQ(grid().DataSource()->CurrentBookmark(), grid().DataSource()->BookmarkAt(0));
  EXPECT_TRUE(ButtonsShow());
  Press(key::escape);
  EXPECT_EQ(grid().ShownText(0, name), "bolt");
  EXPECT_FALSE(ButtonsShow());
}

TEST_F(EditingTest, ATextThatIsNoNumberStaysInTheCell) {
  RunUnlocked();
  Click(0, price);
  Type("abc");
  host.OnMessage("This is no value of the type of the field 'price'.", MessageResult::Ok);
  Press(key::tab);
  EXPECT_TRUE(grid().EditActive());
  EXPECT_EQ(grid().CellText(), "abc");
  Press(key::escape);
  EXPECT_FALSE(grid().EditActive());
  EXPECT_FALSE(ButtonsShow());
}

TEST_F(EditingTest, NullAndEmptyAreTwoThings) {
  RunUnlocked();
  Click(0, price);
  Press(key::del);
  EXPECT_EQ(view().Editor().placeholderText(), "NULL") << "that is what an empty number means";
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT price FROM item WHERE id = 1"), "NULL");
  Click(0, name);
  Press(key::del);
  EXPECT_EQ(view().Editor().placeholderText(), "");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT name = '' FROM item WHERE id = 1"), "1");
}

TEST_F(EditingTest, SpaceTurnsABooleanOver) {
  RunUnlocked();
  Click(1, active);
  Press(key::space);
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT active FROM item WHERE id = 2"), "True");
}

TEST_F(EditingTest, SelectedRowsAreDeletedAfterAsking) {
  RunUnlocked();
  host.SelectGridRows(records(), "DataGrid", {0, 2});
  host.OnMessage("Delete 2 record(s)?", MessageResult::Yes);
  Press(key::del);
  EXPECT_EQ(Ask("SELECT count(*) || min(id) FROM item"), "12");
  EXPECT_EQ(grid().DataSource()->RecordCount(), 1);
  EXPECT_EQ(view().Model().RowCount(), 2);
}

TEST_F(EditingTest, ARowChangedByAnotherConnectionIsAConflict) {
  RunUnlocked();
  Click(0, name);
  Type("mine");
  Execute("UPDATE item SET name = 'theirs' WHERE id = 1");
  host.OnMessage(
      "The record was changed or deleted by somebody else since it was read. Nothing was changed.",
      MessageResult::Ok);
  Press('S', shiftState::ctrl);
  EXPECT_EQ(grid().ShownText(0, name), "mine") << "the edit stays on screen";
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 1"), "theirs");
}

TEST_F(EditingTest, RowsWithoutAWholeKeyWarn) {
  RunUnlocked("SELECT name, price FROM item");
  EXPECT_TRUE(records().Find<Label>("lblWarning").Visible());
  EXPECT_EQ(grid().Bounds().top, 960);
  Run("SELECT id, name FROM item");
  EXPECT_FALSE(records().Find<Label>("lblWarning").Visible());
  EXPECT_EQ(grid().Bounds().top, 840);
}

TEST_F(EditingTest, BinaryValuesGoToAndFromFiles) {
  RunUnlocked();
  EXPECT_EQ(grid().ShownText(0, photo), "[3]");
  host.OnPopup("menuBLOB", "mnuBLOBSave");
  AnswerFile(folder.File("saved.bin"));
  PressButton(0, photo);
  EXPECT_EQ(files.ReadWhole(folder.File("saved.bin")), "\x01\x02\x03");
  files.ReplaceWhole(folder.File("new.bin"), std::string("a\0b\xFF", 4), false);
  host.OnPopup("menuBLOB", "mnuBLOBLoad");
  AnswerFile(folder.File("new.bin"));
  PressButton(1, photo);
  EXPECT_EQ(grid().ShownText(1, photo), "[4]");
  EXPECT_TRUE(ButtonsShow());
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT hex(photo) FROM item WHERE id = 2"), "610062FF");
  host.OnPopup("menuBLOB", "mnuBLOBNull");
  PressButton(0, photo);
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Ask("SELECT photo IS NULL FROM item WHERE id = 1"), "1");
}

TEST_F(EditingTest, TheContextMenuKeyOpensTheMenuOfABinaryCell) {
  RunUnlocked();
  Click(0, photo);
  host.OnPopup("menuBLOB", "mnuBLOBNull");
  Press(key::contextMenu);
  EXPECT_EQ(grid().ShownText(0, photo), "NULL");
}

TEST_F(EditingTest, ShiftF10OpensTheMenuOfTheCell) {
  RunUnlocked();
  Click(0, photo);
  host.OnPopup("menuBLOB", "mnuBLOBNull");
  Press(key::f10, shiftState::shift);
  EXPECT_EQ(grid().ShownText(0, photo), "NULL");
  Click(0, name);
  PressKeyCode(key::f10, shiftState::shift);
  QWidget* menu = QApplication::activePopupWidget();
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu, &view());
  menu->close();
}

TEST_F(EditingTest, RowsAreSelectedAndDeletedByKeysAlone) {
  RunUnlocked();
  Press(key::down);
  Press(key::space, shiftState::shift);
  Press(key::down, shiftState::shift);
  EXPECT_EQ(grid().SelBookmarks().size(), 2U);
  host.OnMessage("Delete 2 record(s)?", MessageResult::Yes);
  Press(key::del);
  EXPECT_EQ(Ask("SELECT count(*) || min(id) FROM item"), "11");
}

TEST_F(EditingTest, DelEmptiesNoKey) {
  RunUnlocked();
  Click(1, id);
  Press(key::del);
  Press(key::back);
  EXPECT_FALSE(ButtonsShow());
  Press(key::down);
  EXPECT_EQ(Ask("SELECT group_concat(id) FROM item"), "1,2,3");
  Click(1, name);
  Press(key::del);
  EXPECT_TRUE(ButtonsShow());
  Press(key::escape);
  EXPECT_FALSE(ButtonsShow());
  EXPECT_EQ(grid().ShownText(1, name), "nut");
}

TEST_F(EditingTest, AQueryWhileACellIsEditedAsksWhatBecomesOfIt) {
  RunUnlocked();
  Click(0, name);
  Type("x");
  host.Answers().OnMessage("Save the change to this record?", MessageResult::Cancel);
  Run("SELECT id FROM item");
  EXPECT_TRUE(grid().EditActive());
  EXPECT_EQ(grid().CellText(), "x");
  EXPECT_TRUE(ButtonsShow());
  host.Answers().OnMessage("Save the change to this record?", MessageResult::No);
  Run("SELECT id FROM item");
  EXPECT_FALSE(grid().EditActive());
  EXPECT_FALSE(ButtonsShow());
  EXPECT_EQ(Ask("SELECT name FROM item WHERE id = 1"), "bolt");
}

TEST_F(EditingTest, RowsThatBreakOffShowWithTheReason) {
  Run("WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c WHERE n < 20) "
      "SELECT CASE WHEN n > 10 THEN abs(-9223372036854775807 - 1) ELSE n END AS n FROM c");
  ASSERT_TRUE(grid().Visible());
  EXPECT_EQ(grid().DataSource()->RecordCount(), 10);
  EXPECT_EQ(grid().ShownText(9, 0), "10");
  const std::string status = records().Find<TextBox>("txtStatus").Text();
  EXPECT_NE(status.find("]  10 record(s). "), std::string::npos) << status;
  EXPECT_NE(status.find("overflow"), std::string::npos) << status;
}

TEST_F(EditingTest, ATransactionShowsAndIsAskedAboutBeforeItsWindowCloses) {
  Run("BEGIN");
  Run("DELETE FROM item");
  auto& word = records().Find<Label>("lblTransaction");
  EXPECT_TRUE(word.Visible());
  const std::string shown = word.Caption();
  ASSERT_TRUE(shown.starts_with("In transaction since ")) << shown;
  EXPECT_EQ(WidgetAs<QWidget>(records(), "lblTransaction").accessibleName().toStdString(),
            "Transaction: " + shown);
  const std::string question =
      "The connection 'Items' has a transaction open since " + shown.substr(shown.size() - 5) + ".";
  host.Answers().OnMessage(question, MessageResult::Cancel);
  host.CloseByControlBox(records());
  EXPECT_TRUE(records().Loaded());
  EXPECT_EQ(Ask("SELECT count(*) FROM item"), "3");
  host.Answers().OnMessage(question, MessageResult::Yes);
  host.CloseByControlBox(records());
  host.Settle();
  EXPECT_TRUE(program.Frame().RecordsWindows().empty());
  EXPECT_EQ(Ask("SELECT count(*) FROM item"), "0") << "committed";
}

}  // namespace
}  // namespace tessel::test
