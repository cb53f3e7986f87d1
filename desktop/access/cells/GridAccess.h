#pragma once

#include <QAccessibleWidget>
#include <unordered_map>

namespace tessel {

class CellEditor;
class RecordGrid;

/// "City, row 3" for the cell that the line edits.
[[nodiscard]] QString NameOfEditedCell(const CellEditor& editor);

/// What assistive tools are told of a grid: a table of all its rows, whose cells are made when they
/// are asked for. Its children are the column headers, the cells on show and the line in which a
/// cell is edited, so that walking over them takes no longer with a million rows.
class GridAccess final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit GridAccess(RecordGrid& grid);
  ~GridAccess() override;

  /// Forgets all cells: their rows have changed.
  void ForgetCells() const;

  [[nodiscard]] int childCount() const override;
  [[nodiscard]] QAccessibleInterface* child(int index) const override;
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
  [[nodiscard]] QAccessibleInterface* focusChild() const override;
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  // QAccessibleTableInterface
  [[nodiscard]] QAccessibleInterface* caption() const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* summary() const override { return nullptr; }
  /// The object of a cell, made at its first use; row -1 is the header of the column. Null where
  /// there is none.
  [[nodiscard]] QAccessibleInterface* cellAt(int row, int column) const override {
    return Cell(row, column);
  }
  [[nodiscard]] int selectedCellCount() const override { return 0; }
  [[nodiscard]] QList<QAccessibleInterface*> selectedCells() const override { return {}; }
  [[nodiscard]] QString columnDescription(int column) const override;
  [[nodiscard]] QString rowDescription(int row) const override;
  [[nodiscard]] int selectedColumnCount() const override;
  [[nodiscard]] int selectedRowCount() const override;
  [[nodiscard]] int columnCount() const override;
  [[nodiscard]] int rowCount() const override;
  [[nodiscard]] QList<int> selectedColumns() const override;
  [[nodiscard]] QList<int> selectedRows() const override;
  [[nodiscard]] bool isColumnSelected(int column) const override;
  [[nodiscard]] bool isRowSelected(int row) const override;
  bool selectRow(int /*row*/) override { return false; }
  bool selectColumn(int /*column*/) override { return false; }
  bool unselectRow(int /*row*/) override { return false; }
  bool unselectColumn(int /*column*/) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override { ForgetCells(); }

 private:
  [[nodiscard]] RecordGrid& Grid() const;
  [[nodiscard]] QAccessibleInterface* Cell(int row, int column) const;
  /// The rows on show: from the first up to, but not including, the second.
  [[nodiscard]] std::pair<int, int> RowsOnShow() const;
  [[nodiscard]] QAccessibleInterface* EditorIfOpen() const;

  mutable std::unordered_map<qint64, QAccessible::Id> cells_;
};

}  // namespace tessel
