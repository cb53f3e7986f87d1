#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

namespace {

bool KindTakesFocus(ControlKind kind) {
  return kind != ControlKind::Label && kind != ControlKind::PictureBox &&
         kind != ControlKind::ProgressBar;
}

/// The toolkit's own policy of a widget that names none.
std::string_view OrdinaryFocusPolicy(const FormWidget& widget) {
  if (!KindTakesFocus(widget.kind)) return "Qt::NoFocus";
  return widget.className == "QToolButton" ? "Qt::TabFocus" : "Qt::StrongFocus";
}

std::string FocusPolicy(const FormWidget& widget) {
  return widget.properties.Text("focusPolicy", OrdinaryFocusPolicy(widget));
}

Color OrdinaryGround(ControlKind kind) {
  switch (kind) {
    case ControlKind::Label:
    case ControlKind::PictureBox:
    case ControlKind::Button:
    case ControlKind::CheckBox:
    case ControlKind::OptionButton: return color::buttonFace;
    default: return color::windowBackground;
  }
}

}  // namespace

HeadlessControl::HeadlessControl(const FormWidget& widget, FocusKeeper& keeper,
                                 HeadlessControl* container)
    : visible_(widget.properties.Flag("visible", true)),
      enabled_(widget.properties.Flag("enabled", true)),
      toolTip_(widget.properties.Text("toolTip")),
      bounds_(widget.bounds),
      backColor_(OrdinaryGround(widget.kind)),
      keeper_(&keeper),
      container_(container),
      takesFocus_(KindTakesFocus(widget.kind)),
      clickFocus_(FocusPolicy(widget) != "Qt::NoFocus" && FocusPolicy(widget) != "Qt::TabFocus"),
      tabStop_(FocusPolicy(widget) != "Qt::NoFocus" && FocusPolicy(widget) != "Qt::ClickFocus"),
      defaultButton_(widget.properties.Flag("default", false)),
      cancelButton_(widget.properties.Flag("cancel", false)),
      buddy_(widget.properties.Text("buddy")),
      accessibleName_(widget.properties.Text("accessibleName")) {}

bool HeadlessControl::ShowsInside() const {
  return visible_ && (container_ == nullptr || container_->ShowsInside());
}

bool HeadlessControl::EnabledInside() const {
  return enabled_ && (container_ == nullptr || container_->EnabledInside());
}

bool HeadlessControl::TakeKey(int /*keyCode*/, int /*shift*/) { return false; }

}  // namespace tessel::test
