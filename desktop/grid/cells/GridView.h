#pragma once

#include <QTableView>

#include "desktop/grid/cells/RecordsModel.h"

class QKeyEvent;

namespace tessel {

/// The table of a data grid as its parts know it: the headers and the delegate, which paint it, and
/// the line in which a cell is edited.
class GridView : public QTableView {
 public:
  using QTableView::QTableView;

  [[nodiscard]] virtual RecordsModel& Model() const = 0;
  [[nodiscard]] virtual bool ShowsSelected(int row, int column) = 0;
  [[nodiscard]] virtual bool RowSelected(int row) = 0;
  [[nodiscard]] virtual bool ColumnSelected(int column) const = 0;
  /// Whether something was typed into the current row, or changed in its record, and is not
  /// written.
  [[nodiscard]] virtual bool RowIsBeingChanged() const = 0;

  /// A number in that column, or its name beside the mark of sorting, needs so many pixels to be
  /// shown whole.
  virtual void WantWidth(int column, int width) = 0;

  /// Whether a press on a column's header asks to sort wherever it is, with Ctrl held or not.
  [[nodiscard]] virtual bool SortsAt(bool ctrl) const = 0;
  virtual void PressSort(int column, bool further) = 0;

  /// A key in the editor that goes to another cell.
  virtual void MoveFromEditor(QKeyEvent& event) = 0;
  /// False when the focus is to leave the grid.
  virtual bool TabFromEditor(bool next) = 0;
};

}  // namespace tessel
