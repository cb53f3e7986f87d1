#include "logic/text/TextZoom.h"

#include <utility>

namespace tessel {

TextZoom::TextZoom(const Global& global, EditorBox& box, std::string name)
    : box_(box), settings_(global), name_(std::move(name)) {
  box_.SetZoom(settings_.Number(name_, 0));
  box_.Zoomed = [this] { Remember(); };
}

/// "+" needs Shift on many keyboards.
bool TextZoom::TakeKey(const KeyEvent& event) {
  if ((event.shift & ~shiftState::shift) != shiftState::ctrl) return false;
  const bool shifted = (event.shift & shiftState::shift) != 0;
  if (event.keyCode == key::equals) Larger();
  else if (event.keyCode == key::hyphen && !shifted) Smaller();
  else if (event.keyCode == '0' && !shifted) Reset();
  else return false;
  return true;
}

void TextZoom::ZoomTo(int steps) {
  const int before = box_.Zoom();
  box_.SetZoom(steps);
  if (box_.Zoom() != before) Remember();
}

}  // namespace tessel
