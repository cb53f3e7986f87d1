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
    if (IsEmptyLine(record)) continue;
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

DelimitedReader::Found DelimitedReader::FindRecord(std::string_view text) {
  pieces_.clear();
  lines_ = 0;
  std::size_t at = 0;
  while (true) {
    if (FindPiece(text, at) == Found::NeedsMore) return Found::NeedsMore;
    if (at == text.size() || text[at] != delimiter_) break;
    ++at;
  }
  if (EndLine(text, at) == Found::NeedsMore) return Found::NeedsMore;
  length_ = at;
  return Found::Yes;
}

/// Leaves `at` behind the value.
DelimitedReader::Found DelimitedReader::FindPiece(std::string_view text, std::size_t& at) {
  if (at < text.size() && text[at] == quote) return FindQuoted(text, at);
  const std::size_t begin = at;
  while (at < text.size() && !stops_[static_cast<unsigned char>(text[at])]) ++at;
  if (at == text.size() && !Window().Ended()) return Found::NeedsMore;
  pieces_.push_back({begin, at});
  return Found::Yes;
}

DelimitedReader::Found DelimitedReader::FindQuoted(std::string_view text, std::size_t& at) {
  Piece piece{at + 1, at + 1, true, false};
  while (true) {
    const std::size_t found = text.find(quote, piece.end);
    const bool goesOn =
        found != std::string_view::npos && found + 1 < text.size() && text[found + 1] == quote;
    if (found == std::string_view::npos || (found + 1 == text.size() && !Window().Ended())) {
      if (!Window().Ended()) return Found::NeedsMore;
      Fail(text, at, "the quote that begins this value is never closed.");
    }
    piece.end = found + (goesOn ? 2 : 0);
    if (!goesOn) break;
    piece.hasQuotes = true;
  }
  lines_ += CountLines(text.substr(piece.begin, piece.end - piece.begin));
  at = piece.end + 1;
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t') && text[at] != delimiter_) ++at;
  if (at == text.size() && !Window().Ended()) return Found::NeedsMore;
  if (at < text.size() && !stops_[static_cast<unsigned char>(text[at])])
    Fail(text, at, "behind the closing quote of a value comes something else than the delimiter.");
  pieces_.push_back(piece);
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
