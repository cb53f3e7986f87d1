// Sorting by the heads of the columns, and what they show of it.

#include <QHeaderView>
#include <QTest>

#include "contract/desktop/controls/DataGrid.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellDelegate.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/desktop/grid/GeneratedRows.h"

namespace tessel::test {

namespace {

class ArrangeTest : public DesktopFixture {
 protected:
  ArrangeTest() {
    grid.SetBounds({60, 840, 12000, 6000});
    grid.SetVisible(true);
    host.Settle();
    grid.SetDataSource(rows);
    grid.SetFocus();
    grid.SortClick = [this](int column, bool further) {
      asked.push_back(std::to_string(column) + (further ? " further" : ""));
    };
    host.Settle();
  }
  ~ArrangeTest() override { grid.SetDataSource(nullptr); }

  [[nodiscard]] QHeaderView& Head() { return *view.horizontalHeader(); }
  /// So many pixels left of a column's right edge.
  void Press(int column, int fromRight, Qt::KeyboardModifiers keys = {}) {
    const int right = Head().sectionViewportPosition(column) + Head().sectionSize(column);
    QTest::mouseClick(Head().viewport(), Qt::LeftButton, keys,
                      {right - fromRight, Head().height() / 2});
  }
  [[nodiscard]] QImage HeadOf(int column) {
    host.Settle();
    const QRect place(Head().sectionViewportPosition(column), 0, Head().sectionSize(column),
                      Head().height());
    return Head().grab(place).toImage();
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> window = ShowForm("frmRecords");
  DataGrid& grid = window->Find<DataGrid>("DataGrid");
  RecordGrid& view = WidgetAs<RecordGrid>(*window, "DataGrid");
  std::shared_ptr<GeneratedRows> rows = OrdersOf(1000);
  std::vector<std::string> asked;
};

using Asked = std::vector<std::string>;

TEST_F(ArrangeTest, TheRightEndOfAHeadSortsAndTheRestSelects) {
  Press(1, 12);
  EXPECT_EQ(asked, Asked{"1"});
  EXPECT_EQ(grid.SelStartCol(), -1);
  Press(2, 12, Qt::ShiftModifier);
  EXPECT_EQ(asked, (Asked{"1", "2 further"}));
  Press(1, Head().sectionSize(1) / 2 + 12);
  EXPECT_EQ(asked.size(), 2U);
  EXPECT_EQ(grid.SelStartCol(), 1);
}

TEST_F(ArrangeTest, CtrlSortsAnywhereInTheHeadUnlessRowsAreSelected) {
  Press(1, Head().sectionSize(1) - 8, Qt::ControlModifier);
  Press(2, Head().sectionSize(2) - 8, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(asked, (Asked{"1", "2 further"}));
  grid.SelectRow();
  Press(1, Head().sectionSize(1) - 8, Qt::ControlModifier);
  EXPECT_EQ(asked.size(), 2U);
  EXPECT_EQ(grid.SelStartCol(), 1);
  EXPECT_EQ(grid.SelBookmarks().size(), 1U);
}

TEST_F(ArrangeTest, AnArrowShowsTheOrderInTheHead) {
  const QImage plain = HeadOf(1);
  const QImage other = HeadOf(2);
  rows->PretendArranged({.sort = {{1}}});
  const QImage up = HeadOf(1);
  rows->PretendArranged({.sort = {{1, true}}});
  const QImage down = HeadOf(1);
  rows->PretendArranged({.sort = {{0}, {1, true}}});
  const QImage second = HeadOf(1);
  EXPECT_NE(up, plain);
  EXPECT_NE(down, plain);
  EXPECT_NE(up, down);
  EXPECT_NE(second, down) << "with its place among the columns";
  EXPECT_EQ(HeadOf(2), other);
}

TEST_F(ArrangeTest, ANameKeepsItsRoomBesideTheMark) {
  const QFontMetrics metrics = Head().fontMetrics();
  const QString name = Head().model()->headerData(0, Qt::Horizontal).toString();
  const int place = metrics.horizontalAdvance(QStringLiteral("2"));
  rows->PretendArranged({.sort = {{1}, {0}}});
  static_cast<void>(HeadOf(0));
  host.Settle();
  EXPECT_GE(view.columnWidth(0),
            metrics.horizontalAdvance(name) + place + metrics.height() + 2 * cellPadding);
}

/// Parts of a pixel are enough to cut a name.
TEST_F(ArrangeTest, NoNameIsCutBesideTheMark) {
  for (int column = 0; column < Head().count(); ++column) {
    rows->PretendArranged({.sort = {{static_cast<std::size_t>(column)}}});
    static_cast<void>(HeadOf(column));
    const QImage fitting = HeadOf(column);
    constexpr int more = 40;
    view.setColumnWidth(column, fitting.width() + more);
    const QImage wide = HeadOf(column);
    const bool right =
        Head().model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
        Qt::AlignRight;
    const QRect name(2, 0, fitting.width() - 2 * Head().fontMetrics().height(), fitting.height());
    EXPECT_EQ(fitting.copy(name), wide.copy(name.translated(right ? more : 0, 0))) << column;
  }
}

TEST_F(ArrangeTest, WidthsAreTheUsersOrFitTheRowsInSight) {
  const int before = view.columnWidth(6);
  grid.SetColumnWidth(6, grid.ColumnWidth(6) + 1500);
  const int wide = view.columnWidth(6);
  EXPECT_GT(wide, before + 50);
  grid.SetColumnWidth(6, 0);
  EXPECT_LT(view.columnWidth(6), wide);
  EXPECT_EQ(asked, Asked{});
}

}  // namespace

}  // namespace tessel::test
