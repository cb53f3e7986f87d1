#include "logic/text/LineEnds.h"

namespace tessel {

namespace {

std::string_view LineEndOf(std::string_view document) {
  const std::size_t end = document.find('\n');
  if (end == std::string_view::npos) return platformLineEnd;
  return document.substr(0, end).ends_with('\r') ? "\r\n" : "\n";
}

}  // namespace

std::string WithLineEndsOf(std::string_view document, std::string_view text) {
  if (document.empty()) return std::string(text);
  const std::string_view lineEnd = LineEndOf(document);
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool pair = text.substr(at).starts_with("\r\n");
    if (pair) ++at;
    if (text[at] == '\n') result += lineEnd;
    else result += text[at];
  }
  return result;
}

}  // namespace tessel
