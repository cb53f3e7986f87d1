#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "contract/desktop/CommonDialogs.h"
#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Control.h"
#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

/// Why a window is asked to go.
enum class UnloadReason {
  ControlBox,  ///< The user closed this window itself.
  Code,        ///< The program unloads it.
  Frame,       ///< The frame that holds it is closing.
};

/// Rows one below another over the whole width, or columns side by side.
enum class Tiling { Horizontal, Vertical };

/// A window made from a form of the same name. UI thread only. The controller that uses it owns it;
/// destroying it unloads it without asking.
///
/// A document's own menus show in the frame's menu bar while it is active: one that bears the name
/// of a frame's menu stands in its place, the others before the Window menu. The frame's shortcuts
/// reach only documents without menus of their own, except those of the commands that the form
/// marks as "everywhere".
///
/// A window is loaded from creation until Unload succeeds; its controls may be used for as long as
/// the object lives. What a handler throws is shown in a message box with the exclamation icon, in
/// one place.
class Window : public FailureSink {
 public:
  virtual ~Window() = default;

  /// The form's control of that name and kind; raises Error(itemNotFound) when the form has none.
  template <class Kind>
  [[nodiscard]] Kind& Find(std::string_view name) {
    auto* found = dynamic_cast<Kind*>(FindControl(name));
    if (found == nullptr) ThrowMissing(name);
    return *found;
  }
  /// The form's menu command or menu title of that name; raises Error(itemNotFound) when there is
  /// none.
  [[nodiscard]] virtual MenuItem& Menu(std::string_view name) = 0;
  /// The window's timer, file dialog or colour dialog of that name, made at the first call. Any
  /// name will do; the window owns them.
  [[nodiscard]] virtual Timer& TimerNamed(std::string_view name) = 0;
  [[nodiscard]] virtual FileDialog& FileDialogNamed(std::string_view name) = 0;
  [[nodiscard]] virtual ColorDialog& ColorDialogNamed(std::string_view name) = 0;

  /// As it was given to MakeWindow.
  [[nodiscard]] virtual const std::string& FormName() const = 0;
  /// The title, plain text without mnemonics.
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void SetCaption(std::string_view caption) = 0;
  /// The number of the help topic that F1 shows where no handler takes the key; 0, as at first: the
  /// topic of the form.
  [[nodiscard]] virtual int HelpContext() const = 0;
  virtual void SetHelpContext(int context) = 0;

  /// Shows modeless; a document window shows inside the frame and becomes the active one. The first
  /// showing raises Resize. A window that was unloaded is not shown again.
  virtual void Show() = 0;
  /// Shows modeless above `owner`.
  virtual void ShowAbove(Window& owner) = 0;
  /// The same for a window that only concerns the user when the work takes long: it comes up after
  /// 150 ms, unless it has been hidden or unloaded by then. It counts as visible meanwhile.
  virtual void ShowAboveSoon(Window& owner) = 0;
  /// Shows modally above `owner` (null: the active window) and returns when the window is hidden or
  /// unloaded. It must be hidden before. Only it takes input meanwhile; notices and timers go on. A
  /// form of the kind "tool" comes up after 150 ms, as above. Once the session ends it does not
  /// show and is unloaded. Raises Error(notSupported) when the form is no dialog.
  virtual void ShowModal(Window* owner) = 0;
  /// Takes the window from the screen; it stays loaded. Asks nobody and raises nothing of its own.
  virtual void Hide() = 0;
  /// Shown and not hidden since: a document also while its frame is hidden or minimised.
  [[nodiscard]] virtual bool Visible() const = 0;
  /// Still true while Unloaded is raised.
  [[nodiscard]] virtual bool Loaded() const = 0;
  /// Brings the window to the front and gives it the focus.
  virtual void Activate() = 0;
  /// Of a document: whether it is the one in front in its frame, whatever else is active.
  [[nodiscard]] virtual bool Active() const = 0;

  /// Asks QueryUnload, then, unless it was refused, raises Unloaded and closes. False when it was
  /// refused. Unloading a window that is not loaded does nothing and returns true. A frame first
  /// asks all its documents (reason Frame), in the order in which they were made, then its own
  /// handler, and none is unloaded when one refuses; the documents go first. From inside
  /// QueryUnload or Unloaded it does nothing and returns true. What the user closes with a dialog
  /// open waits until that is over.
  virtual bool Unload(UnloadReason reason = UnloadReason::Code) = 0;

  /// In twips, menus included: a document's inside its frame and with its title bar, another
  /// window's on the screen and without what the window manager puts around it. Setting them raises
  /// Resize when the size changes. No dialog becomes larger than the screen.
  [[nodiscard]] virtual Rect Bounds() const = 0;
  virtual void SetBounds(const Rect& bounds) = 0;
  /// The inside, without title bar and menus, in twips.
  [[nodiscard]] virtual int ScaleWidth() const = 0;
  [[nodiscard]] virtual int ScaleHeight() const = 0;
  /// Whether only its title or its icon shows. The user does that; code cannot.
  [[nodiscard]] virtual bool Minimized() const = 0;
  /// Whether the window fills the screen, or as a document the frame, in front of all others.
  [[nodiscard]] virtual bool Maximized() const = 0;
  /// Lets a document fill the frame, or puts it back where it stood; nothing happens to another
  /// window.
  virtual void SetMaximized(bool maximized) = 0;
  /// A stripe in a plain colour by which the user tells what belongs together: beside a document's
  /// caption, at the left edge of another window. Nothing, as at first: no stripe.
  virtual void SetMark(std::optional<Color> mark) = 0;
  /// A disabled window takes no keys and no mouse; it is still painted, and code can change it.
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;

  /// Pops up one of the form's menus at a place in twips inside `at`, or at the pointer when `at`
  /// is null. Returns when it has closed; the chosen command's Click has then been raised.
  virtual void PopupMenu(MenuItem& menu, Control* at, int x, int y) = 0;
  /// Tiles the documents of a frame, maximised ones too, and keeps them tiled: again whenever the
  /// frame's inside changes its size and whenever a document is shown or goes. As soon as one has
  /// been moved, sized, minimised or maximised otherwise, they are left as they stand until the
  /// next call. A document that floats, as its form says, is no tile: it stands in front of them,
  /// over most of the frame, where the user may put it elsewhere.
  virtual void Arrange(Tiling tiling) = 0;
  /// Of a frame: whether Arrange lays all documents but the first one upon each other, with a tab
  /// for each where there are several, in place of giving each a tile. At first false; it counts
  /// from the next Arrange on.
  [[nodiscard]] virtual bool Tabbed() const = 0;
  virtual void SetTabbed(bool tabbed) = 0;
  /// Of a frame: what is to be read on its ground, where no document stands; plain text, at first
  /// empty.
  virtual void SetGroundText(std::string_view text) = 0;

  /// It became the active window, by the user or by code.
  Event<> Activated;
  /// Its inside has another size; ScaleWidth and ScaleHeight tell it already.
  Event<> Resize;
  Event<KeyEvent&> KeyDown;  ///< Key preview: before the focused control sees the key.
  Event<KeyEvent&> KeyUp;
  /// The flag refuses the unload when the handler sets it. Not raised once the session ends, nor
  /// when the window is destroyed.
  Event<bool&, UnloadReason> QueryUnload;
  /// It goes now, and cannot be kept; its timers stop behind this. A handler may destroy the
  /// window.
  Event<> Unloaded;

 protected:
  /// The control of that name, or null.
  [[nodiscard]] virtual Control* FindControl(std::string_view name) = 0;

 private:
  [[noreturn]] void ThrowMissing(std::string_view name) const;
};

}  // namespace tessel
