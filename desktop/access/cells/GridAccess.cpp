#include "desktop/access/cells/GridAccess.h"

#include <QHeaderView>
#include <algorithm>

#include "desktop/access/base/NativePlace.h"
#include "desktop/access/cells/CellAccess.h"
#include "desktop/base/Text.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellEditor.h"

namespace tessel {

namespace {

/// More than this many objects are not kept: a reader that walks through a large table leaves most
/// of them behind.
constexpr std::size_t mostCells = 5000;

qint64 KeyOf(int row, int column) { return (static_cast<qint64>(row) << 32) + column; }

}  // namespace

QString NameOfEditedCell(const CellEditor& editor) {
  const auto* grid = qobject_cast<const RecordGrid*>(editor.parentWidget());
  if (grid == nullptr || !grid->currentIndex().isValid()) return editor.accessibleName();
  return NameOfPlace(grid->Model(), grid->currentIndex().row(), grid->currentIndex().column());
}

GridAccess::GridAccess(RecordGrid& grid) : QAccessibleWidget(&grid, QAccessible::Table) {}

GridAccess::~GridAccess() { ForgetCells(); }

RecordGrid& GridAccess::Grid() const { return static_cast<RecordGrid&>(*widget()); }

void GridAccess::ForgetCells() const {
  for (const auto& [key, id] : cells_) QAccessible::deleteAccessibleInterface(id);
  cells_.clear();
}

QAccessibleInterface* GridAccess::Cell(int row, int column) const {
  const RecordsModel& model = Grid().Model();
  if (row < -1 || row >= model.RowCount() || column < 0 || column >= model.ColumnCount())
    return nullptr;
  const auto found = cells_.find(KeyOf(row, column));
  if (found != cells_.end()) return QAccessible::accessibleInterface(found->second);
  if (cells_.size() >= mostCells) ForgetCells();
  auto* cell = new CellAccess(Grid(), row, column);
  cells_[KeyOf(row, column)] = QAccessible::registerAccessibleInterface(cell);
  return cell;
}

std::pair<int, int> GridAccess::RowsOnShow() const {
  const RecordGrid& grid = Grid();
  const int first = grid.rowAt(0);
  if (first < 0 || !grid.isVisible()) return {0, 0};
  const int last = grid.rowAt(grid.viewport()->height() - 1);
  return {first, last < 0 ? grid.Model().RowCount() : last + 1};
}

QAccessibleInterface* GridAccess::EditorIfOpen() const {
  CellEditor& editor = Grid().Editor();
  return editor.IsOpen() ? QAccessible::queryAccessibleInterface(&editor) : nullptr;
}

int GridAccess::childCount() const {
  const auto [first, end] = RowsOnShow();
  return (end - first + 1) * columnCount() + (Grid().Editor().IsOpen() ? 1 : 0);
}

/// The headers, then the cells row by row, then the editor.
QAccessibleInterface* GridAccess::child(int index) const {
  const int columns = columnCount();
  const auto [first, end] = RowsOnShow();
  if (index < 0) return nullptr;
  if (index >= (end - first + 1) * columns) return EditorIfOpen();
  if (index < columns) return Cell(-1, index);
  return Cell(first + index / columns - 1, index % columns);
}

int GridAccess::indexOfChild(const QAccessibleInterface* child) const {
  const auto [first, end] = RowsOnShow();
  if (child->object() == &Grid().Editor()) return childCount() - 1;
  const auto* cell = dynamic_cast<const CellAccess*>(child);
  if (cell == nullptr) return -1;
  if (cell->Row() < 0) return cell->Column();
  if (cell->Row() < first || cell->Row() >= end) return -1;
  return (cell->Row() - first + 1) * columnCount() + cell->Column();
}

QAccessibleInterface* GridAccess::childAt(int x, int y) const {
  const QPoint place = FromNative({x, y}, Grid());
  const QModelIndex index = Grid().indexAt(Grid().viewport()->mapFromGlobal(place));
  return index.isValid() ? Cell(index.row(), index.column()) : nullptr;
}

QAccessibleInterface* GridAccess::focusChild() const {
  if (QAccessibleInterface* editor = EditorIfOpen()) return editor;
  const QModelIndex current = Grid().currentIndex();
  return current.isValid() ? Cell(current.row(), current.column()) : nullptr;
}

QRect GridAccess::rect() const { return ToNative(QAccessibleWidget::rect(), Grid()); }

/// The focus is on the current cell, where there is one.
QAccessible::State GridAccess::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  if (Grid().currentIndex().isValid()) state.focused = false;
  return state;
}

void* GridAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QString GridAccess::columnDescription(int column) const {
  return column < columnCount() ? ToQt(Grid().Model().FieldName(column)) : QString();
}

QString GridAccess::rowDescription(int row) const { return QString::number(row + 1); }

int GridAccess::columnCount() const { return Grid().Model().ColumnCount(); }

int GridAccess::rowCount() const { return Grid().Model().RowCount(); }

int GridAccess::selectedColumnCount() const { return static_cast<int>(selectedColumns().size()); }

int GridAccess::selectedRowCount() const {
  return static_cast<int>(Grid().Selection().Rows().size());
}

QList<int> GridAccess::selectedColumns() const {
  QList<int> columns;
  for (int column = 0; column < columnCount(); ++column)
    if (isColumnSelected(column)) columns.append(column);
  return columns;
}

QList<int> GridAccess::selectedRows() const {
  QList<int> rows;
  for (const Bookmark& bookmark : Grid().Selection().Rows())
    if (const auto position = Grid().Model().Source()->PositionOf(bookmark))
      rows.append(static_cast<int>(*position));
  return rows;
}

bool GridAccess::isColumnSelected(int column) const { return Grid().ColumnSelected(column); }

bool GridAccess::isRowSelected(int row) const { return Grid().RowSelected(row); }

}  // namespace tessel
