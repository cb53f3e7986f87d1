#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "contract/data/RowArrangement.h"
#include "data/rows/arranged/RowArranger.h"

namespace tessel {

/// The rows of a cursor, for the work that it starts. UI thread.
class WorkedRows {
 public:
  /// Those that the cursor moves over.
  [[nodiscard]] virtual const std::shared_ptr<const RowSource>& Rows() const = 0;
  /// Another one after each change of the order or the number of rows.
  [[nodiscard]] virtual std::uint64_t OrderVersion() const = 0;
  /// Raises Error(changePending) where a change waits to be written.
  virtual void RequireNothingPending() const = 0;
  /// `rows` are those on show from now on.
  virtual void Arrange(RowArrangement arrangement, ArrangedRows rows) = 0;
  // As Recordset has them.
  [[nodiscard]] virtual std::int64_t RecordCount() const = 0;
  virtual void ReadFieldsAt(std::int64_t position, std::size_t first,
                            std::span<ValueView> values) const = 0;

 protected:
  ~WorkedRows() = default;
};

/// Arranges the rows of a cursor. UI thread.
class ArrangeWork final : public RowWork {
 public:
  ArrangeWork(const std::shared_ptr<WorkedRows>& cursor, RowArrangement wanted);

  [[nodiscard]] std::int64_t Total() const override;
  [[nodiscard]] std::int64_t Done() const override;
  void Step() override;

 private:
  [[nodiscard]] bool IsOfNoUse(const WorkedRows* cursor) const;

  std::weak_ptr<WorkedRows> cursor_;
  std::shared_ptr<const RowSource> rows_;
  RowArrangement wanted_;
  std::uint64_t version_;
  std::unique_ptr<RowArranger> arranger_;
  bool ended_ = false;
};

/// Looks for cells in the rows that a cursor shows. UI thread.
class SearchWork final : public RowWork {
 public:
  SearchWork(const std::shared_ptr<const WorkedRows>& cursor, CellSearch search);

  [[nodiscard]] std::int64_t Total() const override { return total_; }
  [[nodiscard]] std::int64_t Done() const override { return done_; }
  void Step() override;

 private:
  void LookThrough(const WorkedRows& cursor, std::int64_t position);

  std::weak_ptr<const WorkedRows> cursor_;
  CellSearch search_;
  std::uint64_t version_;
  std::int64_t count_;  ///< Of the rows on show.
  std::int64_t total_;
  std::int64_t done_ = 0;
  CellTexts texts_;
  std::size_t first_;  ///< Of the fields that are looked at.
  std::vector<ValueView> cells_;
};

}  // namespace tessel
