#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "logic/results/export/formats/ExportChoices.h"

namespace tessel {

/// A character that an encoding has no bytes for.
struct NoSuchCharacter {
  std::string character;  ///< UTF-8, or the bytes that are no valid UTF-8.
};

/// Turns UTF-8 into the bytes of another encoding. Any thread.
class TextEncoder {
 public:
  explicit TextEncoder(TextCode code) : code_(code) {}

  /// Whether bytes stay as they are.
  [[nodiscard]] bool KeepsBytes() const {
    return code_ == TextCode::Utf8 || code_ == TextCode::Utf8WithMark;
  }
  /// What stands at the beginning of a file.
  [[nodiscard]] std::string_view Mark() const;
  /// The bytes of `text`, which holds whole characters. Throws NoSuchCharacter.
  [[nodiscard]] std::string Encoded(std::string_view text) const;
  /// The first character of `text` that has no bytes; nothing when all have.
  [[nodiscard]] std::optional<std::string> FirstWithout(std::string_view text) const;
  /// Why a character has none: "the character "€" (U+20AC) is not in ISO-8859-1."
  [[nodiscard]] std::string WhyNot(std::string_view character) const;

 private:
  void AppendCharacter(std::string& out, char32_t character, std::string_view text) const;

  TextCode code_;
};

}  // namespace tessel
