#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "logic/import/CellValues.h"
#include "logic/import/guessing/ImportFormat.h"

namespace tessel {

/// A column of the source and the one of the table that its values go to.
struct ImportColumn {
  std::size_t source = 0;  ///< Its number among the columns of the source.
  LoadColumn target;
  /// The database keeps or refuses whatever a moment tells; else it forgets an offset from UTC, or
  /// the time of a date, without a word.
  bool keepsMoments = true;
};

/// The records of a source on their way into a table, on the worker of the connection.
class ImportFeed final : public RowFeed {
 public:
  /// `names` are all columns of the source. Opens it.
  ImportFeed(const ImportSource& source, const ImportFormat& format, std::vector<std::string> names,
             std::vector<ImportColumn> columns);

  [[nodiscard]] bool Next(LoadBatch& batch) override;

  /// How much of the source has been read, from 0 to 1. Any thread.
  [[nodiscard]] double Progress() const;

 private:
  [[nodiscard]] bool ReadInto(LoadBatch& batch);
  void AddRecord(LoadBatch& batch);
  void CheckLength() const;
  void CheckHeader() const;
  void CheckEnd() const;

  ImportFormat format_;
  std::vector<std::string> names_;
  std::vector<ImportColumn> columns_;
  CellStyle style_;
  std::unique_ptr<RecordReader> reader_;
  ImportRecord record_;
  std::uint64_t size_ = 0;
  std::atomic<std::uint64_t> bytesRead_ = 0;
  bool skipsHeader_ = false;
  bool needsMore_ = true;
};

}  // namespace tessel
