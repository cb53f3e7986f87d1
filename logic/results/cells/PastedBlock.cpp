#include "logic/results/cells/PastedBlock.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "contract/text/Ascii.h"
#include "logic/results/cells/HtmlEntities.h"

namespace tessel {

namespace {

// --- tab-separated text --------------------------------------------------------------------------

/// Cuts a value in quotation marks off the front of `text`; nothing when the marks are part of it.
std::optional<std::string> TakeQuoted(std::string_view& text) {
  std::string value;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] != '"') {
      value += text[at];
    } else if (at + 1 < text.size() && text[at + 1] == '"') {
      value += text[at++];
    } else {
      const std::string_view rest = text.substr(at + 1);
      if (!rest.empty() && rest.find_first_of("\t\r\n") != 0) return std::nullopt;
      text = rest;
      return value;
    }
  }
  return std::nullopt;
}

std::string TakeValue(std::string_view& text) {
  if (text.starts_with('"'))
    if (auto quoted = TakeQuoted(text)) return *std::move(quoted);
  const std::size_t end = std::min(text.find_first_of("\t\r\n"), text.size());
  std::string value(text.substr(0, end));
  text.remove_prefix(end);
  return value;
}

// --- HTML ----------------------------------------------------------------------------------------

/// What begins with "&" at the front of `html`, taken off it.
std::string TakeEntity(std::string_view& html) {
  constexpr std::size_t longest = 12;
  constexpr std::string_view fixedBlank = "\u00A0";
  const std::size_t end = html.substr(0, longest).find(';');
  std::string text;
  if (end != std::string_view::npos) text = CharacterOfEntity(html.substr(1, end - 1));
  html.remove_prefix(text.empty() ? 1 : end + 1);
  if (text == fixedBlank) return " ";
  return text.empty() ? "&" : text;
}

/// How many rows or columns a cell takes; `attribute` is ROWSPAN or COLSPAN.
int SpanOf(std::string_view tag, std::string_view attribute) {
  constexpr int most = 1000;
  const std::string upper = AsciiUpper(tag);
  std::size_t at = upper.find(attribute);
  if (at == std::string::npos) return 1;
  at = upper.find_first_not_of(" =\"'", at + attribute.size());
  if (at == std::string::npos) return 1;
  int span = 1;
  std::from_chars(upper.data() + at, upper.data() + upper.size(), span);
  return std::clamp(span, 1, most);
}

/// Reads the first table of a page, tag by tag. Of a cell that takes several places the first has
/// its text, and the others are empty.
class TableReader {
 public:
  explicit TableReader(std::string_view html) : html_(html) {}

  [[nodiscard]] TextBlock Read() {
    while (!html_.empty() && !ended_) {
      if (html_.front() == '<') TakeTag();
      else TakeText();
    }
    if (headsOnly_ && block_.size() > 1) block_.erase(block_.begin());
    return std::move(block_);
  }

 private:
  void TakeTag() {
    if (html_.starts_with("<!--")) return Skip(html_.find("-->"), 3);
    const std::size_t end = html_.find('>');
    const std::string_view tag = html_.substr(1, end == std::string_view::npos ? end : end - 1);
    const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/", 1));
    Skip(end, 1);
    if (EqualNoCase(name, "tr")) BeginRow();
    else if (EqualNoCase(name, "td")) BeginCell(tag, false);
    else if (EqualNoCase(name, "th")) BeginCell(tag, true);
    else if (EqualNoCase(name, "/td") || EqualNoCase(name, "/th")) EndCell();
    else if (EqualNoCase(name, "/table")) EndTable();
    else if (EqualNoCase(name, "br") && inCell_) block_.back().back() += '\n';
    else if (EqualNoCase(name, "style")) Skip(html_.find("</"), 0);
  }

  void Skip(std::size_t place, std::size_t more) {
    html_.remove_prefix(place == std::string_view::npos ? html_.size() : place + more);
  }

  void BeginRow() {
    EndRow();
    block_.emplace_back();
  }

  void EndRow() {
    EndCell();
    if (!block_.empty()) PassTaken();
  }

  void EndTable() {
    EndRow();
    ended_ = !block_.empty();
  }

  void BeginCell(std::string_view tag, bool head) {
    EndCell();
    if (block_.empty()) block_.emplace_back();
    if (block_.size() == 1) headsOnly_ = head && (headsOnly_ || block_.back().empty());
    PassTaken();
    block_.back().emplace_back();
    inCell_ = true;
    columns_ = SpanOf(tag, "COLSPAN");
    rows_ = SpanOf(tag, "ROWSPAN");
  }

  void EndCell() {
    if (!inCell_) return;
    inCell_ = false;
    std::vector<std::string>& row = block_.back();
    row.back() = TrimSpaces(row.back());
    const std::size_t first = row.size() - 1;
    row.resize(first + static_cast<std::size_t>(columns_));
    if (taken_.size() < row.size()) taken_.resize(row.size());
    std::fill(taken_.begin() + static_cast<std::ptrdiff_t>(first),
              taken_.begin() + static_cast<std::ptrdiff_t>(row.size()), rows_ - 1);
  }

  /// The next places of the row that a cell of a row above takes are empty.
  void PassTaken() {
    std::vector<std::string>& row = block_.back();
    while (row.size() < taken_.size() && taken_[row.size()] > 0) {
      --taken_[row.size()];
      row.emplace_back();
    }
  }

  /// Blanks and line ends between words are one blank.
  void TakeText() {
    std::string text;
    if (html_.front() == '&') {
      text = TakeEntity(html_);
    } else {
      text = html_.front();
      html_.remove_prefix(1);
      if (text[0] == '\t' || text[0] == '\r' || text[0] == '\n') text = " ";
    }
    if (!inCell_) return;
    std::string& cell = block_.back().back();
    if (text != " " || (!cell.empty() && !cell.ends_with(' '))) cell += text;
  }

  std::string_view html_;
  TextBlock block_;
  std::vector<int> taken_;  ///< For how many rows more each column belongs to a cell above.
  int columns_ = 1;         ///< Of the cell that is read.
  int rows_ = 1;
  bool inCell_ = false;
  bool headsOnly_ = false;
  bool ended_ = false;
};

}  // namespace

TextBlock BlockOfText(std::string_view text) {
  TextBlock block;
  while (!text.empty()) {
    std::vector<std::string>& row = block.emplace_back();
    row.push_back(TakeValue(text));
    while (text.starts_with('\t')) {
      text.remove_prefix(1);
      row.push_back(TakeValue(text));
    }
    if (text.starts_with("\r\n")) text.remove_prefix(2);
    else if (!text.empty()) text.remove_prefix(1);
  }
  return block;
}

TextBlock BlockOfHtml(std::string_view html) { return TableReader(html).Read(); }

}  // namespace tessel
