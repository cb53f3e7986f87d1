// The door between the toolkit and this folder: which object tells of which widget, and which
// events go out. The toolkit tells of the focus of lists and tables by the numbers of its own
// objects; here it is told of the row or cell that is current, and only where the focus is.

#include "desktop/access/Access.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QListView>
#include <QProgressBar>
#include <QTreeView>

#include "desktop/access/WidgetAccess.h"
#include "desktop/access/base/Signals.h"
#include "desktop/access/base/StatusText.h"
#include "desktop/access/cells/GridAccess.h"
#include "desktop/access/cells/ViewAccess.h"
#include "desktop/grid/RecordGrid.h"

namespace tessel {

namespace {

QAccessibleInterface* MakeObject(const QString& className, QObject* object);
void Hear(QAccessibleEvent* event);

/// The toolkit's own object for the widget.
QAccessibleInterface* PlainObject(QWidget& widget) {
  QAccessible::removeFactory(&MakeObject);
  QAccessibleInterface* plain = QAccessible::queryAccessibleInterface(&widget);
  QAccessible::installFactory(&MakeObject);
  return plain;
}

bool IsListOrTree(const QObject* object) {
  return qobject_cast<const QTreeView*>(object) != nullptr ||
         qobject_cast<const QListView*>(object) != nullptr;
}

QAccessibleInterface* MakeObject(const QString& /*className*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  if (auto* grid = qobject_cast<RecordGrid*>(widget)) return new GridAccess(*grid);
  if (IsListOrTree(widget)) return new ViewAccess(static_cast<QAbstractItemView&>(*widget));
  QAccessibleInterface* plain = PlainObject(*widget);
  return plain == nullptr ? nullptr : new WidgetAccess(*widget, *plain);
}

void PassOn(QAccessibleEvent& event) {
  QAccessible::installUpdateHandler(nullptr);
  QAccessible::updateAccessibility(&event);
  QAccessible::installUpdateHandler(&Hear);
}

void PassOn(QAccessibleInterface& source, QAccessible::Event kind) {
  QAccessibleEvent event(&source, kind);
  PassOn(event);
}

// --- lists, trees and grids ----------------------------------------------------------------------

bool IsSelection(QAccessible::Event kind) {
  return kind == QAccessible::Selection || kind == QAccessible::SelectionAdd ||
         kind == QAccessible::SelectionRemove || kind == QAccessible::SelectionWithin;
}

void TellFocus(QAbstractItemView& view, QAccessibleInterface& access) {
  if (QApplication::focusWidget() != &view) return;
  QAccessibleInterface* current = access.focusChild();
  PassOn(current == nullptr ? access : *current, QAccessible::Focus);
}

void TellSelection(QAccessibleInterface& access) {
  QAccessibleInterface* current = access.focusChild();
  if (current != nullptr && current->state().selected) PassOn(*current, QAccessible::SelectionAdd);
}

void HearView(QAbstractItemView& view, QAccessibleEvent& event) {
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&view);
  if (access == nullptr) return;
  if (event.type() == QAccessible::Focus) return TellFocus(view, *access);
  if (IsSelection(event.type())) return TellSelection(*access);
  if (event.type() != QAccessible::TableModelChanged) return PassOn(event);
  if (auto* table = access->tableInterface())
    table->modelChange(static_cast<QAccessibleTableModelChangeEvent*>(&event));
}

// --- what is spoken ------------------------------------------------------------------------------

bool BringsText(QAccessible::Event kind) {
  return kind == QAccessible::TextInserted || kind == QAccessible::TextUpdated ||
         kind == QAccessible::NameChanged || kind == QAccessible::ObjectShow;
}

void SpeakStatus(QWidget& status) {
  const QString text = SpokenStatus(status);
  if (text.isEmpty() || !status.isVisible()) return;
  if (QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&status))
    Announce(*access, text);
}

/// Of a bar whole percents are told: it moves in much smaller steps.
bool IsSmallStep(QObject* source, QAccessible::Event kind) {
  constexpr const char* told = "percentTold";
  const auto* bar = qobject_cast<const QProgressBar*>(source);
  if (bar == nullptr || kind != QAccessible::ValueChanged || bar->maximum() <= 0) return false;
  const int percent = static_cast<int>(bar->value() * 100LL / bar->maximum());
  if (source->property(told) == percent) return true;
  source->setProperty(told, percent);
  return false;
}

/// Nothing is made and nothing is told while nobody listens.
void Hear(QAccessibleEvent* event) {
  if (!QAccessible::isActive()) return;
  auto* widget = qobject_cast<QWidget*>(event->object());
  const bool shownByUs = qobject_cast<RecordGrid*>(widget) != nullptr || IsListOrTree(widget);
  if (shownByUs) return HearView(static_cast<QAbstractItemView&>(*widget), *event);
  if (IsSmallStep(widget, event->type())) return;
  PassOn(*event);
  if (widget != nullptr && BringsText(event->type()) && IsStatus(*widget)) SpeakStatus(*widget);
}

}  // namespace

void InstallAccess() {
  QAccessible::removeFactory(&MakeObject);
  QAccessible::installFactory(&MakeObject);
  QAccessible::installUpdateHandler(&Hear);
}

}  // namespace tessel
