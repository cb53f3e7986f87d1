#pragma once

#include <memory>
#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/Global.h"

namespace tessel {

/// The box "Keep in the desktop's keyring" of a window, `chkKeep`, and the line `lblKeyring` below
/// it: greyed with the reason where there is no keyring.
class KeepBox {
 public:
  KeepBox(const Global& global, Window& window);

  /// Asks whether there is a keyring; until it has answered the box is left as it is.
  void Look();
  [[nodiscard]] bool Checked() const { return chkKeep_.Value(); }
  void SetChecked(bool checked) { chkKeep_.SetValue(checked); }
  /// Shows the words where the box is shown too.
  void Show(bool shown);
  /// The words below the box; empty shows the reason for which it is greyed, if it is.
  void Say(const std::string& words);

 private:
  void Found(const KeyringAnswer& answer);

  const Global& global_;
  CheckBox& chkKeep_;
  Label& lblKeyring_;
  std::string words_;
  std::string reason_;
  bool shown_ = true;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace tessel
