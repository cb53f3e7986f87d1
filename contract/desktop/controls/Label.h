#pragma once

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// A text that cannot be edited. Plain text, never markup; it may have several lines. Where the
/// form makes it the label of another control, "&" marks the letter that leads there; elsewhere "&"
/// is shown as it is. It never takes the focus, but hears of the mouse as every control
/// does.
class Label : public Control {
 public:
  using Control::Control;
  /// As it was set, not as it may be cut to fit. Setting it raises nothing. A screen reader is told
  /// the new text.
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void SetCaption(std::string_view caption) = 0;
};

/// A container with a background of its own: the sidebar and its frames. Resize follows every
/// change of its size, by code or by the layout of the form, and may come with its first showing.
/// It never takes the focus; hiding it hides what it holds, and disabling it disables that, while
/// the own Visible and Enabled of those controls stay.
class PictureBox : public Control {
 public:
  using Control::Control;
  /// Bounds is the new place already. Moving without another size raises nothing.
  Event<> Resize;
};

}  // namespace tessel
