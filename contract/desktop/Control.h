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

enum class MousePointer { Default, SizeWestEast, Wait };

/// What every control of a window has. UI thread only.
///
/// Public setters are fixed here and in the classes below: they compare, make the raw change
/// through the back end's protected operations and raise the event, so a change made by code raises
/// the same event as one made by the user, once. A back end makes the raw change silently and
/// reports what the user does through Raise. Setting a property to the value it has raises nothing,
/// except where a class says so. A control lives as long as its window.
class Control {
 public:
  Control(std::string name, FailureSink& failures) : name_(std::move(name)), failures_(&failures) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// The control's given name, as the form has it.
  [[nodiscard]] const std::string& Name() const { return name_; }

  /// Whether the control is meant to show (its window may still be hidden).
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  [[nodiscard]] virtual std::string ToolTip() const = 0;
  virtual void SetToolTip(std::string_view text) = 0;  ///< Plain text, never markup.
  [[nodiscard]] virtual Rect Bounds() const = 0;
  /// Raises the window's or container's Resize only when the control is a container.
  virtual void SetBounds(const Rect& bounds) = 0;
  [[nodiscard]] virtual Color BackColor() const = 0;
  virtual void SetBackColor(Color color) = 0;
  [[nodiscard]] virtual Color ForeColor() const = 0;
  virtual void SetForeColor(Color color) = 0;
  virtual void SetMousePointer(MousePointer pointer) = 0;
  /// Whether the Tab key stops here.
  [[nodiscard]] virtual bool TabStop() const = 0;

  /// Gives the control the keyboard focus; nothing happens while it is hidden or disabled.
  virtual void SetFocus() = 0;
  [[nodiscard]] virtual bool HasFocus() const = 0;

  Event<> GotFocus;
  Event<> LostFocus;
  Event<KeyEvent&> KeyDown;  ///< After the window's key preview, before the control acts.
  Event<KeyEvent&> KeyUp;
  Event<const MouseEvent&> MouseDown;
  Event<const MouseEvent&> MouseMove;
  Event<const MouseEvent&> MouseUp;
  Event<> DblClick;

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
