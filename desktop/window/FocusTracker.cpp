#include "desktop/window/FocusTracker.h"

#include <QApplication>

namespace tessel {

FocusTracker::FocusTracker() {
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget*, const QWidget* now) { FocusMoved(now); });
}

void FocusTracker::Add(QWidget& widget, Control& control, FailureSink& failures) {
  entries_.insert(&widget, {&control, &failures});
}

void FocusTracker::Forget(const FailureSink& failures) {
  entries_.removeIf([&](auto entry) { return entry.value().failures == &failures; });
  if (!entries_.contains(current_)) current_ = nullptr;
}

Control* FocusTracker::ControlOf(const QWidget* widget) const {
  return entries_.value(widget).control;
}

/// A handler may move the focus again or close a window, so everything is looked up afresh.
void FocusTracker::FocusMoved(const QWidget* now) {
  if (now != nullptr && !entries_.contains(now)) now = now->focusProxy();
  if (now == current_ || !entries_.contains(now)) return;
  const Entry lost = entries_.value(current_);
  current_ = now;
  if (lost.control != nullptr) lost.control->LostFocus.Raise(lost.failures);
  if (current_ != now || !entries_.contains(now)) return;
  const Entry got = entries_.value(now);
  got.control->GotFocus.Raise(got.failures);
}

}  // namespace tessel
