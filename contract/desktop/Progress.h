#pragma once

#include "contract/desktop/Control.h"

namespace tessel {

/// A bar from 0 to Max.
class ProgressBar : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual double Max() const = 0;
  virtual void SetMax(double max) = 0;  ///< More than 0.
  [[nodiscard]] virtual double Value() const = 0;
  virtual void SetValue(double value) = 0;  ///< Taken into 0..Max.
};

/// Ticks on the UI thread while it is enabled.
class Timer {
 public:
  virtual ~Timer() = default;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void SetInterval(int milliseconds) = 0;

  Event<> Tick;
};

}  // namespace tessel
