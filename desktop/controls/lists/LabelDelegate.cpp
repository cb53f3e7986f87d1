#include "desktop/controls/lists/LabelDelegate.h"

#include <QLineEdit>

namespace tessel {

void LabelDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                 const QModelIndex& index) const {
  if (const auto* line = qobject_cast<QLineEdit*>(editor)) edited_(index, line->text());
}

}  // namespace tessel
