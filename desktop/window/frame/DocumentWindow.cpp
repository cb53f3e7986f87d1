#include "desktop/window/frame/DocumentWindow.h"

#include <QAction>
#include <QLayout>

#include "contract/base/Error.h"
#include "desktop/look/Colors.h"
#include "desktop/window/frame/DocumentEdges.h"
#include "desktop/window/frame/DocumentStyle.h"

namespace tessel {

namespace {

/// The frame around a document. The keys that the toolkit gives its system menu belong to the
/// program.
std::unique_ptr<QWidget> FrameAround(std::unique_ptr<QWidget> form, const Scale& scale) {
  auto sub = std::make_unique<QMdiSubWindow>();
  auto* style = new DocumentStyle(scale);
  style->setParent(sub.get());
  sub->setStyle(style);
  const QSize size = form->size();
  sub->setWindowIcon(form->windowIcon());
  sub->setWidget(form.release());
  sub->setAttribute(Qt::WA_DeleteOnClose, false);
  for (QAction* action : sub->systemMenu()->actions()) action->setShortcuts(QList<QKeySequence>());
  const QMargins margins = sub->contentsMargins() + sub->layout()->contentsMargins();
  sub->resize(size.grownBy(margins));
  return sub;
}

}  // namespace

DocumentWindow::DocumentWindow(std::string formName, std::unique_ptr<QWidget> form,
                               DesktopCore& core)
    : QtWindow(std::move(formName), FrameAround(std::move(form), core.scale), core),
      frame_(core.frame),
      menus_(Root().findChild<QMenuBar*>()) {
  if (frame_ == nullptr)
    throw Error(errorNumber::application, "Tessel",
                "The form " + FormName() + " needs a frame, and none is loaded.");
  if (menus_ != nullptr) menus_->hide();
  new DocumentEdges(Sub());
  frame_->Adopt(*this);
}

DocumentWindow::~DocumentWindow() {
  if (frame_ != nullptr) frame_->Release(*this);
}

void DocumentWindow::Activate() {
  if (frame_ != nullptr) frame_->ActivateDocument(*this);
}

bool DocumentWindow::Active() const { return frame_ != nullptr && frame_->IsActive(*this); }

void DocumentWindow::SetMaximized(bool maximized) {
  if (maximized == Maximized()) return;
  if (maximized) Sub().showMaximized();
  else Sub().showNormal();
}

void DocumentWindow::SetMark(std::optional<Color> mark) {
  mark_ = mark;
  const QVariant color = mark ? QVariant(ToQColor(*mark, Sub().palette())) : QVariant();
  Sub().setProperty(DocumentStyle::markProperty, color);
  Sub().update();
  if (frame_ != nullptr) frame_->ShowMarkOf(*this);
}

bool DocumentWindow::KeepsFromShortcuts(const QKeyEvent& event) const {
  return frame_ != nullptr && frame_->LeavesToDocument(event);
}

void DocumentWindow::LeaveFrame() {
  frame_ = nullptr;
  Sub().hide();
  Sub().setParent(nullptr);
}

void DocumentWindow::ShowOuter(QtWindow* /*owner*/) {
  if (frame_ != nullptr) frame_->ShowDocument(*this);
}

void DocumentWindow::PutAway() {
  if (frame_ != nullptr) frame_->Release(*this);
  frame_ = nullptr;
}

}  // namespace tessel
