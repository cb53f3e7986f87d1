#pragma once

#include <cstddef>
#include <string>

#include "logic/schema/structure/Structure.h"

namespace tessel {

/// The tables of a database with their foreign keys, in the language that dot reads.
struct DiagramText {
  std::string text;
  std::size_t tables = 0;   ///< That are drawn.
  std::size_t keys = 0;     ///< Foreign keys that are drawn.
  std::size_t leftOut = 0;  ///< Tables that no key leads to or from, where there are too many.
};

/// Of more than 300 tables only those with foreign keys are drawn. A table shows the fields of its
/// keys and as many others as leave the drawing readable.
[[nodiscard]] DiagramText MakeDiagramText(const Structure& structure);

}  // namespace tessel
