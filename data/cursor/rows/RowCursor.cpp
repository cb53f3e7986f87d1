#include "data/cursor/rows/RowCursor.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"

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

void RowCursor::MoveOver(std::shared_ptr<const RowSource> rows) {
  rows_ = std::move(rows);
  arrangement_ = {};
  position_ = 0;
  atNew_ = false;
  OrderRows();
}

// --- its rows --------------------------------------------------------------------------------

void RowCursor::RequireOpen() const {
  if ((state_ & objectState::open) == 0) throw NotOpen();
}

void RowCursor::RequireField(std::size_t field) const {
  if (field >= rows_->fields.size()) throw NoField(field);
}

const std::vector<FieldInfo>& RowCursor::Fields() const {
  RequireOpen();
  return rows_->fields;
}

std::optional<std::size_t> RowCursor::FindField(std::string_view name) const {
  const auto& fields = Fields();
  const auto found = std::ranges::find_if(
      fields, [&](const FieldInfo& field) { return EqualNoCase(field.name, name); });
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

std::int64_t RowCursor::RecordCount() const {
  RequireOpen();
  return order_.Shown(rows_->Count());
}

std::int64_t RowCursor::FullCount() const {
  RequireOpen();
  return rows_->Count();
}

std::int64_t RowCursor::RowAt(std::int64_t position) const {
  const std::int64_t count = RecordCount();
  if (position >= 0 && position < count) return order_.RowAt(position);
  const std::optional<std::int64_t> newRow = rows_->NewRow();
  if (position != count || !newRow) throw NoCurrentRecord();
  return *newRow;
}

ValueView RowCursor::ValueAt(std::int64_t position, std::size_t field) const {
  RequireField(field);
  return rows_->At(RowAt(position), field);
}

Bookmark RowCursor::BookmarkAt(std::int64_t position) const { return RowAt(position) + 1; }

void RowCursor::ReadFieldsAt(std::int64_t position, std::size_t first,
                             std::span<ValueView> values) const {
  const std::int64_t row = RowAt(position);
  if (values.empty()) return;
  RequireField(first + values.size() - 1);
  rows_->Read(row, first, values);
}

std::optional<std::int64_t> RowCursor::PositionOf(Bookmark bookmark) const {
  RequireOpen();
  const std::int64_t row = bookmark - 1;
  if (rows_->NewRow() == row) return RecordCount();
  if (!rows_->Contains(row)) return std::nullopt;
  return order_.PositionOf(row);
}

// --- its current record ----------------------------------------------------------------------

bool RowCursor::Bof() const { return (RecordCount() == 0 && !atNew_) || position_ < 0; }

bool RowCursor::Eof() const { return position_ >= RecordCount() && !atNew_; }

Error RowCursor::ForReadingOnly() {
  return {errorNumber::readOnly, "Tessel",
          "The records were opened for reading only and cannot be changed."};
}

std::int64_t RowCursor::CurrentRow() const {
  const std::int64_t count = RecordCount();
  if (atNew_) [[unlikely]]
    return *rows_->NewRow();
  if (position_ < 0 || position_ >= count) throw NoCurrentRecord();
  return order_.RowAt(position_);
}

void RowCursor::MoveFirst() {
  RequireOpen();
  atNew_ = false;
  position_ = 0;
}

void RowCursor::MoveLast() {
  position_ = std::max<std::int64_t>(RecordCount() - 1, 0);
  atNew_ = false;
}

/// From the new row to EOF, which has its position.
void RowCursor::MoveNext() {
  if (Eof()) throw NoCurrentRecord();
  if (!std::exchange(atNew_, false)) ++position_;
}

void RowCursor::MovePrevious() {
  if (Bof()) throw NoCurrentRecord();
  atNew_ = false;
  --position_;
}

Bookmark RowCursor::CurrentBookmark() const { return CurrentRow() + 1; }

void RowCursor::MoveTo(Bookmark bookmark) {
  const std::optional<std::int64_t> position = PositionOf(bookmark);
  if (!position)
    throw Error(errorNumber::noCurrentRecord, "Tessel", "The record is not there any more.");
  position_ = *position;
  atNew_ = position_ == RecordCount();
}

ValueView RowCursor::FieldValue(std::size_t field) const {
  const std::int64_t row = CurrentRow();
  RequireField(field);
  return rows_->At(row, field);
}

void RowCursor::ReadFields(std::size_t first, std::span<ValueView> values) const {
  const std::int64_t row = CurrentRow();
  if (values.empty()) return;
  RequireField(first + values.size() - 1);
  rows_->Read(row, first, values);
}

std::int64_t RowCursor::ActualSize(std::size_t field) const {
  const ValueView value = FieldValue(field);
  return static_cast<std::int64_t>(std::visit(ByteCount(), value));
}

// --- sorting and arranging -------------------------------------------------------------------

void RowCursor::SetSort(const std::string& order) {
  RequireOpen();
  auto sort = ParseSort(order, [this](std::string_view name) { return FindField(name); });
  arrangement_ = {std::move(sort), TextOrder::CodePoint, {}};
  KeepCurrent([this] { OrderRows(); });
}

void RowCursor::ApplySort() {
  if (!arrangement_.sort.empty()) KeepCurrent([this] { OrderRows(); });
}

/// The current record stays current where it is on show, else the first one is.
void RowCursor::KeepCurrent(const std::function<void()>& order) {
  const bool hasCurrent = !Bof() && !Eof();
  const Bookmark current = hasCurrent ? CurrentBookmark() : 0;
  order();
  if (!hasCurrent) return;
  if (PositionOf(current)) MoveTo(current);
  else MoveFirst();
}

/// Where rows went or numbers were left out, positions and numbers are no longer the same.
void RowCursor::OrderRows() {
  ++version_;
  const std::int64_t next = rows_->NextNumber();
  if (arrangement_.sort.empty() && next == rows_->Count()) {
    order_.Set({}, 0);
  } else {
    std::vector<std::int64_t> numbers = rows_->Numbers();
    SortRows(numbers, arrangement_.sort,
             [&](std::int64_t row, std::size_t field) { return rows_->At(row, field); });
    order_.Set(std::move(numbers), next);
  }
}

void RowCursor::RequireNothingPending() const {
  if (Editing() == EditMode::None) return;
  throw Error(errorNumber::changePending, "Tessel",
              "The change of a record waits to be saved first.");
}

std::unique_ptr<RowWork> RowCursor::StartArrange(RowArrangement arrangement) {
  RequireOpen();
  if ((state_ & objectState::fetching) != 0)
    throw Error(errorNumber::application, "Tessel", "The records are still being fetched.");
  RequireNothingPending();
  for (const SortKey& key : arrangement.sort) RequireField(key.field);
  for (const RowCondition& condition : arrangement.conditions)
    if (condition.field) RequireField(*condition.field);
  return std::make_unique<ArrangeWork>(shared_from_this(), std::move(arrangement));
}

std::unique_ptr<RowWork> RowCursor::StartSearch(CellSearch search) const {
  RequireOpen();
  if (search.field) RequireField(*search.field);
  return std::make_unique<SearchWork>(shared_from_this(), std::move(search));
}

void RowCursor::Arrange(RowArrangement arrangement, ArrangedRows rows) {
  KeepCurrent([&] {
    arrangement_ = std::move(arrangement);
    if (arrangement_.sort.empty() && arrangement_.conditions.empty()) return OrderRows();
    ++version_;
    order_.Take(std::move(rows), rows_->NextNumber());
  });
}

}  // namespace tessel
