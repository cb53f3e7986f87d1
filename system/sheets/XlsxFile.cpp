// The one place that calls the library for XLSX files. It writes in constant memory: the rows of
// each sheet go to a file without a name beside the new one. At the end sheet by sheet is put
// together, in another such file, and packed. The library does not tell when the disk is full while
// it writes those, so that is looked for here.

#include "system/sheets/XlsxFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include <xlsxwriter.h>

#include "contract/base/Error.h"
#include "system/ReplacingFile.h"
#include "system/sheets/ZipMembers.h"

namespace tessel {

namespace {

constexpr const char* formats[] = {"yyyy\\-mm\\-dd", "hh:mm:ss.000",
                                   "yyyy\\-mm\\-dd\\ hh:mm:ss.000"};
constexpr double widths[] = {11, 13, 24};

/// More than a sheet holds beside its rows.
constexpr std::uint64_t besideRows = std::uint64_t{1} << 20U;

std::size_t IndexOf(SheetMoment::Kind kind) { return static_cast<std::size_t>(kind); }

/// Characters of UTF-8 as they count in UTF-16.
std::size_t Units(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    units += (byte & 0xC0U) == 0x80U ? 0U : byte >= 0xF0U ? 2U : 1U;
  }
  return units;
}

class XlsxFile final : public SheetFile {
 public:
  explicit XlsxFile(const std::string& path)
      : path_(path), folder_(FolderOf(FollowLinks(path))), file_(path, false) {
    lxw_workbook_options options{LXW_TRUE, folder_.data(), LXW_FALSE};
    workbook_ = workbook_new_opt(file_.Name().c_str(), &options);
    if (workbook_ == nullptr) ThrowFileError(path_, "There is not enough memory.", 0);
    bold_ = workbook_add_format(workbook_);
    format_set_bold(bold_);
    for (const char* format : formats) {
      momentFormats_.push_back(workbook_add_format(workbook_));
      format_set_num_format(momentFormats_.back(), format);
    }
  }
  XlsxFile(const XlsxFile&) = delete;
  XlsxFile& operator=(const XlsxFile&) = delete;
  ~XlsxFile() override {
    if (workbook_ == nullptr) return;
    for (lxw_worksheet* sheet : sheets_)
      if (sheet->optimize_tmpfile != nullptr) std::fclose(sheet->optimize_tmpfile);
    lxw_workbook_free(workbook_);
  }

  void AddSheet(const std::string& name, std::span<const std::string> heads) override {
    CheckRows();
    lxw_worksheet* sheet = workbook_add_worksheet(workbook_, name.c_str());
    if (sheet == nullptr) RaiseLimit("There can be no sheet of the name '" + name + "'.");
    sheets_.push_back(sheet);
    row_ = 0;
    wide_.clear();
    if (heads.empty()) return;
    for (std::size_t column = 0; column < heads.size(); ++column)
      WriteText(column, heads[column], bold_);
    worksheet_freeze_panes(sheet, 1, 0);
    ++row_;
  }

  void AddRow(std::span<const SheetCell> cells) override {
    for (std::size_t column = 0; column < cells.size(); ++column) WriteCell(column, cells[column]);
    constexpr std::size_t rowsBetweenLooks = 4096;
    if (++row_ % rowsBetweenLooks == 0) CheckRows();
  }

  void PutInPlace() override {
    CheckRows();
    std::vector<std::uint64_t> sizes;
    for (lxw_worksheet* sheet : sheets_) sizes.push_back(RowBytes(*sheet));
    for (const std::uint64_t size : sizes) file_.CheckRoom(size + besideRows);
    errno = 0;
    const lxw_error error = workbook_close(std::exchange(workbook_, nullptr));
    if (error != LXW_NO_ERROR) Fail(error);
    for (std::size_t i = 0; i < sizes.size(); ++i) CheckPacked(i + 1, sizes[i]);
    file_.PutInPlace();
  }

 private:
  [[noreturn]] static void RaiseLimit(const std::string& description) {
    throw Error(errorNumber::application, "Tessel", description);
  }

  /// The system's reason where it gave one.
  [[noreturn]] void Fail(lxw_error error) {
    if (errno == ENOSPC || errno == EFBIG || errno == EIO || errno == EDQUOT)
      ThrowSystemError(path_, errno);
    ThrowFileError(path_, lxw_strerror(error), 0);
  }

  void Require(lxw_error error) {
    if (error != LXW_NO_ERROR)
      RaiseLimit(std::string("This cannot stand in a sheet: ") + lxw_strerror(error));
  }

  /// The rows of the last sheet have all been written so far.
  void CheckRows() {
    if (!sheets_.empty() && std::ferror(sheets_.back()->optimize_tmpfile) != 0)
      ThrowSystemError(path_, ENOSPC);
  }

  /// How many bytes the rows of a sheet are that wait to be packed.
  [[nodiscard]] std::uint64_t RowBytes(lxw_worksheet& sheet) {
    errno = ENOSPC;  // A write that failed before has left its mark, but no reason.
    if (std::ferror(sheet.optimize_tmpfile) != 0 || std::fflush(sheet.optimize_tmpfile) != 0)
      ThrowSystemError(path_, errno);
    return static_cast<std::uint64_t>(std::ftell(sheet.optimize_tmpfile));
  }

  /// The packed sheet holds its rows; less of it was packed when the disk was full.
  void CheckPacked(std::size_t number, std::uint64_t rowBytes) {
    const std::string member = "xl/worksheets/sheet" + std::to_string(number) + ".xml";
    const auto packed = ZipMemberSize(file_.Name(), member);
    if (!packed || *packed <= rowBytes) ThrowSystemError(path_, ENOSPC);
  }

  [[nodiscard]] lxw_row_t Row() const { return static_cast<lxw_row_t>(row_); }

  void WriteText(std::size_t column, std::string_view text, lxw_format* format) {
    if (text.size() > sheetLimit::characters && Units(text) > sheetLimit::characters)
      Require(LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED);
    text_.assign(text);
    Require(worksheet_write_string(sheets_.back(), Row(), static_cast<lxw_col_t>(column),
                                   text_.c_str(), format));
  }

  void WriteMoment(std::size_t column, const SheetMoment& moment) {
    const auto place = static_cast<lxw_col_t>(column);
    const std::size_t kind = IndexOf(moment.kind);
    if (wide_.size() <= column) wide_.resize(column + 1);
    if (widths[kind] > wide_[column]) {
      wide_[column] = widths[kind];
      Require(worksheet_set_column(sheets_.back(), place, place, widths[kind], nullptr));
    }
    Require(
        worksheet_write_number(sheets_.back(), Row(), place, moment.days, momentFormats_[kind]));
  }

  void WriteCell(std::size_t column, const SheetCell& cell) {
    const auto place = static_cast<lxw_col_t>(column);
    lxw_worksheet* sheet = sheets_.back();
    if (const auto* number = std::get_if<double>(&cell))
      Require(worksheet_write_number(sheet, Row(), place, *number, nullptr));
    else if (const auto* text = std::get_if<std::string_view>(&cell))
      WriteText(column, *text, nullptr);
    else if (const auto* moment = std::get_if<SheetMoment>(&cell)) WriteMoment(column, *moment);
    else if (const auto* flag = std::get_if<bool>(&cell))
      Require(worksheet_write_boolean(sheet, Row(), place, *flag ? 1 : 0, nullptr));
  }

  std::string path_;
  std::string folder_;  ///< Where the library keeps its files: the disk that has to have the room.
  ReplacingFile file_;
  lxw_workbook* workbook_ = nullptr;
  lxw_format* bold_ = nullptr;
  std::vector<lxw_format*> momentFormats_;  ///< By kind.
  std::vector<lxw_worksheet*> sheets_;
  std::vector<double> wide_;  ///< Widths set for columns of the last sheet.
  std::size_t row_ = 0;       ///< The next one.
  std::string text_;          ///< With a NUL at its end, as the library wants it.
};

}  // namespace

std::unique_ptr<SheetFile> XlsxFiles::StartReplacing(const std::string& path) {
  return std::make_unique<XlsxFile>(path);
}

}  // namespace tessel
