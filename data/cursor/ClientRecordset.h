#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/cursor/CursorHost.h"
#include "data/cursor/ResultRows.h"
#include "data/rows/RowOrder.h"
#include "data/rows/SortOrder.h"
#include "data/tasks/Task.h"

namespace tessel {

/// The recordset of this data layer: a static cursor over rows in memory. UI thread.
///
/// The bookmark of a row is its number from 1 in the order of arrival. MoveFirst and MoveLast do
/// nothing on a recordset without rows. Rows that arrive after a sort stand behind the sorted ones
/// until the fetch is complete; then all are sorted.
///
/// A row that was added stands behind the others until the next sort, and a changed one where it
/// stood. While rows are being fetched, or a change is being written, none can be begun.
class ClientRecordset : public Recordset,
                        public std::enable_shared_from_this<ClientRecordset>,
                        private RowWatcher {
 public:
  ClientRecordset(std::weak_ptr<CursorHost> host, std::string source, LockType lock);
  ~ClientRecordset() override;

  [[nodiscard]] const std::string& Source() const override { return source_; }
  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override;
  [[nodiscard]] LockType Lock() const override { return lock_; }

  void Close() override;
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

  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;
  void SetSort(const std::string& order) override;
  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override;
  [[nodiscard]] EditMode Editing() const override;
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  [[nodiscard]] std::shared_ptr<Operation> StartUpdate() override;
  void CancelUpdate() override;
  [[nodiscard]] std::shared_ptr<Operation> StartDelete() override;
  [[nodiscard]] const Properties& RecordsetProperties() const override { return rows_->properties; }

  /// Its rows, in the order of arrival.
  [[nodiscard]] const RowStore& Store() const { return rows_->store; }
  /// Bytes that its rows take, as allocated.
  [[nodiscard]] std::size_t HeldBytes() const { return rows_->store.HeldBytes(); }

  // --- for the connection ----------------------------------------------------------------------
  /// The command that `task` runs has a result with these fields; its rows follow.
  void BeginRows(std::shared_ptr<Task> task, std::vector<FieldInfo> fields);
  void AddRows(const Task* task, std::vector<ChunkPtr> chunks);
  /// What is known of rows when their command has ended.
  struct RowFacts {
    RowOrigin origin;               ///< Unknown when it is left out: they cannot be written.
    std::vector<std::size_t> key;   ///< As ResultRows calls it.
    std::vector<FieldInfo> fields;  ///< Those of BeginRows with all that is known, or empty.
  };
  /// The command has ended, well or not.
  void EndRows(const Task* task, RowFacts facts);
  /// A change is being written for this recordset, until EndChange.
  void BeginChange(std::shared_ptr<Task> task);
  void EndChange(const Task* task);

 private:
  void RequireOpen() const;
  void RequireField(std::size_t field) const;
  [[nodiscard]] std::optional<ErrorInfo> WhyNeverChangeable() const;
  void RequireChangeable() const;
  void RequireNotBeingWritten() const;
  void UseRows(std::shared_ptr<ResultRows> rows);
  void ApplySort();
  void OrderRows();

  /// The row that is current; raises Error when none is.
  [[nodiscard]] std::int64_t CurrentRow() const;
  [[nodiscard]] bool HasNewRow() const { return rows_->pending && rows_->pending->IsNew(); }
  /// The row at a position, that of a new row included; raises Error when there is none.
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const;
  void LeaveNewRow();
  [[nodiscard]] Value Fitting(const FieldInfo& field, Value value) const;
  [[nodiscard]] std::shared_ptr<Operation> Write(RowChange change, std::int64_t row);

  void RowComes(std::int64_t row) override;
  void RowGoes(std::int64_t row) override;
  void NewRowDropped() override;

  std::weak_ptr<CursorHost> host_;
  std::string source_;
  LockType lock_;
  int state_ = objectState::closed;
  std::shared_ptr<Task> task_;    ///< What fetches for it, else null.
  std::shared_ptr<Task> change_;  ///< What writes for it, else null.

  std::shared_ptr<ResultRows> rows_;
  RowOrder order_;
  std::vector<SortField> sort_;
  std::int64_t position_ = 0;  ///< -1: BOF; RecordCount: EOF.
  bool atNew_ = false;         ///< On the new row that is pending; position_ is then RecordCount.
  std::optional<std::int64_t> rowBeforeNew_;  ///< None: positionBeforeNew_ counts.
  std::int64_t positionBeforeNew_ = 0;
};

}  // namespace tessel
