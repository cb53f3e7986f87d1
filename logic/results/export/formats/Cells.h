#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "logic/results/export/formats/TextSink.h"

namespace tessel {

/// Where a value stands, for who is told of it.
struct CellPlace {
  std::int64_t record = 0;  ///< From 1.
  std::string_view column;
};

/// "Record 3, column "note"".
[[nodiscard]] std::string NameOf(const CellPlace& place);
/// Raises Error(application) with that, a colon and the reason.
[[noreturn]] void RaiseAtCell(const CellPlace& place, std::string_view reason);

/// Names for columns that have to differ: the second "a" is "a_2", and an empty one "column_1", by
/// its place.
[[nodiscard]] std::vector<std::string> DifferingNames(const std::vector<FieldInfo>& fields);

/// Appends the bytes in upper-case hexadecimal digits, two each.
void AppendHex(TextSink& sink, BinaryView binary);
/// Appends the bytes in base64, filled up with "=".
void AppendBase64(TextSink& sink, BinaryView binary);
/// Appends `text`, each `mark` in it twice.
void AppendDoubled(TextSink& sink, std::string_view text, char mark);

/// What a floating number or exact decimal is that is no finite one.
enum class Special { None, NotANumber, Infinity, MinusInfinity };
[[nodiscard]] Special SpecialOf(const ValueView& value);

/// Whether the text is a number as JSON and SQL have it: "-12.50e3".
[[nodiscard]] bool IsPlainNumber(std::string_view text);

}  // namespace tessel
