#include "desktop/window/frame/FrameWindow.h"

#include <QCoreApplication>
#include <algorithm>

#include "contract/base/Error.h"
#include "desktop/base/Text.h"
#include "desktop/window/ScreenRoom.h"

namespace tessel {

namespace {

QMdiArea& AreaIn(const QWidget& form) {
  auto* area = form.findChild<QMdiArea*>();
  if (area != nullptr) return *area;
  throw Error(errorNumber::application, "Tessel", "The frame's form has no place for documents.");
}

}  // namespace

FrameWindow::FrameWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core)
    : QtWindow(std::move(formName), std::move(form), core),
      area_(AreaIn(Root())),
      menus_(*Main().menuBar()),
      tiles_(area_) {
  core_.frame = this;
  ground_ = new EmptyText(area_, [this] { return groundText_; });
  Root().resize(WithinScreenOf(Root(), Root().size()));
  // The area would keep Ctrl+Tab from the program, and act when Ctrl comes up.
  QCoreApplication::instance()->removeEventFilter(&area_);
  QObject::connect(&area_, &QMdiArea::subWindowActivated, &area_, [this] { DocumentChanged(); });
}

FrameWindow::~FrameWindow() {
  delete ground_;
  QObject::disconnect(&area_, nullptr, &area_, nullptr);
  menus_.ShowWith(nullptr);
  for (DocumentWindow* document : documents_) document->LeaveFrame();
  if (core_.frame == this) core_.frame = nullptr;
}

void FrameWindow::Activate() {
  Outer().raise();
  Outer().activateWindow();
}

/// Most commands of the frame have no keys while the active document has a menu bar of its own.
bool FrameWindow::LeavesToDocument(const QKeyEvent& event) const {
  return menus_.HasGuest() && menus_.IsKeptFromGuest(event);
}

void FrameWindow::Adopt(DocumentWindow& document) {
  documents_.push_back(&document);
  area_.addSubWindow(&document.Sub());
  document.Sub().hide();
  tiles_.Add(document.Sub());
}

void FrameWindow::Release(DocumentWindow& document) {
  if (std::erase(documents_, &document) == 0) return;
  if (active_ == &document) {
    active_ = nullptr;
    menus_.ShowWith(nullptr);
  }
  const bool tiled = tiles_.Keeps();
  tiles_.Remove(document.Sub());
  area_.removeSubWindow(&document.Sub());
  DocumentChanged();
  if (tiled) tiles_.Renew();
}

void FrameWindow::ShowDocument(DocumentWindow& document) {
  const bool tiled = tiles_.Keeps();
  if (document.Sub().isHidden()) tiles_.Float(document.Sub());
  document.Sub().show();
  document.Activate();
  if (tiled) tiles_.Renew();
}

void FrameWindow::ActivateDocument(DocumentWindow& document) {
  if (document.Sub().isMinimized()) document.Sub().showNormal();
  Outer().activateWindow();
  area_.setActiveSubWindow(&document.Sub());
  DocumentChanged();
}

void FrameWindow::ShowMarkOf(const DocumentWindow& document) {
  tiles_.Tabs().Rename(document.Sub());
}

void FrameWindow::SetGroundText(std::string_view text) {
  groundText_ = ToQt(text);
  area_.viewport()->update();
}

bool FrameWindow::IsActive(const DocumentWindow& document) const {
  return ActiveDocument() == &document;
}

const QWidget& FrameWindow::Inner() const { return *Main().centralWidget(); }

std::vector<QtWindow*> FrameWindow::Documents() const {
  std::vector<QtWindow*> open;
  for (DocumentWindow* document : documents_)
    if (document->Loaded()) open.push_back(document);
  return open;
}

void FrameWindow::ShowOuter(QtWindow* /*owner*/) {
  Outer().show();
  Activate();
}

void FrameWindow::PutAway() {
  if (core_.frame == this) core_.frame = nullptr;
  if (unloaded) unloaded();
}

/// The area knows a current document also while another program is the active one.
DocumentWindow* FrameWindow::ActiveDocument() const {
  const QMdiSubWindow* current = area_.currentSubWindow();
  const auto found = std::ranges::find_if(
      documents_, [&](const DocumentWindow* document) { return &document->Sub() == current; });
  return found == documents_.end() ? nullptr : *found;
}

void FrameWindow::DocumentChanged() {
  DocumentWindow* now = ActiveDocument();
  if (now == active_) return;
  active_ = now;
  menus_.ShowWith(now == nullptr ? nullptr : now->OwnMenus());
  if (now != nullptr) now->RaiseActivated();
}

}  // namespace tessel
