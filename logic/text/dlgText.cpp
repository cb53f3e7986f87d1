#include "logic/text/dlgText.h"

#include <memory>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"

namespace tessel {

bool GetText(const Global& global, int helpContext, const std::string& prompt, std::string& text) {
  const std::unique_ptr<Window> window = global.TheDesktop().MakeWindow("dlgText");
  auto& txtText = window->Find<TextBox>("txtText");
  bool accepted = false;
  window->Find<Button>("cmdOK").Click = [&] {
    accepted = true;
    window->Hide();
  };
  window->Find<Button>("cmdCancel").Click = [&] { window->Unload(); };
  window->SetHelpContext(helpContext);
  window->Find<Label>("lblPrompt").SetCaption(prompt);
  txtText.SetText(text);
  txtText.Select(0, text.size());
  txtText.SetFocus();
  window->ShowModal(nullptr);
  if (accepted) text = txtText.Text();
  window->Unload();
  return accepted;
}

}  // namespace tessel
