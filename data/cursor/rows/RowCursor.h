#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/data/RowArrangement.h"
#include "data/combined/FixedRows.h"
#include "data/cursor/rows/RowCursorWork.h"
#include "data/rows/RowSource.h"
#include "data/rows/order/RowOrder.h"
#include "data/rows/order/SortOrder.h"

namespace tessel {

/// A static cursor: what every recordset of this data layer does with its rows, whatever they are.
/// It looks at them, moves, sorts and hides some. UI thread.
///
/// The bookmark of a row is its number from 1. MoveFirst and MoveLast do nothing on a recordset
/// without rows.
class RowCursor : public Recordset,
                  public WorkedRows,
                  public std::enable_shared_from_this<RowCursor> {
 public:
  [[nodiscard]] const std::string& Source() const override { return source_; }
  [[nodiscard]] LockType Lock() const override { return lock_; }
  [[nodiscard]] int State() const override { return state_; }

  [[nodiscard]] const std::vector<FieldInfo>& Fields() const override;
  [[nodiscard]] std::optional<std::size_t> FindField(std::string_view name) const override;
  [[nodiscard]] std::int64_t RecordCount() const override;
  [[nodiscard]] std::int64_t FullCount() const override;
  [[nodiscard]] ValueView ValueAt(std::int64_t position, std::size_t field) const override;
  [[nodiscard]] Bookmark BookmarkAt(std::int64_t position) const override;
  void ReadFieldsAt(std::int64_t position, std::size_t first,
                    std::span<ValueView> values) const override;
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
  [[nodiscard]] const RowArrangement& Arrangement() const override { return arrangement_; }
  [[nodiscard]] std::unique_ptr<RowWork> StartArrange(RowArrangement arrangement) override;
  [[nodiscard]] std::unique_ptr<RowWork> StartSearch(CellSearch search) const override;

  // --- for the work that they start -------------------------------------------------------------
  [[nodiscard]] const std::shared_ptr<const RowSource>& Rows() const override { return rows_; }
  [[nodiscard]] std::uint64_t OrderVersion() const override { return version_; }
  void RequireNothingPending() const override;
  void Arrange(RowArrangement arrangement, ArrangedRows rows) override;

  /// Its rows as they are now and stay, for who refers to them: in the order of opening, as the
  /// database was last seen to hold them.
  [[nodiscard]] virtual std::shared_ptr<const FixedRows> RowsForGood() const = 0;

 protected:
  RowCursor(std::string source, LockType lock) : source_(std::move(source)), lock_(lock) {}

  /// From now on it moves over these rows. It stands on the first one, in the order of opening.
  void MoveOver(std::shared_ptr<const RowSource> rows);
  void RequireOpen() const;
  void RequireField(std::size_t field) const;
  /// Sorts anew as the last SetSort said, if any did.
  void ApplySort();
  /// To be told when rows came or went.
  void NoteOtherRows() { ++version_; }
  /// The error of changing rows that are for reading only.
  [[nodiscard]] static Error ForReadingOnly();

  /// The row that is current; raises Error when none is.
  [[nodiscard]] std::int64_t CurrentRow() const;
  /// The row at a position, that of a new row included; raises Error when there is none.
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const;

  int state_ = objectState::closed;
  RowOrder order_;
  std::vector<SortKey> sort_;
  std::int64_t position_ = 0;  ///< -1: BOF; RecordCount: EOF.
  bool atNew_ = false;         ///< On the new row that is pending; position_ is then RecordCount.

 private:
  void OrderRows();
  void KeepCurrent(const std::function<void()>& order);

  std::string source_;
  LockType lock_;
  std::shared_ptr<const RowSource> rows_;
  RowArrangement arrangement_;
  std::uint64_t version_ = 0;
};

}  // namespace tessel
