#include "desktop/grid/GridSelection.h"

#include <algorithm>
#include <utility>

namespace tessel {

void GridSelection::Clear() {
  ForgetAllBut(false, false, false);
  anchorRow_ = -1;
  anchorColumn_ = -1;
}

void GridSelection::PressRow(int row, bool add, bool extend) {
  ForgetAllBut(true, add, false);
  if (extend && anchorRow_ >= 0) {
    if (!add) rowsBefore_.clear();
    return RowsFromAnchorTo(row);
  }
  const Bookmark pressed = bookmarkAt_(row);
  rowsBefore_ = add ? rows_ : std::vector<Bookmark>();
  anchorRow_ = row;
  if (!add || !HasRow(pressed)) return RowsFromAnchorTo(row);
  ++rowsVersion_;
  std::erase(rows_, pressed);
  isSelected_.erase(pressed);
  rowsBefore_ = rows_;
}

void GridSelection::DragToRow(int row) {
  if (anchorRow_ >= 0) RowsFromAnchorTo(row);
}

void GridSelection::SetRows(const std::vector<Bookmark>& rows) {
  ForgetAllBut(true, true, false);
  ++rowsVersion_;
  rows_ = rows;
  isSelected_ = {rows.begin(), rows.end()};
  rowsBefore_.clear();
  anchorRow_ = -1;
}

void GridSelection::PressColumn(int column, bool add, bool extend) {
  ForgetAllBut(add, true, false);
  if (!extend || anchorColumn_ < 0) anchorColumn_ = column;
  DragToColumn(column);
}

void GridSelection::DragToColumn(int column) {
  if (anchorColumn_ < 0) return;
  std::tie(firstColumn_, lastColumn_) = std::minmax(anchorColumn_, column);
}

void GridSelection::StartAt(int row, int column) {
  ForgetAllBut(false, false, false);
  startRow_ = row;
  startColumn_ = column;
}

void GridSelection::ExtendTo(int row, int column) {
  ForgetAllBut(false, false, true);
  if (row == startRow_ && column == startColumn_) {
    cells_ = {};
    return;
  }
  std::tie(cells_.firstRow, cells_.lastRow) = std::minmax(startRow_, row);
  std::tie(cells_.firstColumn, cells_.lastColumn) = std::minmax(startColumn_, column);
}

void GridSelection::SetCells(const CellRange& cells) {
  ForgetAllBut(false, false, true);
  cells_ = cells;
  startRow_ = cells.firstRow;
  startColumn_ = cells.firstColumn;
}

/// Selects the rows selected before, then those from the anchor on in the direction of the drag.
void GridSelection::RowsFromAnchorTo(int row) {
  ++rowsVersion_;
  rows_ = rowsBefore_;
  isSelected_ = {rows_.begin(), rows_.end()};
  const int step = row < anchorRow_ ? -1 : 1;
  for (int at = anchorRow_;; at += step) {
    const Bookmark bookmark = bookmarkAt_(at);
    if (isSelected_.insert(bookmark).second) rows_.push_back(bookmark);
    if (at == row) return;
  }
}

void GridSelection::ForgetAllBut(bool rows, bool columns, bool cells) {
  if (!rows) {
    if (!rows_.empty()) ++rowsVersion_;
    rows_.clear();
    isSelected_.clear();
    rowsBefore_.clear();
  }
  if (!columns) firstColumn_ = lastColumn_ = -1;
  if (!cells) cells_ = {};
}

}  // namespace tessel
