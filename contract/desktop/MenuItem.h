#pragma once

#include <string>
#include <string_view>

#include "contract/base/Event.h"

namespace tessel {

/// A menu caption of plain text: "&" would mark a mnemonic.
[[nodiscard]] inline std::string PlainCaption(std::string_view text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

/// A menu command, or a menu title. Click follows when a command is chosen, by menu, mnemonic or
/// shortcut, and when a menu is about to open.
class MenuItem {
 public:
  MenuItem(std::string name, FailureSink& failures)
      : name_(std::move(name)), failures_(&failures) {}
  virtual ~MenuItem() = default;
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void
  SetCaption(std::string_view caption) = 0;  ///< Mnemonic marked with "&"; "&&" is one "&".
  [[nodiscard]] virtual bool Checked() const = 0;
  virtual void SetChecked(bool checked) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  [[nodiscard]] int Tag() const { return tag_; }
  void SetTag(int tag) { tag_ = tag; }

  /// Chooses the command: raises Click unless it is disabled.
  void Choose() {
    if (Enabled()) RaiseClick();
  }

  Event<> Click;

 protected:
  void RaiseClick() const { Click.Raise(failures_); }

 private:
  std::string name_;
  FailureSink* failures_;
  int tag_ = 0;
};

}  // namespace tessel
