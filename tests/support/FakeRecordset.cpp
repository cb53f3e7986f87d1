#include "tests/support/FakeRecordset.h"

#include <algorithm>
#include <charconv>
#include <numeric>

#include "contract/base/Ascii.h"
#include "tests/support/FakeConnection.h"

namespace tessel::test {

namespace {

Error NoCurrentRecord() {
  return {errorNumber::noCurrentRecord, "MemoryServer", "There is no current record."};
}

bool IsNumber(const ValueView& value) { return value.index() >= 1 && value.index() <= 6; }

double NumberOf(const ValueView& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
  const std::string text = ToText(value);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Nulls first, numbers by value, everything else by its text without ASCII case.
bool ComesBefore(const ValueView& a, const ValueView& b) {
  if (IsNull(a) || IsNull(b)) return IsNull(a) && !IsNull(b);
  if (IsNumber(a) && IsNumber(b)) return NumberOf(a) < NumberOf(b);
  return AsciiUpper(ToText(a)) < AsciiUpper(ToText(b));
}

std::vector<std::string> SplitAtCommas(std::string_view text) {
  std::vector<std::string> parts;
  bool inBrackets = false;
  std::string part;
  for (const char c : text) {
    if (c == '[') inBrackets = true;
    if (c == ']') inBrackets = false;
    if (c == ',' && !inBrackets) parts.push_back(std::exchange(part, {}));
    else part += c;
  }
  if (!TrimSpaces(part).empty()) parts.push_back(part);
  return parts;
}

/// Cuts " word" off the end of `text`.
bool CutWord(std::string_view& text, std::string_view word) {
  if (text.size() <= word.size() + 1) return false;
  const std::size_t start = text.size() - word.size();
  if (text[start - 1] != ' ' || !EqualNoCase(text.substr(start), word)) return false;
  text = TrimSpaces(text.substr(0, start));
  return true;
}

}  // namespace

FakeRecordset::FakeRecordset(std::weak_ptr<FakeConnection> connection)
    : connection_(std::move(connection)) {}

FakeRecordset::~FakeRecordset() { FakeRecordset::Cancel(); }

void FakeRecordset::SetSource(std::string commandText) {
  if (state_ != objectState::closed)
    throw Error(errorNumber::objectOpen, "MemoryServer", "The recordset is open.");
  source_ = std::move(commandText);
}

std::shared_ptr<Connection> FakeRecordset::ActiveConnection() const { return connection_.lock(); }

void FakeRecordset::Open(int options) {
  if (state_ != objectState::closed)
    throw Error(errorNumber::objectOpen, "MemoryServer", "The recordset is open.");
  const auto connection = connection_.lock();
  if (connection == nullptr)
    throw Error(errorNumber::objectClosed, "MemoryServer", "The recordset's connection is gone.");
  connection->Execute(shared_from_this(), options);
}

void FakeRecordset::Cancel() {
  const auto connection = connection_.lock();
  if (operation_ != nullptr && connection != nullptr) connection->CancelOperation(operation_);
}

void FakeRecordset::Close() {
  Cancel();
  operation_ = nullptr;
  state_ = objectState::closed;
  store_ = std::make_shared<FakeStore>();
  sort_.clear();
  order_.clear();
  version_ = 0;
  position_ = 0;
  atNew_ = false;
}

void FakeRecordset::RequireOpen() const {
  if ((state_ & objectState::open) == 0)
    throw Error(errorNumber::objectClosed, "MemoryServer", "The recordset is closed.");
}

const std::vector<FieldInfo>& FakeRecordset::Fields() const {
  RequireOpen();
  return store_->fields;
}

std::optional<std::size_t> FakeRecordset::FindField(std::string_view name) const {
  const auto& fields = Fields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (EqualNoCase(fields[i].name, name)) return i;
  return std::nullopt;
}

std::int64_t FakeRecordset::RecordCount() const {
  RequireOpen();
  SyncOrder();
  return static_cast<std::int64_t>(order_.size());
}

/// New rows stand behind the others until the next sort. When the current row goes the one behind
/// it becomes current.
void FakeRecordset::SyncOrder() const {
  if (std::exchange(version_, store_->version) == store_->version) return;
  for (std::size_t i = order_.size(); i-- > 0;) {
    if (!store_->gone.contains(order_[i])) continue;
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(i));
    if (static_cast<std::int64_t>(i) < position_) --position_;
  }
  const std::set<std::int64_t> known(order_.begin(), order_.end());
  for (std::int64_t row = 0; row < static_cast<std::int64_t>(store_->fetched); ++row)
    if (!known.contains(row) && !store_->gone.contains(row)) order_.push_back(row);
}

std::int64_t FakeRecordset::RowAt(std::int64_t position) const {
  const std::int64_t count = RecordCount();
  if (position == count && Editing() == EditMode::Add) return store_->pending->row;
  if (position < 0 || position >= count) throw NoCurrentRecord();
  return order_[static_cast<std::size_t>(position)];
}

ValueView FakeRecordset::ValueAt(std::int64_t position, std::size_t field) const {
  if (field >= Fields().size())
    throw Error(errorNumber::itemNotFound, "MemoryServer", "There is no such field.");
  const std::int64_t row = RowAt(position);
  if (store_->pending && store_->pending->row == row) {
    const auto set = store_->pending->values.find(field);
    if (set != store_->pending->values.end()) return ToView(set->second);
  }
  return ToView(store_->rows[static_cast<std::size_t>(row)][field]);
}

Bookmark FakeRecordset::BookmarkAt(std::int64_t position) const { return RowAt(position) + 1; }

std::optional<std::int64_t> FakeRecordset::PositionOf(Bookmark bookmark) const {
  for (std::int64_t position = 0; position < RecordCount(); ++position)
    if (BookmarkAt(position) == bookmark) return position;
  return std::nullopt;
}

void FakeRecordset::MoveFirst() {
  RequireOpen();
  position_ = 0;
  atNew_ = false;
}

void FakeRecordset::MoveLast() {
  position_ = std::max<std::int64_t>(RecordCount() - 1, 0);
  atNew_ = false;
}

void FakeRecordset::MoveNext() {
  if (Eof()) throw NoCurrentRecord();
  if (!std::exchange(atNew_, false)) ++position_;
}

void FakeRecordset::MovePrevious() {
  if (Bof()) throw NoCurrentRecord();
  atNew_ = false;
  --position_;
}

Bookmark FakeRecordset::CurrentBookmark() const {
  SyncOrder();
  return BookmarkAt(position_);
}

void FakeRecordset::MoveTo(Bookmark bookmark) {
  const auto position = PositionOf(bookmark);
  if (!position) throw NoCurrentRecord();
  position_ = *position;
  atNew_ = false;
}

ValueView FakeRecordset::FieldValue(std::size_t field) const {
  SyncOrder();
  return ValueAt(position_, field);
}

void FakeRecordset::ReadFields(std::size_t first, std::span<ValueView> values) const {
  for (ValueView& value : values) value = FieldValue(first++);
}

std::int64_t FakeRecordset::ActualSize(std::size_t field) const {
  const ValueView value = FieldValue(field);
  if (IsNull(value)) return 0;
  if (const auto* bytes = std::get_if<BinaryView>(&value))
    return static_cast<std::int64_t>(bytes->bytes.size());
  if (std::holds_alternative<bool>(value)) return 1;
  if (std::holds_alternative<float>(value)) return 4;
  const bool fixed = IsNumber(value) && !std::holds_alternative<DecimalView>(value);
  return fixed ? 8 : static_cast<std::int64_t>(ToText(value).size());
}

std::shared_ptr<Recordset> FakeRecordset::Clone(LockType lock) {
  RequireOpen();
  auto clone = std::make_shared<FakeRecordset>(connection_);
  clone->source_ = source_;
  clone->lock_ = lock;
  clone->store_ = store_;
  clone->state_ = objectState::open;
  return clone;
}

void FakeRecordset::SetSort(const std::string& order) {
  RequireOpen();
  sort_ = ParseSort(order);
  ApplySort();
}

std::vector<FakeRecordset::SortField> FakeRecordset::ParseSort(std::string_view order) const {
  std::vector<SortField> fields;
  for (const std::string& part : SplitAtCommas(order)) {
    std::string_view name = TrimSpaces(part);
    const bool descending = CutWord(name, "DESC");
    if (!descending) CutWord(name, "ASC");
    if (name.starts_with('[') && name.ends_with(']')) name = name.substr(1, name.size() - 2);
    const auto field = FindField(name);
    if (!field)
      throw Error(errorNumber::itemNotFound, "MemoryServer",
                  "There is no field '" + std::string(name) + "'.");
    fields.push_back({*field, descending});
  }
  return fields;
}

void FakeRecordset::ApplySort() {
  SyncOrder();
  const bool hasCurrent = !atNew_ && !Bof() && !Eof();
  const Bookmark current = hasCurrent ? CurrentBookmark() : 0;
  std::vector<std::int64_t> rows = order_;
  std::ranges::sort(rows);
  order_ = rows;
  std::ranges::stable_sort(rows, [&](std::int64_t a, std::int64_t b) {
    for (const SortField& by : sort_) {
      const auto cell = [&](std::int64_t row) {
        return ToView(store_->rows[static_cast<std::size_t>(row)][by.field]);
      };
      const ValueView first = cell(by.descending ? b : a);
      const ValueView second = cell(by.descending ? a : b);
      if (ComesBefore(first, second)) return true;
      if (ComesBefore(second, first)) return false;
    }
    return false;
  });
  order_ = std::move(rows);
  if (hasCurrent) MoveTo(current);
}

void FakeRecordset::BeginExecute(const void* operation) {
  operation_ = operation;
  state_ = objectState::executing;
}

void FakeRecordset::BeginRows(const void* operation, const MemoryResult& result) {
  if (operation != operation_) return;
  Fill(result);
  store_->fetched = 0;
  ++store_->version;
  order_.clear();
  state_ = objectState::open | objectState::fetching;
}

void FakeRecordset::AddRows(const void* operation, std::size_t fetched) {
  if (operation != operation_) return;
  store_->fetched = fetched;
  ++store_->version;
}

void FakeRecordset::EndRows(const void* operation, const MemoryResult& result) {
  if (operation != operation_) return;
  operation_ = nullptr;
  state_ &= objectState::open;
  if (state_ == objectState::closed) return;
  if (result.hasUniqueRowsProperty) store_->properties.Set("Unique Rows", result.uniqueRows);
  if (const auto connection = connection_.lock()) store_->catalog = connection->DefaultDatabase();
  if (!sort_.empty()) ApplySort();
}

void FakeRecordset::Fill(const MemoryResult& result) {
  store_ = std::make_shared<FakeStore>();
  store_->fields = result.fields;
  store_->rows = *result.rows;
  store_->fetched = result.rows->size();
  store_->origin = result;
  store_->version = 1;
  version_ = 0;
  order_.clear();
  state_ = objectState::open;
}

}  // namespace tessel::test
