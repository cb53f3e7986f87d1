#include "contract/desktop/controls/DataGrid.h"

#include <exception>

#include "contract/text/Utf8.h"

namespace tessel {

bool DataGrid::CanEditCell() const {
  if (CurrentField() == nullptr || ColumnLocked(CurrentColumn())) return false;
  if (OnNewRow()) return AllowAddNew();
  return AllowUpdate() && !DataSource()->Bof() && !DataSource()->Eof();
}

bool DataGrid::CanEmptyCell() const {
  return CanEditCell() && (OnNewRow() || !CurrentField()->isKey);
}

bool DataGrid::ChangePending() const {
  if (CurrentField() == nullptr) return false;
  return (EditActive() && EditorChanged()) || DataSource()->Editing() != EditMode::None;
}

std::string DataGrid::CellText() const {
  if (EditActive()) return EditorText();
  if (CurrentField() == nullptr || IsEmptyNewRow() || CellPosition() < 0) return {};
  const ValueView value =
      DataSource()->ValueAt(CellPosition(), static_cast<std::size_t>(CurrentColumn()));
  std::string text;
  if (const DataFormat* format = ColumnFormat(CurrentColumn()))
    format->Format.Raise(nullptr, value, text);
  return text.empty() ? ToText(value) : text;
}

void DataGrid::SetCellValue(Value value) {
  WriteField(std::move(value));
  CloseEditor();
  Raise(Change);
}

std::optional<ErrorInfo> DataGrid::WhyNotInPlace() const {
  if (!CanEditCell() || EditActive()) return std::nullopt;
  if (auto reason = DataSource()->WhyNotChangeable()) return reason;
  if (IsEmptyNewRow()) return std::nullopt;
  const ValueView value =
      DataSource()->ValueAt(CellPosition(), static_cast<std::size_t>(CurrentColumn()));
  const auto* text = std::get_if<std::string_view>(&value);
  if (text == nullptr || IsValidUtf8(*text)) return std::nullopt;
  return Error(errorNumber::notSupported, "Tessel",
               "This text holds bytes that are no valid UTF-8, and editing it in its cell would "
               "lose them. Press F4 to edit it in a window, which keeps them.")
      .Info();
}

bool DataGrid::UserBegins() {
  const std::optional<ErrorInfo> reason = WhyNotInPlace();
  if (reason) Fail(std::make_exception_ptr(Error(*reason)));
  return !reason && CanEditCell();
}

void DataGrid::EditCell() {
  if (UserBegins()) OpenEditor(CellText(), false);
}

void DataGrid::SelectCellText() {
  if (CanEditCell() && !WhyNotInPlace()) OpenEditor(CellText(), true);
  else if (CurrentField() != nullptr) SelectCellAlone();
}

void DataGrid::EndEdit() {
  if (!EditActive()) return;
  if (EditorChanged()) WriteField(Value(EditorText()));
  CloseEditor();
}

void DataGrid::DropEdit() {
  if (EditActive()) CloseEditor();
}

bool DataGrid::UserLeaves(bool row) {
  try {
    EndEdit();
  } catch (...) {
    Fail(std::current_exception());
    return false;
  }
  const std::shared_ptr<Recordset> source = DataSource();
  if (!row || source == nullptr || source->Editing() == EditMode::None) return true;
  bool stays = false;
  Raise(LeaveRow, stays);
  return !stays && DataSource() == source;
}

bool DataGrid::UserTurnsOver() {
  const FieldInfo* field = CurrentField();
  if (field == nullptr || field->type != DataType::Boolean || EditActive() || !CanEditCell())
    return false;
  bool isTrue = false;
  if (!IsEmptyNewRow()) {
    const ValueView value =
        DataSource()->ValueAt(CellPosition(), static_cast<std::size_t>(CurrentColumn()));
    const bool* flag = std::get_if<bool>(&value);
    isTrue = flag != nullptr && *flag;
  }
  try {
    SetCellValue(Value(!isTrue));
  } catch (...) {
    Fail(std::current_exception());
  }
  return true;
}

/// The field of the current cell; null when there is no cell or the rows are gone.
const FieldInfo* DataGrid::CurrentField() const {
  const std::shared_ptr<Recordset> source = DataSource();
  if (source == nullptr || CurrentColumn() < 0) return nullptr;
  if ((source->State() & objectState::open) == 0) return nullptr;
  return &source->Fields().at(static_cast<std::size_t>(CurrentColumn()));
}

bool DataGrid::IsEmptyNewRow() const {
  return OnNewRow() && DataSource()->Editing() != EditMode::Add;
}

/// A record that was begun for a value which it then refused is given up again.
void DataGrid::WriteField(Value value) {
  if (CurrentField() == nullptr)
    throw Error(errorNumber::noCurrentRecord, "Tessel", "There is no current record.");
  const std::shared_ptr<Recordset> source = DataSource();
  const bool begins = IsEmptyNewRow();
  if (begins) source->AddNew();
  try {
    source->SetFieldValue(static_cast<std::size_t>(CurrentColumn()), std::move(value));
  } catch (...) {
    if (begins) source->CancelUpdate();
    throw;
  }
  Refresh();
}

}  // namespace tessel
