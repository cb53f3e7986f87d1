#pragma once

#include <string_view>

#include "data/rows/ColumnBuilder.h"

namespace tessel {

/// Each adds a cell that came as text and is a number of that kind; what is none is kept as text.
void AppendIntegerText(std::string_view text, ColumnBuilder& cells);
void AppendUnsignedText(std::string_view text, ColumnBuilder& cells);
void AppendSingleText(std::string_view text, ColumnBuilder& cells);
void AppendDoubleText(std::string_view text, ColumnBuilder& cells);

/// The text of a moment without zeros at the end of a fraction that nothing follows.
[[nodiscard]] std::string_view WithoutIdleFraction(std::string_view text);

}  // namespace tessel
