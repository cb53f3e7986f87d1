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
#include "data/rows/RowSource.h"
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

/// What is set of some rows, by their numbers.
using RowOverlay = std::unordered_map<std::int64_t, FieldValues>;

/// A cell of a store with an overlay, which tells it where it has something for it.
[[nodiscard]] inline ValueView WrittenCell(const RowStore& store, const RowOverlay& overlay,
                                           std::int64_t row, std::size_t field) {
  if (!overlay.empty()) [[unlikely]] {
    const auto found = overlay.find(row);
    if (found != overlay.end() && found->second[field]) return ToView(*found->second[field]);
  }
  return row < store.Rows() ? store.At(row, field) : std::monostate{};
}

/// What a recordset and its clones share: fields, rows, properties, the pending change.
///
/// The store is never changed: what was written since lies in an overlay. Rows are named by numbers
/// from 0; those added here go on behind the store's, and no number is given twice. UI thread.
class ResultRows final : public RowSource {
 public:
  ResultRows();

  std::vector<std::size_t> key;  ///< The fields of a whole unique key; empty: none is known.
  RowStore store;
  Properties properties;
  RowOrigin origin;
  std::optional<PendingChange> pending;

  /// Takes down what is known of the key, and says so among the properties.
  void SetKey(std::vector<std::size_t> keyFields);
  /// True when there is one base table and a field of it that can be written.
  [[nodiscard]] bool CanBeWritten() const;

  [[nodiscard]] std::int64_t Count() const override {
    return store.Rows() + added_ - static_cast<std::int64_t>(gone_.size());
  }
  [[nodiscard]] bool Contains(std::int64_t row) const override;
  [[nodiscard]] std::vector<std::int64_t> Numbers() const override;
  [[nodiscard]] std::int64_t NextNumber() const override { return std::max(next_, store.Rows()); }
  [[nodiscard]] std::optional<std::int64_t> NewRow() const override {
    return pending && pending->IsNew() ? std::optional(pending->row) : std::nullopt;
  }
  /// A number for a new row.
  [[nodiscard]] std::int64_t TakeNumber() {
    next_ = NextNumber() + 1;
    return next_ - 1;
  }

  [[nodiscard]] ValueView At(std::int64_t row, std::size_t field) const override {
    if (pending && pending->row == row) [[unlikely]] {
      if (const auto& value = pending->values[field]) return ToView(*value);
      if (pending->mode == EditMode::Add) return std::monostate{};
    }
    return WrittenAt(row, field);
  }
  /// A cell as it was last read from the database.
  [[nodiscard]] ValueView WrittenAt(std::int64_t row, std::size_t field) const {
    return WrittenCell(store, overlay_, row, field);
  }
  /// What was written since the rows were read.
  [[nodiscard]] const RowOverlay& Overlay() const { return overlay_; }

  void Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const override;

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
  void PutOver(std::int64_t row, FieldValues written, bool isNew);
  void Remove(std::int64_t row);

  RowOverlay overlay_;                     ///< What differs from the store.
  std::unordered_set<std::int64_t> gone_;  ///< Of the store.
  std::int64_t added_ = 0;                 ///< Rows added here that are still there.
  std::int64_t next_ = 0;
  std::vector<RowWatcher*> watchers_;
};

}  // namespace tessel
