#include "logic/connections/password/dlgPassword.h"

#include <memory>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/connections/password/KeepBox.h"
#include "logic/connections/text/PasswordPlace.h"

namespace tessel {

namespace {

using Kind = KeyringAnswer::Kind;

/// The window of one question. It closes by itself when the keyring has the password and the user
/// has typed nothing.
class dlgPassword {
 public:
  dlgPassword(const Global& global, const DataLinkPairs& pairs, bool refused)
      : global_(global),
        window_(global.TheDesktop().MakeWindow("dlgPassword")),
        txtPassword_(window_->Find<TextBox>("txtPassword")),
        lblState_(window_->Find<Label>("lblState")),
        cmdOK_(window_->Find<Button>("cmdOK")),
        keep_(global, *window_),
        name_(KeyringName(pairs)),
        refused_(refused) {
    window_->Find<Label>("lblLogin").SetCaption("Password of " + LoginText(pairs));
    keep_.SetChecked(AsksKeyring(pairs));
    cmdOK_.Click = [this] { cmdOK_Click(); };
    window_->Find<Button>("cmdCancel").Click = [this] { window_->Unload(); };
  }

  std::optional<std::string> Ask(Window& owner) {
    keep_.Look();
    if (keep_.Checked()) Read();
    else Say("Please type the password.");
    window_->ShowModal(&owner);
    window_->Unload();
    return answer_;
  }

 private:
  void Say(const std::string& words) { lblState_.SetCaption(words); }

  void Read() {
    Say("Waiting for the desktop's keyring. You may type the password meanwhile.");
    global_.TheKeyring().Read(name_, alive_,
                              [this](const KeyringAnswer& answer) { TakeRead(answer); });
  }

  void TakeRead(const KeyringAnswer& answer) {
    if (keeping_ || !txtPassword_.Text().empty()) return;
    if (answer.kind == Kind::Missing)
      return Say("The keyring gives no password for it. Please type it.");
    if (answer.kind == Kind::Failed) return Say(answer.reason + " Please type the password.");
    kept_ = answer.secret;
    if (!refused_) return Conclude(answer.secret);
    txtPassword_.SetText(answer.secret);
    txtPassword_.Select(0, answer.secret.size());
    Say("It did not connect with the password of the keyring.");
  }

  void cmdOK_Click() {
    const std::string password = txtPassword_.Text();
    const bool kept = kept_ && *kept_ == password;
    if (!keep_.Checked() || kept || password.empty()) return Conclude(password);
    keeping_ = true;
    cmdOK_.SetEnabled(false);
    Say("Handing the password to the keyring...");
    global_.TheKeyring().Keep(name_, password, alive_,
                              [this](const KeyringAnswer& answer) { TakeKept(answer); });
  }

  void TakeKept(const KeyringAnswer& answer) {
    keeping_ = false;
    cmdOK_.SetEnabled(true);
    if (answer.kind == Kind::Done) return Conclude(txtPassword_.Text());
    Say("The password is not kept: " + answer.reason + " Clear the box to connect without.");
  }

  void Conclude(const std::string& password) {
    answer_ = password;
    window_->Hide();
  }

  const Global& global_;
  std::unique_ptr<Window> window_;
  TextBox& txtPassword_;
  Label& lblState_;
  Button& cmdOK_;
  KeepBox keep_;
  std::string name_;
  bool refused_;
  bool keeping_ = false;             ///< The keyring is about to take what was typed.
  std::optional<std::string> kept_;  ///< What it has.
  std::optional<std::string> answer_;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace

std::optional<std::string> AskPassword(const Global& global, Window& owner,
                                       const std::string& connectionString, bool refused) {
  return dlgPassword(global, SplitDataLink(connectionString), refused).Ask(owner);
}

}  // namespace tessel
