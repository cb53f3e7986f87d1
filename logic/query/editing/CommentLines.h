#pragma once

#include <string>
#include <string_view>

#include "contract/text/TextRange.h"

namespace tessel {

/// A change of a text, and what is selected afterwards.
struct LineChange {
  TextRange replaced;  ///< Whole lines, the line end of the last one apart.
  std::string text;    ///< What takes their place.
  TextRange selected;  ///< In the new text.
};

/// Makes comments of the lines that `selected` touches, or SQL again where all of them that hold
/// anything are comments: "-- " in front of each, behind the blanks that all of them begin with. A
/// line of which only the beginning is selected is not touched, unless nothing is selected.
[[nodiscard]] LineChange CommentOrUncomment(std::string_view text, const TextRange& selected);

}  // namespace tessel
