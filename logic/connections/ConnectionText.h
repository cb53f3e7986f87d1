#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// One `name=value` of a connection string; both point into its text.
struct ConnectionPart {
  std::string_view name;   ///< Without surrounding blanks.
  std::string_view value;  ///< As written, its braces or quotes included.
};

/// The parts of a connection string, in the order written. A value that begins with a brace or a
/// quote goes on to the one that ends it, a doubled one is inside; without an end, to the end of
/// the text. A part without "=" is left out.
[[nodiscard]] std::vector<ConnectionPart> ConnectionParts(std::string_view connectionString);

/// A value without the braces or quotes around it.
[[nodiscard]] std::string_view BareValue(std::string_view value);

/// A connection string as it may be shown: stars stand for the value of each password.
[[nodiscard]] std::string WithoutPasswords(std::string_view connectionString);

}  // namespace tessel
