#include "tests/headless/HeadlessBasics.h"

#include <algorithm>

#include "tests/support/TestStop.h"

namespace tessel::test {

void HeadlessPictureBox::SetBounds(const Rect& bounds) {
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  if (resized) Raise(Resize);
}

bool HeadlessButton::TakeKey(int keyCode, int shift) {
  if (shift != shiftState::none || (keyCode != key::space && keyCode != key::enter)) return false;
  Press();
  return true;
}

bool HeadlessCheckBox::TakeKey(int keyCode, int shift) {
  if (shift != shiftState::none || keyCode != key::space) return false;
  Press();
  return true;
}

HeadlessOptionButton::HeadlessOptionButton(const FormWidget& widget, FailureSink& failures,
                                           FocusKeeper& keeper, HeadlessControl* container,
                                           OptionGroup& group)
    : Headless(widget, failures, keeper, container),
      caption_(widget.properties.Text("text")),
      chosen_(widget.properties.Flag("checked", false)),
      group_(&group) {
  group.push_back(this);
}

bool HeadlessOptionButton::TakeKey(int keyCode, int shift) {
  if (shift != shiftState::none || keyCode != key::space) return false;
  Press();
  return true;
}

void HeadlessOptionButton::WriteValue(bool chosen) {
  if (chosen)
    for (HeadlessOptionButton* other : *group_) other->chosen_ = false;
  chosen_ = chosen;
}

void HeadlessProgressBar::SetMax(double max) {
  if (!(max > 0)) StopTest("The maximum of " + Name() + " must be more than 0.");
  max_ = max;
  value_ = std::min(value_, max_);
}

void HeadlessProgressBar::SetValue(double value) { value_ = std::clamp(value, 0.0, max_); }

}  // namespace tessel::test
