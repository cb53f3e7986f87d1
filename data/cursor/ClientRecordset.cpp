#include "data/cursor/ClientRecordset.h"

#include <algorithm>
#include <utility>

#include "contract/base/Ascii.h"

namespace tessel {

namespace {

[[gnu::cold, gnu::noinline]] Error NoCurrentRecord() {
  return {errorNumber::noCurrentRecord, "Tessel",
          "There is no current record: the position is before the first or behind the last one."};
}

[[gnu::cold, gnu::noinline]] Error NotOpen() {
  return {errorNumber::objectClosed, "Tessel",
          "This is not possible while the recordset is closed."};
}

[[gnu::cold, gnu::noinline]] Error NoField(std::size_t field) {
  return {errorNumber::itemNotFound, "Tessel",
          "There is no field number " + std::to_string(field) + "."};
}

struct ByteCount {
  std::size_t operator()(std::monostate /*null*/) const { return 0; }
  std::size_t operator()(std::string_view value) const { return value.size(); }
  std::size_t operator()(DecimalView value) const { return value.digits.size(); }
  std::size_t operator()(MomentView value) const { return value.text.size(); }
  std::size_t operator()(BinaryView value) const { return value.bytes.size(); }
  template <class Number>
  std::size_t operator()(Number /*value*/) const {
    return sizeof(Number);
  }
};

}  // namespace

ClientRecordset::ClientRecordset(std::weak_ptr<CursorHost> host, std::string source, LockType lock)
    : host_(std::move(host)), source_(std::move(source)), lock_(lock) {
  UseRows(std::make_shared<ResultRows>());
}

ClientRecordset::~ClientRecordset() { UseRows(nullptr); }

// --- where they come from --------------------------------------------------------------------

std::shared_ptr<Connection> ClientRecordset::ActiveConnection() const {
  const std::shared_ptr<CursorHost> host = host_.lock();
  return host ? host->AsConnection() : nullptr;
}

void ClientRecordset::Close() {
  if (const std::shared_ptr<CursorHost> host = host_.lock()) {
    if (task_) host->CancelTask(task_);
    if (change_) host->CancelTask(change_);
  }
  task_.reset();
  change_.reset();
  state_ = objectState::closed;
  UseRows(std::make_shared<ResultRows>());
  sort_.clear();
}

/// What was begun here and is pending goes with the rows before.
void ClientRecordset::UseRows(std::shared_ptr<ResultRows> rows) {
  if (rows_) {
    rows_->Unwatch(this);
    const auto& pending = rows_->pending;
    if (pending && pending->owner == this && !pending->IsBeingWritten()) rows_->DropPending();
  }
  rows_ = std::move(rows);
  if (rows_) rows_->Watch(this);
  order_.Set({}, 0);
  position_ = 0;
  atNew_ = false;
}

// --- its rows --------------------------------------------------------------------------------

void ClientRecordset::RequireOpen() const {
  if ((state_ & objectState::open) == 0) throw NotOpen();
}

void ClientRecordset::RequireField(std::size_t field) const {
  if (field >= rows_->fields.size()) throw NoField(field);
}

const std::vector<FieldInfo>& ClientRecordset::Fields() const {
  RequireOpen();
  return rows_->fields;
}

std::optional<std::size_t> ClientRecordset::FindField(std::string_view name) const {
  const auto& fields = Fields();
  const auto found = std::ranges::find_if(
      fields, [&](const FieldInfo& field) { return EqualNoCase(field.name, name); });
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

std::int64_t ClientRecordset::RecordCount() const {
  RequireOpen();
  return rows_->Count();
}

std::int64_t ClientRecordset::RowAt(std::int64_t position) const {
  const std::int64_t count = RecordCount();
  if (position >= 0 && position < count) return order_.RowAt(position);
  if (position == count && HasNewRow()) return rows_->pending->row;
  throw NoCurrentRecord();
}

ValueView ClientRecordset::ValueAt(std::int64_t position, std::size_t field) const {
  RequireField(field);
  return rows_->At(RowAt(position), field);
}

Bookmark ClientRecordset::BookmarkAt(std::int64_t position) const { return RowAt(position) + 1; }

std::optional<std::int64_t> ClientRecordset::PositionOf(Bookmark bookmark) const {
  RequireOpen();
  const std::int64_t row = bookmark - 1;
  if (HasNewRow() && rows_->pending->row == row) return rows_->Count();
  if (!rows_->Contains(row)) return std::nullopt;
  return order_.PositionOf(row);
}

// --- its current record ----------------------------------------------------------------------

bool ClientRecordset::Bof() const { return (RecordCount() == 0 && !atNew_) || position_ < 0; }

bool ClientRecordset::Eof() const { return position_ >= RecordCount() && !atNew_; }

std::int64_t ClientRecordset::CurrentRow() const {
  const std::int64_t count = RecordCount();
  if (atNew_) [[unlikely]]
    return rows_->pending->row;
  if (position_ < 0 || position_ >= count) throw NoCurrentRecord();
  return order_.RowAt(position_);
}

void ClientRecordset::MoveFirst() {
  RequireOpen();
  atNew_ = false;
  position_ = 0;
}

void ClientRecordset::MoveLast() {
  position_ = std::max<std::int64_t>(RecordCount() - 1, 0);
  atNew_ = false;
}

/// From the new row to EOF, which has its position.
void ClientRecordset::MoveNext() {
  if (Eof()) throw NoCurrentRecord();
  if (!std::exchange(atNew_, false)) ++position_;
}

void ClientRecordset::MovePrevious() {
  if (Bof()) throw NoCurrentRecord();
  atNew_ = false;
  --position_;
}

Bookmark ClientRecordset::CurrentBookmark() const { return CurrentRow() + 1; }

void ClientRecordset::MoveTo(Bookmark bookmark) {
  const std::optional<std::int64_t> position = PositionOf(bookmark);
  if (!position)
    throw Error(errorNumber::noCurrentRecord, "Tessel", "The record is not there any more.");
  position_ = *position;
  atNew_ = position_ == rows_->Count();
}

ValueView ClientRecordset::FieldValue(std::size_t field) const {
  const std::int64_t row = CurrentRow();
  RequireField(field);
  return rows_->At(row, field);
}

/// Asked for every record that is converted: without a call inside.
[[gnu::flatten]] void ClientRecordset::ReadFields(std::size_t first,
                                                  std::span<ValueView> values) const {
  const std::int64_t row = CurrentRow();
  if (values.empty()) return;
  RequireField(first + values.size() - 1);
  rows_->Read(row, first, values);
}

std::int64_t ClientRecordset::ActualSize(std::size_t field) const {
  const ValueView value = FieldValue(field);
  return static_cast<std::int64_t>(std::visit(ByteCount(), value));
}

// --- clones and sorting ----------------------------------------------------------------------

std::shared_ptr<Recordset> ClientRecordset::Clone(LockType lock) {
  RequireOpen();
  auto clone = std::make_shared<ClientRecordset>(host_, source_, lock);
  clone->UseRows(rows_);
  clone->state_ = objectState::open;
  clone->OrderRows();
  return clone;
}

void ClientRecordset::SetSort(const std::string& order) {
  RequireOpen();
  sort_ = ParseSort(order, [this](std::string_view name) { return FindField(name); });
  ApplySort();
}

void ClientRecordset::ApplySort() {
  const bool hasCurrent = !Bof() && !Eof();
  const Bookmark current = hasCurrent ? CurrentBookmark() : 0;
  OrderRows();
  if (hasCurrent) MoveTo(current);
}

/// Where rows went or numbers were left out, positions and numbers are no longer the same.
void ClientRecordset::OrderRows() {
  const std::int64_t next = rows_->NextNumber();
  if (sort_.empty() && next == rows_->Count()) {
    order_.Set({}, 0);
  } else {
    std::vector<std::int64_t> numbers = rows_->Numbers();
    SortRows(numbers, sort_,
             [&](std::int64_t row, std::size_t field) { return rows_->At(row, field); });
    order_.Set(std::move(numbers), next);
  }
}

// --- for the connection ----------------------------------------------------------------------

void ClientRecordset::BeginRows(std::shared_ptr<Task> task, std::vector<FieldInfo> fields) {
  task_ = std::move(task);
  rows_->fields = std::move(fields);
  state_ = objectState::open | objectState::fetching;
}

void ClientRecordset::AddRows(const Task* task, std::vector<ChunkPtr> chunks) {
  if (task != task_.get()) return;
  for (ChunkPtr& chunk : chunks) rows_->store.Add(std::move(chunk));
}

/// Each field is changed in its place: who holds a reference to it keeps a good one.
void ClientRecordset::EndRows(const Task* task, RowFacts facts) {
  if (task != task_.get()) return;
  task_.reset();
  state_ &= objectState::open;
  if (state_ == objectState::closed) return;
  rows_->origin = std::move(facts.origin);
  if (facts.fields.size() == rows_->fields.size())
    std::ranges::move(facts.fields, rows_->fields.begin());
  rows_->SetKey(std::move(facts.key));
  if (!sort_.empty()) ApplySort();
}

}  // namespace tessel
