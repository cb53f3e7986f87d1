#include "logic/connections/builders/Builder.h"

namespace tessel {

Builder::Builder(const Global& global, const char* form)
    : window_(global.TheDesktop().MakeWindow(form)) {
  window_->Find<Button>("cmdOK").Click = [this] { cmdOK_Click(); };
  window_->Find<Button>("cmdCancel").Click = [this] { window_->Unload(); };
}

std::string Builder::GetCnStr(Window& owner, const std::string& connectionString) {
  result_ = connectionString;
  Parse(connectionString);
  window_->ShowModal(&owner);
  window_->Unload();
  return result_;
}

void Builder::cmdOK_Click() {
  std::optional<std::string> built = Build();
  if (!built) return;
  result_ = *std::move(built);
  window_->Hide();
}

Color EditableBackColor(bool locked) {
  return locked ? color::buttonFace : color::windowBackground;
}

void SetEditable(Control& control, bool editable) {
  control.SetEnabled(editable);
  control.SetBackColor(EditableBackColor(!editable));
}

}  // namespace tessel
