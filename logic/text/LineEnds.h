#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// The line end of new texts.
inline constexpr std::string_view platformLineEnd = "\n";

/// `text` with the line ends of the document that it goes into: those of its first line, or the
/// platform's while it is of one line. In an empty document the text stays as it is.
[[nodiscard]] std::string WithLineEndsOf(std::string_view document, std::string_view text);

}  // namespace tessel
