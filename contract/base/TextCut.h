#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessel {

/// Cuts `text` just before the first `delimiter`, if there is one.
inline void CutAtFirst(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.find(delimiter); at != std::string::npos) text.resize(at);
}

/// Keeps what follows the first character of the last `delimiter`, if there is one.
inline void KeepAfterLast(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.rfind(delimiter); at != std::string::npos) text.erase(0, at + 1);
}

}  // namespace tessel
