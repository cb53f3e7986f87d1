#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// Some records that follow each other, looked at: some columns of each. Who reads the values keeps
/// the rows open and unchanged; it may be another thread than the one that looked at them.
struct RecordBatch {
  std::int64_t first = 0;         ///< How many records came before these.
  std::size_t columns = 0;        ///< Of each record.
  std::vector<ValueView> values;  ///< Record by record.
  std::size_t bytes = 0;          ///< Of the texts and binary values.

  [[nodiscard]] std::size_t Records() const { return columns == 0 ? 0 : values.size() / columns; }
  [[nodiscard]] std::span<const ValueView> Record(std::size_t index) const {
    return std::span(values).subspan(index * columns, columns);
  }
};

/// The records that are to be taken of the rows on show, in their order: all, or those chosen. UI
/// thread.
class BatchReader {
 public:
  /// `rows` are open, and so many `columns` from `firstColumn` on are taken. `chosen`: the records,
  /// in the order in which they are taken; empty: all.
  BatchReader(std::shared_ptr<Recordset> rows, std::size_t firstColumn, std::size_t columns,
              std::vector<Bookmark> chosen);
  BatchReader(const BatchReader&) = delete;
  BatchReader& operator=(const BatchReader&) = delete;
  ~BatchReader();

  /// Takes `count` records instead, each at the position that `positionOf` gives for its number
  /// from 0 on. Before the first one.
  void TakeBy(std::int64_t count, std::function<std::int64_t(std::int64_t)> positionOf);

  /// How many records there are in all.
  [[nodiscard]] std::int64_t Count() const { return count_; }
  [[nodiscard]] bool AtEnd() const { return next_ == count_; }
  /// Puts the next record, which there is, behind those of `batch`. Raises Error when a chosen one
  /// is not there any more.
  void ReadInto(RecordBatch& batch);
  /// A batch without records, for those that follow. Raises Error when the rows were closed.
  [[nodiscard]] std::shared_ptr<RecordBatch> NewBatch() const;

  [[nodiscard]] const Recordset& Rows() const { return *rows_; }

 private:
  std::shared_ptr<Recordset> rows_;
  std::shared_ptr<Recordset> kept_;  ///< Keeps the values when the rows are closed.
  std::size_t firstColumn_;
  std::size_t columns_;
  std::function<std::int64_t(std::int64_t)> positionOf_;  ///< Empty: one behind the other.
  std::int64_t count_;
  std::int64_t next_ = 0;
};

/// The position of a record of the rows. Raises Error when it is not there any more.
[[nodiscard]] std::int64_t PositionNow(const Recordset& rows, Bookmark record);

/// Whether a batch is large enough to be worked on.
[[nodiscard]] bool IsFull(const RecordBatch& batch);

}  // namespace tessel
