// How the grid looks: rows, the current one, the head, null, numbers; and how large it is shown.

#include <QApplication>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QImage>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "contract/base/Zoom.h"
#include "contract/desktop/controls/DataGrid.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellDelegate.h"
#include "desktop/grid/cells/FieldText.h"
#include "desktop/look/Tokens.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/desktop/grid/GeneratedRows.h"

namespace tessel::test {

namespace {

std::vector<FieldInfo> FieldsNamed(std::initializer_list<const char*> names) {
  std::vector<FieldInfo> fields;
  for (const char* name : names) fields.emplace_back().name = name;
  return fields;
}

class GridLooksTest : public DesktopFixture {
 protected:
  GridLooksTest() {
    grid.SetBounds({60, 840, 12000, 6000});
    grid.SetVisible(true);
    Bind(OrdersOf(1'000'000));
    grid.SetFocus();
    host.Settle();
  }
  ~GridLooksTest() override { grid.SetDataSource(nullptr); }

  void Bind(std::shared_ptr<GeneratedRows> source) {
    rows = std::move(source);
    grid.SetDataSource(rows);
    host.Settle();
  }
  [[nodiscard]] QRect Cell(int row, int column) {
    return view.visualRect(view.model()->index(row, column));
  }
  /// Of a corner of the cell, where no text stands.
  [[nodiscard]] QColor Ground(int row, int column) {
    return view.viewport()->grab().toImage().pixelColor(Cell(row, column).topLeft() + QPoint(3, 3));
  }
  [[nodiscard]] bool HasInk(const QRect& place, const QColor& ink) {
    const QImage picture = view.viewport()->grab(place).toImage();
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        if (picture.pixelColor(x, y) == ink) return true;
    return false;
  }
  void Wheel(int units, Qt::KeyboardModifiers keys) {
    const QPoint place = view.viewport()->rect().center();
    QWheelEvent event(place, view.viewport()->mapToGlobal(place), {}, {0, units}, Qt::NoButton,
                      keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
    host.Settle();
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> window = ShowForm("frmRecords");
  DataGrid& grid = window->Find<DataGrid>("DataGrid");
  RecordGrid& view = WidgetAs<RecordGrid>(*window, "DataGrid");
  std::shared_ptr<GeneratedRows> rows;
};

TEST_F(GridLooksTest, RowsAlternateAndTheCurrentOneIsTinted) {
  const Tokens& tokens = CurrentTokens();
  EXPECT_EQ(Ground(0, 1), tokens.currentRow);
  EXPECT_EQ(Ground(1, 1), tokens.alternate);
  EXPECT_EQ(Ground(2, 1), tokens.base);
  PressKeyCode(key::down);
  EXPECT_EQ(Ground(0, 1), tokens.base);
  EXPECT_EQ(Ground(1, 1), tokens.currentRow);
}

TEST_F(GridLooksTest, TintsStandOnAConnectionsOwnGround) {
  grid.SetBackColor(0x00D0FF);
  host.Settle();
  EXPECT_EQ(Ground(2, 1), QColor(0xFF, 0xD0, 0x00));
  EXPECT_NE(Ground(1, 1), Ground(2, 1));
  EXPECT_NE(Ground(0, 1), Ground(2, 1));
  EXPECT_NE(Ground(0, 1), Ground(1, 1));
}

TEST_F(GridLooksTest, RowsAreOneAndAHalfTimesAsHighAsTheirFont) {
  EXPECT_EQ(view.rowHeight(0), view.fontMetrics().height() * 3 / 2);
  EXPECT_EQ(view.horizontalHeader()->height(), view.rowHeight(0));
}

TEST_F(GridLooksTest, TheRowHeaderIsAsNarrowAsItsNumbers) {
  const auto width = [this](const char* widest) {
    return static_cast<int>(
               std::ceil(QFontMetricsF(view.font()).horizontalAdvance(QLatin1String(widest)))) +
           13;
  };
  EXPECT_EQ(view.verticalHeader()->width(), width("1000000"));
  Bind(OrdersOf(120));
  EXPECT_EQ(view.verticalHeader()->width(), width("120"));
}

/// Without hinting a digit is as wide as a pixel and a part of one.
TEST_F(GridLooksTest, ARowsNumberIsNeverCutWhateverTheFont) {
  Bind(OrdersOf(16));
  const QHeaderView& numbers = *view.verticalHeader();
  for (int size = 8; size <= 32; ++size) {
    QFont font = view.font();
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(size);
    view.setFont(font);
    host.Settle();
    EXPECT_EQ(numbers.fontMetrics().elidedText("16", Qt::ElideRight, numbers.width() - 13), "16")
        << size << " pixels";
  }
}

TEST_F(GridLooksTest, TheCurrentCellHasARing) {
  const QImage picture = view.viewport()->grab().toImage();
  EXPECT_EQ(picture.pixelColor(Cell(0, 0).topLeft() + QPoint(5, 0)), CurrentTokens().accent);
  EXPECT_NE(picture.pixelColor(Cell(1, 1).topLeft() + QPoint(5, 0)), CurrentTokens().accent);
}

TEST_F(GridLooksTest, NullIsMuted) {
  PressKeyCode(key::down);
  EXPECT_TRUE(HasInk(Cell(3, 5), CurrentTokens().muted)) << "row 4 of the column holds a null";
  EXPECT_FALSE(HasInk(Cell(3, 1), CurrentTokens().muted));
}

TEST_F(GridLooksTest, NumbersAndTheHeadsAboveThemStandAtTheRight) {
  const auto alignment = [this](int column) {
    return view.model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
  };
  EXPECT_TRUE((alignment(0) & Qt::AlignRight) != 0);
  EXPECT_TRUE((alignment(1) & Qt::AlignRight) == 0);
}

TEST_F(GridLooksTest, TheHeadTellsTypeAndKey) {
  FieldInfo id = FieldNamed("id", DataType::Integer);
  id.typeName = "integer";
  id.isKey = true;
  id.nullable = false;
  id.baseTable = "orders";
  id.baseColumn = "order_id";
  FieldInfo name = FieldNamed("<b>name</b>", DataType::VarWChar);
  name.typeName = "varchar";
  name.definedSize = 40;
  Bind(std::make_shared<GeneratedRows>(std::vector{id, name}, 1,
                                       [](std::int64_t, std::size_t) { return ValueView(); }));
  const auto tip = [this](int column) {
    return view.model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
  };
  EXPECT_TRUE(tip(0).contains("integer, key, not null, from orders.order_id"));
  EXPECT_TRUE(tip(1).contains("varchar(40)"));
  EXPECT_TRUE(tip(1).contains("&lt;b&gt;name")) << "never markup";
}

TEST_F(GridLooksTest, ATypeIsToldOnlyAsFarAsItIsKnown) {
  FieldInfo field;
  field.type = DataType::Numeric;
  field.precision = 10;
  field.scale = 2;
  EXPECT_EQ(DescriptionOf(field), "number(10,2)");
  field.typeName = "DECIMAL(10,2)";
  EXPECT_EQ(DescriptionOf(field), "DECIMAL(10,2)");
  field = FieldInfo();
  field.type = DataType::DBDate;
  EXPECT_EQ(DescriptionOf(field), "date");
}

/// The first rows hold few digits, those at the end many.
TEST_F(GridLooksTest, ColumnsOfNumbersFollowTheRowsThatShow) {
  const auto numbers = std::make_shared<GeneratedRows>(
      std::vector{FieldNamed("n", DataType::BigInt)}, 1'000'000,
      [](std::int64_t row, std::size_t) -> ValueView { return row * row * 1000; });
  Bind(numbers);
  const int before = view.columnWidth(0);
  const std::int64_t reads = numbers->Reads();
  PressKeyCode(key::end, shiftState::ctrl);
  host.Settle();
  static_cast<void>(view.grab());
  host.Settle();
  const int needed = view.fontMetrics().horizontalAdvance(view.Model().CellAt(999'999, 0).text);
  EXPECT_GT(view.columnWidth(0), before);
  EXPECT_GE(view.columnWidth(0), needed + 12);
  EXPECT_LT(numbers->Reads() - reads, 2'000) << "nothing is read but what shows";
}

/// Most rows hold the text of the most characters, which is not the widest.
TEST_F(GridLooksTest, AColumnOfTextsHasRoomForTheWidest) {
  for (const char* widest : {"Vienna", "WWWWWWWWWWWW", "Grace Hopper", "fly-over"}) {
    Bind(std::make_shared<GeneratedRows>(std::vector{FieldNamed("n", DataType::VarWChar)}, 60,
                                         [widest](std::int64_t row, std::size_t) -> ValueView {
                                           return std::string_view(row == 7 ? widest
                                                                            : "iiiiiiiiiiiii");
                                         }));
    const double needed = QFontMetricsF(view.font()).horizontalAdvance(widest);
    EXPECT_GE(view.columnWidth(0), needed + 2 * 6 + 1) << widest;
  }
}

TEST_F(GridLooksTest, AColumnThatTheUserSizedStaysAsItIs) {
  Bind(std::make_shared<GeneratedRows>(
      std::vector{FieldNamed("n", DataType::BigInt)}, 1'000'000,
      [](std::int64_t row, std::size_t) -> ValueView { return row * row * 1000; }));
  view.horizontalHeader()->resizeSection(0, 50);
  PressKeyCode(key::end, shiftState::ctrl);
  host.Settle();
  static_cast<void>(view.grab());
  host.Settle();
  EXPECT_EQ(view.columnWidth(0), 50);
}

TEST_F(GridLooksTest, KeysAndTheWheelChangeTheSize) {
  const int height = view.rowHeight(0);
  const int width = view.columnWidth(1);
  PressQtKey(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(grid.Zoom(), 110);
  PressQtKey(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(grid.Zoom(), 125);
  EXPECT_GT(view.rowHeight(0), height);
  EXPECT_GT(view.columnWidth(1), width);
  EXPECT_EQ(view.rowHeight(0), view.fontMetrics().height() * 3 / 2);
  PressQtKey(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(grid.Zoom(), 110);
  Wheel(120, Qt::ControlModifier);
  EXPECT_EQ(grid.Zoom(), 125);
  Wheel(-60, Qt::ControlModifier);
  EXPECT_EQ(grid.Zoom(), 125) << "half a step of the wheel";
  Wheel(-60, Qt::ControlModifier);
  EXPECT_EQ(grid.Zoom(), 110);
  Wheel(-120, Qt::NoModifier);
  EXPECT_EQ(grid.Zoom(), 110) << "it scrolls";
  grid.SetZoom(ordinaryZoom);
  EXPECT_EQ(view.rowHeight(0), height);
}

/// As the toolkit does it in a program that runs.
void ChangeDesktopFont(const QFont& font) {
  QApplication::setFont(font);
  for (QWidget* widget : QApplication::allWidgets()) {
    QEvent change(QEvent::ApplicationFontChange);
    QApplication::sendEvent(widget, &change);
  }
}

TEST_F(GridLooksTest, TheDesktopsFontIsFollowedInEachSize) {
  const QFont before = QApplication::font();
  QFont larger = before;
  larger.setPointSizeF(before.pointSizeF() * 1.5);
  grid.SetZoom(150);
  const qreal zoomed = view.font().pointSizeF();
  ChangeDesktopFont(larger);
  host.Settle();
  EXPECT_NEAR(view.font().pointSizeF(), zoomed * 1.5, 0.2);
  EXPECT_EQ(grid.Zoom(), 150);
  grid.SetZoom(ordinaryZoom);
  ChangeDesktopFont(before);
  host.Settle();
  EXPECT_NEAR(view.font().pointSizeF(), before.pointSizeF(), 0.1);
}

TEST_F(GridLooksTest, TheLastColumnMayFillTheRoom) {
  view.SetLastColumnFills(true);
  Bind(std::make_shared<GeneratedRows>(
      std::vector{FieldNamed("n", DataType::BigInt), FieldNamed("text", DataType::VarWChar)}, 10,
      [](std::int64_t row, std::size_t field) -> ValueView {
        if (field == 0) return row;
        return std::string_view("a text that is longer than many a window has room for, by far");
      }));
  host.Settle();
  EXPECT_EQ(view.columnWidth(0) + view.columnWidth(1), view.viewport()->width());
}

TEST_F(GridLooksTest, TheSizeStaysWithOtherRows) {
  grid.SetZoom(150);
  const int height = view.rowHeight(0);
  Bind(OrdersOf(10));
  EXPECT_EQ(grid.Zoom(), 150);
  EXPECT_EQ(view.rowHeight(0), height);
}

/// The rows that a filter hid make the numbers wider again.
TEST_F(GridLooksTest, TheCellsMakeRoomForWiderRowNumbers) {
  Bind(OrdersOf(10));
  const int narrow = view.viewport()->x();
  rows->PretendCount(1'000'000);
  grid.Refresh();
  host.Settle();
  EXPECT_GT(view.viewport()->x(), narrow);
  EXPECT_EQ(view.viewport()->x(), view.verticalHeader()->geometry().right() + 1);
}

TEST_F(GridLooksTest, AColumnHasRoomForANull) {
  Bind(std::make_shared<GeneratedRows>(FieldsNamed({"f"}), 3, [](std::int64_t, std::size_t) {
    return ValueView(std::string_view("x"));
  }));
  QFont italic = view.font();
  italic.setItalic(true);
  EXPECT_GE(view.columnWidth(0), QFontMetrics(italic).horizontalAdvance("NULL") + cellMargins);
}

TEST_F(GridLooksTest, AColumnThatFillsTheGridIsNeverWiderThanItsRoom) {
  view.SetLastColumnFills(true);
  const std::string wide(300, 'w');
  Bind(std::make_shared<GeneratedRows>(
      FieldsNamed({"a", "b"}), 3, [&wide](std::int64_t, std::size_t field) {
        return ValueView(field == 0 ? std::string_view("x") : std::string_view(wide));
      }));
  view.parentWidget()->resize(300, view.parentWidget()->height());
  host.Settle();
  EXPECT_EQ(view.columnWidth(0) + view.columnWidth(1), view.viewport()->width());
  const std::shared_ptr<GeneratedRows> same = rows;
  Bind(OrdersOf(1));
  Bind(same);
  EXPECT_EQ(view.columnWidth(0) + view.columnWidth(1), view.viewport()->width());
}

}  // namespace

}  // namespace tessel::test
