#include "desktop/access/cells/CellAccess.h"

#include <QApplication>
#include <QHeaderView>
#include <QWindow>

#include "desktop/access/base/NativePlace.h"
#include "desktop/base/Text.h"

namespace tessel {

namespace {

/// In words where the signs alone would say something else, or nothing.
QString SpokenValue(const ShownCell& cell) {
  if (cell.isNull) return QStringLiteral("null value");
  if (cell.text.isEmpty()) return QStringLiteral("empty text");
  if (cell.text.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0)
    return QStringLiteral("text ") + cell.text;
  return cell.text;
}

}  // namespace

QString NameOfPlace(const RecordsModel& model, int row, int column) {
  const QString name = ToQt(model.FieldName(column));
  if (model.IsNewRow(row)) return name + QStringLiteral(", new row");
  return name + QStringLiteral(", row ") + QString::number(row + 1);
}

bool CellAccess::isValid() const {
  return grid_ != nullptr && row_ < grid_->Model().RowCount() &&
         column_ < grid_->Model().ColumnCount();
}

QWindow* CellAccess::window() const { return grid_->window()->windowHandle(); }

QAccessibleInterface* CellAccess::parent() const {
  return QAccessible::queryAccessibleInterface(grid_);
}

QString CellAccess::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  const RecordsModel& model = grid_->Model();
  if (kind == QAccessible::Description && !IsHeader() && model.IsMarked(row_, column_))
    return QStringLiteral("differs");
  if (kind != QAccessible::Name) return {};
  if (IsHeader()) return ToQt(model.FieldName(column_));
  const QString place = NameOfPlace(model, row_, column_);
  if (model.IsEmptyRow(row_)) return place;
  return place + QStringLiteral(", ") + SpokenValue(model.CellAt(row_, column_));
}

QRect CellAccess::PlaceInViewport() const {
  if (!IsHeader()) return grid_->visualRect(grid_->Model().index(row_, column_));
  const QHeaderView& header = *grid_->horizontalHeader();
  return {header.sectionViewportPosition(column_), 0, header.sectionSize(column_), header.height()};
}

QRect CellAccess::rect() const {
  if (!isValid()) return {};
  const QWidget& ground = IsHeader() ? *grid_->horizontalHeader()->viewport() : *grid_->viewport();
  return NativePlaceOf(ground, PlaceInViewport().intersected(ground.rect()));
}

QAccessible::Role CellAccess::role() const {
  return IsHeader() ? QAccessible::ColumnHeader : QAccessible::Cell;
}

bool CellAccess::IsCurrent() const {
  const QModelIndex current = grid_->currentIndex();
  return current.row() == row_ && current.column() == column_;
}

QAccessible::State CellAccess::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  const QWidget& ground = IsHeader() ? *grid_->horizontalHeader()->viewport() : *grid_->viewport();
  state.offscreen = !PlaceInViewport().intersects(ground.rect());
  state.invisible = !grid_->isVisible();
  if (IsHeader()) return state;
  state.focusable = true;
  state.focused = IsCurrent() && QApplication::focusWidget() == grid_;
  state.selectable = true;
  state.selected = isSelected();
  state.readOnly = grid_->Model().ColumnAt(column_).locked;
  return state;
}

void* CellAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableCellInterface)
    return static_cast<QAccessibleTableCellInterface*>(this);
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  return nullptr;
}

bool CellAccess::isSelected() const {
  return isValid() && !IsHeader() && grid_->ShowsSelected(row_, column_);
}

QList<QAccessibleInterface*> CellAccess::columnHeaderCells() const {
  QAccessibleInterface* grid = parent();
  QAccessibleInterface* header =
      grid == nullptr ? nullptr : grid->tableInterface()->cellAt(-1, column_);
  return header == nullptr ? QList<QAccessibleInterface*>() : QList{header};
}

QStringList CellAccess::actionNames() const {
  return IsHeader() ? QStringList() : QStringList{setFocusAction()};
}

void CellAccess::doAction(const QString& name) {
  if (!isValid() || IsHeader() || name != setFocusAction()) return;
  grid_->setFocus(Qt::OtherFocusReason);
  grid_->GoTo(row_, column_, false);
}

}  // namespace tessel
