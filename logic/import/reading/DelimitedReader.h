#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "logic/import/reading/RecordReader.h"

namespace tessel {

/// Reads values with a delimiter between them, a record a line: CSV and tab-separated text. A value
/// may stand in double quotes, which are doubled inside it; then it may hold delimiters and line
/// ends, and is never null. Lines end with LF, CR LF or CR. Empty lines are left out, unless the
/// records have one value each.
class DelimitedReader final : public RecordReader {
 public:
  /// A value without quotes that reads `nullText` is null.
  DelimitedReader(TextWindow window, char delimiter, std::string nullText);

  [[nodiscard]] Step Next(ImportRecord& record) override;

 private:
  /// A value within the text of the window.
  struct Piece {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool isQuoted = false;
    bool hasQuotes = false;  ///< Doubled ones, inside.
  };
  /// What became of looking for the end of something.
  enum class Found { Yes, NeedsMore };

  [[nodiscard]] Found FindRecord(std::string_view text);
  void StartRecord();
  [[nodiscard]] Found FindValue(std::string_view text, std::size_t& behind);
  [[nodiscard]] Found FindQuoted(std::string_view text, std::size_t& behind);
  void TakeValue(std::string_view text);
  [[nodiscard]] Found EndLine(std::string_view text, std::size_t& at);
  [[nodiscard]] ImportCell CellOf(const Piece& piece, char* text) const;
  [[nodiscard]] bool IsEmptyLine(const ImportRecord& record) const;
  [[noreturn]] void Fail(std::string_view text, std::size_t at, const std::string& problem) const;

  char delimiter_;
  std::string nullText_;
  std::array<bool, 256> stops_{};  ///< The bytes that end a value without quotes.
  // Of the record that is looked for. What was seen of it is kept when more has to be read.
  std::vector<Piece> pieces_;  ///< Its values so far.
  Piece value_;                ///< The next one, as far as it was looked at.
  std::size_t at_ = 0;         ///< Where that begins, with its quote.
  bool inValue_ = false;       ///< It is known how that begins.
  std::size_t length_ = 0;     ///< Its bytes, with the line end.
  std::int64_t lines_ = 0;     ///< That it takes.
  std::size_t columns_ = 0;    ///< Values of the first record.
};

}  // namespace tessel
