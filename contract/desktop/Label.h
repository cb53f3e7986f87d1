#pragma once

#include "contract/desktop/Control.h"

namespace tessel {

/// A text that cannot be edited. Plain text, never markup.
class Label : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void SetCaption(std::string_view caption) = 0;
};

/// A container with a background of its own: the sidebar and its frames. Resize follows every
/// change of its size.
class PictureBox : public Control {
 public:
  using Control::Control;
  Event<> Resize;
};

}  // namespace tessel
