#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/combined/FixedRows.h"
#include "data/rows/RowSource.h"
#include "data/rows/order/RowOrder.h"
#include "data/rows/order/SortOrder.h"

namespace tessel {

/// A static cursor: what every recordset of this data layer does with its rows, whatever they are.
/// It looks at them, moves and sorts. UI thread.
///
/// The bookmark of a row is its number from 1. MoveFirst and MoveLast do nothing on a recordset
/// without rows.
class RowCursor : public Recordset {
 public:
  [[nodiscard]] const std::string& Source() const override { return source_; }
  [[nodiscard]] LockType Lock() const override { return lock_; }
  [[nodiscard]] int State() const override { return state_; }

  [[nodiscard]] const std::vector<FieldInfo>& Fields() const override;
  [[nodiscard]] std::optional<std::size_t> FindField(std::string_view name) const override;
  [[nodiscard]] std::int64_t RecordCount() const override;
  [[nodiscard]] ValueView ValueAt(std::int64_t position, std::size_t field) const override;
  [[nodiscard]] Bookmark BookmarkAt(std::int64_t position) const override;
  [[nodiscard]] std::optional<std::int64_t> PositionOf(Bookmark bookmark) const override;

  [[nodiscard]] bool Bof() const override;
  [[nodiscard]] bool Eof() const override;
  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  [[nodiscard]] Bookmark CurrentBookmark() const override;
  void MoveTo(Bookmark bookmark) override;
  [[nodiscard]] ValueView FieldValue(std::size_t field) const override;
  void ReadFields(std::size_t first, std::span<ValueView> values) const override;
  [[nodiscard]] std::int64_t ActualSize(std::size_t field) const override;
  void SetSort(const std::string& order) override;

  /// Its rows as they are now and stay, for who refers to them: in the order of opening, as the
  /// database was last seen to hold them.
  [[nodiscard]] virtual std::shared_ptr<const FixedRows> RowsForGood() const = 0;

 protected:
  RowCursor(std::string source, LockType lock) : source_(std::move(source)), lock_(lock) {}

  /// From now on it moves over these rows, which live until the next call. It stands on the first
  /// one, in the order of opening.
  void MoveOver(const RowSource& rows);
  void RequireOpen() const;
  void RequireField(std::size_t field) const;
  void ApplySort();
  void OrderRows();
  /// The error of changing rows that are for reading only.
  [[nodiscard]] static Error ForReadingOnly();

  /// The row that is current; raises Error when none is.
  [[nodiscard]] std::int64_t CurrentRow() const;
  /// The row at a position, that of a new row included; raises Error when there is none.
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const;

  int state_ = objectState::closed;
  RowOrder order_;
  std::vector<SortField> sort_;
  std::int64_t position_ = 0;  ///< -1: BOF; RecordCount: EOF.
  bool atNew_ = false;         ///< On the new row that is pending; position_ is then RecordCount.

 private:
  std::string source_;
  LockType lock_;
  const RowSource* rows_ = nullptr;
};

}  // namespace tessel
