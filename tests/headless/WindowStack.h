#pragma once

#include <functional>
#include <vector>

#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

class HeadlessWindow;

/// The windows of the twin: which are there, which one is in front of which, and where the keyboard
/// focus is.
class WindowStack {
 public:
  void Add(HeadlessWindow& window) { windows_.push_back(&window); }
  void Remove(HeadlessWindow& window);
  /// All windows, in the order of making.
  [[nodiscard]] const std::vector<HeadlessWindow*>& Windows() const { return windows_; }

  /// A window was shown or activated. A document comes to the front among the documents, and its
  /// frame too when `withFrame`.
  void BringToFront(HeadlessWindow& window, bool withFrame);
  /// A window was hidden.
  void TakeAway(HeadlessWindow& window);
  [[nodiscard]] bool IsActive(const HeadlessWindow& window) const;

  void PushModal(HeadlessWindow& window) { modals_.push_back(&window); }
  void PopModal(const HeadlessWindow* window);
  /// The modal window in front that keeps the user from `window`; null when nothing does.
  [[nodiscard]] HeadlessWindow* BlockerOf(const HeadlessWindow& window) const;

  [[nodiscard]] HeadlessControl* Focus() const { return focus_; }
  /// Moves the focus to where it belongs now and raises LostFocus and GotFocus.
  void UpdateFocus();
  /// The window that the keyboard works on; null when none is shown.
  [[nodiscard]] HeadlessWindow* KeyboardWindow() const;
  /// The document in front inside a frame; null when none is shown.
  [[nodiscard]] HeadlessWindow* ActiveDocument(const HeadlessWindow& frame) const;

 private:
  struct Front {
    HeadlessWindow* window = nullptr;
    HeadlessWindow* document = nullptr;
  };

  [[nodiscard]] Front CurrentFront() const;
  /// Changes the order and tells the windows that became active.
  void Change(const std::function<void()>& change);
  void RaiseActivated(HeadlessWindow* window);
  void MoveToFront(HeadlessWindow& window);
  [[nodiscard]] bool Has(const HeadlessWindow* window) const;
  [[nodiscard]] bool IsFocusAlive(const HeadlessControl* control) const;

  std::vector<HeadlessWindow*> windows_;
  std::vector<HeadlessWindow*> order_;  ///< Those shown; the last one is in front.
  std::vector<HeadlessWindow*> modals_;
  HeadlessControl* focus_ = nullptr;
};

}  // namespace tessel::test
