#include "logic/results/panes/RecordPane.h"

#include <algorithm>
#include <utility>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"

namespace tessel {

namespace {

bool IsOpen(const std::shared_ptr<Recordset>& rows) {
  return rows != nullptr && (rows->State() & objectState::open) != 0;
}

}  // namespace

RecordPane::RecordPane(const Global& global, SqlTarget& sqlWindow, Window& window,
                       const PaneOwner& owner)
    : help_(global),
      owner_(owner),
      grid_(window.Find<DataGrid>("DataGrid")),
      fraRecord_(window.Find<PictureBox>("fraRecord")),
      lblRecord_(window.Find<Label>("lblRecord")),
      fields_(window.Find<DataGrid>("RecordFields")),
      commands_(
          global, sqlWindow, fields_, [this] { return CurrentCell(); },
          [this] { FieldChanged(); }) {
  sizes_.Format = [](const ValueView& value, std::string& shown) {
    if (const auto* binary = std::get_if<BinaryView>(&value))
      shown = "[" + std::to_string(binary->bytes.size()) + "]";
  };
  window.Find<Button>("cmdRecordPrevious").Click = [this] { Step(-1); };
  window.Find<Button>("cmdRecordNext").Click = [this] { Step(1); };
  fields_.Change = [this] { FieldChanged(); };
  fields_.RowsChange = [this] { ShowInGrid(); };
  fields_.RowColChange = [this] { StayInValues(); };
  grid_.GotFocus = [this] { LeaveFields(); };
}

void RecordPane::Show(bool shown) {
  if (!shown) LeaveFields();
  fraRecord_.SetVisible(shown);
  if (!shown) Bind(nullptr);
}

// --- following the grid --------------------------------------------------------------------------

/// What was being typed belonged to the record before.
void RecordPane::Follow(const std::string& row) {
  const std::shared_ptr<Recordset> rows =
      Shown() && IsOpen(grid_.DataSource()) ? grid_.DataSource() : nullptr;
  if (rows != rows_) Bind(rows);
  if (rows_ == nullptr) return;
  if (CurrentRecord() != shown_) fields_.DropEdit();
  shown_ = CurrentRecord();
  fields_.SetAllowUpdate(grid_.AllowUpdate());
  lblRecord_.SetCaption(row);
  if (std::exchange(following_, true)) return;
  fields_.Refresh();
  following_ = false;
}

void RecordPane::Bind(const std::shared_ptr<Recordset>& rows) {
  rows_ = rows;
  record_ = rows == nullptr
                ? nullptr
                : std::make_shared<RecordFields>(rows, [this] { return OnEmptyNewRow(); });
  fields_.SetDataSource(record_);
  if (record_ == nullptr) return;
  shown_ = CurrentRecord();
  fields_.SetColumnLocked(static_cast<int>(RecordFields::nameField), true);
  fields_.SetColumnFormat(static_cast<int>(RecordFields::valueField), &sizes_);
  fields_.GoToCell(std::max(grid_.CurrentColumn(), 0), static_cast<int>(RecordFields::valueField));
}

/// A name cannot be typed: who comes to one is taken to its value.
void RecordPane::StayInValues() {
  if (record_ == nullptr || fields_.CurrentColumn() != static_cast<int>(RecordFields::nameField))
    return;
  const std::int64_t field = record_->CurrentBookmark() - 1;
  fields_.GoToCell(field, static_cast<int>(RecordFields::valueField));
}

/// To the value above, and from the first one back to the records.
bool RecordPane::GoBack() {
  if (record_ == nullptr || record_->Bof() || record_->Eof() || fields_.EditActive()) return false;
  const std::int64_t field = record_->CurrentBookmark() - 1;
  if (field > 0) fields_.GoToCell(field - 1, static_cast<int>(RecordFields::valueField));
  else owner_.focusRecords();
  return true;
}

bool RecordPane::OnEmptyNewRow() const {
  return grid_.OnNewRow() && rows_ != nullptr && rows_->Editing() != EditMode::Add;
}

std::optional<Bookmark> RecordPane::CurrentRecord() const {
  if (grid_.OnNewRow() || rows_->Bof() || rows_->Eof()) return std::nullopt;
  return rows_->CurrentBookmark();
}

void RecordPane::Step(int step) {
  const std::shared_ptr<Recordset> rows = rows_;
  if (rows == nullptr || !owner_.leaveRecord() || rows_ != rows) return;
  const std::optional<Bookmark> record = CurrentRecord();
  const std::int64_t position = record ? rows->PositionOf(*record).value_or(-1) : -1;
  const std::int64_t target = position + step;
  if (position < 0 || target < 0 || target >= rows->RecordCount()) return;
  rows->MoveTo(rows->BookmarkAt(target));
  grid_.Refresh();
}

// --- editing -------------------------------------------------------------------------------------

/// What was typed becomes the field's value before the user goes on in the grid.
void RecordPane::LeaveFields() {
  if (rows_ == nullptr || !fields_.EditActive()) return;
  try {
    fields_.EndEdit();
    FieldChanged();
  } catch (const Error& error) {
    fields_.DropEdit();
    help_.Show(error.Description(), MessageIcon::Exclamation);
  }
}

void RecordPane::FieldChanged() {
  owner_.changed();
  ShowInGrid();
}

/// The grid shows a value that the record has by now, and is asked once.
void RecordPane::ShowInGrid() {
  if (rows_ == nullptr || rows_->Editing() == EditMode::None) return;
  if (std::exchange(following_, true)) return;
  grid_.Refresh();
  following_ = false;
}

const FieldInfo* RecordPane::CurrentField() const {
  if (record_ == nullptr || record_->Bof() || record_->Eof()) return nullptr;
  return &record_->CurrentField();
}

CellCommands::Cell RecordPane::CurrentCell() const {
  const FieldInfo* field = CurrentField();
  if (field == nullptr) return {};
  const std::string table = field->baseTable.empty() ? "" : field->baseTable + ".";
  const std::string row = lblRecord_.Caption();
  return {field, table + field->name + (row.empty() ? "" : ", " + row)};
}

bool RecordPane::HasFocus() const { return fields_.HasFocus(); }

bool RecordPane::TakeKey(const KeyEvent& event) {
  if (!fields_.HasFocus()) return false;
  if (event.shift == shiftState::none) {
    if (event.keyCode == key::escape) return owner_.takeBack();
    if (event.keyCode == key::space && TurnOver()) return true;
    if (KeepsKey(event.keyCode)) return true;
  }
  if (event.keyCode == key::tab && event.shift == shiftState::shift) return GoBack();
  return commands_.TakeKey(event.keyCode, event.shift);
}

/// One key does not empty a field by which the row of an existing record is found.
bool RecordPane::KeepsKey(int keyCode) const {
  const FieldInfo* field = CurrentField();
  return (keyCode == key::del || keyCode == key::back) && !fields_.EditActive() &&
         field != nullptr && field->isKey && shown_;
}

/// The space bar on true or false, as in the grid.
bool RecordPane::TurnOver() {
  const FieldInfo* field = CurrentField();
  if (field == nullptr || field->type != DataType::Boolean || fields_.EditActive()) return false;
  if (!fields_.CanEditCell() || record_->WhyNotChangeable()) return false;
  const ValueView value = record_->FieldValue(RecordFields::valueField);
  const bool* flag = std::get_if<bool>(&value);
  help_.TryTo([&] { fields_.SetCellValue(Value(flag != nullptr && !*flag)); });
  return true;
}

}  // namespace tessel
