#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// A connection string as it may be shown: stars stand for the value of each password.
[[nodiscard]] std::string WithoutPasswords(std::string_view connectionString);

}  // namespace tessel
