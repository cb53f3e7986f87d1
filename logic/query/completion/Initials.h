#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// An abbreviation of a name: the upper-case first characters of its words. With `splitWords` a
/// word also starts after "_", a space or a control character; with `keepCapitals` ASCII capitals
/// inside a word are kept.
[[nodiscard]] std::string MakeInitials(std::string_view name, bool keepCapitals, bool splitWords);
/// Whether MakeInitials gives a text that begins with `wanted`; looks no further than needed.
[[nodiscard]] bool InitialsBeginWith(std::string_view name, std::string_view wanted,
                                     bool keepCapitals, bool splitWords);

}  // namespace tessel
