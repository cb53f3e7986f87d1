#include "logic/query/editing/CommentLines.h"

#include <algorithm>
#include <vector>

namespace tessel {

namespace {

constexpr std::string_view mark = "--";
constexpr std::string_view blanks = " \t\r";

/// The lines, without their ends.
std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

/// Bytes of blanks that the line begins with; npos: it holds nothing else.
std::size_t Indentation(std::string_view line) { return line.find_first_not_of(blanks); }

bool IsComment(std::string_view line) {
  const std::size_t begin = Indentation(line);
  return begin == std::string_view::npos || line.substr(begin).starts_with(mark);
}

bool AreComments(const std::vector<std::string_view>& lines) {
  const auto holdsText = [](std::string_view line) {
    return Indentation(line) != std::string_view::npos;
  };
  return std::ranges::any_of(lines, holdsText) && std::ranges::all_of(lines, IsComment);
}

std::string WithoutMark(std::string_view line) {
  const std::size_t begin = Indentation(line);
  if (begin == std::string_view::npos) return std::string(line);
  std::string_view rest = line.substr(begin + mark.size());
  if (rest.starts_with(' ')) rest.remove_prefix(1);
  return std::string(line.substr(0, begin)).append(rest);
}

std::string WithMark(std::string_view line, std::size_t column) {
  if (Indentation(line) == std::string_view::npos) return std::string(line);
  return std::string(line.substr(0, column)).append(mark).append(" ").append(line.substr(column));
}

/// From the beginning of the first line to the end of the last one.
TextRange WholeLines(std::string_view text, const TextRange& selected) {
  const bool several = selected.end > selected.begin && text[selected.end - 1] == '\n';
  const std::size_t last = several ? selected.end - 1 : selected.end;
  const std::size_t before =
      selected.begin == 0 ? std::string_view::npos : text.rfind('\n', selected.begin - 1);
  const std::size_t end = text.find('\n', last);
  return {before == std::string_view::npos ? 0 : before + 1, std::min(end, text.size())};
}

std::string Changed(const std::vector<std::string_view>& lines) {
  const bool comments = AreComments(lines);
  std::size_t column = std::string_view::npos;
  for (const std::string_view line : lines) column = std::min(column, Indentation(line));
  std::string text;
  for (const std::string_view line : lines)
    text.append(comments ? WithoutMark(line) : WithMark(line, column)).append("\n");
  text.pop_back();
  return text;
}

}  // namespace

LineChange CommentOrUncomment(std::string_view text, const TextRange& selected) {
  LineChange change;
  change.replaced = WholeLines(text, selected);
  const auto [begin, end] = change.replaced;
  change.text = Changed(LinesOf(text.substr(begin, end - begin)));
  if (selected.begin < selected.end) {
    change.selected = {begin, begin + change.text.size()};
    return change;
  }
  const std::size_t fromEnd = std::min(end - selected.begin, change.text.size());
  const std::size_t caret = begin + change.text.size() - fromEnd;
  change.selected = {caret, caret};
  return change;
}

}  // namespace tessel
