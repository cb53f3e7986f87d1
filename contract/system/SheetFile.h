#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>

// Tables that spreadsheets open, with the types of their cells. What of a database's values fits
// into which cell is for the caller to say.

namespace tessel {

/// What a file of sheets (XLSX) can hold at most.
namespace sheetLimit {
inline constexpr std::size_t rows = 1'048'576;     ///< Of one sheet, its head among them.
inline constexpr std::size_t columns = 16'384;     ///< Of one sheet.
inline constexpr std::size_t characters = 32'767;  ///< Of the text of one cell, in UTF-16.
}  // namespace sheetLimit

/// A moment as sheets hold it: a number, which is shown as its kind asks for. Thousandths of a
/// second are the least that it keeps, and it knows no zone.
struct SheetMoment {
  enum class Kind { Date, Time, DateAndTime };

  double days = 0;  ///< Since the day before 1900-01-01, with 1900-02-29 counted, which never was.
  Kind kind = Kind::DateAndTime;
};

/// What a cell holds: nothing, a truth, a finite number, a moment, or a text of valid UTF-8 without
/// NUL, which is looked at.
using SheetCell = std::variant<std::monostate, bool, double, SheetMoment, std::string_view>;

/// A file of sheets that is being written, row by row; no more than a row is held in memory. As
/// FileReplacement: it is written beside the file that it replaces at the end, one thread at a time
/// uses it, and failures raise Error(file). Calls that break sheetLimit raise Error(application).
class SheetFile {
 public:
  SheetFile() = default;
  SheetFile(const SheetFile&) = delete;
  SheetFile& operator=(const SheetFile&) = delete;
  virtual ~SheetFile() = default;

  /// Begins a sheet of that name, which no other one has: at most 31 characters, none of []:*?/\.
  /// Its first row holds `heads`, in bold, and stays in sight. No head: there is no such row.
  virtual void AddSheet(const std::string& name, std::span<const std::string> heads) = 0;
  /// Adds a row to the sheet that was begun last. The texts are copied: they need not outlive the
  /// call. A row that is shorter than others ends with empty cells.
  virtual void AddRow(std::span<const SheetCell> cells) = 0;
  /// Completes the file and puts it in place, wholly or not at all. The last call, and only one. It
  /// takes a while where there are many rows.
  virtual void PutInPlace() = 0;
};

/// Makes files of sheets. It outlives them.
class SheetFiles {
 public:
  virtual ~SheetFiles() = default;

  /// Begins to write the file that is to stand at `path`, by the rules of Files::StartReplacing:
  /// raises at once when the file may not be written. What is written takes room beside it, more
  /// than the file has in the end. Any thread.
  [[nodiscard]] virtual std::unique_ptr<SheetFile> StartReplacing(const std::string& path) = 0;
};

}  // namespace tessel
