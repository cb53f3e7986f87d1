#include "logic/connections/password/KeepBox.h"

namespace tessel {

KeepBox::KeepBox(const Global& global, Window& window)
    : global_(global),
      chkKeep_(window.Find<CheckBox>("chkKeep")),
      lblKeyring_(window.Find<Label>("lblKeyring")) {
  Say("");
}

void KeepBox::Look() {
  global_.TheKeyring().Look(alive_, [this](const KeyringAnswer& answer) { Found(answer); });
}

/// A box that is ticked can still be cleared: the connection string may come from another machine.
void KeepBox::Found(const KeyringAnswer& answer) {
  reason_ = answer.kind == KeyringAnswer::Kind::Failed ? answer.reason : "";
  if (reason_.empty()) return chkKeep_.SetEnabled(true);
  chkKeep_.SetEnabled(chkKeep_.Value());
  chkKeep_.SetToolTip(reason_);
  Say("");
}

void KeepBox::Show(bool shown) {
  shown_ = shown;
  lblKeyring_.SetVisible(shown_ && !words_.empty());
}

void KeepBox::Say(const std::string& words) {
  words_ = words.empty() ? reason_ : words;
  lblKeyring_.SetCaption(words_);
  lblKeyring_.SetVisible(shown_ && !words_.empty());
}

}  // namespace tessel
