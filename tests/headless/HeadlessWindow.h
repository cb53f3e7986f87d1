#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/Window.h"
#include "tests/headless/ControlSet.h"
#include "tests/headless/HeadlessServices.h"

namespace tessel::test {

class HeadlessDesktop;

/// A window in memory, and what a user can do to it.
///
/// A user's action on something that is hidden, missing, of another kind, or behind a modal window
/// fails the test at once; on something disabled it does nothing.
class HeadlessWindow final : public Window, private FocusKeeper {
 public:
  /// `desktop` outlives it.
  HeadlessWindow(HeadlessDesktop& desktop, FormFile form, HeadlessWindow* frame);
  ~HeadlessWindow() override;

  // --- the contract ------------------------------------------------------------------------------
  [[nodiscard]] MenuItem& Menu(std::string_view name) override;
  [[nodiscard]] Timer& TimerNamed(std::string_view name) override;
  [[nodiscard]] FileDialog& FileDialogNamed(std::string_view name) override;
  [[nodiscard]] ColorDialog& ColorDialogNamed(std::string_view name) override;
  [[nodiscard]] const std::string& FormName() const override { return form_.name; }
  [[nodiscard]] std::string Caption() const override { return caption_; }
  void SetCaption(std::string_view caption) override { caption_ = caption; }
  [[nodiscard]] int HelpContext() const override { return helpContext_; }
  void SetHelpContext(int context) override { helpContext_ = context; }
  void Show() override { ShowOver(nullptr); }
  void ShowAbove(Window& owner) override;
  void ShowAboveSoon(Window& owner) override { ShowAbove(owner); }
  void ShowModal(Window* owner) override;
  void Hide() override;
  [[nodiscard]] bool Visible() const override { return visible_; }
  [[nodiscard]] bool Loaded() const override { return loaded_; }
  void Activate() override;
  [[nodiscard]] bool Active() const override;
  bool Unload(UnloadReason reason = UnloadReason::Code) override;
  [[nodiscard]] Rect Bounds() const override { return bounds_; }
  void SetBounds(const Rect& bounds) override;
  [[nodiscard]] int ScaleWidth() const override { return bounds_.width; }
  [[nodiscard]] int ScaleHeight() const override { return bounds_.height; }
  [[nodiscard]] bool Minimized() const override { return minimized_; }
  [[nodiscard]] bool Maximized() const override { return maximized_; }
  void SetMaximized(bool maximized) override;
  void SetMark(std::optional<Color> mark) override { mark_ = mark; }
  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override { enabled_ = enabled; }
  void PopupMenu(MenuItem& menu, Control* at, int x, int y) override;
  void Arrange(Tiling tiling) override;
  [[nodiscard]] bool Tabbed() const override { return tabbed_; }
  void SetTabbed(bool tabbed) override { tabbed_ = tabbed; }
  void SetGroundText(std::string_view text) override { groundText_ = text; }
  void HandlerFailed(std::exception_ptr failure) noexcept override;

  // --- what a user sees --------------------------------------------------------------------------
  /// Whether the control shows in fact: it, its containers, its window and the frame around it.
  [[nodiscard]] bool VisibleInFact(std::string_view control) const;
  [[nodiscard]] bool VisibleInFact() const;
  /// Name of the control of this window that has the keyboard focus; empty when none has.
  [[nodiscard]] std::string FocusName() const;
  /// How the documents of this frame are tiled; nothing when they are not, or not any more.
  [[nodiscard]] std::optional<Tiling> Arranged() const {
    return StandAsArranged() ? arranged_ : std::nullopt;
  }
  [[nodiscard]] std::optional<Color> Mark() const { return mark_; }
  [[nodiscard]] const std::string& GroundText() const { return groundText_; }
  [[nodiscard]] MousePointer PointerOver(std::string_view control) const;

  // --- what a user does (UserActions.cpp) --------------------------------------------------------
  /// Clicks with the left button; `shift` keys are held meanwhile.
  void Click(std::string_view control, int shift = shiftState::none);
  /// In a list view this is beside its rows.
  void DoubleClick(std::string_view control);
  /// Moves the focus there and types at the caret, character by character.
  void Type(std::string_view control, std::string_view text);
  /// Presses and releases a key where the keyboard focus is: shortcuts and mnemonics first, then
  /// the window's key preview, the control's KeyDown, and what the key does by itself.
  void PressKey(int keyCode, int shift = shiftState::none);
  void SelectItem(std::string_view listOrCombo, int index);
  void SelectRow(std::string_view listView, int row);
  void ClickCell(std::string_view listView, int row, int column, const MouseEvent& event);
  void DoubleClickRow(std::string_view listView, int row, MouseButton button = MouseButton::Left);
  /// Scrolls until the row is the first one in sight.
  void ScrollTo(std::string_view listView, int row);
  void ClickColumn(std::string_view listView, int column);
  /// Ends the open label editor with a text.
  void EditLabel(std::string_view listView, const std::string& text);
  void CancelLabelEdit(std::string_view listView);
  void ClickNode(std::string_view tree, const std::string& key);
  void CheckNode(std::string_view tree, const std::string& key);
  void ExpandNode(std::string_view tree, const std::string& key, bool expanded = true);
  void ClickGridCell(std::string_view grid, std::int64_t position, int column);
  void DoubleClickGridCell(std::string_view grid, std::int64_t position, int column);
  void ClickGridButton(std::string_view grid, std::int64_t position, int column);
  void SelectGridRows(std::string_view grid, const std::vector<std::int64_t>& positions);
  void SelectGridColumns(std::string_view grid, int first, int last);
  void GoToNewRow(std::string_view grid);
  void MouseDown(std::string_view control, const MouseEvent& event);
  void MouseMove(std::string_view control, const MouseEvent& event);
  void MouseUp(std::string_view control, MouseButton button, int shift = shiftState::none);
  void MouseUp(std::string_view control, const MouseEvent& event);
  /// Opens the menus down to a command of the menu bar and chooses it.
  void ChooseMenu(std::string_view command);
  void CloseByControlBox();
  void ResizeTo(int width, int height);
  /// As the form's layout does when there is more or less room.
  void ResizeControl(std::string_view control, int width, int height);
  void Minimize(bool minimized);
  void Maximize(bool maximized);

  // --- for the twin itself -----------------------------------------------------------------------
  [[nodiscard]] HeadlessWindow* FrameAround() const { return frame_; }
  void ForgetFrame() { frame_ = nullptr; }
  [[nodiscard]] bool IsFrame() const { return form_.properties.Text("kind") == "frame"; }
  [[nodiscard]] HeadlessWindow* Owner() const { return owner_ != nullptr ? owner_ : frame_; }
  void ForgetOwner(const HeadlessWindow* owner);
  [[nodiscard]] bool Owns(const HeadlessControl* control) const;
  /// Of a frame: whether the focus is in one of its own controls and not in a document.
  [[nodiscard]] bool KeepsOwnFocus() const { return keepsOwnFocus_; }
  /// The control that has the focus when the keyboard works on this window.
  [[nodiscard]] HeadlessControl* WantedFocus();
  void RaiseActivated() { Activated.Raise(this); }
  [[nodiscard]] const ControlSet& Controls() const { return controls_; }
  [[nodiscard]] const std::map<std::string, std::unique_ptr<HeadlessTimer>, std::less<>>&
  Timers() const {
    return timers_;
  }
  /// Expires with the window.
  [[nodiscard]] std::weak_ptr<const void> Token() const { return token_; }

 protected:
  [[nodiscard]] Control* FindControl(std::string_view name) override;

 private:
  void AskForFocus(HeadlessControl& control) override;
  [[nodiscard]] bool HoldsFocus(const HeadlessControl& control) const override;
  void UsabilityChanged() override;

  void ShowOver(Window* owner);
  void RaiseFirstResize();
  [[nodiscard]] bool AskToUnload(UnloadReason reason);
  [[nodiscard]] std::vector<HeadlessWindow*> Documents() const;
  /// Whether it is a document that is not tiled.
  [[nodiscard]] bool Floats() const { return form_.properties.Flag("floats", false); }
  [[nodiscard]] bool StandAsArranged() const;
  void KeepArranged(bool arranged);
  void Close();

  void Act(const std::function<void()>& action);
  [[nodiscard]] bool ReachWindow();
  [[nodiscard]] HeadlessControl* Reach(std::string_view name);
  [[nodiscard]] HeadlessControl& Existing(std::string_view name) const;
  template <class Kind>
  void On(std::string_view name, const std::function<void(Kind&)>& action);
  void ClickOn(HeadlessControl& control, int shift);
  void HandleKey(int keyCode, int shift);
  [[nodiscard]] HeadlessWindow& MenuHolder();
  [[nodiscard]] bool TakeShortcut(int keyCode, int shift);
  [[nodiscard]] bool TakeMnemonic(int keyCode, int shift);
  void TakeDialogKey(int keyCode, int shift);
  void PressCancel();
  void ReleaseKey(int keyCode, int shift);
  void MoveFocus(bool forwards);

  HeadlessDesktop& desktop_;
  FormFile form_;
  HeadlessWindow* frame_;
  HeadlessWindow* owner_ = nullptr;
  ControlSet controls_;
  std::map<std::string, std::unique_ptr<HeadlessTimer>, std::less<>> timers_;
  std::map<std::string, std::unique_ptr<FileDialog>, std::less<>> fileDialogs_;
  std::map<std::string, std::unique_ptr<ColorDialog>, std::less<>> colorDialogs_;
  std::string caption_;
  int helpContext_ = 0;
  Rect bounds_;
  bool visible_ = false;
  bool loaded_ = true;
  bool closing_ = false;
  bool enabled_ = true;
  bool minimized_ = false;
  bool maximized_ = false;
  bool shownBefore_ = false;
  bool keepsOwnFocus_ = false;
  bool tabbed_ = false;
  std::optional<Color> mark_;
  std::string groundText_;
  HeadlessControl* lastFocus_ = nullptr;
  std::optional<Tiling> arranged_;
  std::map<const HeadlessWindow*, Rect> places_;  ///< Of the documents, as arranged.
  std::shared_ptr<const int> token_ = std::make_shared<const int>();
};

}  // namespace tessel::test
