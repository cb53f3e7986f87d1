#pragma once

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QHash>
#include <QPersistentModelIndex>
#include <QPointer>

#include "desktop/access/cells/RowAccess.h"

namespace tessel {

/// What assistive tools are told of a list or a tree: an object for each row, made when it is asked
/// for and kept as long as the row is there. The rows of a tree lie within each other as they do on
/// show.
class ViewAccess final : public QAccessibleWidget, public RowObjects {
 public:
  explicit ViewAccess(QAbstractItemView& view);
  ~ViewAccess() override;

  [[nodiscard]] QAbstractItemView& View() const;
  [[nodiscard]] QAccessibleInterface* Row(const QModelIndex& index) const override;
  [[nodiscard]] bool IsTree() const override;

  [[nodiscard]] int childCount() const override;
  [[nodiscard]] QAccessibleInterface* child(int index) const override;
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
  [[nodiscard]] QAccessibleInterface* focusChild() const override;
  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override;
  [[nodiscard]] QAccessible::State state() const override;

 private:
  void FollowModel() const;
  void FollowExpanding();
  void ForgetGoneRows() const;
  void TellChecks(const QModelIndex& first, const QModelIndex& last) const;
  void TellExpanded(const QModelIndex& index, bool expanded) const;

  mutable QHash<QPersistentModelIndex, QAccessible::Id> rows_;
  mutable QPointer<QAbstractItemModel> followed_;
  mutable QMetaObject::Connection changes_;  ///< Of the model that is followed.
  QMetaObject::Connection opens_;
  QMetaObject::Connection closes_;
};

}  // namespace tessel
