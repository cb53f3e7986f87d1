#pragma once

#include <QStyledItemDelegate>
#include <functional>

namespace tessel {

/// Shows an item's text in an editor and hands over what was typed in place of writing it.
class LabelDelegate final : public QStyledItemDelegate {
 public:
  using Edited = std::function<void(const QModelIndex&, const QString&)>;
  LabelDelegate(QObject& owner, Edited edited)
      : QStyledItemDelegate(&owner), edited_(std::move(edited)) {}

  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 private:
  Edited edited_;
};

}  // namespace tessel
