#include "logic/import/reading/DelimitedReader.h"

#include <algorithm>
#include <cstring>

#include "contract/text/Utf8.h"

namespace tessel {

namespace {

constexpr char quote = '"';

/// Line ends of any kind.
std::int64_t CountLines(std::string_view text) {
  std::int64_t lines = std::count(text.begin(), text.end(), '\n');
  for (std::size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1))
    if (at + 1 == text.size() || text[at + 1] != '\n') ++lines;
  return lines;
}

/// Makes one quote of each two; the new size.
std::size_t JoinQuotes(char* text, std::size_t size) {
  char* out = text;
  for (std::size_t at = 0; at < size; ++at) {
    if (text[at] == quote) ++at;
    *out++ = text[at];
  }
  return static_cast<std::size_t>(out - text);
}

}  // namespace

DelimitedReader::DelimitedReader(TextWindow window, char delimiter, std::string nullText)
    : RecordReader(std::move(window)), delimiter_(delimiter), nullText_(std::move(nullText)) {
  for (const char stop : {delimiter, '\r', '\n'}) stops_[static_cast<unsigned char>(stop)] = true;
}

RecordReader::Step DelimitedReader::Next(ImportRecord& record) {
  while (true) {
    const std::span<char> window = TheWindow().Text();
    const std::string_view text(window.data(), window.size());
    if (text.empty()) return TheWindow().Ended() ? Step::End : Step::NeedsMore;
    if (FindRecord(text) == Found::NeedsMore) return Step::NeedsMore;
    record.line = Line();
    record.cells.clear();
    for (const Piece& piece : pieces_) record.cells.push_back(CellOf(piece, window.data()));
    Take(length_, lines_);
    const bool isEmpty = IsEmptyLine(record);
    StartRecord();
    if (isEmpty) continue;
    if (columns_ == 0) columns_ = record.cells.size();
    return Step::Record;
  }
}

/// Before the first record it is not known how many values there are; a file does not begin with
/// null.
bool DelimitedReader::IsEmptyLine(const ImportRecord& record) const {
  if (record.cells.size() != 1 || columns_ == 1) return false;
  return pieces_.front().begin == pieces_.front().end && !pieces_.front().isQuoted;
}

void DelimitedReader::StartRecord() {
  pieces_.clear();
  lines_ = 0;
  at_ = 0;
}

/// Goes on where it was when the text of the window ended: a record of many megabytes comes in many
/// pieces, and each is looked at once.
DelimitedReader::Found DelimitedReader::FindRecord(std::string_view text) {
  while (true) {
    std::size_t behind = at_;
    if (FindValue(text, behind) == Found::NeedsMore) return Found::NeedsMore;
    const bool isLast = behind == text.size() || text[behind] != delimiter_;
    if (isLast && EndLine(text, behind) == Found::NeedsMore) return Found::NeedsMore;
    TakeValue(text);
    length_ = behind;
    if (isLast) return Found::Yes;
    at_ = behind + 1;
  }
}

void DelimitedReader::TakeValue(std::string_view text) {
  if (value_.isQuoted) lines_ += CountLines(text.substr(value_.begin, value_.end - value_.begin));
  pieces_.push_back(value_);
  inValue_ = false;
}

/// Leaves `behind` at what follows the value.
DelimitedReader::Found DelimitedReader::FindValue(std::string_view text, std::size_t& behind) {
  if (!inValue_) {
    if (at_ == text.size() && !Window().Ended()) return Found::NeedsMore;
    const bool isQuoted = at_ < text.size() && text[at_] == quote;
    const std::size_t begin = at_ + (isQuoted ? 1 : 0);
    value_ = {begin, begin, isQuoted, false};
    inValue_ = true;
  }
  if (value_.isQuoted) return FindQuoted(text, behind);
  std::size_t end = value_.end;
  while (end < text.size() && !stops_[static_cast<unsigned char>(text[end])]) ++end;
  value_.end = end;
  behind = end;
  return end == text.size() && !Window().Ended() ? Found::NeedsMore : Found::Yes;
}

DelimitedReader::Found DelimitedReader::FindQuoted(std::string_view text, std::size_t& behind) {
  while (true) {
    const std::size_t found = std::min(text.find(quote, value_.end), text.size());
    value_.end = found;
    if (found + 1 >= text.size() && !Window().Ended()) return Found::NeedsMore;
    if (found == text.size()) Fail(text, at_, "the quote that begins this value is never closed.");
    if (found + 1 == text.size() || text[found + 1] != quote) break;
    value_.end += 2;
    value_.hasQuotes = true;
  }
  behind = value_.end + 1;
  while (behind < text.size() && (text[behind] == ' ' || text[behind] == '\t') &&
         text[behind] != delimiter_)
    ++behind;
  if (behind == text.size() && !Window().Ended()) return Found::NeedsMore;
  if (behind < text.size() && !stops_[static_cast<unsigned char>(text[behind])])
    Fail(text, behind,
         "behind the closing quote of a value comes something else than the delimiter.");
  return Found::Yes;
}

/// Leaves `at` behind the line end, if there is one.
DelimitedReader::Found DelimitedReader::EndLine(std::string_view text, std::size_t& at) {
  if (at == text.size()) return Found::Yes;
  const bool isReturn = text[at] == '\r';
  if (isReturn && at + 1 == text.size() && !Window().Ended()) return Found::NeedsMore;
  at += isReturn && at + 1 < text.size() && text[at + 1] == '\n' ? 2 : 1;
  ++lines_;
  return Found::Yes;
}

/// Only now, when the whole record is there, quotes are joined: before, it may have been looked at
/// in vain.
ImportCell DelimitedReader::CellOf(const Piece& piece, char* text) const {
  ImportCell cell{text + piece.begin, piece.end - piece.begin,
                  piece.isQuoted ? ImportForm::Quoted : ImportForm::Bare};
  if (piece.hasQuotes) cell.size = JoinQuotes(cell.text, cell.size);
  if (!piece.isQuoted && cell.View() == nullText_) cell.form = ImportForm::Null;
  return cell;
}

/// The line is that of the place itself; values are counted in the record.
void DelimitedReader::Fail(std::string_view text, std::size_t at,
                           const std::string& problem) const {
  RaiseAt(Line() + CountLines(text.substr(0, at)), "value " + std::to_string(pieces_.size() + 1),
          problem);
}

}  // namespace tessel
