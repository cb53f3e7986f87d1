#include "data/rows/order/TextKeys.h"

#include <locale.h>
#include <string.h>

#include <algorithm>

namespace tessel {

namespace {

/// Of the text that a key is made of, for the first try.
constexpr std::size_t bytesPerByte = 4;

locale_t AsLocale(void* locale) { return static_cast<locale_t>(locale); }

}  // namespace

void TextKeys::Free::operator()(void* locale) const { freelocale(AsLocale(locale)); }

/// By code point "B" stands before "a": a language that does that has no order of its own.
TextKeys::TextKeys() : locale_(newlocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "", nullptr)) {
  if (locale_ != nullptr && strcoll_l("a", "B", AsLocale(locale_.get())) >= 0) locale_.reset();
}

/// What stands behind a NUL is a piece of its own.
void TextKeys::Append(std::string_view text, std::string& out) {
  for (;;) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    piece_.assign(text.substr(0, end));
    AppendPiece(out);
    if (end == text.size()) return;
    out += '\0';
    text.remove_prefix(end + 1);
  }
}

void TextKeys::AppendPiece(std::string& out) {
  const std::size_t start = out.size();
  std::size_t room = piece_.size() * bytesPerByte + bytesPerByte;
  for (;;) {
    out.resize(start + room);
    const std::size_t size =
        strxfrm_l(out.data() + start, piece_.c_str(), room, AsLocale(locale_.get()));
    if (size < room) return out.resize(start + size);
    room = size + 1;
  }
}

}  // namespace tessel
