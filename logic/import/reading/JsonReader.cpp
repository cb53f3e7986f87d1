#include "logic/import/reading/JsonReader.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include <utf8proc.h>

#include "contract/text/Utf8.h"

namespace tessel {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::int64_t CountLines(std::string_view text) {
  return std::count(text.begin(), text.end(), '\n');
}

/// How many characters of its line stand before what follows `text`, which began behind `column` of
/// them.
std::int64_t ColumnBehind(std::string_view text, std::int64_t column) {
  const std::size_t lineEnd = text.rfind('\n');
  const bool newLine = lineEnd != std::string_view::npos;
  const auto characters = std::ranges::count_if(newLine ? text.substr(lineEnd + 1) : text,
                                                [](char c) { return !ContinuesCharacter(c); });
  return newLine ? characters : column + characters;
}

}  // namespace

std::optional<std::size_t> JsonReader::EndSearch::Find(std::string_view text) {
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (inText) {
      if (c == '\\') ++at;
      inText = c != '"';
    } else if (c == '"') {
      inText = true;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if ((c == '}' || c == ']') && --depth == 0) {
      return at + 1;
    }
  }
  return std::nullopt;
}

/// Reads one object, all of which is there. Texts are unescaped in their place.
class JsonReader::ObjectParser {
 public:
  /// It begins in that line, behind so many characters.
  ObjectParser(char* text, std::size_t size, std::int64_t line, std::int64_t column)
      : begin_(text), next_(text), end_(text + size), line_(line), column_(column) {}

  /// Calls `take` with each key and its value.
  template <class Take>
  void Read(Take take) {
    Require('{', "a record has to be an object.");
    if (TakeIf('}')) return;
    do {
      SkipBlanks();
      Require('"', "the name of a value has to stand in quotes.");
      const std::string_view key = Text().View();
      Require(':', "behind the name of a value a colon is missing.");
      take(key, ReadValue());
    } while (TakeIf(','));
    Require('}', "a comma or the end of the object is missing.");
  }

 private:
  void SkipBlanks() {
    while (next_ != end_ && IsBlank(*next_)) ++next_;
  }
  [[nodiscard]] bool TakeIf(char c) {
    SkipBlanks();
    if (next_ == end_ || *next_ != c) return false;
    ++next_;
    return true;
  }
  void Require(char c, const char* problem) {
    if (!TakeIf(c)) Fail(problem);
  }

  ImportCell ReadValue() {
    SkipBlanks();
    if (TakeIf('"')) return Text();
    if (next_ != end_ && (*next_ == '{' || *next_ == '[')) return Nested();
    return Word();
  }

  ImportCell Nested() {
    const auto length = EndSearch().Find({next_, static_cast<std::size_t>(end_ - next_)});
    if (!length) Fail("the end of this value is missing.");
    const ImportCell cell{next_, *length, ImportForm::Bare};
    next_ += *length;
    return cell;
  }

  /// A number, true, false or null.
  ImportCell Word() {
    char* begin = next_;
    while (next_ != end_ && *next_ != ',' && *next_ != '}' && *next_ != ']' && !IsBlank(*next_))
      ++next_;
    const ImportCell cell{begin, static_cast<std::size_t>(next_ - begin), ImportForm::Bare};
    const std::string_view word = cell.View();
    if (word == "null") return {};
    if (word != "true" && word != "false" && !IsNumber(word)) {
      next_ = begin;
      Fail("this is no value of JSON.");
    }
    return cell;
  }

  static bool IsNumber(std::string_view word) {
    if (word.starts_with('-')) word.remove_prefix(1);
    if (word.empty() || word.front() < '0' || word.front() > '9') return false;
    return word.find_first_not_of("0123456789.eE+-") == std::string_view::npos;
  }

  /// What follows the quote, up to the next one that closes it.
  ImportCell Text() {
    char* const begin = next_;
    char* out = next_;
    while (next_ != end_ && *next_ != '"') {
      if (*next_ == '\\') Unescape(out);
      else *out++ = *next_++;
    }
    if (next_ == end_) Fail("a text is not closed.");
    ++next_;
    return {begin, static_cast<std::size_t>(out - begin), ImportForm::Quoted};
  }

  /// The character is never longer than its escape.
  void Unescape(char*& out) {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    ++next_;
    const std::size_t simple = next_ == end_ ? std::string_view::npos : letters.find(*next_);
    if (simple != std::string_view::npos) {
      *out++ = meanings[simple];
      ++next_;
      return;
    }
    if (next_ == end_ || *next_ != 'u') Fail("there is no such escape in JSON.");
    ++next_;
    const utf8proc_int32_t code = CodePoint();
    utf8proc_uint8_t buffer[4];
    const auto length = utf8proc_encode_char(code, buffer);
    out = std::copy_n(reinterpret_cast<const char*>(buffer), length, out);
  }

  utf8proc_int32_t CodePoint() {
    constexpr utf8proc_int32_t firstHigh = 0xD800;
    constexpr utf8proc_int32_t firstLow = 0xDC00;
    constexpr utf8proc_int32_t behindLow = 0xE000;
    constexpr utf8proc_int32_t beyond = 0x10000;
    const utf8proc_int32_t unit = Unit();
    if (unit < firstHigh || unit >= behindLow) return unit;
    if (unit >= firstLow || end_ - next_ < 6 || next_[0] != '\\' || next_[1] != 'u')
      Fail("half of a character stands alone.");
    next_ += 2;
    const utf8proc_int32_t low = Unit();
    if (low < firstLow || low >= behindLow) Fail("half of a character stands alone.");
    return beyond + ((unit - firstHigh) << 10) + (low - firstLow);
  }

  utf8proc_int32_t Unit() {
    constexpr int digits = 4;
    constexpr int hexadecimal = 16;
    utf8proc_int32_t unit = 0;
    if (end_ - next_ < digits) Fail("an escape is cut short.");
    const auto [stop, error] = std::from_chars(next_, next_ + digits, unit, hexadecimal);
    if (error != std::errc() || stop != next_ + digits) Fail("there is no such escape in JSON.");
    next_ += digits;
    return unit;
  }

  [[noreturn]] void Fail(const char* problem) const {
    const std::string_view before(begin_, static_cast<std::size_t>(next_ - begin_));
    RaiseAt(line_ + CountLines(before),
            "character " + std::to_string(ColumnBehind(before, column_) + 1), problem);
  }

  char* begin_;
  char* next_;
  char* end_;
  std::int64_t line_;
  std::int64_t column_;
};

JsonReader::JsonReader(TextWindow window, std::vector<std::string> names)
    : RecordReader(std::move(window)), names_(std::move(names)) {}

RecordReader::Step JsonReader::Next(ImportRecord& record) {
  const Step step = FindObject();
  if (step != Step::Record) return step;
  const std::span<char> text = TheWindow().Text();
  const auto length = search_.Find({text.data(), text.size()});
  if (!length) {
    if (!TheWindow().Ended()) return Step::NeedsMore;
    RaiseAt(Line(), "", "the object that begins here has no end.");
  }
  search_ = {};
  ReadObject(record, *length);
  return Step::Record;
}

/// Goes on to the beginning of an object, past what stands between two. What was taken is gone: so
/// nothing is taken before it is known.
RecordReader::Step JsonReader::FindObject() {
  while (SkipBlanks()) {
    const char next = TheWindow().Text().front();
    if (next == '{' && !arrayEnded_ && !(inArray_ && needsComma_)) {
      began_ = true;
      return Step::Record;
    }
    TakeSeparator(next);
  }
  if (!TheWindow().Ended()) return Step::NeedsMore;
  if (inArray_ && !arrayEnded_) RaiseAt(Line(), "", "the array of records has no end.");
  return Step::End;
}

/// False at the end of the text in the window.
bool JsonReader::SkipBlanks() {
  const std::span<char> text = TheWindow().Text();
  std::size_t at = 0;
  while (at < text.size() && IsBlank(text[at])) ++at;
  const bool found = at < text.size();
  Pass({text.data(), at});
  return found;
}

void JsonReader::TakeSeparator(char next) {
  const bool opens = next == '[' && !began_;
  const bool closes = next == ']' && inArray_ && !arrayEnded_;
  const bool divides = next == ',' && inArray_ && needsComma_;
  if (!opens && !closes && !divides)
    RaiseAt(Line(), "",
            began_
                ? "behind a record comes something else than the next one."
                : "this is no JSON of records: they are objects, { \"name\": value, ... }, in an "
                  "array or one a line.");
  began_ = true;
  inArray_ = inArray_ || opens;
  arrayEnded_ = arrayEnded_ || closes;
  needsComma_ = false;
  Pass({TheWindow().Text().data(), 1});
}

void JsonReader::Pass(std::string_view text) {
  column_ = ColumnBehind(text, column_);
  Take(text.size(), CountLines(text));
}

void JsonReader::ReadObject(ImportRecord& record, std::size_t length) {
  char* const text = TheWindow().Text().data();
  const std::int64_t lines = CountLines({text, length});
  const std::int64_t behind = ColumnBehind({text, length}, column_);
  record.line = Line();
  record.cells.assign(names_.size(), {});
  nextColumn_ = 0;
  ObjectParser(text, length, Line(), column_)
      .Read([&](std::string_view key, const ImportCell& value) {
        const std::size_t column = ColumnOf(key);
        if (column >= record.cells.size()) record.cells.resize(column + 1);
        if (record.cells[column].form != ImportForm::Null)
          RaiseAt(record.line, "", "\"" + std::string(key) + "\" stands twice in this object.");
        record.cells[column] = value;
      });
  needsComma_ = true;
  column_ = behind;
  Take(length, lines);
}

/// Objects mostly have their keys in one order.
std::size_t JsonReader::ColumnOf(std::string_view key) {
  if (nextColumn_ >= names_.size() || names_[nextColumn_] != key) {
    const auto found = std::ranges::find(names_, key);
    nextColumn_ = static_cast<std::size_t>(found - names_.begin());
    if (found == names_.end()) names_.emplace_back(key);
  }
  return nextColumn_++;
}

}  // namespace tessel
