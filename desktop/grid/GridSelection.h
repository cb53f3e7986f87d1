#pragma once

#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// A rectangle of cells, both ends included; rows and columns are 0-based.
struct CellRange {
  int firstRow = 0;
  int firstColumn = 0;
  int lastRow = -1;
  int lastColumn = -1;
  [[nodiscard]] bool Contains(int row, int column) const {
    return row >= firstRow && row <= lastRow && column >= firstColumn && column <= lastColumn;
  }
  [[nodiscard]] bool IsEmpty() const { return lastRow < firstRow || lastColumn < firstColumn; }
  bool operator==(const CellRange&) const = default;
};

/// What is selected in a grid: rows in the order of their selection, a range of columns, or both,
/// which are the cells where they cross; or a rectangle of cells.
class GridSelection {
 public:
  using BookmarkAt = std::function<Bookmark(int row)>;
  explicit GridSelection(BookmarkAt bookmarkAt) : bookmarkAt_(std::move(bookmarkAt)) {}

  void Clear();

  /// A press on a row's header: alone selects that row, `add` (Ctrl) adds it or takes it away and
  /// keeps the columns, `extend` (Shift) selects from the row pressed before up to this one.
  void PressRow(int row, bool add, bool extend);
  void DragToRow(int row);
  /// Whether rows are selected that a further press with `extend` goes on from.
  [[nodiscard]] bool ExtendsRows() const { return !rows_.empty() && anchorRow_ >= 0; }
  void SetRows(const std::vector<Bookmark>& rows);
  [[nodiscard]] const std::vector<Bookmark>& Rows() const { return rows_; }
  [[nodiscard]] bool HasRow(Bookmark row) const { return isSelected_.contains(row); }

  /// A press on a column's header; `add` (Ctrl) keeps the rows.
  void PressColumn(int column, bool add, bool extend);
  void DragToColumn(int column);
  [[nodiscard]] int FirstColumn() const { return firstColumn_; }  ///< -1 when none is selected.
  [[nodiscard]] int LastColumn() const { return lastColumn_; }
  [[nodiscard]] bool HasColumn(int column) const {
    return firstColumn_ >= 0 && column >= firstColumn_ && column <= lastColumn_;
  }

  /// One cell, from which ExtendTo goes on.
  void StartAt(int row, int column);
  void ExtendTo(int row, int column);
  void SetCells(const CellRange& cells);
  /// More than one cell, or an empty range.
  [[nodiscard]] const CellRange& Cells() const { return cells_; }

  /// What is selected in few words: of two selections that differ they differ.
  struct Trace {
    CellRange cells;
    int firstColumn = -1;
    int lastColumn = -1;
    std::uint64_t rows = 0;
    bool operator==(const Trace&) const = default;
  };
  [[nodiscard]] Trace Now() const { return {cells_, firstColumn_, lastColumn_, rowsVersion_}; }

 private:
  void RowsFromAnchorTo(int row);
  void ForgetAllBut(bool rows, bool columns, bool cells);

  BookmarkAt bookmarkAt_;
  std::vector<Bookmark> rows_;
  std::unordered_set<Bookmark> isSelected_;
  std::uint64_t rowsVersion_ = 0;     ///< Another one after each change of them.
  std::vector<Bookmark> rowsBefore_;  ///< Selected before the press that is being dragged.
  int anchorRow_ = -1;
  int anchorColumn_ = -1;
  int firstColumn_ = -1;
  int lastColumn_ = -1;
  CellRange cells_;
  int startRow_ = 0;
  int startColumn_ = 0;
};

}  // namespace tessel
