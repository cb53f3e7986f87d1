#include "desktop/window/DialogWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>

#include "desktop/window/ScreenRoom.h"

namespace tessel {

namespace {

constexpr int toolDelayMilliseconds = 150;

QWidget* WindowOf(Window* window) {
  auto* owner = dynamic_cast<QtWindow*>(window);
  return owner == nullptr ? nullptr : owner->Root().window();
}

bool IsEnter(const QKeyEvent& event) {
  return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
         (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

/// A text box that Tab leaves is a field of the dialog: Enter is the dialog's there.
bool IsField(const QWidget& widget) {
  const auto* lines = qobject_cast<const QPlainTextEdit*>(&widget);
  return lines != nullptr && lines->tabChangesFocus();
}

}  // namespace

/// A form of the kind "tool" keeps its size.
DialogWindow::DialogWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core)
    : QtWindow(std::move(formName), std::move(form), core) {
  if (IsTool()) Root().setFixedSize(Root().size().expandedTo(Root().minimumSizeHint()));
  else Root().resize(Fitting(Root().size()));
  soon_.setSingleShot(true);
  soon_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&soon_, &QTimer::timeout, &Root(), [this] { Show(); });
}

void DialogWindow::ShowModal(Window* owner) {
  QWidget* above = owner != nullptr ? WindowOf(owner) : QApplication::activeWindow();
  soon_.stop();
  Dialog().hide();
  if (above != nullptr) core_.loops.AwaitPlace(*above);
  PutAbove(above);
  OuterActivated();
  TellFirstSize();
  EventLoops& loops = core_.loops;
  const QPointer<QWidget> alive(&Outer());
  if (IsTool()) loops.RunLater(Dialog(), toolDelayMilliseconds);
  else loops.Run(Dialog());
  if (loops.Ending() && alive != nullptr) Unload(UnloadReason::Code);
}

void DialogWindow::ShowAboveSoon(Window& owner) {
  if (Visible()) return;
  PutAbove(WindowOf(&owner));
  soon_.start(toolDelayMilliseconds);
}

void DialogWindow::Hide() {
  soon_.stop();
  core_.loops.EndWait(Dialog());
  QtWindow::Hide();
}

void DialogWindow::PutAway() {
  soon_.stop();
  core_.loops.EndWait(Dialog());
}

QSize DialogWindow::Fitting(const QSize& wanted) const { return WithinScreenOf(Root(), wanted); }

bool DialogWindow::IsTool() const {
  return Root().property("kind").toString() == QLatin1String("tool");
}

void DialogWindow::Activate() {
  Outer().raise();
  Outer().activateWindow();
}

/// In a window that comes up by itself a key that was held down before is not meant for it.
bool DialogWindow::TakesKey(QWidget& widget, QKeyEvent& event) {
  if (!IsEnter(event)) return false;
  if (IsTool() && event.isAutoRepeat()) return true;
  if (!IsField(widget)) return false;
  QKeyEvent toDialog(event.type(), event.key(), event.modifiers());
  QCoreApplication::sendEvent(&Dialog(), &toDialog);
  return true;
}

/// Without a button for it the key closes the dialog as its control box does.
bool DialogWindow::TakesUnusedKey(QKeyEvent& event) {
  if (event.key() != Qt::Key_Escape || event.modifiers() != Qt::NoModifier) return false;
  PressCancel();
  return true;
}

void DialogWindow::ShowOuter(QtWindow* owner) {
  if (owner != nullptr) PutAbove(WindowOf(owner));
  soon_.stop();
  if (!Visible()) OuterActivated();
  core_.loops.NoteShown();
  Outer().show();
}

/// Told from the event loop, so that a handler which hides the window finds it fully shown.
void DialogWindow::OuterActivated() {
  if (std::exchange(activationTold_, true)) return;
  Later([this] {
    activationTold_ = false;
    if (Visible()) RaiseActivated();
  });
}

void DialogWindow::PutAbove(QWidget* owner) {
  if (owner == &Outer() || owner == Outer().parentWidget()) return;
  Outer().setParent(owner, Outer().windowFlags());
}

void DialogWindow::PressCancel() {
  for (QAbstractButton* button : Root().findChildren<QAbstractButton*>())
    if (button->property("cancel").toBool()) return button->isVisible() ? button->click() : void();
  CloseAsked();
}

}  // namespace tessel
