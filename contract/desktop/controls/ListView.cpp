#include "contract/desktop/controls/ListView.h"

#include "contract/text/Ascii.h"

namespace tessel {

int ListView::FindKey(std::string_view key) const {
  for (int index = 0; index < Count(); ++index)
    if (Row(index).key == key) return index;
  return -1;
}

int ListView::FindText(std::string_view text) const {
  for (int index = 0; index < Count(); ++index)
    if (EqualNoCase(Row(index).text, text)) return index;
  return -1;
}

}  // namespace tessel
