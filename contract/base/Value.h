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

/// The type of a field, numbered as the classic data-access objects number them. It says what the
/// values of the field are and how typed text is read; what a value holds in fact is told by its
/// own alternative, since a database may give one of another kind: a number too large for its
/// alternative, say, comes as text. Whole numbers of all types but UnsignedBigInt are std::int64_t.
enum class DataType : int {
  Empty = 0,
  SmallInt = 2,  ///< 16 bits.
  Integer = 3,   ///< 32 bits.
  Single = 4,    ///< float.
  Double = 5,
  Currency = 6,  ///< Exact decimals, as Decimal and Numeric.
  Date = 7,      ///< Date and time of day.
  Boolean = 11,
  Variant = 12,  ///< Values of any kind in one field.
  Decimal = 14,
  TinyInt = 16,  ///< 8 bits, signed.
  UnsignedTinyInt = 17,
  UnsignedSmallInt = 18,
  UnsignedInt = 19,
  BigInt = 20,          ///< 64 bits.
  UnsignedBigInt = 21,  ///< std::uint64_t.
  Guid = 72,            ///< Text of 8-4-4-4-12 hexadecimal digits.
  Binary = 128,
  Char = 129,  ///< Text is UTF-8 in all six types for it.
  WChar = 130,
  Numeric = 131,
  DBDate = 133,       ///< A date alone.
  DBTime = 134,       ///< A time of day alone, or a span of time.
  DBTimeStamp = 135,  ///< Both.
  VarChar = 200,
  LongVarChar = 201,
  VarWChar = 202,
  LongVarWChar = 203,
  VarBinary = 204,
  LongVarBinary = 205,
};

/// True for the three types that hold bytes: Binary, VarBinary, LongVarBinary.
[[nodiscard]] constexpr bool IsBinaryType(DataType type) {
  return type == DataType::Binary || type == DataType::VarBinary || type == DataType::LongVarBinary;
}

/// True for the types that are numbers, exact decimals among them (shown right-aligned, written
/// unquoted). A boolean is none.
[[nodiscard]] bool IsNumericType(DataType type);

/// Bytes of a binary field, owned.
using Bytes = std::vector<std::byte>;

/// An exact decimal, as the server's own digits, of any length; also "NaN" and "Infinity" where the
/// server has them. Two are equal when their characters are: "1.0" is not "1".
struct DecimalView {
  std::string_view digits;
  bool operator==(const DecimalView&) const = default;
};

/// A date, a time of day or a time stamp in its fixed text form: `YYYY-MM-DD`, `HH:MM:SS[.f...]` or
/// `YYYY-MM-DD HH:MM:SS[.f...]`, with whatever the server added (a zone, "BC", "infinity") left as
/// it was. Equal are those of the same characters.
struct MomentView {
  std::string_view text;
  bool operator==(const MomentView&) const = default;
};

/// Bytes of a binary field, looked at.
struct BinaryView {
  std::span<const std::byte> bytes;
};

/// One field value, looked at in place: valid until its recordset closes or the row is edited.
/// std::monostate is the database's null. A `float` is a single-precision value. Text is UTF-8 as
/// the server gave it: it may hold NUL, and bytes that are not valid.
using ValueView = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, float, double,
                               DecimalView, MomentView, std::string_view, BinaryView>;

/// DecimalView and MomentView with characters of their own.
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

/// Whether it is the database's null; an empty text is none.
[[nodiscard]] constexpr bool IsNull(const ValueView& value) { return value.index() == 0; }

/// Copies what is looked at, into the alternative of the same place.
[[nodiscard]] Value ToValue(const ValueView& view);
/// Looks at an owned value; valid as long as `value` is.
[[nodiscard]] ValueView ToView(const Value& value);

/// Appends the fixed, locale-free text form of a value to `out`: "." as the decimal sign, no
/// grouping, the shortest form of a floating number that reads back the same ("1", "0.1", "1e+300",
/// "nan", "inf"), text and moments as they stand, a boolean as "True" or "False". Null adds
/// nothing; bytes add themselves as UTF-8 (each byte that is no valid UTF-8 as U+FFFD).
void AppendText(const ValueView& value, std::string& out);
/// The same as a text of its own; null gives an empty one.
[[nodiscard]] std::string ToText(const ValueView& value);

/// The value that `text`, typed by a person or given by a program, means for a field of `type`; the
/// inverse of ToText. Empty text is null for every type that is not text. A boolean is "True",
/// "False", "1", "0", "t", "f", "yes" or "no" in any case; moments and exact decimals keep their
/// characters once they have the form of one; "0x" and pairs of hexadecimal digits are bytes.
/// Nothing when the text is no value of the type. Types that only the server knows (arrays, JSON,
/// intervals) are text. A whole number has to lie in the range of its type, and no value may have
/// blanks around it. Text given for a field of text is taken as it is.
[[nodiscard]] std::optional<Value> ParseValue(DataType type, std::string_view text);

}  // namespace tessel
