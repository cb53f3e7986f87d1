#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "logic/import/reading/TextWindow.h"

namespace tessel {

/// How the text of a value stood in its file.
enum class ImportForm {
  Null,    ///< There is no value.
  Bare,    ///< Without quotes: in JSON a number, true, false, an array or an object.
  Quoted,  ///< In quotes, which are not part of it.
};

/// One value of a record. Its text may be changed in its place, by whoever reads it.
struct ImportCell {
  char* text = nullptr;
  std::size_t size = 0;
  ImportForm form = ImportForm::Null;

  [[nodiscard]] std::string_view View() const { return {text, size}; }
};

struct ImportRecord {
  std::vector<ImportCell> cells;
  std::int64_t line = 0;  ///< At which it begins, from 1.
};

/// Takes a text apart into records. The texts of records stay where they are until ReadMore.
class RecordReader {
 public:
  enum class Step { Record, NeedsMore, End };

  /// A record of more bytes is none: a quote may be missing that was to end it.
  static constexpr std::size_t mostRecordBytes = 512UL * 1024 * 1024;

  explicit RecordReader(TextWindow window) : window_(std::move(window)) {}
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;
  virtual ~RecordReader() = default;

  /// The next record. NeedsMore: first ReadMore has to be called. Raises Error(application), whose
  /// text names the place, for what is no record.
  [[nodiscard]] virtual Step Next(ImportRecord& record) = 0;
  void ReadMore();

  [[nodiscard]] const TextWindow& Window() const { return window_; }
  /// The line that comes next, from 1.
  [[nodiscard]] std::int64_t Line() const { return line_; }

 protected:
  [[nodiscard]] TextWindow& TheWindow() { return window_; }
  /// The next record begins behind `bytes` more, which end `lines` more lines.
  void Take(std::size_t bytes, std::int64_t lines) {
    window_.Take(bytes);
    line_ += lines;
  }

 private:
  TextWindow window_;
  std::int64_t line_ = 1;
};

/// Raises the failure of a file: "Line 12, value 3: ...".
[[noreturn]] void RaiseAt(std::int64_t line, const std::string& place, const std::string& problem);

}  // namespace tessel
