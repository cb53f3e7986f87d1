#include "logic/results/StatusLine.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr int oneLineHeight = 330;
constexpr int lineHeight = 240;
constexpr int borderHeight = 90;
constexpr int roomBelow = 240;

}  // namespace

void StatusLine::SetStatus(std::string_view text, Color color, Options options) {
  box_.SetBackColor(options.append ? box_.BackColor() | color : color);
  box_.SetForeColor(TextOn(box_.BackColor()));
  const std::string before = options.append ? box_.Text() + " " : "[" + clock_.LongTime() + "]  ";
  box_.SetText(before + std::string(text));
  Rect bounds = box_.Bounds();
  bounds.height = options.grow ? GrownHeight() : oneLineHeight;
  box_.SetBounds(bounds);
  errorsButton_.SetVisible(options.showErrorsButton);
}

int StatusLine::GrownHeight() const {
  const int wanted = box_.LineCount() * lineHeight + borderHeight;
  const int room = std::max(windowHeight_ - roomBelow - box_.Bounds().top, oneLineHeight);
  return std::min(wanted, room);
}

}  // namespace tessel
