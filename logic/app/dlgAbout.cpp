#include "logic/app/dlgAbout.h"

#include <memory>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"

namespace tessel {

void ShowAbout(const Global& global, Window& owner) {
  const std::unique_ptr<Window> window = global.TheDesktop().MakeWindow("dlgAbout");
  window->Find<Button>("cmdOK").Click = [&window] { window->Unload(); };
  window->Find<Label>("lblVersion").SetCaption("Version " + global.Version());
  window->ShowModal(&owner);
}

}  // namespace tessel
