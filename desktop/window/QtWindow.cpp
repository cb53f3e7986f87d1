// The life of a window from its form to its end: controls and menus are found in the form and get
// their adapters, sizes grow with the font, and closing goes through the questions that the logic
// may refuse. A handler may destroy the window at any time, which is why so much looks whether it
// is still there.

#include "desktop/window/QtWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QCursor>
#include <QLayout>
#include <QMdiSubWindow>
#include <QToolButton>
#include <algorithm>

#include "contract/base/Error.h"
#include "desktop/base/Text.h"
#include "desktop/controls/QtBasics.h"
#include "desktop/controls/QtMenuItem.h"
#include "desktop/dialogs/QtCommonDialogs.h"
#include "desktop/look/Colors.h"
#include "desktop/window/ControlMaker.h"
#include "desktop/window/MarkStripe.h"

namespace tessel {

namespace {

/// Fetches the entry of that name, made at the first call.
template <class Kind, class Make>
Kind& Named(std::map<std::string, std::unique_ptr<Kind>, std::less<>>& made, std::string_view name,
            Make make) {
  auto found = made.find(name);
  if (found == made.end()) found = made.emplace(name, make()).first;
  return *found->second;
}

QWidget& FormIn(QWidget& outer) {
  const auto* frame = qobject_cast<QMdiSubWindow*>(&outer);
  return frame == nullptr ? outer : *frame->widget();
}

bool IsLaidOut(const QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  return parent != nullptr && parent->layout() != nullptr &&
         parent->layout()->indexOf(const_cast<QWidget*>(&widget)) >= 0;
}

/// A button of a tool row is a square; one that stands by itself has the size its form gives it.
void SizeToolButton(QToolButton& button, const Scale& scale) {
  constexpr int side = 28;
  constexpr int icon = 20;
  constexpr int aroundIcon = 3;
  const bool inRow = button.parentWidget()->layout() != nullptr;
  const int shown = std::min(icon, (inRow ? side : button.height()) - 2 * aroundIcon);
  button.setIconSize(scale.OfForm(QSize(shown, shown)));
  if (inRow) button.setFixedSize(side, side);
}

}  // namespace

class QtWindow::Watch final : public QObject {
 public:
  explicit Watch(QtWindow& window) : window_(window) {
    window.outer_->installEventFilter(this);
    if (window.outer_ != window.root_) window.root_->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool outer = watched == window_.outer_;
    if (outer && event->type() == QEvent::Close) {
      event->ignore();
      window_.CloseAsked();
      return true;
    }
    if (outer && event->type() == QEvent::WindowActivate) window_.OuterActivated();
    else if (outer && window_.outer_ != window_.root_ && window_.outer_->hasFocus())
      return window_.router_->TakeFromOuter(*event);
    else if (!outer || window_.outer_ == window_.root_) NoteResize(*event);
    return false;
  }

 private:
  void NoteResize(const QEvent& event) {
    if (event.type() == QEvent::Resize) window_.NoteSize();
  }

  QtWindow& window_;
};

QtWindow::QtWindow(std::string formName, std::unique_ptr<QWidget> outer, DesktopCore& core)
    : core_(core),
      formName_(std::move(formName)),
      root_(&FormIn(*outer)),
      outer_(outer.release()),
      block_(*outer_),
      caption_(FromQt(root_->windowTitle())) {
  ScaleForm();
  router_ = std::make_unique<InputRouter>(*this, *this, *root_, core);
  MakeControls();
  MakeMenus();
  watch_ = std::make_unique<Watch>(*this);
  notedSize_ = root_->size();
}

QtWindow::~QtWindow() {
  token_.reset();
  core_.focus.Forget(*this);
  watch_.reset();
  router_.reset();
  if (outer_ == nullptr) return;
  for (QDialog* dialog : outer_->findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly))
    dialog->setParent(nullptr, dialog->windowFlags());
  outer_->hide();
  outer_->deleteLater();
}

MenuItem& QtWindow::Menu(std::string_view name) {
  const auto found = menus_.find(name);
  if (found != menus_.end()) return *found->second;
  throw Error(errorNumber::itemNotFound, "Tessel",
              "The form " + formName_ + " has no menu '" + std::string(name) + "'.");
}

Timer& QtWindow::TimerNamed(std::string_view name) {
  return Named(timers_, name, [this] { return std::make_unique<QtTimer>(*this); });
}

FileDialog& QtWindow::FileDialogNamed(std::string_view name) {
  return Named(fileDialogs_, name, [&] {
    std::string& lastFolder = core_.lastFolders[formName_ + "." + std::string(name)];
    return std::make_unique<QtFileDialog>(*root_, core_.loops, lastFolder);
  });
}

ColorDialog& QtWindow::ColorDialogNamed(std::string_view name) {
  return Named(colorDialogs_, name,
               [this] { return std::make_unique<QtColorDialog>(*root_, core_.loops); });
}

void QtWindow::SetCaption(std::string_view caption) {
  caption_ = caption;
  root_->setWindowTitle(AsWindowTitle(caption));
}

void QtWindow::SetMark(std::optional<Color> mark) {
  if (stripe_ == nullptr) stripe_ = new MarkStripe(*root_);
  stripe_->setVisible(mark.has_value());
  if (mark) stripe_->Show(ToQColor(*mark, root_->palette()));
}

void QtWindow::Show() {
  ShowOuter(nullptr);
  TellFirstSize();
}

void QtWindow::ShowAbove(Window& owner) {
  ShowOuter(dynamic_cast<QtWindow*>(&owner));
  TellFirstSize();
}

/// Only dialogs are shown modally.
void QtWindow::ShowModal(Window* /*owner*/) {
  throw Error(errorNumber::notSupported, "Tessel", "The form " + formName_ + " is no dialog.");
}

bool QtWindow::Unload(UnloadReason reason) {
  if (!loaded_ || closing_) return true;
  for (QtWindow* document : Documents())
    if (!document->AskToUnload(UnloadReason::Frame)) return false;
  if (!AskToUnload(reason)) return false;
  for (auto open = Documents(); !open.empty(); open = Documents()) open.front()->Close();
  Close();
  return true;
}

Rect QtWindow::Bounds() const {
  return outer_->geometry() == placed_ ? given_ : core_.scale.Twips(outer_->geometry());
}

/// A window whose place is not changed keeps the one that the desktop will choose.
void QtWindow::SetBounds(const Rect& bounds) {
  const Rect before = Bounds();
  const QRect pixels = core_.scale.Pixels(bounds);
  const QSize size = Fitting(pixels.size());
  if (bounds.left == before.left && bounds.top == before.top) outer_->resize(size);
  else outer_->setGeometry(QRect(pixels.topLeft(), size));
  given_ = bounds;
  placed_ = outer_->geometry();
  if (placed_.size() != pixels.size()) placed_ = QRect();
  NoteSize();
}

void QtWindow::PopupMenu(MenuItem& menu, Control* at, int x, int y) {
  QMenu* shown = dynamic_cast<QtMenuItem&>(menu).Action().menu();
  if (shown == nullptr) return;
  QPoint place = QCursor::pos();
  if (at != nullptr) {
    const auto* widget = root_->findChild<QWidget*>(ToQt(at->Name()));
    if (widget != nullptr)
      place = widget->mapToGlobal(QPoint(core_.scale.Pixels(x), core_.scale.Pixels(y)));
  }
  core_.loops.Run(*shown, place);
}

void QtWindow::HandlerFailed(std::exception_ptr failure) noexcept {
  try {
    core_.showFailure(std::move(failure));
  } catch (...) {
    // Not even the message could be shown; there is nobody left to tell.
    static_cast<void>(std::current_exception());
  }
}

bool QtWindow::AskToUnload(UnloadReason reason) {
  if (core_.loops.Ending()) return true;
  const std::weak_ptr<const int> token = token_;
  bool refuse = false;
  closing_ = true;
  QueryUnload.Raise(this, refuse, reason);
  if (!token.expired()) closing_ = false;
  return !refuse;
}

void QtWindow::Close() {
  const std::weak_ptr<const int> token = token_;
  closing_ = true;
  Unloaded.Raise(this);
  if (token.expired()) return;
  closing_ = false;
  loaded_ = false;
  for (const auto& [name, timer] : timers_) timer->SetEnabled(false);
  outer_->hide();
  PutAway();
}

Control* QtWindow::FindControl(std::string_view name) {
  const auto found = controls_.find(name);
  return found == controls_.end() ? nullptr : found->second.get();
}

/// A frame or document is not closed from inside a modal window or a long operation: that waits
/// until these are over.
void QtWindow::CloseAsked() {
  const bool dialog = qobject_cast<QDialog*>(outer_) != nullptr;
  if (dialog || (core_.loops.Depth() == 0 && Enabled())) {
    Unload(UnloadReason::ControlBox);
    return;
  }
  core_.deferred.Add([this, token = std::weak_ptr<const int>(token_)] {
    if (!token.expired()) Unload(UnloadReason::ControlBox);
  });
}

void QtWindow::Later(std::function<void()> action) {
  QMetaObject::invokeMethod(
      outer_,
      [action = std::move(action), token = std::weak_ptr<const int>(token_)] {
        if (!token.expired()) action();
      },
      Qt::QueuedConnection);
}

void QtWindow::MakeControls() {
  for (QWidget* widget : root_->findChildren<QWidget*>()) {
    const QString name = widget->objectName();
    if (name.isEmpty() || name.startsWith(QLatin1String("qt_"))) continue;
    auto control = MakeControl({*widget, *this, core_.scale});
    if (control == nullptr) continue;
    router_->Add(*widget, *control);
    controls_.emplace(FromQt(name), std::move(control));
  }
}

void QtWindow::MakeMenus() {
  for (QAction* action : root_->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly))
    AddMenu(*action);
  for (const QMenu* menu : root_->findChildren<QMenu*>())
    if (!menu->objectName().isEmpty()) AddMenu(*menu->menuAction());
}

void QtWindow::AddMenu(QAction& action) {
  auto item = std::make_unique<QtMenuItem>(action, *this);
  if (item->Name().empty()) return;
  const std::string name = item->Name();
  menus_.emplace(name, std::move(item));
}

/// The form is drawn for the ordinary font; what no layout places grows with the font by itself.
void QtWindow::ScaleForm() {
  const Scale& scale = core_.scale;
  for (QWidget* widget : root_->findChildren<QWidget*>()) {
    if (widget->objectName().isEmpty()) continue;
    if (auto* button = qobject_cast<QToolButton*>(widget)) SizeToolButton(*button, scale);
    widget->setMinimumSize(scale.OfForm(widget->minimumSize()));
    widget->setMaximumSize(scale.OfForm(widget->maximumSize()));
    if (!IsLaidOut(*widget)) widget->setGeometry(scale.OfForm(widget->geometry()));
  }
  root_->resize(scale.OfForm(root_->size()));
}

void QtWindow::NoteSize() {
  if (root_->size() == notedSize_) return;
  notedSize_ = root_->size();
  sizeTold_ = true;
  Resize.Raise(this);
}

void QtWindow::TellFirstSize() {
  if (std::exchange(sizeTold_, true)) return;
  Resize.Raise(this);
}

}  // namespace tessel
