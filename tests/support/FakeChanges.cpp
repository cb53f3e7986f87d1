// How a recordset in memory changes its rows, and what the server in memory makes of it.

#include <algorithm>

#include "contract/base/Ascii.h"
#include "tests/support/FakeConnection.h"
#include "tests/support/FakeRecordset.h"

namespace tessel::test {

namespace {

Error Pending(const char* text) { return {errorNumber::changePending, "MemoryServer", text}; }

Error Conflict(const char* text) { return {errorNumber::changeConflict, "MemoryServer", text}; }

Error Refused(const std::string& text) { return {errorNumber::database, "MemoryServer", text}; }

ErrorInfo Reason(std::int32_t number, const std::string& text) {
  return Error(number, "MemoryServer", text).Info();
}

bool IsNullValue(const Value& value) { return value.index() == 0; }

}  // namespace

EditMode FakeRecordset::Editing() const {
  RequireOpen();
  return store_->pending ? store_->pending->mode : EditMode::None;
}

std::optional<ErrorInfo> FakeRecordset::WhyNeverChangeable() const {
  RequireOpen();
  if (lock_ == LockType::ReadOnly || lock_ == LockType::Unspecified)
    return Reason(errorNumber::readOnly, "The records were opened for reading only.");
  if (!store_->origin.writable)
    return Reason(errorNumber::notSupported,
                  "The records do not come from one table and cannot be changed.");
  return std::nullopt;
}

std::optional<ErrorInfo> FakeRecordset::WhyNotChangeable() const {
  if (auto reason = WhyNeverChangeable()) return reason;
  const auto connection = connection_.lock();
  if (connection == nullptr || (connection->State() & objectState::open) == 0) return std::nullopt;
  const std::string inUse = connection->DefaultDatabase();
  if (inUse == store_->catalog) return std::nullopt;
  return Reason(errorNumber::notSupported, "These records come from the database '" +
                                               store_->catalog + "', and '" + inUse +
                                               "' is in use now.");
}

void FakeRecordset::RequireChangeable() const {
  if (const auto reason = WhyNotChangeable()) throw Error(*reason);
}

void FakeRecordset::AddNew() {
  RequireChangeable();
  if (store_->pending) throw Pending("Another change waits to be written first.");
  positionBeforeNew_ = position_;
  position_ = RecordCount();
  const auto row = static_cast<std::int64_t>(store_->rows.size());
  store_->rows.emplace_back(store_->fields.size());
  store_->fetched = store_->rows.size();
  store_->gone.insert(row);
  store_->pending = FakeStore::Pending{EditMode::Add, row, {}};
  atNew_ = true;
}

void FakeRecordset::SetFieldValue(std::size_t field, Value value) {
  RequireChangeable();
  SyncOrder();
  const std::int64_t row = RowAt(position_);
  const FieldInfo& info = Fields().at(field);
  if (store_->pending && store_->pending->row != row)
    throw Pending("The change of another record waits to be written first.");
  if (!info.updatable)
    throw Error(errorNumber::readOnly, "MemoryServer",
                "The field '" + info.name + "' cannot be changed.");
  Value fitting = Fitting(info, std::move(value));
  if (!store_->pending) store_->pending = FakeStore::Pending{EditMode::InProgress, row, {}};
  store_->pending->values[field] = std::move(fitting);
}

Value FakeRecordset::Fitting(const FieldInfo& field, Value value) const {
  const Error mismatch(errorNumber::typeMismatch, "MemoryServer",
                       "This is no value of the type of the field '" + field.name + "'.");
  if (const auto* text = std::get_if<std::string>(&value)) {
    std::optional<Value> parsed = ParseValue(field.type, *text);
    if (!parsed) throw mismatch;
    return std::move(*parsed);
  }
  const bool isBytes = std::holds_alternative<Bytes>(value);
  if (!IsNullValue(value) && isBytes != IsBinaryType(field.type)) throw mismatch;
  return value;
}

void FakeRecordset::CancelUpdate() {
  if (const auto reason = WhyNeverChangeable()) throw Error(*reason);
  store_->pending.reset();
  if (std::exchange(atNew_, false)) position_ = positionBeforeNew_;
}

void FakeRecordset::Update(int options) {
  RequireChangeable();
  const auto connection = connection_.lock();
  if (!store_->pending) return Announce(options);
  if (connection == nullptr)
    throw Error(errorNumber::objectClosed, "MemoryServer", "The recordset's connection is gone.");
  connection->Write(shared_from_this(), options, [this] { WritePending(); });
}

void FakeRecordset::Delete(int options) {
  RequireChangeable();
  SyncOrder();
  const std::int64_t row = RowAt(position_);
  if (store_->pending && store_->pending->row != row)
    throw Pending("The change of another record waits to be written first.");
  const bool isNew = atNew_;
  CancelUpdate();
  if (isNew) return Announce(options);
  const auto connection = connection_.lock();
  if (connection == nullptr)
    throw Error(errorNumber::objectClosed, "MemoryServer", "The recordset's connection is gone.");
  connection->Write(shared_from_this(), options, [this, row] { DeleteFromServer(row); });
}

void FakeRecordset::Announce(int options) {
  if ((options & openOption::asyncExecute) == 0) return;
  if (const auto connection = connection_.lock()) connection->AnnounceChange(shared_from_this());
}

void FakeRecordset::BeginChange(const void* operation) {
  operation_ = operation;
  state_ |= objectState::executing;
}

void FakeRecordset::EndChange(const void* operation) {
  if (operation != operation_) return;
  operation_ = nullptr;
  state_ &= ~objectState::executing;
}

// --- on the server ---------------------------------------------------------------------------

void FakeRecordset::WritePending() {
  const FakeStore::Pending& pending = *store_->pending;
  const bool isNew = pending.mode == EditMode::Add;
  MemoryRow* onServer = isNew ? nullptr : &FindOnServer(pending.row);
  if (!isNew) RequireUnchanged(*onServer);
  MemoryRow row = isNew ? MemoryRow(store_->fields.size()) : *onServer;
  for (const auto& [field, value] : pending.values) row[field] = value;
  if (isNew) GiveNumbers(row);
  RequireConstraints(row, onServer);
  if (isNew) store_->origin.rows->push_back(row);
  else *onServer = row;
  store_->rows[static_cast<std::size_t>(pending.row)] = std::move(row);
  store_->gone.erase(pending.row);
  ++store_->version;
  store_->pending.reset();
  atNew_ = false;
}

void FakeRecordset::DeleteFromServer(std::int64_t row) {
  const MemoryRow& onServer = FindOnServer(row);
  if (onServer != store_->rows[static_cast<std::size_t>(row)])
    throw Conflict("The record was changed or deleted by somebody else since it was read.");
  MemoryRows& table = *store_->origin.rows;
  table.erase(table.begin() + (&onServer - table.data()));
  store_->gone.insert(row);
  ++store_->version;
}

/// By the first field when the rows are unique, else by all that was read.
MemoryRow& FakeRecordset::FindOnServer(std::int64_t row) const {
  const MemoryRow& read = store_->rows[static_cast<std::size_t>(row)];
  const std::size_t compared = store_->origin.uniqueRows ? 1 : read.size();
  MemoryRow* found = nullptr;
  for (MemoryRow& candidate : *store_->origin.rows) {
    if (!std::equal(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(compared),
                    candidate.begin()))
      continue;
    if (found != nullptr) throw Conflict("Several records match; none was changed.");
    found = &candidate;
  }
  if (found == nullptr)
    throw Conflict("The record was changed or deleted by somebody else since it was read.");
  return *found;
}

void FakeRecordset::RequireUnchanged(const MemoryRow& onServer) const {
  const FakeStore::Pending& pending = *store_->pending;
  const MemoryRow& read = store_->rows[static_cast<std::size_t>(pending.row)];
  for (const auto& [field, value] : pending.values)
    if (onServer[field] != read[field])
      throw Conflict("The record was changed or deleted by somebody else since it was read.");
}

void FakeRecordset::RequireConstraints(const MemoryRow& row, const MemoryRow* changed) const {
  for (std::size_t field = 0; field < row.size(); ++field)
    if (!store_->fields[field].nullable && IsNullValue(row[field]))
      throw Refused("NOT NULL constraint failed: " + store_->fields[field].name);
  if (!store_->origin.uniqueRows) return;
  for (const MemoryRow& other : *store_->origin.rows)
    if (&other != changed && other[0] == row[0])
      throw Refused("UNIQUE constraint failed: " + store_->fields[0].name);
}

void FakeRecordset::GiveNumbers(MemoryRow& row) const {
  for (std::size_t field = 0; field < row.size(); ++field) {
    if (!store_->fields[field].autoIncrement || !IsNullValue(row[field])) continue;
    std::int64_t largest = 0;
    for (const MemoryRow& other : *store_->origin.rows)
      if (const auto* number = std::get_if<std::int64_t>(&other[field]))
        largest = std::max(largest, *number);
    row[field] = largest + 1;
  }
}

}  // namespace tessel::test
