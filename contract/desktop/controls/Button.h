#pragma once

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// A push button. Its caption carries a mnemonic marked with "&"; "&&" is one "&". The form may say
/// that Enter presses it wherever the focus is (unless a control or handler takes that key), or
/// Esc.
class Button : public Control {
 public:
  using Control::Control;
  /// As it was set, marks included. Setting it raises nothing, and does not move the focus.
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void SetCaption(std::string_view caption) = 0;

  /// Presses the button: raises Click. False, and nothing is raised, when it is disabled or hidden.
  /// Only its own state counts, not that of its window or container. It returns when the handler
  /// has, which may have destroyed the window; then nothing of the button may be used any more.
  bool Press() {
    if (!Enabled() || !Visible()) return false;
    Raise(Click);
    return true;
  }

  /// The user pressed it by mouse, mnemonic or key, or code did by Press. A press by the mouse
  /// counts when the button of the mouse comes up again over it.
  Event<> Click;
};

/// A check box. Click follows every change of its value, by the user or by code. It has two states.
/// The user cannot change one that is disabled; code can, and Click follows then too. Whoever sets
/// up a window gives the handler after the values, or is told of them.
class CheckBox : public Control {
 public:
  using Control::Control;
  /// As the form has it, with a mnemonic marked as in a button. Code does not change it.
  [[nodiscard]] virtual std::string Caption() const = 0;
  /// Whether it is checked. The form says what it begins with.
  [[nodiscard]] bool Value() const { return ReadValue(); }
  /// Click follows before this returns; nothing happens when it has the value already. A disabled
  /// or hidden box is changed too.
  void SetValue(bool checked) {
    if (checked == ReadValue()) return;
    WriteValue(checked);
    Raise(Click);
  }

  /// Value is the new one already, whoever changed it. A handler that sets it back raises Click
  /// once more from inside this one.
  Event<> Click;

 protected:
  // For a back end. WriteValue raises nothing; what the user does is reported by Raise(Click), when
  // ReadValue tells the new value.
  [[nodiscard]] virtual bool ReadValue() const = 0;
  virtual void WriteValue(bool checked) = 0;
};

/// One of several choices of its container. Click follows when it becomes chosen, by the user or by
/// code; the one that was chosen before is cleared without an event. All option buttons with the
/// same container are one group, and at most one of them is chosen. One that is chosen by code
/// takes no focus.
class OptionButton : public Control {
 public:
  using Control::Control;
  /// Whether it is the chosen one. The form says which one is at first, if any.
  [[nodiscard]] bool Value() const { return ReadValue(); }
  /// True clears the others and raises Click before this returns, unless it is the chosen one.
  /// False clears it without an event, and leaves none of the group chosen.
  void SetValue(bool chosen) {
    if (chosen == ReadValue()) return;
    WriteValue(chosen);
    if (chosen) Raise(Click);
  }

  /// It became the chosen one, by mouse, mnemonic, arrow key or code; the others are cleared
  /// already. A click on the chosen one is none.
  Event<> Click;

 protected:
  // The same for a back end: WriteValue(true) also clears the others of the group, silently, and
  // WriteValue(false) changes this one alone.
  [[nodiscard]] virtual bool ReadValue() const = 0;
  virtual void WriteValue(bool chosen) = 0;
};

}  // namespace tessel
