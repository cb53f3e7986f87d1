#include <utility>

#include "data/cursor/rows/ClientRecordset.h"
#include "data/providers/ConnectionMode.h"

namespace tessel {

namespace {

Error IsPending(const char* text) { return {errorNumber::changePending, "Tessel", text}; }

ErrorInfo Reason(std::int32_t number, const char* text) {
  return Error(number, "Tessel", text).Info();
}

Error WrongType(const FieldInfo& field) {
  return {errorNumber::typeMismatch, "Tessel",
          "This is no value of the type of the field '" + field.name + "'."};
}

/// The operation that there was nothing to do for.
class NothingToDo final : public Operation {
 public:
  explicit NothingToDo(std::weak_ptr<Connection> connection)
      : Operation(OperationPhase::Ended), connection_(std::move(connection)) {}

  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override {
    return connection_.lock();
  }
  void Cancel() override {}
  void Wait() override {}

 private:
  std::weak_ptr<Connection> connection_;
};

}  // namespace

/// Whatever database is in use.
std::optional<ErrorInfo> ClientRecordset::WhyNeverChangeable() const {
  RequireOpen();
  if (Lock() == LockType::ReadOnly || Lock() == LockType::Unspecified)
    return ForReadingOnly().Info();
  if ((state_ & objectState::fetching) != 0)
    return Reason(errorNumber::application, "The records are still being fetched.");
  if (!rows_->CanBeWritten())
    return Reason(errorNumber::notSupported,
                  "The records cannot be changed: they do not come from one table, or none of its "
                  "columns can be written.");
  return std::nullopt;
}

std::optional<ErrorInfo> ClientRecordset::WhyNotChangeable() const {
  if (auto reason = WhyNeverChangeable()) return reason;
  const std::shared_ptr<CursorHost> host = host_.lock();
  if (!host) return std::nullopt;
  const std::shared_ptr<Connection> connection = host->AsConnection();
  if ((connection->State() & objectState::open) == 0) return std::nullopt;
  if (IsReadOnlyMode(connection->ProviderProperties()))
    return Reason(errorNumber::readOnly, "The connection is read-only: Mode=ReadOnly.");
  return WhyOtherOrigin(rows_->origin, host->Origin());
}

void ClientRecordset::RequireChangeable() const {
  if (const auto reason = WhyNotChangeable()) throw Error(*reason);
  RequireNotBeingWritten();
}

void ClientRecordset::RequireNotBeingWritten() const {
  if (rows_->pending && rows_->pending->IsBeingWritten())
    throw IsPending("The change is being written.");
}

EditMode ClientRecordset::Editing() const {
  RequireOpen();
  return rows_->pending ? rows_->pending->mode : EditMode::None;
}

void ClientRecordset::AddNew() {
  RequireChangeable();
  if (rows_->pending) throw IsPending("Another change waits to be written first.");
  rowBeforeNew_ = Bof() || Eof() ? std::nullopt : std::optional(CurrentRow());
  positionBeforeNew_ = position_;
  rows_->pending = PendingChange{.mode = EditMode::Add,
                                 .row = rows_->TakeNumber(),
                                 .values = FieldValues(rows_->fields.size()),
                                 .owner = this,
                                 .writer = nullptr};
  position_ = RecordCount();
  atNew_ = true;
}

/// The value as the field takes it.
Value ClientRecordset::Fitting(const FieldInfo& field, Value value) const {
  if (const auto* text = std::get_if<std::string>(&value)) {
    std::optional<Value> parsed = ParseValue(field.type, *text);
    if (!parsed) throw WrongType(field);
    return std::move(*parsed);
  }
  const bool isNull = std::holds_alternative<std::monostate>(value);
  const bool isBytes = std::holds_alternative<Bytes>(value);
  if (!isNull && isBytes != IsBinaryType(field.type)) throw WrongType(field);
  return value;
}

void ClientRecordset::SetFieldValue(std::size_t field, Value value) {
  RequireChangeable();
  const std::int64_t row = CurrentRow();
  RequireField(field);
  const FieldInfo& info = rows_->fields[field];
  if (rows_->pending && rows_->pending->row != row)
    throw IsPending("The change of another record waits to be written first.");
  if (!info.updatable)
    throw Error(errorNumber::readOnly, "Tessel",
                "The field '" + info.name + "' cannot be changed.");
  Value fitting = Fitting(info, std::move(value));
  if (!rows_->pending)
    rows_->pending = PendingChange{.mode = EditMode::InProgress,
                                   .row = row,
                                   .values = FieldValues(rows_->fields.size()),
                                   .owner = this,
                                   .writer = nullptr};
  rows_->pending->values[field] = std::move(fitting);
}

void ClientRecordset::CancelUpdate() {
  if (const auto reason = WhyNeverChangeable()) throw Error(*reason);
  RequireNotBeingWritten();
  rows_->DropPending();
}

std::shared_ptr<Operation> ClientRecordset::StartUpdate() {
  RequireChangeable();
  if (!rows_->pending) return std::make_shared<NothingToDo>(ActiveConnection());
  return Write(rows_->PendingAsChange(), rows_->pending->row);
}

std::shared_ptr<Operation> ClientRecordset::StartDelete() {
  RequireChangeable();
  const std::int64_t row = CurrentRow();
  if (rows_->pending && rows_->pending->row != row)
    throw IsPending("The change of another record waits to be written first.");
  const bool isWritten = !atNew_;
  rows_->DropPending();
  if (!isWritten) return std::make_shared<NothingToDo>(ActiveConnection());
  return Write(rows_->Deletion(row), row);
}

std::shared_ptr<Operation> ClientRecordset::Write(RowChange change, std::int64_t row) {
  const std::shared_ptr<CursorHost> host = host_.lock();
  if (!host)
    throw Error(errorNumber::objectClosed, "Tessel", "The recordset's connection is gone.");
  return host->StartWrite(std::static_pointer_cast<ClientRecordset>(shared_from_this()),
                          {rows_, row}, std::move(change));
}

void ClientRecordset::BeginChange(std::shared_ptr<Task> task) {
  if (rows_->pending) rows_->pending->writer = task;
  change_ = std::move(task);
  state_ |= objectState::executing;
}

void ClientRecordset::EndChange(const Task* task) {
  if (task != change_.get()) return;
  change_.reset();
  state_ &= ~objectState::executing;
}

// --- changes of the rows, made by this cursor or another one -------------------------------------

/// The new row becomes an ordinary one, which stays current where it is so.
void ClientRecordset::RowComes(std::int64_t row) {
  NoteOtherRows();
  const std::int64_t shown = order_.Shown(rows_->Count());
  order_.Append(row, shown);
  if (!std::exchange(atNew_, false) && position_ >= shown) position_ = shown + 1;
}

/// The one behind it becomes current.
void ClientRecordset::RowGoes(std::int64_t row) {
  NoteOtherRows();
  const std::optional<std::int64_t> position = order_.PositionOf(row);
  if (!position) return order_.RemoveHidden();
  order_.Remove(*position, order_.Shown(rows_->Count()));
  if (position_ > *position) --position_;
}

void ClientRecordset::NewRowDropped() {
  if (!std::exchange(atNew_, false)) return;
  const bool knows = rowBeforeNew_ && rows_->Contains(*rowBeforeNew_);
  const auto position = knows ? order_.PositionOf(*rowBeforeNew_) : std::nullopt;
  position_ = position.value_or(std::min(positionBeforeNew_, order_.Shown(rows_->Count())));
}

}  // namespace tessel
