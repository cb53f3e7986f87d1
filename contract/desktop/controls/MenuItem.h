#pragma once

#include <string>
#include <string_view>

#include "contract/base/Event.h"

namespace tessel {

/// A menu caption of plain text: "&" would mark a mnemonic, so each is doubled. For names of files
/// and windows, which may hold one. The result is longer than what is seen: cut a long text before.
[[nodiscard]] inline std::string PlainCaption(std::string_view text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

/// A menu command, or a menu title. Click follows when a command is chosen, by menu, mnemonic or
/// shortcut, and when a menu is about to open: its handler then brings what it shows up to date. A
/// shortcut opens no menu, so only the command's own Click comes. The window owns its items; their
/// order, shortcuts and icons are the form's. A title is the item of its whole menu, and hiding or
/// disabling it goes for all that is in it. UI thread.
class MenuItem {
 public:
  /// `failures` is the window: it outlives the item and gets what handlers throw.
  MenuItem(std::string name, FailureSink& failures)
      : name_(std::move(name)), failures_(&failures) {}
  virtual ~MenuItem() = default;
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  /// As the form has it; unique in its window, commands and titles together. It never changes and
  /// is not shown.
  [[nodiscard]] const std::string& Name() const { return name_; }
  /// As it was set, marks included. A menu that is open shows a change at once. Setting it raises
  /// nothing.
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void
  SetCaption(std::string_view caption) = 0;  ///< Mnemonic marked with "&"; "&&" is one "&".
  /// Only code changes the mark: choosing a command leaves it as it was. Setting it raises nothing.
  /// A command that the form does not make checkable shows none.
  [[nodiscard]] virtual bool Checked() const = 0;
  virtual void SetChecked(bool checked) = 0;
  /// A disabled command is not chosen in any way, its shortcut included; a disabled title does not
  /// open. Setting it raises nothing and goes at once, so the handler of a title may disable the
  /// commands that cannot be used now.
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  /// The item's own, whether its menu shows or not. An item that is hidden takes no room. An entry
  /// that is not needed now is hidden rather than removed: the form's items stay the same.
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  /// A number for whoever uses the item, such as the place of what it stands for in a list; at
  /// first 0, and without a meaning here.
  [[nodiscard]] int Tag() const { return tag_; }
  void SetTag(int tag) { tag_ = tag; }

  /// Chooses the command, as code may: raises Click unless it is disabled, and returns when the
  /// handler has. No menu opens, and the Click of its title is not raised.
  void Choose() {
    if (Enabled()) RaiseClick();
  }

  /// Of a title: it is about to open, and what the handler changes shows at once; of a command: it
  /// was chosen, and its menu has closed.
  Event<> Click;

 protected:
  /// For a back end, when the user chooses the command or opens the menu. Where the toolkit turns
  /// the mark of a command over by itself, the back end takes that back first.
  void RaiseClick() const { Click.Raise(failures_); }

 private:
  std::string name_;
  FailureSink* failures_;
  int tag_ = 0;
};

}  // namespace tessel
