#pragma once

#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/desktop/Window.h"
#include "desktop/services/InputBlock.h"
#include "desktop/window/DesktopCore.h"
#include "desktop/window/InputRouter.h"

namespace tessel {

class MarkStripe;

/// What windows of all kinds have in common: the controls and menus of a form, and the way they are
/// unloaded.
///
/// The widgets live until the window object is gone; unloading only puts them away. They are then
/// deleted from the event loop, since the window may be destroyed from inside one of their events.
class QtWindow : public Window, public KeyTaker {
 public:
  /// `outer` is the widget that the user moves and sizes: the form, or the frame around a
  /// document's form.
  QtWindow(std::string formName, std::unique_ptr<QWidget> outer, DesktopCore& core);
  ~QtWindow() override;

  [[nodiscard]] MenuItem& Menu(std::string_view name) override;
  [[nodiscard]] Timer& TimerNamed(std::string_view name) override;
  [[nodiscard]] FileDialog& FileDialogNamed(std::string_view name) override;
  [[nodiscard]] ColorDialog& ColorDialogNamed(std::string_view name) override;
  [[nodiscard]] const std::string& FormName() const override { return formName_; }
  [[nodiscard]] std::string Caption() const override { return caption_; }
  void SetCaption(std::string_view caption) override;
  [[nodiscard]] int HelpContext() const override { return helpContext_; }
  void SetHelpContext(int context) override { helpContext_ = context; }
  void Show() override;
  void ShowAbove(Window& owner) override;
  void ShowAboveSoon(Window& owner) override { ShowAbove(owner); }
  void ShowModal(Window* owner) override;
  void Hide() override { Outer().hide(); }
  [[nodiscard]] bool Visible() const override { return !Outer().isHidden(); }
  [[nodiscard]] bool Loaded() const override { return loaded_; }
  bool Unload(UnloadReason reason) override;
  [[nodiscard]] Rect Bounds() const override;
  void SetBounds(const Rect& bounds) override;
  [[nodiscard]] int ScaleWidth() const override { return core_.scale.Twips(Inner().width()); }
  [[nodiscard]] int ScaleHeight() const override { return core_.scale.Twips(Inner().height()); }
  [[nodiscard]] bool Minimized() const override { return Outer().isMinimized(); }
  [[nodiscard]] bool Maximized() const override { return Outer().isMaximized(); }
  void SetMaximized(bool /*maximized*/) override {}
  void SetMark(std::optional<Color> mark) override;
  [[nodiscard]] bool Enabled() const override { return !block_.IsOn(); }
  void SetEnabled(bool enabled) override { block_.Set(!enabled); }
  void PopupMenu(MenuItem& menu, Control* at, int x, int y) override;
  void Arrange(Tiling /*tiling*/) override {}
  [[nodiscard]] bool Tabbed() const override { return false; }
  void SetTabbed(bool /*tabbed*/) override {}
  void SetGroundText(std::string_view /*text*/) override {}
  void HandlerFailed(std::exception_ptr failure) noexcept override;

  /// The window's form.
  [[nodiscard]] QWidget& Root() const { return *root_; }
  /// The form itself, or the frame around a document.
  [[nodiscard]] QWidget& Outer() const { return *outer_; }

  /// Asks QueryUnload; false when it was refused.
  [[nodiscard]] bool AskToUnload(UnloadReason reason);
  /// Raises Unloaded and puts the window away.
  void Close();
  void RaiseActivated() { Activated.Raise(this); }

 protected:
  [[nodiscard]] Control* FindControl(std::string_view name) override;
  /// The widget whose size ScaleWidth and ScaleHeight tell.
  [[nodiscard]] virtual const QWidget& Inner() const { return *root_; }
  [[nodiscard]] virtual std::vector<QtWindow*> Documents() const { return {}; }
  /// The size in pixels that the outer widget takes when that one is wanted.
  [[nodiscard]] virtual QSize Fitting(const QSize& wanted) const { return wanted; }
  /// Called after the outer widget was hidden for good.
  virtual void PutAway() {}
  /// Shows the outer widget, above `owner` if one is given; called once per Show.
  virtual void ShowOuter(QtWindow* owner) = 0;
  /// The user asks to close the window.
  void CloseAsked();
  /// Called when the toolkit has made the outer widget the active window.
  virtual void OuterActivated() {}
  /// Runs `action` from the event loop, at any depth, unless the window is gone by then.
  void Later(std::function<void()> action);
  /// Raises Resize unless it has been raised before.
  void TellFirstSize();

  DesktopCore& core_;

 private:
  /// Hears the events of the outer widget and the form.
  class Watch;

  void MakeControls();
  void MakeMenus();
  void AddMenu(QAction& action);
  void ScaleForm();
  void NoteSize();

  std::string formName_;
  QPointer<QWidget> root_;
  QPointer<QWidget> outer_;
  QPointer<MarkStripe> stripe_;  ///< Made with the first mark.
  InputBlock block_;
  std::unique_ptr<InputRouter> router_;
  std::unique_ptr<Watch> watch_;
  std::map<std::string, std::unique_ptr<Control>, std::less<>> controls_;
  std::map<std::string, std::unique_ptr<MenuItem>, std::less<>> menus_;
  std::map<std::string, std::unique_ptr<Timer>, std::less<>> timers_;
  std::map<std::string, std::unique_ptr<FileDialog>, std::less<>> fileDialogs_;
  std::map<std::string, std::unique_ptr<ColorDialog>, std::less<>> colorDialogs_;
  std::string caption_;
  int helpContext_ = 0;
  bool loaded_ = true;
  bool closing_ = false;
  bool sizeTold_ = false;
  QSize notedSize_;
  Rect given_;
  QRect placed_;  ///< Where `given_` put the window; null before.
  std::shared_ptr<const int> token_ = std::make_shared<const int>();
};

}  // namespace tessel
