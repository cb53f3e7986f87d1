#include "tests/headless/WindowStack.h"

#include <algorithm>
#include <utility>

#include "tests/headless/HeadlessWindow.h"

namespace tessel::test {

void WindowStack::Remove(HeadlessWindow& window) {
  std::erase(windows_, &window);
  std::erase(order_, &window);
  std::erase(modals_, &window);
  if (!IsFocusAlive(focus_)) focus_ = nullptr;
}

void WindowStack::BringToFront(HeadlessWindow& window, bool withFrame) {
  Change([&] {
    MoveToFront(window);
    HeadlessWindow* frame = window.FrameAround();
    if (withFrame && frame != nullptr && frame->Visible()) MoveToFront(*frame);
  });
}

void WindowStack::TakeAway(HeadlessWindow& window) {
  Change([&] { std::erase(order_, &window); });
}

bool WindowStack::IsActive(const HeadlessWindow& window) const {
  const Front front = CurrentFront();
  if (window.FrameAround() == nullptr) return front.window == &window;
  return front.document == &window && front.window == window.FrameAround();
}

void WindowStack::PopModal(const HeadlessWindow* window) {
  const auto found = std::ranges::find(modals_, window);
  if (found != modals_.end()) modals_.erase(found);
}

HeadlessWindow* WindowStack::BlockerOf(const HeadlessWindow& window) const {
  const auto shown = std::find_if(modals_.rbegin(), modals_.rend(),
                                  [](const HeadlessWindow* modal) { return modal->Visible(); });
  if (shown == modals_.rend()) return nullptr;
  for (const HeadlessWindow* owner = &window; owner != nullptr; owner = owner->Owner())
    if (owner == *shown) return nullptr;
  return *shown;
}

void WindowStack::UpdateFocus() {
  HeadlessWindow* window = KeyboardWindow();
  HeadlessControl* wanted = window == nullptr ? nullptr : window->WantedFocus();
  if (wanted == focus_) return;
  HeadlessControl* before = std::exchange(focus_, wanted);
  if (before != nullptr) before->RaiseLostFocus();
  if (wanted != nullptr && focus_ == wanted && IsFocusAlive(wanted)) wanted->RaiseGotFocus();
}

HeadlessWindow* WindowStack::KeyboardWindow() const {
  const Front front = CurrentFront();
  if (front.window == nullptr || front.document == nullptr) return front.window;
  const bool inside = front.document->FrameAround() == front.window;
  return inside && !front.window->KeepsOwnFocus() ? front.document : front.window;
}

HeadlessWindow* WindowStack::ActiveDocument(const HeadlessWindow& frame) const {
  HeadlessWindow* document = CurrentFront().document;
  return document != nullptr && document->FrameAround() == &frame ? document : nullptr;
}

WindowStack::Front WindowStack::CurrentFront() const {
  Front front;
  for (HeadlessWindow* window : order_)
    (window->FrameAround() == nullptr ? front.window : front.document) = window;
  return front;
}

void WindowStack::Change(const std::function<void()>& change) {
  const Front before = CurrentFront();
  change();
  const Front after = CurrentFront();
  if (after.window != before.window) RaiseActivated(after.window);
  if (after.document != before.document) RaiseActivated(after.document);
  UpdateFocus();
}

void WindowStack::RaiseActivated(HeadlessWindow* window) {
  if (window != nullptr && Has(window) && window->Visible()) window->RaiseActivated();
}

void WindowStack::MoveToFront(HeadlessWindow& window) {
  std::erase(order_, &window);
  const HeadlessWindow* blocker = BlockerOf(window);
  order_.insert(blocker == nullptr ? order_.end() : std::ranges::find(order_, blocker), &window);
}

bool WindowStack::Has(const HeadlessWindow* window) const {
  return std::ranges::find(windows_, window) != windows_.end();
}

bool WindowStack::IsFocusAlive(const HeadlessControl* control) const {
  return std::ranges::any_of(windows_,
                             [&](const HeadlessWindow* window) { return window->Owns(control); });
}

}  // namespace tessel::test
