#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "contract/system/SheetFile.h"
#include "logic/results/export/formats/ExportChoices.h"

namespace tessel {

/// The moment of a text as Value.h has it, in the form in which sheets hold it; nothing when they
/// cannot hold it without loss: one before 1900 or behind 9999, with a zone, or with parts of a
/// second beyond thousandths.
[[nodiscard]] std::optional<SheetMoment> SheetMomentOf(std::string_view text);

/// What becomes of values in cells. Numbers that a cell cannot hold exactly (whole ones beyond 2 to
/// the 53rd, decimals of more than 15 digits, what is not finite) and moments that it cannot hold
/// are texts, binary values are texts in the form chosen, and a null is an empty cell.
class SheetValues {
 public:
  explicit SheetValues(BinaryForm binary) : binary_(binary) {}

  /// Valid until the next call for a binary value or number, and as long as `value`.
  [[nodiscard]] SheetCell Cell(const ValueView& value, std::string& room) const;

 private:
  [[nodiscard]] std::string TextOf(BinaryView binary) const;

  BinaryForm binary_;
};

/// What of `text` a cell can hold.
struct SheetText {
  std::string_view text;
  bool cut = false;      ///< It was longer than a cell takes.
  bool changed = false;  ///< NUL, or bytes that are no text, had to be replaced.
};

/// `room` holds the text where it had to be changed.
[[nodiscard]] SheetText FittingText(std::string_view text, std::string& room);

}  // namespace tessel
