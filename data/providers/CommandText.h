#pragma once

#include <string>

namespace tessel {

/// Raises Error when the command text holds a NUL character: to a C library that is the end of the
/// text, the rest would be left out without a word. `source` is the database's name.
void RefuseNul(const std::string& sql, const std::string& source);

/// `[name]` and `name` mean the same catalog: the name.
[[nodiscard]] std::string WithoutBrackets(const std::string& name);

}  // namespace tessel
