#include "desktop/access/WidgetAccess.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTextBrowser>

#include "desktop/access/base/NativePlace.h"
#include "desktop/access/base/StatusText.h"
#include "desktop/access/cells/GridAccess.h"
#include "desktop/controls/values/HexView.h"
#include "desktop/controls/values/PictureView.h"
#include "desktop/drawings/ChartWidget.h"
#include "desktop/drawings/DiagramWidget.h"
#include "desktop/grid/cells/CellEditor.h"

namespace tessel {

namespace {

QString WithoutMark(const QLabel& label) {
  QString text = label.text();
  if (label.buddy() != nullptr) text.remove(QLatin1Char('&'));
  if (text.endsWith(QLatin1Char(':'))) text.chop(1);
  return text.trimmed();
}

/// A name that leaves the text out stands before it.
QString NameOfLabel(const QLabel& label) {
  const QString name = label.accessibleName();
  const QString text = WithoutMark(label);
  if (text.isEmpty() || name.contains(text)) return name.simplified();
  if (text.startsWith(name)) return text.simplified();
  return (name.isEmpty() ? text : name + QStringLiteral(": ") + text).simplified();
}

/// The box whose inner edit or list the widget is; null for any other.
const QComboBox* BoxAround(const QWidget& widget) {
  for (const QWidget* outer = widget.parentWidget(); outer != nullptr;
       outer = outer->parentWidget()) {
    const auto* box = qobject_cast<const QComboBox*>(outer);
    if (box != nullptr && (box->lineEdit() == &widget || box->isAncestorOf(&widget))) return box;
  }
  return nullptr;
}

QString NameOf(const QWidget& widget, const QString& plain) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return NameOfLabel(*label);
  if (const auto* editor = qobject_cast<const CellEditor*>(&widget))
    return NameOfEditedCell(*editor);
  if (!widget.accessibleName().isEmpty()) return plain;
  if (const QComboBox* box = BoxAround(widget)) return box->accessibleName();
  if (plain.isEmpty() && qobject_cast<const QLineEdit*>(widget.parentWidget()) != nullptr)
    return QStringLiteral("Clear");  // the one button that a line has
  return plain;
}

/// A frame around others is no window.
bool IsGroup(const QWidget& widget, QAccessible::Role plain) {
  return plain == QAccessible::Border || qobject_cast<const QMdiSubWindow*>(&widget) != nullptr;
}

bool IsDrawing(const QWidget& widget) {
  return qobject_cast<const PictureView*>(&widget) != nullptr ||
         qobject_cast<const ChartWidget*>(&widget) != nullptr ||
         qobject_cast<const DiagramWidget*>(&widget) != nullptr;
}

QAccessible::Role RoleOf(const QWidget& widget, QAccessible::Role plain) {
  if (IsStatus(widget)) return QAccessible::StatusBar;
  if (widget.inherits("tessel::MessageDialog")) return QAccessible::AlertMessage;
  if (qobject_cast<const QTextBrowser*>(&widget) != nullptr) return QAccessible::Document;
  if (qobject_cast<const HexView*>(&widget) != nullptr) return QAccessible::Document;
  if (IsDrawing(widget)) return QAccessible::Graphic;
  if (widget.isWindow() && plain == QAccessible::Client) return QAccessible::Window;
  return IsGroup(widget, plain) ? QAccessible::Grouping : plain;
}

}  // namespace

WidgetAccess::WidgetAccess(QWidget& widget, QAccessibleInterface& plain)
    : widget_(&widget), plain_(plain), plainId_(QAccessible::uniqueId(&plain)) {}

WidgetAccess::~WidgetAccess() { QAccessible::deleteAccessibleInterface(plainId_); }

QAccessibleInterface* WidgetAccess::childAt(int x, int y) const {
  const QPoint place = FromNative({x, y}, *widget_);
  return plain_.childAt(place.x(), place.y());
}

QString WidgetAccess::text(QAccessible::Text kind) const {
  const QString plain = plain_.text(kind);
  return kind == QAccessible::Name ? NameOf(*widget_, plain) : plain;
}

QRect WidgetAccess::rect() const { return ToNative(plain_.rect(), *widget_); }

/// What hands the focus on to another widget has not got it.
QAccessible::State WidgetAccess::state() const {
  QAccessible::State state = plain_.state();
  if (widget_->focusProxy() != nullptr) state.focused = false;
  return state;
}

QAccessible::Role WidgetAccess::role() const { return RoleOf(*widget_, plain_.role()); }

}  // namespace tessel
