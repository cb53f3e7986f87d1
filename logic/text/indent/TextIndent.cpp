#include "logic/text/indent/TextIndent.h"

#include <algorithm>

#include "contract/text/ByteOrderMark.h"
#include "contract/text/TextRange.h"

namespace tessel {

namespace {

constexpr std::size_t blanksOfLevel = 2;

bool BeginsTag(char next) {
  return (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z') || next == '_' ||
         next == '?' || next == '!' || next == '/' || (static_cast<unsigned char>(next) >= 0x80);
}

/// Behind the text in quotation marks that begins at `from`, and blanks.
std::size_t SkipQuoted(std::string_view text, std::size_t from) {
  std::size_t at = from + 1;
  while (at < text.size() && text[at] != '"') at += text[at] == '\\' ? 2 : 1;
  return SkipBlanks(text, std::min(at + 1, text.size()));
}

/// A list in braces, as some databases write arrays: an object that is not empty has a colon behind
/// its first name.
bool IsListInBraces(std::string_view text) {
  constexpr std::size_t sample = 4096;
  if (!text.starts_with('{')) return false;
  const std::size_t first = SkipBlanks(text, 1);
  if (first == text.size() || text[first] == '}') return false;
  if (text[first] != '"') return text.substr(0, sample).find(':') == std::string_view::npos;
  const std::size_t behind = SkipQuoted(text, first);
  return behind < text.size() && (text[behind] == ',' || text[behind] == '}');
}

IndentedText WithoutStop(const std::unique_ptr<Indenting>& work, std::string_view text) {
  if (work == nullptr) return {};
  while (work->Step(text.size() + 1)) {
  }
  return work->Result();
}

}  // namespace

std::size_t SkipBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsBlank(text[from])) ++from;
  return from;
}

void AppendLine(std::string& out, std::size_t level) {
  out += '\n';
  out.append(blanksOfLevel * std::min(level, deepestIndent), ' ');
}

TextStructure GuessStructure(std::string_view text) {
  const std::size_t first = SkipBlanks(text, BehindMark(text));
  if (first == text.size()) return TextStructure::None;
  if (IsListInBraces(text.substr(first))) return TextStructure::None;
  if (text[first] == '{' || text[first] == '[') return TextStructure::Json;
  const bool tag = text[first] == '<' && first + 1 < text.size() && BeginsTag(text[first + 1]);
  return tag ? TextStructure::Xml : TextStructure::None;
}

std::unique_ptr<Indenting> StartIndenting(std::string_view text) {
  switch (GuessStructure(text)) {
    case TextStructure::Json: return StartIndentingJson(text);
    case TextStructure::Xml: return StartIndentingXml(text);
    default: return nullptr;
  }
}

IndentedText Indent(std::string_view text) { return WithoutStop(StartIndenting(text), text); }
IndentedText IndentJson(std::string_view text) {
  return WithoutStop(StartIndentingJson(text), text);
}
IndentedText IndentXml(std::string_view text) { return WithoutStop(StartIndentingXml(text), text); }

std::string FaultText(std::string_view text, const TextFault& fault) {
  const TextSpot spot = SpotOf(text, fault.offset);
  return "line " + std::to_string(spot.line) + ", column " + std::to_string(spot.column) + ": " +
         fault.reason;
}

std::string_view StructureName(TextStructure structure) {
  switch (structure) {
    case TextStructure::Json: return "JSON";
    case TextStructure::Xml: return "XML";
    default: return "";
  }
}

}  // namespace tessel
