#include "desktop/window/InputRouter.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>

#include "desktop/base/QtKeys.h"
#include "desktop/base/Text.h"
#include "desktop/base/Typing.h"
#include "desktop/window/DesktopCore.h"

namespace tessel {

namespace {

constexpr char16_t deleteCharacter = 0x7F;

/// What a key types; keys that act (Enter, Tab) type nothing in this sense.
std::string TypedText(const QKeyEvent& event) {
  if (!TypesText(event)) return {};
  const QString text = event.text();
  const bool acts = !text.isEmpty() && (text[0] < QLatin1Char(' ') || text[0] == deleteCharacter);
  return acts ? std::string() : FromQt(text);
}

/// Of the left button, and in a list on one of its entries.
bool IsDoubleClick(const QWidget& control, const QMouseEvent& event) {
  const auto* list = qobject_cast<const QAbstractItemView*>(&control);
  const bool beside = list != nullptr && !list->indexAt(event.position().toPoint()).isValid();
  return event.button() == Qt::LeftButton && !beside;
}

}  // namespace

InputRouter::InputRouter(Window& window, KeyTaker& taker, QWidget& root, DesktopCore& core)
    : window_(window), taker_(taker), root_(&root), core_(core) {
  root.installEventFilter(this);
}

/// The mouse reaches the viewport of a scroll area and the text field of a combo box in place of
/// the widget itself, and the keys of a grid the line in which a cell is edited.
void InputRouter::Add(QWidget& widget, Control& control) {
  core_.focus.Add(widget, control, window_);
  widget.installEventFilter(this);
  QWidget* inner = nullptr;
  if (const auto* area = qobject_cast<QAbstractScrollArea*>(&widget)) inner = area->viewport();
  if (const auto* combo = qobject_cast<QComboBox*>(&widget)) inner = combo->lineEdit();
  if (inner != nullptr) inner->installEventFilter(this);
  for (auto* line : widget.findChildren<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly))
    line->installEventFilter(this);
}

bool InputRouter::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return false;
  switch (event->type()) {
    case QEvent::KeyPress: return KeyDown(*widget, *static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease: return KeyUp(*widget, *static_cast<QKeyEvent*>(event));
    case QEvent::ShortcutOverride:
      if (!taker_.KeepsFromShortcuts(*static_cast<QKeyEvent*>(event))) return false;
      event->accept();
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: Mouse(*widget, *static_cast<QMouseEvent*>(event)); return false;
    default: return false;
  }
}

bool InputRouter::TakeFromOuter(QEvent& event) {
  const bool isKey = event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease ||
                     event.type() == QEvent::ShortcutOverride;
  return isKey && eventFilter(root_, &event);
}

/// A key that the focus widget leaves alone comes by again at the window itself. After a handler
/// has run nothing of the window may be left.
bool InputRouter::KeyDown(QWidget& widget, QKeyEvent& event) {
  const QPointer<InputRouter> alive(this);
  if (IsWhereKeysGo(widget)) {
    KeyEvent key{KeyCodeOf(event.key()), ShiftStateOf(event.modifiers()), false, TypedText(event)};
    const bool told = key.keyCode != 0 || !key.text.empty();
    Control* control = ControlAt(widget);
    if (told) window_.KeyDown.Raise(&window_, key);
    if (alive == nullptr) return true;
    if (told && !key.handled && control != nullptr) control->KeyDown.Raise(&window_, key);
    if (alive == nullptr || key.handled) return true;
    if (taker_.TakesKey(widget, event)) return true;
  }
  if (&widget != root_) return false;
  return TakesHelpKey(event) || taker_.TakesUnusedKey(event);
}

/// F1 that nobody took is help on the window.
bool InputRouter::TakesHelpKey(const QKeyEvent& event) {
  if (event.key() != Qt::Key_F1 || event.modifiers() != Qt::NoModifier || !core_.showHelpOn)
    return false;
  core_.showHelpOn(window_);
  return true;
}

bool InputRouter::KeyUp(QWidget& widget, QKeyEvent& event) {
  if (event.isAutoRepeat() || !IsWhereKeysGo(widget)) return false;
  const QPointer<InputRouter> alive(this);
  KeyEvent key{KeyCodeOf(event.key()), ShiftStateOf(event.modifiers())};
  if (key.keyCode == 0) return false;
  Control* control = ControlAt(widget);
  window_.KeyUp.Raise(&window_, key);
  if (alive != nullptr && !key.handled && control != nullptr) control->KeyUp.Raise(&window_, key);
  return alive == nullptr || key.handled;
}

void InputRouter::Mouse(QWidget& widget, const QMouseEvent& event) {
  Control* control = ControlAt(widget);
  if (control == nullptr) return;
  const QWidget* frame =
      core_.focus.ControlOf(&widget) != nullptr ? &widget : widget.parentWidget();
  const QPoint place = widget.mapTo(frame, event.position().toPoint());
  const MouseEvent told{ButtonOf(event), ShiftStateOf(event.modifiers()),
                        core_.scale.Twips(place.x()), core_.scale.Twips(place.y())};
  switch (event.type()) {
    case QEvent::MouseButtonPress: return control->MouseDown.Raise(&window_, told);
    case QEvent::MouseButtonRelease: return control->MouseUp.Raise(&window_, told);
    case QEvent::MouseMove: return control->MouseMove.Raise(&window_, told);
    default:
      if (IsDoubleClick(*frame, event)) control->DblClick.Raise(&window_);
  }
}

bool InputRouter::IsWhereKeysGo(const QWidget& widget) const {
  const QWidget* focus = root_->window()->focusWidget();
  if (focus == nullptr || !root_->isAncestorOf(focus)) focus = root_;
  return &widget == focus;
}

/// The control itself, or the one that the viewport or text field is part of.
Control* InputRouter::ControlAt(const QWidget& widget) const {
  if (Control* control = core_.focus.ControlOf(&widget)) return control;
  return core_.focus.ControlOf(widget.parentWidget());
}

}  // namespace tessel
