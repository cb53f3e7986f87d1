#include "platform/desktop/grid/QtDataGrid.h"

#include "platform/desktop/base/Colors.h"

namespace tessel {

QtDataGrid::QtDataGrid(RecordGrid& widget, const ControlSite& site) : ControlOf(widget, site) {
  Face().applyColors = [this] { ShowColors(); };
  widget.failed = [sink = &site.failures](std::exception_ptr failure) {
    sink->HandlerFailed(std::move(failure));
  };
  QObject::connect(&widget, &RecordGrid::currentCellMoved, &Face(), [this] { CellMoved(); });
  QObject::connect(&widget, &RecordGrid::buttonPressed, &Face(),
                   [this](int column) { Raise(ButtonClick, column); });
}

void QtDataGrid::SetDataSource(std::shared_ptr<Recordset> recordset) {
  const bool hasRows = recordset != nullptr && recordset->RecordCount() > 0;
  if (hasRows) recordset->MoveFirst();
  TheWidget().Bind(recordset);
  column_ = ColumnCount() > 0 ? 0 : -1;
  if (hasRows) Raise(RowColChange);
}

void QtDataGrid::SetColumnFormat(int column, DataFormat* format) {
  Model().ColumnAt(column).format = format;
  TheWidget().viewport()->update();
}

std::vector<Bookmark> QtDataGrid::SelBookmarks() const { return TheWidget().Selection().Rows(); }

void QtDataGrid::SetSelBookmarks(const std::vector<Bookmark>& bookmarks) {
  TheWidget().Selection().SetRows(bookmarks);
  TheWidget().ShowSelection();
}

void QtDataGrid::SetSelColumns(int first, int last) {
  TheWidget().Selection().SetColumns(first, last);
  TheWidget().ShowSelection();
}

void QtDataGrid::SetCurrentColumn(int column) {
  static_cast<void>(Model().ColumnAt(column));
  if (column == column_) return;
  column_ = column;
  TheWidget().SetCurrentColumnQuietly(column);
  Raise(RowColChange);
}

std::string QtDataGrid::ShownText(std::int64_t position, int column) const {
  const ValueView value = DataSource()->ValueAt(position, static_cast<std::size_t>(column));
  const std::string text = Model().FullText(position, column);
  return text.empty() && IsNull(value) ? "NULL" : text;
}

/// The headers keep the colours of the desktop.
void QtDataGrid::ShowColors() {
  const QPalette system = QApplication::palette();
  QPalette palette;
  if (BackColor() != color::windowBackground)
    palette.setColor(QPalette::Base, ToQColor(BackColor(), system));
  if (ForeColor() != color::windowText)
    palette.setColor(QPalette::Text, ToQColor(ForeColor(), system));
  TheWidget().setPalette(palette);
}

void QtDataGrid::CellMoved() {
  column_ = TheWidget().currentIndex().column();
  Raise(RowColChange);
}

}  // namespace tessel
