#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

// JSON and XML with their parts on lines of their own, to be read more easily. Nothing of the text
// is read as a value: numbers keep their digits, strings their escapes, and what stands between
// two blanks stays as it is; only the blanks between the parts are others. Nothing recurses, so no
// depth is too much for it.

/// What a text is written in.
enum class TextStructure { None, Json, Xml };

/// Where a text breaks the rules of what it is written in.
struct TextFault {
  std::size_t offset = 0;  ///< Bytes before the place.
  std::string reason;      ///< Begins with a small letter, without a full stop.
};

/// A text on lines of their own, or the first place where it breaks the rules.
struct IndentedText {
  TextStructure structure = TextStructure::None;
  std::string text = {};  ///< Empty where there is a fault, or no structure.
  std::optional<TextFault> fault = {};
};

/// What a text looks like by its first character that is no blank: "{" and "[" begin JSON, "<"
/// followed by a letter, "?", "!" or "/" XML.
[[nodiscard]] TextStructure GuessStructure(std::string_view text);

/// The indenting of a text in steps; the text stays as it is meanwhile.
class Indenting {
 public:
  virtual ~Indenting() = default;
  Indenting() = default;
  Indenting(const Indenting&) = delete;
  Indenting& operator=(const Indenting&) = delete;

  /// Goes on for about so many bytes, at least 1; a single string or tag is never parted. False
  /// when there is nothing left to do.
  virtual bool Step(std::size_t bytes) = 0;
  /// How much is done, from 0 to 100.
  [[nodiscard]] virtual int Percent() const = 0;
  /// What came of it: once, when there is nothing left to do.
  [[nodiscard]] virtual IndentedText Result() = 0;
};

/// Begins to indent a text in the way of what it looks like; null when it looks like nothing.
[[nodiscard]] std::unique_ptr<Indenting> StartIndenting(std::string_view text);
[[nodiscard]] std::unique_ptr<Indenting> StartIndentingJson(std::string_view text);
[[nodiscard]] std::unique_ptr<Indenting> StartIndentingXml(std::string_view text);

/// The text in the way of what it looks like; with no structure when it looks like nothing.
/// Two blanks a level; from `deepestIndent` levels on lines begin no farther in.
[[nodiscard]] IndentedText Indent(std::string_view text);
[[nodiscard]] IndentedText IndentJson(std::string_view text);
/// Elements that hold text stay on their line with all that they hold. It is not made sure that
/// attributes and entities are right.
[[nodiscard]] IndentedText IndentXml(std::string_view text);

inline constexpr std::size_t deepestIndent = 20;

/// "line 3, column 14: a comma is missing".
[[nodiscard]] std::string FaultText(std::string_view text, const TextFault& fault);

/// "JSON" or "XML"; empty for none.
[[nodiscard]] std::string_view StructureName(TextStructure structure);

/// A blank of JSON and XML.
[[nodiscard]] constexpr bool IsBlank(char character) {
  return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}
/// The first place from `from` on that holds no blank; the end of the text when there is none.
[[nodiscard]] std::size_t SkipBlanks(std::string_view text, std::size_t from);
/// Appends a line end and the blanks of a level.
void AppendLine(std::string& out, std::size_t level);

}  // namespace tessel
