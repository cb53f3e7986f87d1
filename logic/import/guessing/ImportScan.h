#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/Value.h"
#include "logic/import/guessing/ColumnGuess.h"
#include "logic/import/guessing/ImportFormat.h"

namespace tessel {

/// A column of a source, as far as it was looked at.
struct SourceColumn {
  std::string name;
  ColumnGuess guess;
};

/// Looks through a source in steps: the names of its columns, what they hold, its first records.
class ImportScan {
 public:
  /// Records that are kept to be shown.
  static constexpr std::size_t shownRecords = 100;

  /// Opens the source.
  ImportScan(const ImportSource& source, ImportFormat format);

  /// Looks at the next piece, for about a millisecond; false: all has been looked at. Raises Error
  /// for a record that is none, or has not as many values as there are columns; what was found
  /// before stays.
  [[nodiscard]] bool Step();

  [[nodiscard]] const std::vector<SourceColumn>& Columns() const { return columns_; }
  [[nodiscard]] std::vector<std::string> Names() const;
  /// Texts, and nulls.
  [[nodiscard]] const std::vector<std::vector<Value>>& FirstRecords() const { return first_; }
  [[nodiscard]] std::int64_t Records() const { return records_; }
  [[nodiscard]] bool Ended() const { return ended_; }
  /// How much has been looked at, from 0 to 1.
  [[nodiscard]] double Progress() const;

 private:
  void Take(const ImportRecord& record);
  void TakeNames(const ImportRecord& record);
  void KeepFirst(const ImportRecord& record);

  ImportFormat format_;
  std::unique_ptr<RecordReader> reader_;
  ImportRecord record_;
  std::vector<SourceColumn> columns_;
  std::vector<std::vector<Value>> first_;
  std::int64_t records_ = 0;
  bool named_ = false;  ///< The columns of a text with delimiters have their names.
  bool ended_ = false;
};

}  // namespace tessel
