#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contract/sql/ColumnTypes.h"
#include "logic/import/reading/RecordReader.h"

namespace tessel {

/// What the values of a column may be, as they come by. A type is given up with the first value
/// that is none of it; text is what always remains.
class ColumnGuess {
 public:
  /// `json`: a value in quotes is a text, though it may be a date.
  void Add(const ImportCell& cell, char decimalSign, bool json);

  /// The most particular type that all values so far are of.
  [[nodiscard]] ColumnType Type() const;
  [[nodiscard]] bool HasNull() const { return hasNull_; }

 private:
  void AddNumber(std::string_view text);
  [[nodiscard]] ColumnType ExactType() const;

  unsigned kinds_ = ~0U;  ///< Those that are still possible.
  bool hasValue_ = false;
  bool hasNull_ = false;
  bool fitsInteger_ = true;  ///< 32 bits.
  bool fitsLong_ = true;     ///< 64 bits.
  bool fitsReal_ = true;     ///< Every number is the shortest text of one of double precision.
  int wholeDigits_ = 1;
  int fractionDigits_ = 0;
  std::int64_t longest_ = 0;  ///< Bytes.
};

/// Whether a text is a number, a date, a time or one of true and false: no name of a column.
[[nodiscard]] bool IsPlainValue(std::string_view text);

}  // namespace tessel
