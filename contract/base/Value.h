#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessel {

/// The type of a field, numbered as the classic data-access objects number them.
enum class DataType : int {
  Empty = 0,
  SmallInt = 2,
  Integer = 3,
  Single = 4,
  Double = 5,
  Currency = 6,
  Date = 7,
  Boolean = 11,
  Variant = 12,
  Decimal = 14,
  TinyInt = 16,
  UnsignedTinyInt = 17,
  UnsignedSmallInt = 18,
  UnsignedInt = 19,
  BigInt = 20,
  UnsignedBigInt = 21,
  Guid = 72,
  Binary = 128,
  Char = 129,
  WChar = 130,
  Numeric = 131,
  DBDate = 133,
  DBTime = 134,
  DBTimeStamp = 135,
  VarChar = 200,
  LongVarChar = 201,
  VarWChar = 202,
  LongVarWChar = 203,
  VarBinary = 204,
  LongVarBinary = 205,
};

/// True for the three types that hold bytes.
[[nodiscard]] constexpr bool IsBinaryType(DataType type) {
  return type == DataType::Binary || type == DataType::VarBinary || type == DataType::LongVarBinary;
}

/// True for the types that are numbers (shown right-aligned, written unquoted).
[[nodiscard]] bool IsNumericType(DataType type);

using Bytes = std::vector<std::byte>;

/// An exact decimal, as the server's own digits.
struct DecimalView {
  std::string_view digits;
  bool operator==(const DecimalView&) const = default;
};

/// A date, a time of day or a time stamp in its fixed text form: `YYYY-MM-DD`, `HH:MM:SS[.f...]` or
/// `YYYY-MM-DD HH:MM:SS[.f...]`, with whatever the server added (a zone, "BC", "infinity") left as
/// it was.
struct MomentView {
  std::string_view text;
  bool operator==(const MomentView&) const = default;
};

struct BinaryView {
  std::span<const std::byte> bytes;
};

/// One field value, looked at in place: valid until its recordset closes or the row is edited.
/// std::monostate is the database's null. A `float` is a single-precision value.
using ValueView = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, float, double,
                               DecimalView, MomentView, std::string_view, BinaryView>;

struct Decimal {
  std::string digits;
  bool operator==(const Decimal&) const = default;
};
struct Moment {
  std::string text;
  bool operator==(const Moment&) const = default;
};

/// One field value that owns what it holds. The alternatives are those of ValueView.
using Value = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, float, double,
                           Decimal, Moment, std::string, Bytes>;

[[nodiscard]] constexpr bool IsNull(const ValueView& value) { return value.index() == 0; }

/// Copies what is looked at.
[[nodiscard]] Value ToValue(const ValueView& view);
/// Looks at an owned value; valid as long as `value` is.
[[nodiscard]] ValueView ToView(const Value& value);

/// Appends the fixed, locale-free text form of a value to `out`: "." as the decimal sign, no
/// grouping, the shortest form of a floating number that reads back the same ("1", "0.1", "1e+300",
/// "nan", "inf"), text and moments as they stand, a boolean as "True" or "False". Null adds
/// nothing; bytes add themselves as UTF-8 (each byte that is no valid UTF-8 as U+FFFD).
void AppendText(const ValueView& value, std::string& out);
[[nodiscard]] std::string ToText(const ValueView& value);

/// The value that `text`, typed by a person or given by a program, means for a field of `type`; the
/// inverse of ToText. Empty text is null for every type that is not text. A boolean is "True",
/// "False", "1", "0", "t", "f", "yes" or "no" in any case; moments and exact decimals keep their
/// characters once they have the form of one; "0x" and pairs of hexadecimal digits are bytes.
/// Nothing when the text is no value of the type. Types that only the server knows (arrays, JSON,
/// intervals) are text.
[[nodiscard]] std::optional<Value> ParseValue(DataType type, std::string_view text);

}  // namespace tessel
