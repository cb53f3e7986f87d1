#include "logic/import/guessing/ImportScan.h"

#include <algorithm>
#include <utility>

#include "logic/import/reading/JsonReader.h"

namespace tessel {

namespace {

constexpr std::size_t pieceBytes = 64UL * 1024;
constexpr std::size_t mostShown = 200;  ///< Bytes of a value.

Value ShownValue(const ImportCell& cell) {
  if (cell.form == ImportForm::Null) return {};
  return std::string(cell.View().substr(0, mostShown));
}

}  // namespace

ImportScan::ImportScan(const ImportSource& source, ImportFormat format)
    : format_(std::move(format)), reader_(MakeReader(source, format_, {}, pieceBytes)) {}

std::vector<std::string> ImportScan::Names() const {
  std::vector<std::string> names;
  for (const SourceColumn& column : columns_) names.push_back(column.name);
  return names;
}

double ImportScan::Progress() const {
  const auto size = static_cast<double>(reader_->Window().SourceSize());
  return size == 0 ? 1 : std::min(1.0, static_cast<double>(reader_->Window().BytesRead()) / size);
}

bool ImportScan::Step() {
  if (ended_) return false;
  reader_->ReadMore();
  while (true) {
    const RecordReader::Step step = reader_->Next(record_);
    if (step == RecordReader::Step::NeedsMore) return true;
    ended_ = step == RecordReader::Step::End;
    if (ended_) return false;
    Take(record_);
  }
}

void ImportScan::Take(const ImportRecord& record) {
  const bool isJson = format_.kind == ImportFormat::Kind::Json;
  if (!isJson && !std::exchange(named_, true)) {
    TakeNames(record);
    if (format_.hasHeader) return;
  }
  if (const auto* json = dynamic_cast<const JsonReader*>(reader_.get()))
    for (std::size_t i = columns_.size(); i < json->Names().size(); ++i)
      columns_.push_back({json->Names()[i], {}});
  if (!isJson && record.cells.size() != columns_.size())
    RaiseAt(record.line, "",
            "this record has " + std::to_string(record.cells.size()) + " values, and the first " +
                std::to_string(columns_.size()) + ".");
  for (std::size_t i = 0; i < record.cells.size(); ++i)
    columns_[i].guess.Add(record.cells[i], format_.decimalSign, isJson);
  ++records_;
  if (first_.size() < shownRecords) KeepFirst(record);
}

void ImportScan::TakeNames(const ImportRecord& record) {
  ImportRecord header = record;
  if (!format_.hasHeader)
    for (ImportCell& cell : header.cells) cell.size = 0;
  for (std::string& name : ColumnNames(header)) columns_.push_back({std::move(name), {}});
}

void ImportScan::KeepFirst(const ImportRecord& record) {
  std::vector<Value>& row = first_.emplace_back();
  for (const ImportCell& cell : record.cells) row.push_back(ShownValue(cell));
}

}  // namespace tessel
