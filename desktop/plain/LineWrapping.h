#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace tessel {

/// Width of one character in pixels; a byte that is no UTF-8 comes alone. Asked once for each
/// character that occurs.
using CharacterWidth = std::function<double(std::string_view character)>;

/// Where lines wider than `width` pixels are broken: the places of the bytes that follow a break,
/// ascending. Breaks behind the last blank that fits, else between any two characters; a blank may
/// stand beyond the width. The time is that of reading the text: nothing is laid out.
[[nodiscard]] std::vector<std::size_t> WrappedPlaces(std::string_view text, double width,
                                                     const CharacterWidth& widthOf);

}  // namespace tessel
