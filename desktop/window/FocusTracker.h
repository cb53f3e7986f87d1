#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// Raises LostFocus and GotFocus when the keyboard focus goes from one control of the program to
/// another. A message box, a menu or another program in between is no change.
class FocusTracker final : public QObject {
 public:
  FocusTracker();

  /// Both live until Forget.
  void Add(QWidget& widget, Control& control, FailureSink& failures);
  /// Forgets all controls whose failures go to that place.
  void Forget(const FailureSink& failures);
  [[nodiscard]] Control* ControlOf(const QWidget* widget) const;

 private:
  struct Entry {
    Control* control = nullptr;
    FailureSink* failures = nullptr;
  };

  void FocusMoved(const QWidget* now);

  QHash<const QWidget*, Entry> entries_;
  const QWidget* current_ = nullptr;  ///< A widget of entries_, or null.
};

}  // namespace tessel
