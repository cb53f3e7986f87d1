#pragma once

#include "contract/desktop/Control.h"

namespace tessel {

/// A push button. Its caption carries a mnemonic marked with "&".
class Button : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void SetCaption(std::string_view caption) = 0;

  /// Presses the button: raises Click. False, and nothing is raised, when it is disabled or hidden.
  bool Press() {
    if (!Enabled() || !Visible()) return false;
    Raise(Click);
    return true;
  }

  Event<> Click;
};

/// A check box. Click follows every change of its value, by the user or by code.
class CheckBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string Caption() const = 0;
  [[nodiscard]] bool Value() const { return ReadValue(); }
  void SetValue(bool checked) {
    if (checked == ReadValue()) return;
    WriteValue(checked);
    Raise(Click);
  }

  Event<> Click;

 protected:
  [[nodiscard]] virtual bool ReadValue() const = 0;
  virtual void WriteValue(bool checked) = 0;
};

/// One of several choices of its container. Click follows when it becomes chosen, by the user or by
/// code; the one that was chosen before is cleared without an event.
class OptionButton : public Control {
 public:
  using Control::Control;
  [[nodiscard]] bool Value() const { return ReadValue(); }
  void SetValue(bool chosen) {
    if (chosen == ReadValue()) return;
    WriteValue(chosen);
    if (chosen) Raise(Click);
  }

  Event<> Click;

 protected:
  [[nodiscard]] virtual bool ReadValue() const = 0;
  virtual void WriteValue(bool chosen) = 0;
};

}  // namespace tessel
