#pragma once

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// A bar from 0 to Max, in units of whoever uses it, such as records or bytes. The form says what
/// it begins with. It shows values and takes none from the user, and raises nothing of its own.
/// Fractions are kept: a part of a unit moves the bar where there is room to show it.
class ProgressBar : public Control {
 public:
  using Control::Control;
  /// As it was set, whole or not.
  [[nodiscard]] virtual double Max() const = 0;
  virtual void SetMax(double max) = 0;  ///< More than 0. Takes the value along into the new range.
  [[nodiscard]] virtual double Value() const = 0;
  virtual void SetValue(double value) = 0;  ///< Taken into 0..Max.
};

/// Ticks on the UI thread while it is enabled, again and again. The window that gave it owns it;
/// unloading the window ends it. Ticks that are late come once, not one for each that was missed;
/// so whoever needs the time that has passed asks the clock.
class Timer {
 public:
  virtual ~Timer() = default;
  /// Whether it ticks. At first false. A handler of Tick may switch its own timer off.
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  /// The time to the first tick and between two; more than 0, to be set before the timer is
  /// enabled. Setting it while the timer runs begins a new interval.
  virtual void SetInterval(int milliseconds) = 0;

  /// What its handler throws goes to the window. Modal windows and pop-up menus do not hold it up;
  /// a handler that takes long does.
  Event<> Tick;
};

}  // namespace tessel
