#include "logic/results/panes/RecordFields.h"

#include <utility>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr const char* source = "Tessel";

FieldInfo Column(std::string name, DataType type, bool updatable) {
  FieldInfo column;
  column.name = std::move(name);
  column.type = type;
  column.updatable = updatable;
  return column;
}

[[noreturn]] void RaiseNotSupported() {
  throw Error(errorNumber::notSupported, source, "The fields of a record stay as they are.");
}

[[noreturn]] void RaiseNoField() {
  throw Error(errorNumber::noCurrentRecord, source, "There is no such field.");
}

}  // namespace

RecordFields::RecordFields(std::shared_ptr<Recordset> rows, std::function<bool()> onEmptyNewRow)
    : rows_(std::move(rows)),
      onEmptyNewRow_(std::move(onEmptyNewRow)),
      columns_{Column("Field", DataType::VarWChar, false),
               Column("Value", DataType::Variant, true)} {}

const FieldInfo& RecordFields::CurrentField() const {
  return rows_->Fields().at(static_cast<std::size_t>(current_));
}

int RecordFields::State() const { return closed_ ? objectState::closed : rows_->State(); }

// --- its rows ------------------------------------------------------------------------------------

std::optional<std::size_t> RecordFields::FindField(std::string_view name) const {
  for (std::size_t column = 0; column < columns_.size(); ++column)
    if (EqualNoCase(columns_[column].name, name)) return column;
  return std::nullopt;
}

std::int64_t RecordFields::RecordCount() const {
  return static_cast<std::int64_t>(rows_->Fields().size());
}

/// Of a row that is not begun, and where there are no rows, there is nothing to be read.
bool RecordFields::HasRecord() const { return !onEmptyNewRow_() && !rows_->Bof() && !rows_->Eof(); }

ValueView RecordFields::ValueAt(std::int64_t position, std::size_t field) const {
  if (position < 0 || position >= RecordCount()) RaiseNoField();
  const auto number = static_cast<std::size_t>(position);
  if (field == nameField) return std::string_view(rows_->Fields()[number].name);
  if (field != valueField)
    throw Error(errorNumber::itemNotFound, source, "There is no such column.");
  return HasRecord() ? rows_->FieldValue(number) : ValueView();
}

Bookmark RecordFields::BookmarkAt(std::int64_t position) const {
  if (position < 0 || position >= RecordCount()) RaiseNoField();
  return position + 1;
}

std::optional<std::int64_t> RecordFields::PositionOf(Bookmark bookmark) const {
  return bookmark >= 1 && bookmark <= RecordCount() ? std::optional(bookmark - 1) : std::nullopt;
}

void RecordFields::MoveLast() { current_ = RecordCount() - 1; }

void RecordFields::MoveNext() {
  if (Eof()) RaiseNoField();
  ++current_;
}

void RecordFields::MovePrevious() {
  if (Bof()) RaiseNoField();
  --current_;
}

void RecordFields::MoveTo(Bookmark bookmark) {
  const auto position = PositionOf(bookmark);
  if (!position) RaiseNoField();
  current_ = *position;
}

void RecordFields::ReadFields(std::size_t first, std::span<ValueView> values) const {
  ReadFieldsAt(current_, first, values);
}

void RecordFields::ReadFieldsAt(std::int64_t position, std::size_t first,
                                std::span<ValueView> values) const {
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = ValueAt(position, first + i);
}

std::int64_t RecordFields::ActualSize(std::size_t field) const {
  if (field == valueField && HasRecord())
    return rows_->ActualSize(static_cast<std::size_t>(current_));
  return static_cast<std::int64_t>(ToText(FieldValue(field)).size());
}

std::shared_ptr<Recordset> RecordFields::Clone(LockType /*lock*/) {
  return std::make_shared<RecordFields>(rows_, onEmptyNewRow_);
}

void RecordFields::SetSort(const std::string& order) {
  if (!order.empty()) RaiseNotSupported();
}

std::unique_ptr<RowWork> RecordFields::StartArrange(RowArrangement /*arrangement*/) {
  RaiseNotSupported();
}

std::unique_ptr<RowWork> RecordFields::StartSearch(CellSearch /*search*/) const {
  RaiseNotSupported();
}

// --- changing them -------------------------------------------------------------------------------

std::optional<ErrorInfo> RecordFields::WhyNotChangeable() const {
  if (auto reason = rows_->WhyNotChangeable()) return reason;
  if (Bof() || Eof()) return std::nullopt;
  const FieldInfo& field = CurrentField();
  if (IsBinaryType(field.type))
    return Error(errorNumber::readOnly, source,
                 "The bytes of '" + field.name +
                     "' are loaded from a file, by the menu of its cell.")
        .Info();
  if (field.updatable) return std::nullopt;
  return Error(errorNumber::readOnly, source, "The field '" + field.name + "' cannot be changed.")
      .Info();
}

void RecordFields::AddNew() { RaiseNotSupported(); }

/// A record that was begun for a value which it then refused is given up again.
void RecordFields::SetFieldValue(std::size_t field, Value value) {
  if (field != valueField)
    throw Error(errorNumber::readOnly, source, "The names of fields cannot be changed here.");
  const bool begins = onEmptyNewRow_();
  if (begins) rows_->AddNew();
  try {
    rows_->SetFieldValue(static_cast<std::size_t>(current_), std::move(value));
  } catch (...) {
    if (begins) rows_->CancelUpdate();
    throw;
  }
}

std::shared_ptr<Operation> RecordFields::StartDelete() { RaiseNotSupported(); }

}  // namespace tessel
