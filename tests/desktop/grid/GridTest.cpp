// The grid with a million rows: what it reads, shows, selects and copies.

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include "contract/desktop/controls/DataGrid.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellDelegate.h"
#include "desktop/grid/cells/ShownText.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/desktop/grid/GeneratedRows.h"
#include "tests/support/DataSteps.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

namespace {

constexpr std::int64_t million = 1'000'000;

class GridTest : public DesktopFixture {
 protected:
  GridTest() {
    grid.SetBounds({60, 840, 12000, 6000});
    grid.SetVisible(true);
    host.Settle();
    grid.SetDataSource(rows);
    grid.SetFocus();
    host.Settle();
  }
  ~GridTest() override { grid.SetDataSource(nullptr); }

  [[nodiscard]] Bookmark At(std::int64_t position) const { return rows->BookmarkAt(position); }
  [[nodiscard]] std::int64_t CurrentRow() const {
    return *rows->PositionOf(rows->CurrentBookmark());
  }
  [[nodiscard]] QPoint Middle(int row, int column) {
    return view.visualRect(view.model()->index(row, column)).center();
  }
  void Click(int row, int column, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, keys, Middle(row, column));
  }
  void ClickRow(int row, Qt::KeyboardModifiers keys = {}) {
    QHeaderView& header = *view.verticalHeader();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, keys, RowPlace(row));
  }
  [[nodiscard]] QPoint RowPlace(int row) {
    const QHeaderView& header = *view.verticalHeader();
    return {header.width() / 2, header.sectionViewportPosition(row) + header.sectionSize(row) / 2};
  }
  [[nodiscard]] QPoint ColumnPlace(int column) {
    const QHeaderView& header = *view.horizontalHeader();
    return {header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
            header.height() / 2};
  }
  static void Drag(QWidget& widget, const QPoint& from, const QPoint& to) {
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(&widget, &move);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
  }
  [[nodiscard]] std::string Copied() {
    view.Copy();
    return TheDesktop().TheClipboard().Text();
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> window = ShowForm("frmRecords");
  DataGrid& grid = window->Find<DataGrid>("DataGrid");
  RecordGrid& view = WidgetAs<RecordGrid>(*window, "DataGrid");
  std::shared_ptr<GeneratedRows> rows = OrdersOf(million);
};

TEST_F(GridTest, ReadsOnlyWhatItShows) {
  const auto fresh = OrdersOf(million);
  grid.SetDataSource(fresh);
  host.Settle();
  static_cast<void>(view.grab());
  EXPECT_LT(fresh->Reads(), 10'000);
}

TEST_F(GridTest, GoesToTheEndAndBackReadingLittle) {
  const std::int64_t before = rows->Reads();
  PressKeyCode(key::end, shiftState::ctrl);
  host.Settle();
  EXPECT_EQ(CurrentRow(), million - 1);
  EXPECT_EQ(grid.CurrentColumn(), 9);
  EXPECT_TRUE(view.viewport()->rect().contains(Middle(static_cast<int>(million) - 1, 9)));
  PressKeyCode(key::home, shiftState::ctrl);
  host.Settle();
  EXPECT_EQ(CurrentRow(), 0);
  EXPECT_EQ(grid.CurrentColumn(), 0);
  EXPECT_LT(rows->Reads() - before, 10'000);
}

TEST_F(GridTest, KeysMoveTheCell) {
  int moved = 0;
  grid.RowColChange = [&] { ++moved; };
  PressKeyCode(key::right);
  PressKeyCode(key::down);
  PressKeyCode(key::end);
  EXPECT_EQ(grid.CurrentColumn(), 9);
  EXPECT_EQ(moved, 3);
  PressKeyCode(key::home);
  EXPECT_EQ(grid.CurrentColumn(), 0);
  PressKeyCode(key::pageDown);
  EXPECT_GT(CurrentRow(), 5);
  PressKeyCode(key::pageUp);
  EXPECT_EQ(CurrentRow(), 1);
  PressKeyCode(key::up);
  PressKeyCode(key::up);
  EXPECT_EQ(CurrentRow(), 0) << "it stays inside";
}

TEST_F(GridTest, TabGoesFromCellToCellAndLeavesAtTheEnd) {
  PressKeyCode(key::end);
  PressKeyCode(key::tab);
  EXPECT_EQ(CurrentRow(), 1);
  EXPECT_EQ(grid.CurrentColumn(), 0);
  PressQtKey(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(CurrentRow(), 0);
  EXPECT_EQ(grid.CurrentColumn(), 9);
  PressKeyCode(key::end, shiftState::ctrl);
  PressKeyCode(key::tab);
  EXPECT_FALSE(grid.HasFocus());
}

TEST_F(GridTest, RowsAreSelectedInOrder) {
  ClickRow(4);
  ClickRow(2, Qt::ControlModifier);
  ClickRow(6, Qt::ControlModifier);
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(4), At(2), At(6)}));
  ClickRow(2, Qt::ControlModifier);
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(4), At(6)})) << "pressed again it is taken away";
  ClickRow(5);
  ClickRow(3, Qt::ShiftModifier);
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(5), At(4), At(3)}));
  Drag(*view.verticalHeader()->viewport(), RowPlace(1), RowPlace(3));
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(1), At(2), At(3)}));
  EXPECT_EQ(CurrentRow(), 1);
}

TEST_F(GridTest, ColumnsAreSelectedByTheirHeads) {
  QWidget& head = *view.horizontalHeader()->viewport();
  ClickRow(4);
  QTest::mouseClick(&head, Qt::LeftButton, {}, ColumnPlace(1));
  EXPECT_EQ(grid.SelStartCol(), 1);
  EXPECT_EQ(grid.SelEndCol(), 1);
  EXPECT_TRUE(grid.SelBookmarks().empty());
  QTest::mouseClick(&head, Qt::LeftButton, Qt::ShiftModifier, ColumnPlace(3));
  EXPECT_EQ(grid.SelStartCol(), 1);
  EXPECT_EQ(grid.SelEndCol(), 3);
  Drag(head, ColumnPlace(2), ColumnPlace(0));
  EXPECT_EQ(grid.SelStartCol(), 0);
  EXPECT_EQ(grid.SelEndCol(), 2);
  EXPECT_EQ(CurrentRow(), 4) << "the record stays where it was";
}

TEST_F(GridTest, CtrlSelectsColumnsOfTheSelectedRows) {
  QWidget& head = *view.horizontalHeader()->viewport();
  ClickRow(2);
  ClickRow(0, Qt::ControlModifier);
  QTest::mouseClick(&head, Qt::LeftButton, Qt::ControlModifier, ColumnPlace(0));
  QTest::mouseClick(&head, Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier, ColumnPlace(1));
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(2), At(0)}));
  EXPECT_EQ(grid.SelEndCol(), 1);
  EXPECT_EQ(Copied(), "3\tJ\xC3\xBCrgen M\xC3\xBCller\r\n1\tAda Lovelace");
  EXPECT_TRUE(view.ShowsSelected(2, 1));
  EXPECT_FALSE(view.ShowsSelected(2, 2)) << "another column";
  EXPECT_FALSE(view.ShowsSelected(1, 1)) << "another row";
  ClickRow(3, Qt::ControlModifier);
  EXPECT_EQ(grid.SelEndCol(), 1) << "a row that is added keeps the columns";
  ClickRow(4);
  EXPECT_EQ(grid.SelStartCol(), -1) << "a plain press begins anew";
}

TEST_F(GridTest, ADraggedRectangleIsCopied) {
  Drag(*view.viewport(), Middle(0, 0), Middle(1, 2));
  EXPECT_EQ(Copied(), "1\tAda Lovelace\t19.90\r\n2\tGrace Hopper\t1250.00");
  Click(3, 1);
  EXPECT_EQ(Copied(), "\xE6\x9D\xB1\xE4\xBA\xAC");
  PressKeyCode(key::left, shiftState::shift);
  PressKeyCode(key::down, shiftState::shift);
  EXPECT_EQ(Copied(), "4\t\xE6\x9D\xB1\xE4\xBA\xAC\r\n5\tAda Lovelace");
}

TEST_F(GridTest, ShiftSelectsFromTheCellThatIsCurrent) {
  Click(5, 2);
  PressKeyCode(key::down, shiftState::shift);
  grid.SetDataSource(OrdersOf(10));
  host.Settle();
  PressKeyCode(key::down, shiftState::shift);
  EXPECT_TRUE(view.ShowsSelected(0, 0)) << "the first row of another query";
  EXPECT_TRUE(view.ShowsSelected(1, 0));
  EXPECT_FALSE(view.ShowsSelected(2, 0));
  EXPECT_FALSE(view.ShowsSelected(1, 1));
  grid.SetDataSource(rows);
  PressKeyCode(key::down);
  grid.SetDataSource(OrdersOf(10));
  host.Settle();
  PressKeyCode(key::down, shiftState::shift);
  EXPECT_TRUE(view.ShowsSelected(0, 0)) << "after a move to the second row before";
}

TEST_F(GridTest, SelectedRowsAreExtendedByEveryKeyThatMoves) {
  PressKeyCode(key::pageDown);
  const auto start = static_cast<int>(CurrentRow());
  PressKeyCode(key::space, shiftState::shift);
  PressKeyCode(key::pageDown, shiftState::shift);
  EXPECT_GT(CurrentRow(), start + 3);
  EXPECT_EQ(grid.SelBookmarks().size(), static_cast<std::size_t>(CurrentRow() - start) + 1);
  PressKeyCode(key::home, shiftState::ctrl | shiftState::shift);
  EXPECT_EQ(grid.SelBookmarks().size(), static_cast<std::size_t>(start) + 1);
  PressKeyCode(key::right, shiftState::shift);
  EXPECT_EQ(grid.SelBookmarks().size(), static_cast<std::size_t>(start) + 1);
  ClickRow(2);
  PressKeyCode(key::down, shiftState::shift);
  EXPECT_EQ(grid.SelBookmarks(), (std::vector{At(2), At(3)})) << "from a head that was pressed";
  PressKeyCode(key::down);
  EXPECT_TRUE(grid.SelBookmarks().empty());
}

TEST_F(GridTest, SelectedRowsAreCopiedInTheirOrder) {
  host.SelectGridRows(*window, "DataGrid", {2, 0});
  const std::string text = Copied();
  EXPECT_TRUE(text.starts_with(
      "3\tJ\xC3\xBCrgen M\xC3\xBCller\t-3.5\t2026-03-14 15:09:26\t\"first line\r\nsecond "
      "line\tafter a tab\"\tgiven\t\tTrue\t1\t"))
      << text.substr(0, 120);
  EXPECT_NE(text.find("\r\n1\tAda Lovelace"), std::string::npos);
}

TEST_F(GridTest, AnHtmlTableIsCopiedToo) {
  std::vector<FieldInfo> fields{FieldNamed("<name>", DataType::VarWChar),
                                FieldNamed("n", DataType::Integer)};
  const auto marked =
      std::make_shared<GeneratedRows>(fields, 1, [](std::int64_t, std::size_t field) -> ValueView {
        if (field == 0) return std::string_view("<b>a & b</b>\nnext");
        return ValueView();
      });
  grid.SetDataSource(marked);
  view.selectAll();
  view.Copy();
  const QMimeData* data = QApplication::clipboard()->mimeData();
  EXPECT_EQ(data->html().toStdString(),
            "<table>\n<tr><th>&lt;name&gt;</th><th>n</th></tr>\n"
            "<tr><td>&lt;b&gt;a &amp; b&lt;/b&gt;<br>next</td><td></td></tr>\n</table>");
  EXPECT_EQ(data->text().toStdString(), "\"<b>a & b</b>\nnext\"\t");
  grid.SetDataSource(nullptr);
}

TEST_F(GridTest, AMillionCellsAreCopiedAsText) {
  QTest::mouseClick(view.horizontalHeader()->viewport(), Qt::LeftButton, {}, ColumnPlace(0));
  const std::string text = Copied();
  EXPECT_TRUE(text.ends_with("\r\n999999\r\n1000000"));
  EXPECT_FALSE(QApplication::clipboard()->mimeData()->hasHtml()) << "too many cells for a table";
}

TEST_F(GridTest, CtrlCCopies) {
  Click(1, 1);
  PressKeyCode('C', shiftState::ctrl);
  EXPECT_EQ(TheDesktop().TheClipboard().Text(), "Grace Hopper");
}

TEST_F(GridTest, NullIsNoEmptyText) {
  const RecordsModel& model = view.Model();
  EXPECT_TRUE(model.CellAt(0, 5).isNull);
  EXPECT_EQ(model.CellAt(0, 5).text, "NULL");
  EXPECT_FALSE(model.CellAt(0, 6).isNull);
  EXPECT_EQ(model.CellAt(0, 6).text, "");
  const auto cell = [&](int column) {
    return view.viewport()
        ->grab(view.visualRect(view.model()->index(3, column)).adjusted(0, 0, -1, -1))
        .toImage();
  };
  EXPECT_NE(cell(5).pixelColor(0, 0), QColor()) << "drawn at all";
  const QImage word = cell(5);
  bool ink = false;
  for (int x = 0; x < word.width() && !ink; ++x)
    for (int y = 0; y < word.height(); ++y)
      ink = ink || word.pixelColor(x, y) != word.pixelColor(0, 0);
  EXPECT_TRUE(ink) << "row 4 of the column holds a null and shows a word";
}

TEST_F(GridTest, ValuesAreShownOnOneLineAndShortened) {
  const RecordsModel& model = view.Model();
  EXPECT_EQ(model.CellAt(0, 4).text, QStringLiteral("first line↵second line⇥after a tab"));
  const QString shortened = model.CellAt(0, 9).text;
  EXPECT_EQ(shortened.size(), shownCharacters + 1);
  EXPECT_TRUE(shortened.endsWith(QChar(u'…')));
  EXPECT_EQ(grid.ShownText(0, 9).size(), 4000U) << "only for painting";
  EXPECT_TRUE(model.CellAt(0, 2).isNumber);
  EXPECT_FALSE(model.CellAt(0, 1).isNumber);
  EXPECT_EQ(AsShown(std::string_view("\x01\x7F")), QStringLiteral("\u2401\u2421"));
}

TEST_F(GridTest, HeadsNameFieldsAndRows) {
  EXPECT_EQ(view.model()->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "customer");
  EXPECT_EQ(view.model()->headerData(41, Qt::Vertical, Qt::DisplayRole).toInt(), 42);
  for (int column = 0; column < 10; ++column) {
    EXPECT_GE(view.columnWidth(column), 40);
    EXPECT_LE(view.columnWidth(column), 400);
  }
}

TEST_F(GridTest, TheButtonOfACellIsPressed) {
  int pressed = -1;
  grid.ButtonClick = [&](int column) { pressed = column; };
  grid.SetColumnButton(1, true);
  const QRect cell = view.visualRect(view.model()->index(2, 1));
  const QPoint button = CellDelegate::ButtonIn(cell).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, button);
  EXPECT_EQ(pressed, -1) << "the first click only goes to the cell";
  EXPECT_EQ(CurrentRow(), 2);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, button);
  EXPECT_EQ(pressed, 1);
}

TEST_F(GridTest, TheContextMenuCopies) {
  Click(1, 1);
  QContextMenuEvent event(QContextMenuEvent::Mouse, Middle(1, 1),
                          view.viewport()->mapToGlobal(Middle(1, 1)));
  QApplication::sendEvent(view.viewport(), &event);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  menu->actions().first()->trigger();
  menu->close();
  host.Settle();
  EXPECT_EQ(TheDesktop().TheClipboard().Text(), "Grace Hopper");
}

TEST_F(GridTest, FollowsTheRecord) {
  rows->MoveTo(At(500'000));
  view.viewport()->update();
  host.Settle();
  EXPECT_EQ(view.currentIndex().row(), 500'000);
}

TEST_F(GridTest, SurvivesAClosedRecordset) {
  ClickRow(1);
  rows->Close();
  static_cast<void>(view.grab());
  host.Settle();
  EXPECT_EQ(view.Model().CellAt(0, 0).text, "");
}

TEST_F(GridTest, AFailureToMoveIsShown) {
  const auto stubborn = std::make_shared<GeneratedRows>(
      std::vector{FieldNamed("n", DataType::Integer)}, 3,
      [](std::int64_t row, std::size_t) -> ValueView { return row; });
  grid.SetDataSource(stubborn);
  stubborn->RefuseMoves("The row is being edited.");
  host.OnMessage("The row is being edited.", MessageResult::Ok);
  Click(1, 0);
  host.Settle();
  grid.SetDataSource(nullptr);
}

TEST_F(GridTest, ShowsTheColoursItIsGiven) {
  grid.SetBackColor(0x00D0FF);
  grid.SetForeColor(0x800000);
  host.Settle();
  const QImage picture = view.viewport()->grab().toImage();
  const QRect cell = view.visualRect(view.model()->index(2, 6));
  EXPECT_EQ(picture.pixelColor(cell.center()), QColor(0xFF, 0xD0, 0x00));
  EXPECT_EQ(view.palette().color(QPalette::Text), QColor(0x00, 0x00, 0x80));
}

TEST_F(GridTest, AMillionRowsAreSelectedWithShift) {
  ClickRow(0);
  view.scrollToBottom();
  ClickRow(static_cast<int>(million) - 1, Qt::ShiftModifier);
  EXPECT_EQ(grid.SelBookmarks().size(), static_cast<std::size_t>(million));
}

/// The same rows twice: in memory, and nearly all of them in a temporary file.
class SpilledGridTest : public GridTest {
 protected:
  [[nodiscard]] std::shared_ptr<Recordset> RowsWith(std::size_t bytes) {
    data_ = std::make_unique<DataAccessObjects>(TheDesktop().Events(), nullptr,
                                                RowMemory{bytes, SpillFolder()}, slowdown);
    const auto connection = data_->CreateConnection();
    connection->SetConnectionString("Provider=SQLite;Data Source=:memory:");
    OpenNow(*connection);
    const auto recordset = QueryNow(
        *connection,
        "with recursive c(n) as (select 1 union all select n + 1 from c where n < 100000) "
        "select n, 'name ' || (n * 104729 % 1000003) as name, nullif(n % 5, 3) * 0.25 as price, "
        "zeroblob(n % 9) as photo from c");
    return recordset;
  }
  /// What the grid shows, and what it copies, at its start, in its middle and at its end.
  [[nodiscard]] std::vector<std::pair<QImage, std::string>>
  Places(const std::shared_ptr<Recordset>& recordset) {
    grid.SetDataSource(recordset);
    std::vector<std::pair<QImage, std::string>> places;
    for (const std::int64_t position : {0, 50'000, 99'999}) {
      recordset->MoveTo(recordset->BookmarkAt(position));
      view.viewport()->update();
      host.Settle();
      view.Selection().SetRows({recordset->BookmarkAt(position), recordset->BookmarkAt(49'999)});
      view.ShowSelection();
      places.emplace_back(view.viewport()->grab().toImage(), Copied());
    }
    return places;
  }

 private:
  std::unique_ptr<DataAccessObjects> data_;
};

TEST_F(SpilledGridTest, RowsBeyondMemoryShowAndCopyAsThoseInIt) {
  const auto inMemory = RowsWith(1'000'000'000);
  const auto expected = Places(inMemory);
  const auto spilled = RowsWith(100'000);
  ASSERT_LE(static_cast<const ClientRecordset&>(*spilled).HeldBytes(), 100'000U);
  EXPECT_EQ(Places(spilled), expected);
  EXPECT_NE(expected[0].first, expected[1].first) << "the places show different rows";
  EXPECT_NE(expected[2].second.find("100000\tname 868584"), std::string::npos);
}

}  // namespace

}  // namespace tessel::test
