#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/changes/RowChange.h"
#include "data/changes/RowOrigin.h"
#include "data/rows/RowStore.h"
#include "data/tasks/Task.h"

namespace tessel {

/// Is told when rows come or go: a cursor over them.
class RowWatcher {
 public:
  /// Called before the rows know of it.
  virtual void RowComes(std::int64_t row) = 0;
  virtual void RowGoes(std::int64_t row) = 0;
  /// The new row is no longer pending: it was dropped and not written.
  virtual void NewRowDropped() = 0;

 protected:
  ~RowWatcher() = default;
};

/// The change that waits to be written.
struct PendingChange {
  EditMode mode = EditMode::InProgress;
  std::int64_t row = 0;
  FieldValues values;                  ///< What was set.
  const RowWatcher* owner = nullptr;   ///< The cursor it was begun with.
  std::shared_ptr<const Task> writer;  ///< Writes it; null while nothing does.

  [[nodiscard]] bool IsNew() const { return mode == EditMode::Add; }
  [[nodiscard]] bool IsBeingWritten() const { return writer != nullptr; }
};

/// What a recordset and its clones share: fields, rows, properties, the pending change.
///
/// The store is never changed: what was written since lies in an overlay. Rows are named by numbers
/// from 0; those added here go on behind the store's, and no number is given twice. UI thread.
class ResultRows {
 public:
  ResultRows();

  std::vector<FieldInfo> fields;
  std::vector<std::size_t> key;  ///< The fields of a whole unique key; empty: none is known.
  RowStore store;
  Properties properties;
  RowOrigin origin;
  std::optional<PendingChange> pending;

  /// Takes down what is known of the key, and says so among the properties.
  void SetKey(std::vector<std::size_t> keyFields);
  /// True when there is one base table and a field of it that can be written.
  [[nodiscard]] bool CanBeWritten() const;

  /// Without a new row that is pending.
  [[nodiscard]] std::int64_t Count() const {
    return store.Rows() + added_ - static_cast<std::int64_t>(gone_.size());
  }
  [[nodiscard]] bool Contains(std::int64_t row) const;
  /// The numbers of all rows, going up.
  [[nodiscard]] std::vector<std::int64_t> Numbers() const;
  /// Larger than the number of any row.
  [[nodiscard]] std::int64_t NextNumber() const { return std::max(next_, store.Rows()); }
  /// A number for a new row.
  [[nodiscard]] std::int64_t TakeNumber() {
    next_ = NextNumber() + 1;
    return next_ - 1;
  }

  /// A cell as it is to be seen, with what is pending. Of a row that is there or pending.
  [[nodiscard]] ValueView At(std::int64_t row, std::size_t field) const {
    if (pending && pending->row == row) [[unlikely]] {
      if (const auto& value = pending->values[field]) return ToView(*value);
      if (pending->mode == EditMode::Add) return std::monostate{};
    }
    return WrittenAt(row, field);
  }
  /// A cell as it was last read from the database.
  [[nodiscard]] ValueView WrittenAt(std::int64_t row, std::size_t field) const {
    if (!overlay_.empty()) [[unlikely]] {
      const auto found = overlay_.find(row);
      if (found != overlay_.end() && found->second[field]) return ToView(*found->second[field]);
    }
    return row < store.Rows() ? store.At(row, field) : std::monostate{};
  }

  /// As many cells of a row as `values` has room for, from field `first` on, each as by At.
  void Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const {
    const bool asStored = overlay_.empty() && !pending && row < store.Rows();
    if (asStored) [[likely]]
      store.Read(row, first, values);
    else
      for (ValueView& value : values) value = At(row, first++);
  }

  void DropPending();
  /// `task` does not write any more, whatever came of it.
  void EndWriting(const Task* task) {
    if (pending && pending->writer.get() == task) pending->writer.reset();
  }
  /// What the database is to be asked for so that the pending change is written, or the row
  /// deleted.
  [[nodiscard]] RowChange PendingAsChange() const;
  [[nodiscard]] RowChange Deletion(std::int64_t row) const;
  /// The database has made a change of `row`, and holds `written` now.
  void Accept(RowChange::Kind kind, std::int64_t row, FieldValues written);

  void Watch(RowWatcher* watcher) { watchers_.push_back(watcher); }
  void Unwatch(RowWatcher* watcher) { std::erase(watchers_, watcher); }

 private:
  [[nodiscard]] RowChange ChangeOf(RowChange::Kind kind, std::int64_t row) const;
  void Overlay(std::int64_t row, FieldValues written, bool isNew);
  void Remove(std::int64_t row);

  std::unordered_map<std::int64_t, FieldValues> overlay_;  ///< What differs from the store.
  std::unordered_set<std::int64_t> gone_;                  ///< Of the store.
  std::int64_t added_ = 0;  ///< Rows added here that are still there.
  std::int64_t next_ = 0;
  std::vector<RowWatcher*> watchers_;
};

}  // namespace tessel
