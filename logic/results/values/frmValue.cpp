#include "logic/results/values/frmValue.h"

#include <memory>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"
#include "logic/program/FileDialogs.h"
#include "logic/results/values/ValueKind.h"

namespace tessel {

namespace {

constexpr int valueContext = 8606;

/// The window of one ShowValue call.
class frmValue {
 public:
  explicit frmValue(const Global& global)
      : global_(global),
        help_(global),
        window_(global.TheDesktop().MakeWindow("frmValue")),
        look_(global, *window_),
        cmdSave_(window_->Find<Button>("cmdSave")),
        dialog_(window_->FileDialogNamed("dlgCommon")) {
    window_->SetHelpContext(valueContext);
    window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
    cmdSave_.Click = [this] { cmdSave_Click(); };
    window_->Find<Button>("cmdClose").Click = [this] { window_->Unload(); };
  }

  void Show(const LookedAt& looked) {
    looked_ = looked;
    window_->SetCaption(looked.name);
    look_.Show({looked.value, "", looked.cell});
    look_.SetFocus();
    window_->ShowModal(nullptr);
    look_.Clear();
    window_->Unload();
  }

 private:
  void Form_KeyDown(KeyEvent& event) {
    event.handled = look_.TakeKey(event);
    if (event.handled) return;
    if (event.keyCode == 'S' && event.shift == shiftState::ctrl) event.handled = cmdSave_.Press();
    else if (event.keyCode == key::escape && event.shift == shiftState::none)
      event.handled = window_->Unload();
  }

  /// The value as it is, however it is shown.
  void cmdSave_Click() {
    if (!ShowSaveFileDialog(dialog_, global_.TheFiles(), false)) return;
    try {
      const ValueView value = looked_.value();
      const auto* binary = std::get_if<BinaryView>(&value);
      const std::string text = binary == nullptr ? ToText(value) : std::string();
      global_.TheFiles().ReplaceWhole(
          dialog_.fileName, binary == nullptr ? text : AsCharacters(binary->bytes), false);
    } catch (const Error& error) {
      help_.Show("Error saving " + error.Description(), MessageIcon::Exclamation);
    }
  }

  const Global& global_;
  Help help_;
  std::unique_ptr<Window> window_;
  ValueLook look_;
  Button& cmdSave_;
  FileDialog& dialog_;
  LookedAt looked_;
};

}  // namespace

void ShowValue(const Global& global, const LookedAt& looked) { frmValue(global).Show(looked); }

}  // namespace tessel
