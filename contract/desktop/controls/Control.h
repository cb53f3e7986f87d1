#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "contract/base/Color.h"
#include "contract/base/Event.h"
#include "contract/base/Geometry.h"
#include "contract/base/Keys.h"

namespace tessel {

/// What the mouse pointer looks like over a control. Default is the control's own, such as the bar
/// over a text.
enum class MousePointer { Default, SizeWestEast, Wait };

/// What every control of a window has. UI thread only.
///
/// Public setters are fixed here and in the classes below: they compare, make the raw change
/// through the back end's protected operations and raise the event, so a change made by code raises
/// the same event as one made by the user, once. A back end makes the raw change silently and
/// reports what the user does through Raise. Setting a property to the value it has raises nothing,
/// except where a class says so. A control lives as long as its window, also while that is hidden
/// or unloaded; its container and its place come from the form. Texts are UTF-8.
class Control {
 public:
  /// `failures` is the window: it outlives the control and gets what handlers throw.
  Control(std::string name, FailureSink& failures) : name_(std::move(name)), failures_(&failures) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// The control's given name, as the form has it.
  [[nodiscard]] const std::string& Name() const { return name_; }

  /// Whether the control is meant to show (its window may still be hidden).
  [[nodiscard]] virtual bool Visible() const = 0;
  /// Showing one that lies over others brings it in front of them.
  virtual void SetVisible(bool visible) = 0;
  /// The control's own: its window or container may still be disabled. The user cannot use a
  /// disabled control; code can.
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  [[nodiscard]] virtual std::string ToolTip() const = 0;
  virtual void SetToolTip(std::string_view text) = 0;  ///< Plain text, never markup.
  /// As given to SetBounds, else as the form places it, inside its container.
  [[nodiscard]] virtual Rect Bounds() const = 0;
  /// Of a control that its form lays out only the width counts. Raises the window's or container's
  /// Resize only when the control is a container.
  virtual void SetBounds(const Rect& bounds) = 0;
  // As they were set, else the system colours of its kind. A text that could not be read on its
  // ground is shown in another colour; ForeColor still tells the one that was set.
  [[nodiscard]] virtual Color BackColor() const = 0;
  virtual void SetBackColor(Color color) = 0;
  [[nodiscard]] virtual Color ForeColor() const = 0;
  virtual void SetForeColor(Color color) = 0;
  virtual void SetMousePointer(MousePointer pointer) = 0;
  /// Whether the Tab key stops here; the form says so.
  [[nodiscard]] virtual bool TabStop() const = 0;

  /// Gives the control the keyboard focus; nothing happens while it is hidden or disabled.
  virtual void SetFocus() = 0;
  /// False while another program is the active one.
  [[nodiscard]] virtual bool HasFocus() const = 0;

  /// By the user or by code. The control that loses the focus hears of it before the one that gets
  /// it does.
  Event<> GotFocus;
  Event<> LostFocus;
  Event<KeyEvent&> KeyDown;  ///< After the window's key preview, before the control acts.
  Event<KeyEvent&> KeyUp;    ///< In the same order. Only the control with the focus hears of keys.
  // The mouse only tells: a handler cannot keep the control from acting on it. MouseMove comes
  // while a button is held, and without one only where the form asks for it.
  Event<const MouseEvent&> MouseDown;
  Event<const MouseEvent&> MouseMove;
  Event<const MouseEvent&> MouseUp;
  Event<> DblClick;  ///< Of the left button, and in a list on an entry; in place of a MouseDown.

 protected:
  /// Calls the event's handler; what it throws goes to the window.
  template <class... Args, class... Given>
  void Raise(const Event<Args...>& event, Given&&... args) const {
    event.Raise(failures_, std::forward<Given>(args)...);
  }
  /// Hands a failure of what the user did to the window, as that of a handler.
  void Fail(std::exception_ptr failure) const { failures_->HandlerFailed(std::move(failure)); }

 private:
  std::string name_;
  FailureSink* failures_;
};

}  // namespace tessel
