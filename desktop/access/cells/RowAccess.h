#pragma once

#include <QAbstractItemView>
#include <QAccessible>
#include <QPersistentModelIndex>
#include <QPointer>

namespace tessel {

/// Who makes and keeps the objects of a view's rows.
class RowObjects {
 public:
  /// The object of the index's row; null for an index that is not valid.
  [[nodiscard]] virtual QAccessibleInterface* Row(const QModelIndex& index) const = 0;
  [[nodiscard]] virtual bool IsTree() const = 0;

 protected:
  ~RowObjects() = default;
};

/// A row of a list or a tree. Its name is the texts of its columns.
class RowAccess final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  /// `rows` outlives it.
  RowAccess(QAbstractItemView& view, const RowObjects& rows, const QModelIndex& index)
      : view_(&view), rows_(rows), index_(index) {}

  [[nodiscard]] const QPersistentModelIndex& Index() const { return index_; }

  [[nodiscard]] bool isValid() const override { return view_ != nullptr && index_.isValid(); }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override;
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
  [[nodiscard]] QAccessibleInterface* parent() const override;
  [[nodiscard]] QAccessibleInterface* child(int index) const override;
  [[nodiscard]] int childCount() const override;
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override;
  [[nodiscard]] QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  // QAccessibleActionInterface
  [[nodiscard]] QStringList actionNames() const override;
  void doAction(const QString& name) override;
  [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override {
    return {};
  }

 private:
  [[nodiscard]] bool IsExpandable() const;
  [[nodiscard]] bool IsExpanded() const;
  [[nodiscard]] bool IsCheckable() const;
  [[nodiscard]] QString Name() const;
  [[nodiscard]] QString Level() const;
  [[nodiscard]] QRect PlaceInViewport() const;
  void AddTreeState(QAccessible::State& state) const;

  QPointer<QAbstractItemView> view_;
  const RowObjects& rows_;
  QPersistentModelIndex index_;
};

}  // namespace tessel
