#include "desktop/access/cells/RowAccess.h"

#include <QTreeView>
#include <QWindow>

#include "desktop/access/base/NativePlace.h"

namespace tessel {

namespace {

QString StateOfBox(const QModelIndex& cell) {
  const bool checked = cell.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  return checked ? QStringLiteral("checked") : QStringLiteral("not checked");
}

/// What a cell says: its text, or the state of its box.
QString TextOf(const QModelIndex& cell) {
  const QString text = cell.data(Qt::DisplayRole).toString();
  if (!text.isEmpty() || !cell.data(Qt::CheckStateRole).isValid()) return text;
  return StateOfBox(cell);
}

}  // namespace

QWindow* RowAccess::window() const { return view_->window()->windowHandle(); }

QAccessibleInterface* RowAccess::childAt(int x, int y) const {
  for (int at = 0; at < childCount(); ++at)
    if (QAccessibleInterface* row = child(at); row != nullptr && row->rect().contains(x, y))
      return row;
  return nullptr;
}

QAccessibleInterface* RowAccess::parent() const {
  if (!isValid()) return nullptr;
  const QModelIndex outer = index_.parent();
  if (outer.isValid() && outer != view_->rootIndex()) return rows_.Row(outer);
  return QAccessible::queryAccessibleInterface(view_);
}

/// What a closed row holds is not there for the user either.
int RowAccess::childCount() const {
  return isValid() && IsExpanded() ? index_.model()->rowCount(index_) : 0;
}

QAccessibleInterface* RowAccess::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  return rows_.Row(index_.model()->index(index, 0, index_));
}

int RowAccess::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const RowAccess*>(child);
  return row != nullptr && row->Index().parent() == index_ ? row->Index().row() : -1;
}

/// The first column stands for the row; the others are told with the names of their columns.
QString RowAccess::Name() const {
  QString name = TextOf(index_);
  const QAbstractItemModel& model = *index_.model();
  for (int column = 1; column < model.columnCount(index_.parent()); ++column) {
    const QString text = TextOf(index_.sibling(index_.row(), column));
    if (text.isEmpty()) continue;
    const QString header = model.headerData(column, Qt::Horizontal).toString();
    name += QStringLiteral(", ") + (header.isEmpty() ? text : header + QStringLiteral(": ") + text);
  }
  return name;
}

QString RowAccess::Level() const {
  int level = 1;
  for (QModelIndex outer = index_.parent(); outer.isValid() && outer != view_->rootIndex();
       outer = outer.parent())
    ++level;
  return QStringLiteral("level %1").arg(level);
}

QString RowAccess::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  if (kind == QAccessible::Name) return Name();
  if (kind != QAccessible::Description) return {};
  QStringList said;
  if (rows_.IsTree()) said.append(Level());
  if (IsCheckable()) said.append(StateOfBox(index_));
  return said.join(QStringLiteral(", "));
}

QRect RowAccess::PlaceInViewport() const {
  QRect place = view_->visualRect(index_);
  for (int column = 1; column < index_.model()->columnCount(index_.parent()); ++column)
    place |= view_->visualRect(index_.sibling(index_.row(), column));
  return place & view_->viewport()->rect();
}

QRect RowAccess::rect() const {
  return isValid() ? NativePlaceOf(*view_->viewport(), PlaceInViewport()) : QRect();
}

QAccessible::Role RowAccess::role() const {
  return rows_.IsTree() ? QAccessible::TreeItem : QAccessible::ListItem;
}

bool RowAccess::IsExpandable() const {
  return qobject_cast<QTreeView*>(view_) != nullptr && index_.model()->hasChildren(index_);
}

bool RowAccess::IsExpanded() const {
  const auto* tree = qobject_cast<const QTreeView*>(view_);
  return tree != nullptr && tree->isExpanded(index_);
}

bool RowAccess::IsCheckable() const {
  return index_.flags().testFlag(Qt::ItemIsUserCheckable) &&
         index_.data(Qt::CheckStateRole).isValid();
}

void RowAccess::AddTreeState(QAccessible::State& state) const {
  state.expandable = IsExpandable();
  state.expanded = state.expandable && IsExpanded();
  state.collapsed = state.expandable && !IsExpanded();
  state.checkable = IsCheckable();
  state.checked = state.checkable && index_.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

QAccessible::State RowAccess::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  state.focusable = true;
  state.focused = view_->hasFocus() && view_->currentIndex().siblingAtColumn(0) == index_;
  state.selectable = true;
  state.selected = view_->selectionModel()->isSelected(index_);
  state.offscreen = PlaceInViewport().isEmpty();
  state.invisible = !view_->isVisible();
  state.disabled = !view_->isEnabled() || !index_.flags().testFlag(Qt::ItemIsEnabled);
  AddTreeState(state);
  return state;
}

void* RowAccess::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                              : nullptr;
}

QStringList RowAccess::actionNames() const {
  QStringList names{setFocusAction()};
  if (!isValid()) return names;
  if (IsCheckable()) names.append(toggleAction());
  if (IsExpandable()) names.append(showMenuAction());
  return names;
}

void RowAccess::doAction(const QString& name) {
  if (!isValid()) return;
  if (name == setFocusAction()) {
    view_->setFocus(Qt::OtherFocusReason);
    view_->setCurrentIndex(index_);
  } else if (name == toggleAction() && IsCheckable()) {
    const bool checked = index_.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    view_->model()->setData(index_, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
  } else if (name == showMenuAction() && IsExpandable()) {
    auto& tree = static_cast<QTreeView&>(*view_);
    tree.setExpanded(index_, !IsExpanded());
  }
}

}  // namespace tessel
