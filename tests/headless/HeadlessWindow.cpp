#include "tests/headless/HeadlessWindow.h"

#include <algorithm>
#include <filesystem>

#include "contract/base/Error.h"
#include "tests/headless/HeadlessDesktop.h"

namespace tessel::test {

namespace {

std::string NameOfFile(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// A path as the dialog returns it: with the ending, when none was typed.
std::string WithExtension(const std::string& path, const std::string& extension) {
  const bool typed = NameOfFile(path).find('.') != std::string::npos;
  return typed || extension.empty() ? path : path + "." + extension;
}

class HeadlessFileDialog final : public FileDialog {
 public:
  HeadlessFileDialog(DesktopScript& script, std::string form, std::string name)
      : script_(&script), form_(std::move(form)), name_(std::move(name)) {}
  [[nodiscard]] bool ShowOpen() override { return Show(false); }
  [[nodiscard]] bool ShowSave() override { return Show(true); }

 private:
  [[nodiscard]] bool Show(bool save) {
    const auto answer = script_->TakeFile(
        {form_, name_, save, fileName, initialFolder, filter, defaultExtension, flags});
    if (!answer) return false;
    const bool bare = !save && std::filesystem::is_regular_file(*answer);
    fileName = bare ? *answer : WithExtension(*answer, defaultExtension);
    fileTitle = NameOfFile(fileName);
    return true;
  }

  DesktopScript* script_;
  std::string form_;
  std::string name_;
};

class HeadlessColorDialog final : public ColorDialog {
 public:
  explicit HeadlessColorDialog(DesktopScript& script) : script_(&script) {}
  [[nodiscard]] bool ShowColor() override {
    const auto answer = script_->TakeColor(color);
    if (answer) color = *answer;
    return answer.has_value();
  }

 private:
  DesktopScript* script_;
};

/// Ends the modal state of a window however its showing ends.
class ModalState {
 public:
  ModalState(HeadlessDesktop& desktop, HeadlessWindow& window)
      : desktop_(desktop), window_(&window), token_(window.Token()) {
    desktop_.Stack().PushModal(window);
    desktop_.NoteModal(window.FormName());
  }
  ModalState(const ModalState&) = delete;
  ModalState& operator=(const ModalState&) = delete;
  ~ModalState() {
    desktop_.Stack().PopModal(window_);
    if (!token_.expired() && window_->Visible()) window_->Hide();
  }

 private:
  HeadlessDesktop& desktop_;
  HeadlessWindow* window_;
  std::weak_ptr<const void> token_;
};

}  // namespace

HeadlessWindow::HeadlessWindow(HeadlessDesktop& desktop, FormFile form, HeadlessWindow* frame)
    : desktop_(desktop),
      form_(std::move(form)),
      frame_(frame),
      controls_(form_, *this, *this, desktop.TheClipboard()),
      caption_(form_.properties.Text("windowTitle")),
      bounds_(form_.bounds) {
  desktop_.Stack().Add(*this);
}

HeadlessWindow::~HeadlessWindow() {
  token_.reset();
  const bool arranged = frame_ != nullptr && frame_->StandAsArranged();
  visible_ = false;
  desktop_.Stack().Remove(*this);
  if (frame_ != nullptr) frame_->places_.erase(this);
  if (arranged) frame_->KeepArranged(true);
  for (HeadlessWindow* window : desktop_.Stack().Windows()) {
    if (window->frame_ == this) window->ForgetFrame();
    window->ForgetOwner(this);
  }
  desktop_.Stack().UpdateFocus();
}

MenuItem& HeadlessWindow::Menu(std::string_view name) {
  if (HeadlessMenuItem* item = controls_.FindMenu(name)) return *item;
  throw Error(errorNumber::itemNotFound, "Tessel",
              "The form " + form_.name + " has no menu '" + std::string(name) + "'.");
}

Timer& HeadlessWindow::TimerNamed(std::string_view name) {
  auto& timer = timers_[std::string(name)];
  if (timer == nullptr) timer = std::make_unique<HeadlessTimer>(desktop_.TheClock(), *this);
  return *timer;
}

FileDialog& HeadlessWindow::FileDialogNamed(std::string_view name) {
  auto& dialog = fileDialogs_[std::string(name)];
  if (dialog == nullptr)
    dialog = std::make_unique<HeadlessFileDialog>(desktop_, form_.name, std::string(name));
  return *dialog;
}

ColorDialog& HeadlessWindow::ColorDialogNamed(std::string_view name) {
  auto& dialog = colorDialogs_[std::string(name)];
  if (dialog == nullptr) dialog = std::make_unique<HeadlessColorDialog>(desktop_);
  return *dialog;
}

void HeadlessWindow::ShowAbove(Window& owner) { ShowOver(&owner); }

void HeadlessWindow::ShowModal(Window* owner) {
  if (visible_) StopTest(form_.name + " is shown modally while it is visible.");
  HeadlessDesktop& desktop = desktop_;
  const ModalState modal(desktop, *this);
  ShowOver(owner);
  desktop.RunModal(*this);
}

void HeadlessWindow::ShowOver(Window* owner) {
  if (!loaded_) StopTest(form_.name + " is shown after it was unloaded.");
  owner_ = dynamic_cast<HeadlessWindow*>(owner);
  const bool arranged = frame_ != nullptr && frame_->StandAsArranged();
  if (!visible_ && frame_ != nullptr && Floats()) {
    const Rect& room = frame_->bounds_;
    bounds_ = {room.width / 10, room.height / 10, room.width * 8 / 10, room.height * 8 / 10};
  }
  visible_ = true;
  const std::weak_ptr<const void> token = Token();
  if (!std::exchange(shownBefore_, true)) RaiseFirstResize();
  if (!token.expired() && visible_) {
    if (frame_ != nullptr) frame_->keepsOwnFocus_ = false;
    desktop_.Stack().BringToFront(*this, false);
  }
  if (!token.expired() && frame_ != nullptr) frame_->KeepArranged(arranged);
}

/// A window and its containers get their size when they are first shown.
void HeadlessWindow::RaiseFirstResize() {
  Resize.Raise(this);
  for (const auto& control : controls_.Controls())
    if (auto* box = dynamic_cast<HeadlessPictureBox*>(control.get())) box->RaiseResize();
}

void HeadlessWindow::Hide() {
  if (!std::exchange(visible_, false)) return;
  desktop_.Stack().TakeAway(*this);
}

void HeadlessWindow::Activate() {
  if (!visible_) return;
  if (frame_ != nullptr) frame_->keepsOwnFocus_ = false;
  desktop_.Stack().BringToFront(*this, true);
}

bool HeadlessWindow::Active() const { return desktop_.Stack().IsActive(*this); }

bool HeadlessWindow::Unload(UnloadReason reason) {
  if (!loaded_ || closing_) return true;
  for (HeadlessWindow* document : Documents())
    if (!document->AskToUnload(UnloadReason::Frame)) return false;
  if (!AskToUnload(reason)) return false;
  for (auto open = Documents(); !open.empty(); open = Documents()) open.front()->Close();
  Close();
  return true;
}

bool HeadlessWindow::AskToUnload(UnloadReason reason) {
  if (desktop_.Ending()) return true;
  bool refuse = false;
  closing_ = true;
  QueryUnload.Raise(this, refuse, reason);
  closing_ = false;
  return !refuse;
}

std::vector<HeadlessWindow*> HeadlessWindow::Documents() const {
  std::vector<HeadlessWindow*> documents;
  for (HeadlessWindow* window : desktop_.Stack().Windows())
    if (window->frame_ == this && window->loaded_) documents.push_back(window);
  return documents;
}

void HeadlessWindow::Close() {
  closing_ = true;
  const std::weak_ptr<const void> token = Token();
  Unloaded.Raise(this);
  if (token.expired()) return;
  closing_ = false;
  loaded_ = false;
  for (const auto& [name, timer] : timers_) timer->SetEnabled(false);
  const bool arranged = frame_ != nullptr && frame_->StandAsArranged();
  Hide();
  if (frame_ != nullptr) frame_->KeepArranged(arranged);
}

void HeadlessWindow::SetBounds(const Rect& bounds) {
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  if (resized) KeepArranged(StandAsArranged());
  if (resized) Resize.Raise(this);
}

void HeadlessWindow::SetMaximized(bool maximized) {
  if (frame_ == nullptr || std::exchange(maximized_, maximized) == maximized) return;
  if (maximized) minimized_ = false;
  Resize.Raise(this);
}

/// Rows one below another, or columns side by side, over the whole inside. With tabs there are two
/// at most: that of the first document, and that of all others.
void HeadlessWindow::Arrange(Tiling tiling) {
  arranged_ = tiling;
  std::vector<HeadlessWindow*> tiles = Documents();
  for (HeadlessWindow* tile : tiles) tile->maximized_ = false;
  std::erase_if(tiles, [](const auto* tile) {
    return !tile->visible_ || tile->minimized_ || tile->Floats();
  });
  const int documents = static_cast<int>(tiles.size());
  const int count = tabbed_ ? std::min(documents, 2) : documents;
  for (int document = 0; document < documents; ++document) {
    HeadlessWindow& tile = *tiles[static_cast<std::size_t>(document)];
    const int n = std::min(document, count - 1);
    if (tiling == Tiling::Horizontal)
      tile.SetBounds({0, bounds_.height / count * n, bounds_.width, bounds_.height / count});
    else tile.SetBounds({bounds_.width / count * n, 0, bounds_.width / count, bounds_.height});
  }
  places_.clear();
  for (const HeadlessWindow* tile : tiles) places_[tile] = tile->bounds_;
}

bool HeadlessWindow::StandAsArranged() const {
  return arranged_ && std::ranges::all_of(Documents(), [this](const HeadlessWindow* document) {
           if (!document->visible_) return true;
           const auto place = places_.find(document);
           if (place == places_.end()) return !document->maximized_;
           return document->bounds_ == place->second && !document->maximized_ &&
                  !document->minimized_;
         });
}

void HeadlessWindow::KeepArranged(bool arranged) {
  if (arranged) Arrange(*arranged_);
}

void HeadlessWindow::PopupMenu(MenuItem& menu, Control* at, int x, int y) {
  auto& root = dynamic_cast<HeadlessMenuItem&>(menu);
  if (!root.IsTitle()) StopTest(root.Name() + " is no menu that could pop up.");
  root.RaiseOpening();
  const std::string chosen =
      desktop_.TakePopup({root.Name(), at == nullptr ? "" : at->Name(), x, y});
  if (chosen.empty()) return;
  HeadlessMenuItem* command = controls_.FindMenu(chosen);
  if (command == nullptr) StopTest(form_.name + " has no menu command " + chosen + ".");
  command->OpenTitles(&root);
  if (!command->CanBeChosen(&root))
    StopTest(chosen + " cannot be chosen from " + root.Name() + ".");
  command->Choose();
}

void HeadlessWindow::HandlerFailed(std::exception_ptr failure) noexcept {
  const auto show = [this](const std::string& text) {
    desktop_.ShowMessage({.text = text, .icon = MessageIcon::Exclamation});
  };
  try {
    try {
      std::rethrow_exception(failure);
    } catch (const Error& error) {
      show(error.Description());
    } catch (const std::exception& error) {
      show(error.what());
    }
  } catch (const TestStop& stop) {
    desktop_.KeepStop(stop);
  } catch (...) {
    desktop_.KeepStop({"A handler let out an unknown exception."});
  }
}

bool HeadlessWindow::VisibleInFact(std::string_view control) const {
  return VisibleInFact() && Existing(control).ShowsInside();
}

bool HeadlessWindow::VisibleInFact() const {
  return visible_ && (frame_ == nullptr || frame_->VisibleInFact());
}

std::string HeadlessWindow::FocusName() const {
  HeadlessControl* focus = desktop_.Stack().Focus();
  return focus != nullptr && Owns(focus) ? focus->AsControl().Name() : "";
}

MousePointer HeadlessWindow::PointerOver(std::string_view control) const {
  return Existing(control).Pointer();
}

void HeadlessWindow::ForgetOwner(const HeadlessWindow* owner) {
  if (owner_ == owner) owner_ = nullptr;
}

bool HeadlessWindow::Owns(const HeadlessControl* control) const {
  for (const auto& own : controls_.Controls())
    if (own.get() == control) return true;
  return false;
}

HeadlessControl* HeadlessWindow::WantedFocus() {
  if (lastFocus_ == nullptr || !lastFocus_->Usable()) lastFocus_ = controls_.NextFocus(lastFocus_);
  return lastFocus_;
}

Control* HeadlessWindow::FindControl(std::string_view name) {
  HeadlessControl* control = controls_.Find(name);
  return control == nullptr ? nullptr : &control->AsControl();
}

void HeadlessWindow::AskForFocus(HeadlessControl& control) {
  if (!control.TakesFocus() || !control.Usable()) return;
  lastFocus_ = &control;
  keepsOwnFocus_ = IsFrame();
  if (frame_ != nullptr) frame_->keepsOwnFocus_ = false;
  if (frame_ != nullptr && visible_) desktop_.Stack().BringToFront(*this, false);
  desktop_.Stack().UpdateFocus();
}

bool HeadlessWindow::HoldsFocus(const HeadlessControl& control) const {
  return desktop_.Stack().Focus() == &control;
}

void HeadlessWindow::UsabilityChanged() { desktop_.Stack().UpdateFocus(); }

}  // namespace tessel::test
