#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessel {

/// A value of a JSON document. A number keeps its characters.
struct JsonValue {
  enum class Kind { Null, Boolean, Number, Text, Array, Object };

  Kind kind = Kind::Null;
  std::string text;  ///< Of a text, a number, "true" or "false".
  std::vector<JsonValue> items;
  std::vector<std::pair<std::string, JsonValue>> members;  ///< In their order.

  /// The member of that name; null when it is none of an object.
  [[nodiscard]] const JsonValue* Find(std::string_view name) const;
  /// A member's text or number as it stands; empty when there is none.
  [[nodiscard]] std::string TextOf(std::string_view name) const;
  /// A member that is a number, or a text that reads as one.
  [[nodiscard]] std::optional<double> NumberOf(std::string_view name) const;
};

/// Reads a whole document. Raises Error(application), whose text tells the place, for what is no
/// JSON, or is nested more than 500 deep.
[[nodiscard]] JsonValue ReadJson(std::string_view text);

}  // namespace tessel
