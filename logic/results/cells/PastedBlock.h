#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Texts of cells, row by row; rows may have unlike lengths.
using TextBlock = std::vector<std::vector<std::string>>;

/// The cells of a text as spreadsheets put it on the clipboard: values separated by tabs, rows by
/// line ends. A value in quotation marks may hold both, and marks of its own doubled. A line end
/// behind the last row begins no row. Empty for an empty text.
[[nodiscard]] TextBlock BlockOfText(std::string_view text);

/// The cells of the first table of an HTML text; a first row that has only heads is left out. Empty
/// when there is none.
[[nodiscard]] TextBlock BlockOfHtml(std::string_view html);

}  // namespace tessel
