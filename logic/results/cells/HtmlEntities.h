#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// The character that an entity of HTML stands for, in UTF-8: "uuml", "#252" or "#xFC", without the
/// "&" and the ";". Empty when there is none of that name or number.
[[nodiscard]] std::string CharacterOfEntity(std::string_view name);

}  // namespace tessel
