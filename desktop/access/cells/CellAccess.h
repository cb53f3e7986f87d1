#pragma once

#include <QAccessible>
#include <QPointer>

#include "desktop/grid/RecordGrid.h"

namespace tessel {

/// A cell of a grid by its place, or the header of a column. It tells "column, row, value"; null is
/// told from a text NULL.
class CellAccess final : public QAccessibleInterface,
                         public QAccessibleTableCellInterface,
                         public QAccessibleActionInterface {
 public:
  /// Row -1 is the header of the column.
  CellAccess(RecordGrid& grid, int row, int column) : grid_(&grid), row_(row), column_(column) {}

  [[nodiscard]] int Row() const { return row_; }
  [[nodiscard]] int Column() const { return column_; }

  [[nodiscard]] bool isValid() const override;
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override;
  [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
    return nullptr;
  }
  [[nodiscard]] QAccessibleInterface* parent() const override;
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override;
  [[nodiscard]] QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  // QAccessibleTableCellInterface
  [[nodiscard]] bool isSelected() const override;
  [[nodiscard]] QList<QAccessibleInterface*> columnHeaderCells() const override;
  [[nodiscard]] QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  [[nodiscard]] int columnIndex() const override { return column_; }
  [[nodiscard]] int rowIndex() const override { return row_; }
  [[nodiscard]] int columnExtent() const override { return 1; }
  [[nodiscard]] int rowExtent() const override { return 1; }
  [[nodiscard]] QAccessibleInterface* table() const override { return parent(); }

  // QAccessibleActionInterface
  [[nodiscard]] QStringList actionNames() const override;
  void doAction(const QString& name) override;
  [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override {
    return {};
  }

 private:
  [[nodiscard]] bool IsHeader() const { return row_ < 0; }
  [[nodiscard]] bool IsCurrent() const;
  [[nodiscard]] QRect PlaceInViewport() const;

  QPointer<RecordGrid> grid_;
  int row_;
  int column_;
};

/// "City, row 3"; rows are counted from 0, and told from 1.
[[nodiscard]] QString NameOfPlace(const RecordsModel& model, int row, int column);

}  // namespace tessel
