#include "desktop/grid/QtDataGrid.h"

#include <QApplication>

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
