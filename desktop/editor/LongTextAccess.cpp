#include "desktop/editor/LongTextAccess.h"

#include <QAccessibleWidget>

#include "desktop/editor/SqlEditor.h"

namespace tessel {

namespace {

bool IsLong(const SqlEditor& editor) { return editor.Length() > SqlEditor::longestWrapped; }

/// None for a short text: the component then makes its own.
QAccessibleInterface* MakeAccess(const QString& className, QObject* object) {
  if (className != SqlEditor::staticMetaObject.className()) return nullptr;
  auto* editor = qobject_cast<SqlEditor*>(object);
  if (editor == nullptr || !IsLong(*editor)) return nullptr;
  return new QAccessibleWidget(editor, QAccessible::EditableText);
}

}  // namespace

void InstallLongTextAccess() { QAccessible::installFactory(&MakeAccess); }

void RenewTextAccess(SqlEditor& editor) {
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&editor);
  const bool tellsText = access != nullptr && access->textInterface() != nullptr;
  if (access == nullptr || tellsText != IsLong(editor)) return;
  QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(access));
}

}  // namespace tessel
