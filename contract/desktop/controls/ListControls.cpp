#include "contract/desktop/controls/ListControls.h"

namespace tessel {

void ComboBox::SetText(std::string_view text) {
  if (Editable()) {
    if (ReadText() == text) return;
    WriteText(text);
    Raise(Change);
    return;
  }
  for (int index = 0; index < ListCount(); ++index)
    if (List(index) == text) return SetListIndex(index);
}

}  // namespace tessel
