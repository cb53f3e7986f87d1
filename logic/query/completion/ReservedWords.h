#pragma once

#include <string_view>

namespace tessel {

/// Whether a name is a word that SQL keeps for itself, in PostgreSQL, MariaDB or MySQL: it stands
/// for a table or a field only in quotes. Without regard to ASCII case.
[[nodiscard]] bool IsReservedWord(std::string_view name);

}  // namespace tessel
