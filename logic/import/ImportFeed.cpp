#include "logic/import/ImportFeed.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr std::size_t pieceBytes = 256UL * 1024;
constexpr std::size_t batchRows = 500;

/// A value as it stands in a message: its beginning, in quotes.
std::string Shown(std::string_view text) {
  constexpr std::size_t most = 40;
  std::string shown;
  for (const char c : text.substr(0, most))
    shown += static_cast<unsigned char>(c) < ' ' || static_cast<unsigned char>(c) > '~' ? '?' : c;
  return "\"" + shown + (text.size() > most ? "...\"" : "\"");
}

}  // namespace

ImportFeed::ImportFeed(const ImportSource& source, const ImportFormat& format,
                       std::vector<std::string> names, std::vector<ImportColumn> columns)
    : format_(format),
      names_(std::move(names)),
      columns_(std::move(columns)),
      style_{format.decimalSign, format.kind == ImportFormat::Kind::Json},
      reader_(MakeReader(source, format, names_, pieceBytes)),
      size_(reader_->Window().SourceSize()),
      skipsHeader_(format.kind == ImportFormat::Kind::Delimited && format.hasHeader) {}

double ImportFeed::Progress() const {
  if (size_ == 0) return 1;
  return std::min(1.0, static_cast<double>(bytesRead_.load()) / static_cast<double>(size_));
}

/// What a batch looks at is gone when more is read: so the batch ends there.
bool ImportFeed::Next(LoadBatch& batch) {
  while (batch.Rows() == 0) {
    if (std::exchange(needsMore_, false)) {
      reader_->ReadMore();
      bytesRead_ = reader_->Window().BytesRead();
    }
    if (!ReadInto(batch)) return batch.Rows() > 0;
  }
  return true;
}

/// False at the end of the source.
bool ImportFeed::ReadInto(LoadBatch& batch) {
  while (batch.Rows() < batchRows) {
    switch (reader_->Next(record_)) {
      case RecordReader::Step::End: CheckEnd(); return false;
      case RecordReader::Step::NeedsMore: needsMore_ = true; return true;
      case RecordReader::Step::Record:
        if (std::exchange(skipsHeader_, false)) CheckHeader();
        else AddRecord(batch);
    }
  }
  return true;
}

/// Values go to columns by their place: another program may have written the file again since it
/// was looked at.
void ImportFeed::CheckHeader() const {
  CheckLength();
  if (ColumnNames(record_) != names_)
    RaiseAt(record_.line, "",
            "the columns have other names than when the file was looked at. Look at it again.");
}

/// What was cut off while it was read is no end.
void ImportFeed::CheckEnd() const {
  if (reader_->Window().BytesRead() < size_)
    RaiseAt(reader_->Line(), "", "the file ended here, and was longer when it was opened.");
}

void ImportFeed::AddRecord(LoadBatch& batch) {
  CheckLength();
  for (const ImportColumn& column : columns_) {
    ImportCell missing;
    ImportCell& cell =
        column.source < record_.cells.size() ? record_.cells[column.source] : missing;
    const ImportCell asItWas = cell;
    const char* problem = ReadCell(cell, column.target.type, style_, batch.cells.emplace_back());
    if (problem == nullptr && !column.keepsMoments)
      problem = LossOfMoment(asItWas.View(), column.target.type);
    if (problem != nullptr)
      RaiseAt(record_.line, "column \"" + names_[column.source] + "\"",
              Shown(asItWas.View()) + " " + problem);
  }
  batch.lines.push_back(record_.line);
}

/// In a text with delimiters a value that is missing may be any of them.
void ImportFeed::CheckLength() const {
  const std::size_t count = record_.cells.size();
  const bool isJson = format_.kind == ImportFormat::Kind::Json;
  if (count == names_.size() || (isJson && count < names_.size())) return;
  RaiseAt(record_.line, "",
          "this record has " + std::to_string(count) + (count == 1 ? " value" : " values") +
              " for " + std::to_string(names_.size()) +
              (names_.size() == 1 ? " column." : " columns."));
}

}  // namespace tessel
