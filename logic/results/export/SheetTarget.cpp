// Records in the sheets of one file: a further sheet where one is full, and account of what did not
// fit into its cell.

#include <algorithm>
#include <utility>

#include "contract/base/Error.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/export/SheetValues.h"
#include "logic/results/export/formats/Cells.h"

namespace tessel {

namespace {

/// Values of one kind that had to be changed: how many, and where the first one stands.
struct Changes {
  std::int64_t count = 0;
  std::string first;

  void Note(const CellPlace& place) {
    if (count++ == 0) first = NameOf(place);
  }
  [[nodiscard]] std::string Told(std::string_view what) const {
    if (count == 0) return {};
    return std::to_string(count) + (count == 1 ? " text" : " texts") + std::string(what) +
           " The first: " + first + ".\n";
  }
};

class SheetTarget final : public ExportTarget {
 public:
  SheetTarget(SheetFiles& sheets, std::string path, const ExportChoices& choices,
              const std::vector<FieldInfo>& fields)
      : sheets_(sheets),
        path_(std::move(path)),
        hasHead_(choices.header),
        values_(choices.binary),
        names_(DifferingNames(fields)),
        rooms_(fields.size()),
        cells_(fields.size()) {}

  void Begin() override {
    if (names_.size() > sheetLimit::columns)
      throw Error(errorNumber::application, "Tessel",
                  "A sheet has room for " + std::to_string(sheetLimit::columns) +
                      " columns, and there are " + std::to_string(names_.size()) + ".");
    file_ = sheets_.StartReplacing(path_);
    AddSheet();
  }

  void Take(const RecordBatch& batch) override {
    for (std::size_t i = 0; i < batch.Records(); ++i)
      AddRecord(batch.Record(i), batch.first + static_cast<std::int64_t>(i) + 1);
  }

  void End(std::int64_t /*records*/) override { file_->PutInPlace(); }

  [[nodiscard]] std::string Remarks() const override {
    std::string remarks;
    if (sheetCount_ > 1)
      remarks = "A sheet has room for " + std::to_string(sheetLimit::rows) +
                " rows: the records stand in " + std::to_string(sheetCount_) + " sheets.\n";
    remarks += cut_.Told(" longer than the " + std::to_string(sheetLimit::characters) +
                         " characters of a cell: cut there.");
    remarks += changed_.Told(" with characters that no cell holds: they were replaced.");
    return remarks.substr(0, remarks.find_last_not_of('\n') + 1);
  }

 private:
  void AddSheet() {
    ++sheetCount_;
    std::vector<std::string> heads;
    if (hasHead_)
      for (const std::string& name : names_) heads.emplace_back(FittingText(name, room_).text);
    file_->AddSheet("Sheet" + std::to_string(sheetCount_), heads);
    rows_ = hasHead_ ? 1 : 0;
  }

  void AddRecord(std::span<const ValueView> values, std::int64_t record) {
    if (rows_ == sheetLimit::rows) AddSheet();
    for (std::size_t i = 0; i < values.size(); ++i) {
      cells_[i] = values_.Cell(values[i], rooms_[i]);
      if (auto* text = std::get_if<std::string_view>(&cells_[i])) Fit(*text, i, record);
    }
    file_->AddRow(cells_);
    ++rows_;
  }

  void Fit(std::string_view& text, std::size_t column, std::int64_t record) {
    const SheetText fitting = FittingText(text, rooms_[column]);
    const CellPlace place{record, names_[column]};
    if (fitting.cut) cut_.Note(place);
    if (fitting.changed) changed_.Note(place);
    text = fitting.text;
  }

  SheetFiles& sheets_;
  std::string path_;
  bool hasHead_;
  SheetValues values_;
  std::vector<std::string> names_;
  std::unique_ptr<SheetFile> file_;
  int sheetCount_ = 0;
  std::size_t rows_ = 0;            ///< Of the sheet.
  std::vector<std::string> rooms_;  ///< For texts that are made for a cell, by column.
  std::string room_;
  std::vector<SheetCell> cells_;
  Changes cut_;
  Changes changed_;
};

}  // namespace

std::unique_ptr<ExportTarget> MakeSheetTarget(SheetFiles& sheets, const std::string& path,
                                              const ExportChoices& choices,
                                              std::vector<FieldInfo> fields) {
  return std::make_unique<SheetTarget>(sheets, path, choices, fields);
}

}  // namespace tessel
