#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/cursor/rows/CursorHost.h"
#include "data/cursor/rows/ResultRows.h"
#include "data/cursor/rows/RowCursor.h"
#include "data/tasks/Task.h"

namespace tessel {

/// The recordset of a command's rows. UI thread.
///
/// The bookmark of a row tells its place in the order of arrival. Rows that arrive after a sort
/// stand behind the sorted ones until the fetch is complete; then all are sorted.
///
/// A row that was added stands behind the others until the next sort, and a changed one where it
/// stood. While rows are being fetched, or a change is being written, none can be begun.
class ClientRecordset : public RowCursor, private RowWatcher {
 public:
  ClientRecordset(std::weak_ptr<CursorHost> host, std::string source, LockType lock);
  ~ClientRecordset() override;
  /// Rows that no command gave: complete, read-only, without a connection.
  [[nodiscard]] static std::shared_ptr<ClientRecordset> Of(std::vector<FieldInfo> fields,
                                                           std::vector<ChunkPtr> chunks);

  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override;

  void Close() override;
  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;
  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override;
  [[nodiscard]] EditMode Editing() const override;
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  [[nodiscard]] std::shared_ptr<Operation> StartUpdate() override;
  void CancelUpdate() override;
  [[nodiscard]] std::shared_ptr<Operation> StartDelete() override;
  [[nodiscard]] const Properties& RecordsetProperties() const override { return rows_->properties; }

  [[nodiscard]] std::shared_ptr<const FixedRows> RowsForGood() const override;
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
  [[nodiscard]] std::optional<ErrorInfo> WhyNeverChangeable() const;
  void RequireChangeable() const;
  void RequireNotBeingWritten() const;
  void UseRows(std::shared_ptr<ResultRows> rows);
  [[nodiscard]] Value Fitting(const FieldInfo& field, Value value) const;
  [[nodiscard]] std::shared_ptr<Operation> Write(RowChange change, std::int64_t row);

  void RowComes(std::int64_t row) override;
  void RowGoes(std::int64_t row) override;
  void NewRowDropped() override;

  std::weak_ptr<CursorHost> host_;
  std::shared_ptr<Task> task_;    ///< What fetches for it, else null.
  std::shared_ptr<Task> change_;  ///< What writes for it, else null.

  std::shared_ptr<ResultRows> rows_;
  std::optional<std::int64_t> rowBeforeNew_;  ///< None: positionBeforeNew_ counts.
  std::int64_t positionBeforeNew_ = 0;
};

}  // namespace tessel
