#include "desktop/editor/LongTextAccess.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace tessel {

namespace {

/// None for a short text: the component then makes its own.
QAccessibleInterface* MakeAccess(const QString& /*className*/, QObject* object) {
  const auto* text = dynamic_cast<const TextHolder*>(object);
  if (text == nullptr || !text->HoldsLongText()) return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::EditableText);
}

}  // namespace

void InstallLongTextAccess() { QAccessible::installFactory(&MakeAccess); }

void RenewTextAccess(QObject& editor, const TextHolder& text) {
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&editor);
  const bool tellsText = access != nullptr && access->textInterface() != nullptr;
  if (access == nullptr || tellsText != text.HoldsLongText()) return;
  QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(access));
}

}  // namespace tessel
