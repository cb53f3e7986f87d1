#pragma once

#include <string>
#include <string_view>

#include "contract/desktop/controls/Control.h"
#include "tests/headless/FormFile.h"

namespace tessel::test {

class HeadlessControl;

/// Where the controls of a window report what concerns the keyboard focus.
class FocusKeeper {
 public:
  virtual void AskForFocus(HeadlessControl& control) = 0;
  [[nodiscard]] virtual bool HoldsFocus(const HeadlessControl& control) const = 0;
  /// A control was shown, hidden, enabled or disabled.
  virtual void UsabilityChanged() = 0;

 protected:
  ~FocusKeeper() = default;
};

/// What the twin keeps of every control whatever its kind, and what a user can do to any of them.
class HeadlessControl {
 public:
  HeadlessControl(const FormWidget& widget, FocusKeeper& keeper, HeadlessControl* container);
  virtual ~HeadlessControl() = default;

  [[nodiscard]] virtual Control& AsControl() = 0;
  /// Whether this and all containers around it are meant to show.
  [[nodiscard]] bool ShowsInside() const;
  /// Whether this and all containers around it are enabled.
  [[nodiscard]] bool EnabledInside() const;
  [[nodiscard]] bool Usable() const { return ShowsInside() && EnabledInside(); }
  [[nodiscard]] bool TakesFocus() const { return takesFocus_; }
  [[nodiscard]] bool TakesFocusByClick() const { return clickFocus_; }
  [[nodiscard]] bool StopsTab() const { return tabStop_; }
  [[nodiscard]] MousePointer Pointer() const { return pointer_; }
  [[nodiscard]] const std::string& AccessibleName() const { return accessibleName_; }
  /// The button that the Enter key presses.
  [[nodiscard]] bool IsDefaultButton() const { return defaultButton_; }
  /// The button that the Esc key presses.
  [[nodiscard]] bool IsCancelButton() const { return cancelButton_; }
  /// The caption in which a mnemonic may be marked with "&"; empty when the control has none.
  [[nodiscard]] virtual std::string MarkedText() const { return {}; }
  /// Name of the control that a label's mnemonic leads to.
  [[nodiscard]] const std::string& Buddy() const { return buddy_; }

  // --- what a user does; the window has made sure that it is possible ----------------------------
  virtual void RaiseGotFocus() = 0;
  virtual void RaiseLostFocus() = 0;
  virtual void RaiseKeyDown(KeyEvent& event) = 0;
  virtual void RaiseKeyUp(KeyEvent& event) = 0;
  virtual void RaiseMouseDown(const MouseEvent& event) = 0;
  virtual void RaiseMouseMove(const MouseEvent& event) = 0;
  virtual void RaiseMouseUp(const MouseEvent& event) = 0;
  virtual void RaiseDblClick() = 0;
  /// What a click of the left button does besides moving the focus.
  virtual void Press() {}
  /// What a key does that no handler took; false when the key means nothing to the control.
  virtual bool TakeKey(int keyCode, int shift);

 protected:
  bool visible_;
  bool enabled_;
  std::string toolTip_;
  Rect bounds_;
  Color backColor_;
  Color foreColor_ = color::windowText;
  MousePointer pointer_ = MousePointer::Default;
  FocusKeeper* keeper_;

 private:
  HeadlessControl* container_;
  bool takesFocus_;
  bool clickFocus_;
  bool tabStop_;
  bool defaultButton_;
  bool cancelButton_;
  std::string buddy_;
  std::string accessibleName_;
};

/// The in-memory part that all kinds of control share.
template <class Kind>
class Headless : public Kind, public HeadlessControl {
 public:
  Headless(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
           HeadlessControl* container)
      : Kind(widget.name, failures), HeadlessControl(widget, keeper, container) {}

  [[nodiscard]] bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override {
    visible_ = visible;
    keeper_->UsabilityChanged();
  }
  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override {
    enabled_ = enabled;
    keeper_->UsabilityChanged();
  }
  [[nodiscard]] std::string ToolTip() const override { return toolTip_; }
  void SetToolTip(std::string_view text) override { toolTip_ = text; }
  [[nodiscard]] Rect Bounds() const override { return bounds_; }
  void SetBounds(const Rect& bounds) override { bounds_ = bounds; }
  [[nodiscard]] Color BackColor() const override { return backColor_; }
  void SetBackColor(Color color) override { backColor_ = color; }
  [[nodiscard]] Color ForeColor() const override { return foreColor_; }
  void SetForeColor(Color color) override { foreColor_ = color; }
  void SetMousePointer(MousePointer pointer) override { pointer_ = pointer; }
  [[nodiscard]] bool TabStop() const override { return StopsTab(); }
  void SetFocus() override { keeper_->AskForFocus(*this); }
  [[nodiscard]] bool HasFocus() const override { return keeper_->HoldsFocus(*this); }

  [[nodiscard]] Control& AsControl() override { return *this; }
  void RaiseGotFocus() override { this->Raise(this->GotFocus); }
  void RaiseLostFocus() override { this->Raise(this->LostFocus); }
  void RaiseKeyDown(KeyEvent& event) override { this->Raise(this->KeyDown, event); }
  void RaiseKeyUp(KeyEvent& event) override { this->Raise(this->KeyUp, event); }
  void RaiseMouseDown(const MouseEvent& event) override { this->Raise(this->MouseDown, event); }
  void RaiseMouseMove(const MouseEvent& event) override { this->Raise(this->MouseMove, event); }
  void RaiseMouseUp(const MouseEvent& event) override { this->Raise(this->MouseUp, event); }
  void RaiseDblClick() override { this->Raise(this->DblClick); }
};

}  // namespace tessel::test
