#include "desktop/grid/QtDataGrid.h"

#include <QApplication>
#include <algorithm>

#include "desktop/look/Colors.h"

namespace tessel {

QtDataGrid::QtDataGrid(RecordGrid& widget, const ControlSite& site) : ControlOf(widget, site) {
  Face().applyColors = [this] { ShowColors(); };
  widget.SetUser(this);
  widget.failed = [sink = &site.failures](std::exception_ptr failure) {
    sink->HandlerFailed(std::move(failure));
  };
  QObject::connect(&widget, &RecordGrid::currentCellMoved, &Face(), [this] { CellMoved(); });
  QObject::connect(&widget, &RecordGrid::recordFollowed, &Face(), [this] { Raise(RowsChange); });
  QObject::connect(&widget, &RecordGrid::otherSelected, &Face(),
                   [this] { Raise(SelectionChange); });
  QObject::connect(&widget, &RecordGrid::sortPressed, &Face(),
                   [this](int column, bool further) { Raise(SortClick, column, further); });
  QObject::connect(&widget, &RecordGrid::buttonPressed, &Face(),
                   [this](int column) { Raise(ButtonClick, column); });
}

QtDataGrid::~QtDataGrid() {
  if (RecordGrid* widget = WidgetIfAlive()) widget->SetUser(nullptr);
}

void QtDataGrid::SetAllowAddNew(bool allow) {
  allowAddNew_ = allow;
  TheWidget().SetAllowsNew(allow);
  Refresh();
}

void QtDataGrid::Refresh() {
  if (DataSource() == nullptr || (DataSource()->State() & objectState::open) == 0) return;
  TheWidget().Refresh();
  Raise(RowsChange);
}

void QtDataGrid::SetDataSource(std::shared_ptr<Recordset> recordset) {
  const bool hasRows = recordset != nullptr && recordset->RecordCount() > 0;
  if (hasRows) recordset->MoveFirst();
  TheWidget().Bind(recordset);
  column_ = ColumnCount() > 0 ? 0 : -1;
  if (hasRows) Raise(RowColChange);
  Raise(RowsChange);
}

void QtDataGrid::SetColumnFormat(int column, DataFormat* format) {
  Model().ColumnAt(column).format = format;
  TheWidget().viewport()->update();
}

void QtDataGrid::SetMarkedCells(MarkedCells marked) {
  Model().SetMarkedCells(std::move(marked));
  TheWidget().viewport()->update();
}

std::vector<Bookmark> QtDataGrid::SelBookmarks() const { return TheWidget().Selection().Rows(); }

GridCells QtDataGrid::SelCells() const {
  CellRange cells = TheWidget().Selection().Cells();
  cells.lastRow = std::min(cells.lastRow, Model().Records() - 1);
  if (cells.IsEmpty()) return {};
  return {cells.firstRow, cells.lastRow, cells.firstColumn, cells.lastColumn};
}

void QtDataGrid::SelectCells(const GridCells& cells) {
  const auto lastRow = std::min<std::int64_t>(cells.lastRow, Model().Records() - 1);
  TheWidget().SelectCells({static_cast<int>(cells.firstRow), cells.firstColumn,
                           static_cast<int>(lastRow), cells.lastColumn});
}

bool QtDataGrid::GoToCell(std::int64_t position, int column) {
  if (position < 0 || position >= Model().Records()) return false;
  if (column < 0 || column >= ColumnCount()) return false;
  return TheWidget().GoToCell(static_cast<int>(position), column);
}

int QtDataGrid::ColumnWidth(int column) const {
  return Face().TheScale().Twips(TheWidget().columnWidth(column));
}

void QtDataGrid::SetColumnWidth(int column, int twips) {
  const int wanted = Face().TheScale().Pixels(std::max(twips, 0));
  TheWidget().ChangeWidth(column, wanted);
}

std::string QtDataGrid::ShownText(std::int64_t position, int column) const {
  if (Model().IsEmptyRow(static_cast<int>(position))) return {};
  const ValueView value = DataSource()->ValueAt(position, static_cast<std::size_t>(column));
  const std::string text = Model().FullText(position, column);
  return text.empty() && IsNull(value) ? "NULL" : text;
}

Rect QtDataGrid::CellBounds() const {
  const QRect cell = TheWidget().CurrentCell();
  return cell.isEmpty() ? Rect() : Face().TheScale().Twips(cell);
}

std::int64_t QtDataGrid::CellPosition() const {
  const std::shared_ptr<Recordset> source = DataSource();
  if (OnNewRow()) return source->RecordCount();
  if (source->Bof() || source->Eof()) return -1;
  return source->PositionOf(source->CurrentBookmark()).value_or(-1);
}

std::string QtDataGrid::EditorText() const { return FromQt(TheWidget().Editor().text()); }

void QtDataGrid::OpenEditor(const std::string& text, bool select) {
  TheWidget().OpenEditor(ToQt(text), select);
}

void QtDataGrid::SelectCellAlone() {
  TheWidget().Selection().Clear();
  TheWidget().ShowSelection();
}

void QtDataGrid::Typed() {
  TheWidget().ShowSelection();
  UserTyped();
}

bool QtDataGrid::Pastes() {
  bool taken = false;
  Raise(Paste, taken);
  return taken;
}

/// The headers keep the colours of the desktop.
void QtDataGrid::ShowColors() {
  const QPalette system = QApplication::palette();
  QPalette palette;
  if (BackColor() != color::windowBackground)
    palette.setColor(QPalette::Base, ToQColor(BackColor(), system));
  if (ForeColor() != color::windowText || BackColor() != color::windowBackground)
    palette.setColor(QPalette::Text, TextColor(ForeColor(), BackColor(), system));
  TheWidget().setPalette(palette);
}

void QtDataGrid::CellMoved() {
  column_ = TheWidget().currentIndex().column();
  Raise(RowColChange);
  Raise(RowsChange);
}

}  // namespace tessel
