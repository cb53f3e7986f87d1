#include "desktop/access/cells/ViewAccess.h"

#include <QComboBox>
#include <QTreeView>
#include <algorithm>

#include "desktop/access/base/NativePlace.h"
#include "desktop/access/base/Signals.h"

namespace tessel {

namespace {

/// With more rows than this those are looked for that have gone.
constexpr qsizetype rowsBeforeTidying = 2000;

QString NameOfBoxAround(const QWidget& widget) {
  for (const QWidget* outer = widget.parentWidget(); outer != nullptr;
       outer = outer->parentWidget())
    if (const auto* box = qobject_cast<const QComboBox*>(outer)) return box->accessibleName();
  return {};
}

}  // namespace

ViewAccess::ViewAccess(QAbstractItemView& view) : QAccessibleWidget(&view, QAccessible::List) {
  FollowExpanding();
}

ViewAccess::~ViewAccess() {
  QObject::disconnect(changes_);
  QObject::disconnect(opens_);
  QObject::disconnect(closes_);
  for (const QAccessible::Id row : std::as_const(rows_))
    QAccessible::deleteAccessibleInterface(row);
}

QAbstractItemView& ViewAccess::View() const { return static_cast<QAbstractItemView&>(*widget()); }

/// A view may get its model after somebody has asked for its object.
void ViewAccess::FollowModel() const {
  QAbstractItemModel* model = View().model();
  if (model == followed_) return;
  QObject::disconnect(changes_);
  followed_ = model;
  changes_ = QObject::connect(
      model, &QAbstractItemModel::dataChanged, &View(),
      [this](const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
        if (roles.isEmpty() || roles.contains(Qt::CheckStateRole)) TellChecks(first, last);
      });
}

void ViewAccess::FollowExpanding() {
  const auto* tree = qobject_cast<const QTreeView*>(&View());
  if (tree == nullptr) return;
  opens_ = QObject::connect(tree, &QTreeView::expanded, &View(),
                            [this](const QModelIndex& index) { TellExpanded(index, true); });
  closes_ = QObject::connect(tree, &QTreeView::collapsed, &View(),
                             [this](const QModelIndex& index) { TellExpanded(index, false); });
}

/// Only of the rows that somebody has asked for: nobody else knows the others.
void ViewAccess::TellChecks(const QModelIndex& first, const QModelIndex& last) const {
  QAccessible::State checked;
  checked.checked = true;
  for (int row = first.row(); row <= last.row(); ++row) {
    const QModelIndex index = first.sibling(row, 0);
    const auto known = rows_.constFind(QPersistentModelIndex(index));
    if (known == rows_.cend()) continue;
    QAccessibleStateChangeEvent event(QAccessible::accessibleInterface(*known), checked);
    QAccessible::updateAccessibility(&event);
  }
}

void ViewAccess::TellExpanded(const QModelIndex& index, bool expanded) const {
  if (QAccessibleInterface* row = Row(index)) TellState(*row, QStringLiteral("expanded"), expanded);
}

void ViewAccess::ForgetGoneRows() const {
  for (auto row = rows_.begin(); row != rows_.end();) {
    if (row.key().isValid()) {
      ++row;
    } else {
      QAccessible::deleteAccessibleInterface(*row);
      row = rows_.erase(row);
    }
  }
}

QAccessibleInterface* ViewAccess::Row(const QModelIndex& index) const {
  if (!index.isValid() || index.model() != View().model()) return nullptr;
  FollowModel();
  const QPersistentModelIndex first(index.siblingAtColumn(0));
  const auto known = rows_.constFind(first);
  if (known != rows_.cend()) return QAccessible::accessibleInterface(*known);
  if (rows_.size() >= rowsBeforeTidying) ForgetGoneRows();
  auto* row = new RowAccess(View(), *this, first);
  rows_.insert(first, QAccessible::registerAccessibleInterface(row));
  return row;
}

bool ViewAccess::IsTree() const {
  const auto* tree = qobject_cast<const QTreeView*>(&View());
  return tree != nullptr && tree->rootIsDecorated();
}

int ViewAccess::childCount() const {
  const QAbstractItemModel* model = View().model();
  return model == nullptr ? 0 : model->rowCount(View().rootIndex());
}

QAccessibleInterface* ViewAccess::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  return Row(View().model()->index(index, 0, View().rootIndex()));
}

int ViewAccess::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const RowAccess*>(child);
  return row != nullptr && row->Index().parent() == View().rootIndex() ? row->Index().row() : -1;
}

QAccessibleInterface* ViewAccess::childAt(int x, int y) const {
  const QPoint place = FromNative({x, y}, View());
  return Row(View().indexAt(View().viewport()->mapFromGlobal(place)));
}

QAccessibleInterface* ViewAccess::focusChild() const { return Row(View().currentIndex()); }

QString ViewAccess::text(QAccessible::Text kind) const {
  const QString plain = QAccessibleWidget::text(kind);
  return kind == QAccessible::Name && plain.isEmpty() ? NameOfBoxAround(View()) : plain;
}

QRect ViewAccess::rect() const { return ToNative(QAccessibleWidget::rect(), View()); }

/// The focus is on the current row, where there is one.
QAccessible::State ViewAccess::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  if (View().currentIndex().isValid()) state.focused = false;
  return state;
}

QAccessible::Role ViewAccess::role() const {
  return IsTree() ? QAccessible::Tree : QAccessible::List;
}

}  // namespace tessel
