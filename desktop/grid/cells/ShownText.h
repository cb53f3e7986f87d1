#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "contract/base/Value.h"

namespace tessel {

/// Characters of a value that a cell shows; the rest is left out and marked by an ellipsis.
inline constexpr int shownCharacters = 500;

/// Text as one line for a cell or header: line ends, tabs and control characters as visible signs,
/// shortened.
[[nodiscard]] QString AsShown(std::string_view text);
/// The ordinary form of a value for a cell. Null is the word NULL.
[[nodiscard]] QString AsShown(const ValueView& value);

}  // namespace tessel
