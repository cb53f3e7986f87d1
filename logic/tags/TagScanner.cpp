#include "logic/tags/TagScanner.h"

#include "logic/program/Characters.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

/// Opening, marker and type; nothing shorter is looked at.
constexpr std::size_t headLength = 3;
constexpr std::size_t endLength = 2;

bool IsOpening(char c) { return c == '<' || c == '{'; }
bool IsMarker(char c) { return c == '%' || c == '*'; }
char ClosingOf(char opening) { return static_cast<char>(opening + 2); }

/// 0 when there is no such type.
int SourceOf(char type) {
  switch (type) {
    case tagType::field: return tagSource::field;
    case tagType::named: return tagSource::named;
    case tagType::clipboard: return tagSource::clipboard;
    default: return 0;
  }
}

int FlagsOf(char opening, char marker) {
  return (marker == '*' ? tagFlag::quoted : 0) | (opening == '{' ? tagFlag::list : 0);
}

/// Reads the text once from front to back and builds the new one behind it.
class Scanner {
 public:
  Scanner(std::string_view text, TagResolver& resolver) : text_(text), resolver_(resolver) {}

  SubstitutedText Run() {
    while (FindTag()) ReplaceTag();
    result_.text.append(text_.substr(copied_));
    return std::move(result_);
  }

 private:
  /// Moves to the next head of a tag outside string literals; false when there is none.
  bool FindTag() {
    for (; at_ + headLength <= text_.size(); ++at_) {
      if (IsOpening(text_[at_]) && IsMarker(text_[at_ + 1])) return true;
      if (text_[at_] == '\'') at_ = text_.find('\'', at_ + 1);
      if (at_ == std::string_view::npos) return false;
    }
    return false;
  }

  void ReplaceTag() {
    const std::string_view head = text_.substr(at_, headLength);
    const int source = SourceOf(head[2]);
    if (source == 0) RaiseUnknownType();
    const std::string end = {head[1], ClosingOf(head[0])};
    const std::size_t nameStart = at_ + headLength;
    const std::size_t nameEnd = text_.find(end, nameStart);
    if (nameEnd == std::string_view::npos) RaiseAppError("Missing '" + end + "'");
    if (!resolver_.Yield()) RaiseAppError("Cancelled.");
    const std::string_view name = text_.substr(nameStart, nameEnd - nameStart);
    result_.text.append(text_.substr(copied_, at_ - copied_));
    const std::size_t filled = result_.text.size();
    result_.text += resolver_.Resolve({head[2], std::string(name), FlagsOf(head[0], head[1])});
    result_.usedSources |= source;
    result_.tags.push_back({{at_, nameEnd + endLength}, {filled, result_.text.size()}});
    copied_ = at_ = nameEnd + endLength;
  }

  [[noreturn]] void RaiseUnknownType() const {
    const std::string_view type = FirstCharacter(text_.substr(at_ + headLength - 1));
    RaiseAppError("Unknown tag type: '" + std::string(type) + "'");
  }

  std::string_view text_;
  TagResolver& resolver_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;  ///< Up to here the text is in the result.
  SubstitutedText result_;
};

}  // namespace

SubstitutedText SubstituteTags(std::string_view sql, TagResolver& resolver) {
  return Scanner(sql, resolver).Run();
}

TextRange InTaggedText(const TextRange& filled, const std::vector<FilledTag>& tags) {
  TextRange range = filled;
  for (const FilledTag& one : tags) {
    if (one.filled.begin >= filled.end) break;
    const auto behind = [&one](std::size_t place) {
      return one.tag.end + (place - one.filled.end);
    };
    range.end = filled.end > one.filled.end ? behind(filled.end) : one.tag.end;
    if (one.filled.end <= filled.begin) range.begin = behind(filled.begin);
    else if (one.filled.begin <= filled.begin) range.begin = one.tag.begin;
  }
  return range;
}

bool MayHoldTags(std::string_view sql) {
  for (std::size_t i = 0; i + headLength <= sql.size(); ++i)
    if (IsOpening(sql[i]) && IsMarker(sql[i + 1])) return true;
  return false;
}

std::string MakeTagText(std::string_view name, int flags, char type) {
  const char opening = (flags & tagFlag::list) != 0 ? '{' : '<';
  const char marker = (flags & tagFlag::quoted) != 0 ? '*' : '%';
  std::string text = {opening, marker, type};
  text.append(name);
  return text + marker + ClosingOf(opening);
}

}  // namespace tessel
