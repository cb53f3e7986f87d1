#include "logic/results/cells/PastedBlock.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include <utf8proc.h>

#include "contract/text/Ascii.h"

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

struct Entity {
  std::string_view name;
  std::string_view text;
};

constexpr Entity entities[] = {{"amp", "&"},   {"lt", "<"},   {"gt", ">"},
                               {"quot", "\""}, {"apos", "'"}, {"nbsp", " "}};

/// The character of "#65" or "#x41"; nothing where it is none.
std::string NumberedCharacter(std::string_view name) {
  const bool hex = name.size() > 1 && AsciiLower(name[1]) == 'x';
  name.remove_prefix(hex ? 2 : 1);
  std::uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(name.data(), name.data() + name.size(), code, hex ? 16 : 10);
  if (error != std::errc() || end != name.data() + name.size()) return {};
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(code), bytes);
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

/// What begins with "&" at the front of `html`, taken off it.
std::string TakeEntity(std::string_view& html) {
  constexpr std::size_t longest = 10;
  const std::size_t end = html.substr(0, longest).find(';');
  std::string text;
  if (end != std::string_view::npos) {
    const std::string_view name = html.substr(1, end - 1);
    const auto* found = std::ranges::find(entities, name, &Entity::name);
    if (found != std::end(entities)) text = found->text;
    else if (name.starts_with('#')) text = NumberedCharacter(name);
  }
  html.remove_prefix(text.empty() ? 1 : end + 1);
  return text.empty() ? "&" : text;
}

/// Reads the first table of a page, tag by tag.
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
    if (EqualNoCase(name, "tr")) block_.emplace_back();
    else if (EqualNoCase(name, "td")) BeginCell(false);
    else if (EqualNoCase(name, "th")) BeginCell(true);
    else if (EqualNoCase(name, "/td") || EqualNoCase(name, "/th")) EndCell();
    else if (EqualNoCase(name, "/table")) ended_ = !block_.empty();
    else if (EqualNoCase(name, "br") && inCell_) block_.back().back() += '\n';
    else if (EqualNoCase(name, "style")) Skip(html_.find("</"), 0);
  }

  void Skip(std::size_t place, std::size_t more) {
    html_.remove_prefix(place == std::string_view::npos ? html_.size() : place + more);
  }

  void BeginCell(bool head) {
    if (block_.empty()) block_.emplace_back();
    if (block_.size() == 1) headsOnly_ = head && (headsOnly_ || block_.back().empty());
    block_.back().emplace_back();
    inCell_ = true;
  }

  void EndCell() {
    if (inCell_) block_.back().back() = TrimSpaces(block_.back().back());
    inCell_ = false;
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
