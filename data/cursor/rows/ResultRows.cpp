#include "data/cursor/rows/ResultRows.h"

#include <algorithm>
#include <utility>

#include "data/changes/UniqueRows.h"

namespace tessel {

namespace {

bool IsLong(const ValueView& value) {
  constexpr std::size_t longValue = std::size_t{64} << 10U;
  if (const auto* text = std::get_if<std::string_view>(&value)) return text->size() > longValue;
  if (const auto* binary = std::get_if<BinaryView>(&value)) return binary->bytes.size() > longValue;
  return false;
}

}  // namespace

ResultRows::ResultRows() { SetKey({}); }

void ResultRows::SetKey(std::vector<std::size_t> keyFields) {
  key = std::move(keyFields);
  for (const std::size_t field : key) fields.at(field).isKey = true;
  properties.Set("Unique Rows", !key.empty());
}

bool ResultRows::CanBeWritten() const {
  return OneBaseTable(fields) != nullptr && std::ranges::any_of(fields, &FieldInfo::updatable);
}

bool ResultRows::Contains(std::int64_t row) const {
  if (row >= store.Rows()) return overlay_.contains(row);
  return row >= 0 && !gone_.contains(row);
}

std::vector<std::int64_t> ResultRows::Numbers() const {
  std::vector<std::int64_t> numbers;
  numbers.reserve(static_cast<std::size_t>(Count()));
  for (std::int64_t row = 0; row < store.Rows(); ++row)
    if (gone_.empty() || !gone_.contains(row)) numbers.push_back(row);
  for (const auto& [row, values] : overlay_)
    if (row >= store.Rows()) numbers.push_back(row);
  std::ranges::sort(numbers.end() - added_, numbers.end());
  return numbers;
}

/// Asked for every record that is converted: without a call inside.
[[gnu::flatten]] void ResultRows::Read(std::int64_t row, std::size_t first,
                                       std::span<ValueView> values) const {
  const bool asStored = overlay_.empty() && !pending && row < store.Rows();
  if (asStored) [[likely]]
    store.Read(row, first, values);
  else
    for (ValueView& value : values) value = At(row, first++);
}

// --- changes -------------------------------------------------------------------------------------

/// With the original values that find the row, and those that have to be there still: of the fields
/// that are changed, and of a row that is deleted all.
RowChange ResultRows::ChangeOf(RowChange::Kind kind, std::int64_t row) const {
  const std::size_t count = fields.size();
  RowChange change{kind,
                   origin.catalog,
                   fields,
                   key,
                   FieldValues(count),
                   FieldValues(count),
                   std::vector<bool>(count)};
  if (kind == RowChange::Kind::Insert) return change;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const bool isKey = std::ranges::find(key, i) != key.end();
    const bool isCompared = kind == RowChange::Kind::Delete || pending->values[i];
    if (HasColumn(fields[i]) && (key.empty() || isKey || isCompared))
      change.originals[i] = ToValue(WrittenAt(row, i));
    change.isLong[i] = IsLong(WrittenAt(row, i));
  }
  return change;
}

RowChange ResultRows::PendingAsChange() const {
  using Kind = RowChange::Kind;
  const bool isNew = pending->mode == EditMode::Add;
  RowChange change = ChangeOf(isNew ? Kind::Insert : Kind::Update, pending->row);
  change.changes = pending->values;
  return change;
}

RowChange ResultRows::Deletion(std::int64_t row) const {
  return ChangeOf(RowChange::Kind::Delete, row);
}

void ResultRows::DropPending() {
  const bool wasNew = pending && pending->IsNew();
  pending.reset();
  if (!wasNew) return;
  for (RowWatcher* watcher : watchers_) watcher->NewRowDropped();
}

void ResultRows::Accept(RowChange::Kind kind, std::int64_t row, FieldValues written) {
  if (pending && pending->row == row) pending.reset();
  if (kind == RowChange::Kind::Delete) Remove(row);
  else PutOver(row, std::move(written), kind == RowChange::Kind::Insert);
}

/// What nothing is said of stays as it was.
void ResultRows::PutOver(std::int64_t row, FieldValues written, bool isNew) {
  if (isNew)
    for (RowWatcher* watcher : watchers_) watcher->RowComes(row);
  FieldValues& values = overlay_[row];
  values.resize(fields.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    if (written[i]) values[i] = std::move(written[i]);
  if (isNew) ++added_;
}

void ResultRows::Remove(std::int64_t row) {
  for (RowWatcher* watcher : watchers_) watcher->RowGoes(row);
  const bool wasAdded = row >= store.Rows();
  if (wasAdded) --added_;
  else gone_.insert(row);
  overlay_.erase(row);
}

}  // namespace tessel
