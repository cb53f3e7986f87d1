#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tessel {

/// The byte of `statement` that a syntax error complains of, where its description quotes the text
/// from there on and counts the line, as MariaDB does: "... near 'selec t' at line 2". What is
/// quoted may be cut, or go on behind the statement; with nothing quoted it is the statement's end.
/// Nothing when the quoted text stands nowhere in the statement, or at several places and not on
/// the line told alone.
[[nodiscard]] std::optional<std::size_t> QuotedPlace(std::string_view description,
                                                     std::string_view statement);

}  // namespace tessel
