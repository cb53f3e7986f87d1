#pragma once

#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "logic/import/reading/RecordReader.h"

namespace tessel {

/// How the texts of values are written.
struct CellStyle {
  char decimalSign = '.';
  bool json = false;  ///< Bytes are written in base64.
};

/// Makes `value` what `cell` means in a column of `type`; it looks at the text of the cell, which
/// may be changed in its place. Blanks around a number are left out; an empty text is null where
/// the type is not one of text. Bytes are hexadecimal digits behind "0x" or "\x", or base64. Texts,
/// moments and types that only the server knows are handed on as they stand. Returns what is wrong,
/// as the end of a sentence; null: nothing.
[[nodiscard]] const char* ReadCell(ImportCell& cell, DataType type, const CellStyle& style,
                                   ValueView& value);

/// What a column of `type`, a date, a time or both without offsets, would lose of a moment, as the
/// end of a sentence; null: nothing.
[[nodiscard]] const char* LossOfMoment(std::string_view text, DataType type);

}  // namespace tessel
