#pragma once

#include <span>
#include <string>
#include <string_view>

#include "contract/base/Value.h"

namespace tessel {

/// The texts around and between the pieces of a conversion.
struct PieceFormat {
  std::string separator;
  std::string prefix;
  std::string suffix;
};

/// How FormatValue writes one value.
struct ValueFormat {
  PieceFormat delimiters;   ///< Its prefix and suffix stand around every value that is not null.
  std::string quote;        ///< Around texts, dates and binary values shown as text; may be empty.
  std::string nullText;     ///< Stands for null, alone.
  std::string escapeStyle;  ///< Empty: double the quote; "\": as in C; "&": as in HTML; other:
                            ///< double that text.
  bool hexBinary = false;   ///< Binary values as "0x" and hexadecimal digits.
};

/// `text` as an SQL string literal: quotes around it, quotes inside doubled, nothing else changed.
[[nodiscard]] std::string SqlQuote(std::string_view text);

/// One field value as text. Only texts, moments and binary values shown as text are escaped and
/// quoted.
[[nodiscard]] std::string FormatValue(const ValueView& value, const ValueFormat& format);
/// Appends several values in this form, the delimiters' separator between them.
void AppendFormattedValues(std::string& out, std::span<const ValueView> values,
                           const ValueFormat& format);

}  // namespace tessel
