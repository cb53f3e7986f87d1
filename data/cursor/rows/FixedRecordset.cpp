#include "data/cursor/rows/FixedRecordset.h"

#include <utility>

#include "contract/data/Operation.h"

namespace tessel {

FixedRecordset::FixedRecordset(std::shared_ptr<const FixedRows> rows)
    : RowCursor(std::string(), LockType::ReadOnly), rows_(std::move(rows)) {
  properties_.Set("Unique Rows", false);
  MoveOver(rows_);
  state_ = objectState::open;
}

/// The lock is read-only whatever is asked for.
std::shared_ptr<Recordset> FixedRecordset::Clone(LockType /*lock*/) {
  RequireOpen();
  return std::make_shared<FixedRecordset>(rows_);
}

void FixedRecordset::Close() {
  rows_ = std::make_shared<NoRows>();
  MoveOver(rows_);
  state_ = objectState::closed;
}

std::shared_ptr<const FixedRows> FixedRecordset::RowsForGood() const {
  RequireOpen();
  return rows_;
}

// --- changes -------------------------------------------------------------------------------------

std::optional<ErrorInfo> FixedRecordset::WhyNotChangeable() const {
  RequireOpen();
  return ForReadingOnly().Info();
}

EditMode FixedRecordset::Editing() const {
  RequireOpen();
  return EditMode::None;
}

void FixedRecordset::Refuse() const {
  RequireOpen();
  throw ForReadingOnly();
}

void FixedRecordset::AddNew() { Refuse(); }
void FixedRecordset::SetFieldValue(std::size_t /*field*/, Value /*value*/) { Refuse(); }
std::shared_ptr<Operation> FixedRecordset::StartUpdate() { Refuse(); }
void FixedRecordset::CancelUpdate() { Refuse(); }
std::shared_ptr<Operation> FixedRecordset::StartDelete() { Refuse(); }

}  // namespace tessel
