// The editing of records as a person meets it: what each key, button and click on the grid means,
// when a change is written or taken back, and what is shown when the database refuses it. The grid
// holds the text being typed, the recordset the changed record.

#include "logic/results/RecordEditing.h"

namespace tessel {

namespace {

constexpr int warningContext = 1304;
constexpr const char* saveQuestion = "Save the change to this record?";
constexpr const char* uniqueRowsWarning =
    "The recordset properties indicate that the field values of a record may or may not identify "
    "it uniquely. This means that when trying to update or delete an existing record, there is no "
    "guarantee that the information being used to locate it will specify only that record. If "
    "multiple records match the criteria, they will all be affected - incorrectly.\r\n\r\n"
    "To be able to correctly identify records uniquely, a primary key should be defined. Depending "
    "on the provider, you may also need to select all fields that constitute the primary key.";

}  // namespace

RecordEditing::RecordEditing(const Global& global, dlgAsync& async, RecordsHost& host,
                             Window& window, std::function<void()> focusRecords)
    : global_(global),
      async_(async),
      host_(host),
      help_(global),
      window_(window),
      dataGrid_(window.Find<DataGrid>("DataGrid")),
      chkLock_(window.Find<CheckBox>("chkLock")),
      cmdAccept_(window.Find<Button>("cmdAccept")),
      cmdReject_(window.Find<Button>("cmdReject")),
      lblWarning_(window.Find<Label>("lblWarning")),
      focusRecords_(std::move(focusRecords)),
      cells_(
          global, host, dataGrid_, [this] { return CurrentCell(); },
          [this] { ShowEditButtonsUnlessNew(); }) {
  chkLock_.Click = [this] { chkLock_Click(); };
  cmdAccept_.Click = [this] { cmdAccept_Click(); };
  cmdReject_.Click = [this] { cmdReject_Click(); };
  lblWarning_.DblClick = [this] { lblWarning_DblClick(); };
  window.Menu("mnuRowsSelect").Click = [this] { dataGrid_.SelectRow(); };
  window.Menu("mnuRowsDelete").Click = [this] { mnuRowsDelete_Click(); };
  dataGrid_.Change = [this] { ShowEditButtonsUnlessNew(); };
  dataGrid_.RowColChange = [this] { DataGrid_RowColChange(); };
  dataGrid_.LeaveRow = [this](bool& stay) { stay = !Write(); };
}

// --- what the user may do ------------------------------------------------------------------------

/// On a connection that is read-only an edit may be tried: the grid then tells why it cannot be.
void RecordEditing::ShowRecordset(const Recordset& recordset, bool async) {
  const bool unlocked = recordset.Lock() != LockType::ReadOnly;
  const auto reason = recordset.WhyNotChangeable();
  const bool editable = !reason;
  const bool tellsWhy = unlocked && reason && reason->number == errorNumber::readOnly;
  writesAsync_ = async;
  lblWarning_.SetVisible(unlocked && recordset.RecordsetProperties().Number("Unique Rows", 0) == 0);
  dataGrid_.SetAllowUpdate(editable || tellsWhy);
  dataGrid_.SetAllowDelete(editable);
  window_.Menu("mnuRowsDelete").SetEnabled(editable);
  dataGrid_.SetAllowAddNew(editable);
}

void RecordEditing::LockColumns(const Recordset& recordset) {
  if (!dataGrid_.AllowUpdate()) return;
  for (std::size_t field = 0; field < recordset.Fields().size(); ++field)
    if (!recordset.Fields()[field].updatable)
      dataGrid_.SetColumnLocked(static_cast<int>(field), true);
}

void RecordEditing::HideRecordset() {
  ShowEditButtons(false);
  lblWarning_.SetVisible(false);
}

void RecordEditing::chkLock_Click() {
  locked_ = chkLock_.Value();
  const std::string next = locked_ ? "editable" : "read-only";
  chkLock_.SetToolTip("Click to make records " + next + " on subsequent queries (Ctrl+L)");
  focusRecords_();
}

bool RecordEditing::ShowWarning() {
  if (!lblWarning_.Visible()) return false;
  lblWarning_DblClick();
  return true;
}

void RecordEditing::lblWarning_DblClick() {
  help_.HelpMsgBox(uniqueRowsWarning, MessageButtons::Ok, MessageIcon::Exclamation, warningContext);
}

// --- writing and taking back ---------------------------------------------------------------------

void RecordEditing::ShowEditButtons(bool visible) {
  cmdAccept_.SetVisible(visible);
  cmdReject_.SetVisible(visible);
}

void RecordEditing::ShowEditButtonsUnlessNew() {
  if (!dataGrid_.OnNewRow()) ShowEditButtons(true);
}

void RecordEditing::DataGrid_RowColChange() {
  if (!ChangePending()) ShowEditButtons(false);
}

/// A text that is being typed counts, in the grid or beside it.
bool RecordEditing::ChangePending() const {
  return dataGrid_.ChangePending() || (fields_ != nullptr && fields_->ChangePending());
}

/// The one in which a text is being typed; null: none.
DataGrid* RecordEditing::GridBeingEdited() {
  if (dataGrid_.EditActive()) return &dataGrid_;
  return fields_ != nullptr && fields_->EditActive() ? fields_ : nullptr;
}

bool RecordEditing::InFields() const { return fields_ != nullptr && fields_->HasFocus(); }

/// The user goes on where he was. A text that could not become a value is there to be typed anew.
void RecordEditing::FocusEdited(bool inFields) {
  if (fields_ != nullptr && (inFields || fields_->EditActive())) fields_->SetFocus();
  else focusRecords_();
}

void RecordEditing::cmdAccept_Click() {
  const bool inFields = InFields();
  cmdAccept_.SetFocus();
  Write();
  FocusEdited(inFields);
}

void RecordEditing::cmdReject_Click() {
  const bool inFields = InFields();
  cmdReject_.SetFocus();
  DropChange();
  FocusEdited(inFields);
}

/// False when the change is still pending: it failed, which has been shown, or was cancelled.
bool RecordEditing::Write() {
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  if (rows == nullptr) return true;
  bool written = false;
  help_.TryTo([&] {
    dataGrid_.EndEdit();
    if (fields_ != nullptr) fields_->EndEdit();
    written = async_.Run(rows->StartUpdate(), "Saving the record...", writesAsync_);
  });
  if (dataGrid_.DataSource() != rows || !written) return false;
  dataGrid_.Refresh();
  ShowEditButtons(false);
  return true;
}

bool RecordEditing::DropChange() {
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  if (rows == nullptr) return true;
  const bool dropped = help_.TryTo([&] {
    dataGrid_.DropEdit();
    if (fields_ != nullptr) fields_->DropEdit();
    if (rows->Editing() != EditMode::None) rows->CancelUpdate();
    dataGrid_.Refresh();
  });
  if (dropped) ShowEditButtons(false);
  return dropped;
}

/// The record that is asked about is to be seen. What the user lets go of stays until the rows go:
/// the flow may be stopped yet.
bool RecordEditing::MayLeaveRows() {
  if (dataGrid_.DataSource() == nullptr || !ChangePending()) return true;
  if (!window_.Active()) window_.Activate();
  const MessageResult answer = help_.Ask(
      {saveQuestion, MessageButtons::YesNoCancel, MessageIcon::Question}, helpContext::question);
  if (answer == MessageResult::Yes) return Write();
  return answer == MessageResult::No;
}

/// What was typed into the cell first, then the change of the whole row.
bool RecordEditing::TakeBack() {
  DataGrid* edited = GridBeingEdited();
  if (edited == nullptr && !ChangePending()) return false;
  if (edited == nullptr) {
    DropChange();
    return true;
  }
  edited->DropEdit();
  if (!ChangePending()) ShowEditButtons(false);
  return true;
}

// --- keys of the grid ----------------------------------------------------------------------------

bool RecordEditing::HandleGridKey(int keyCode, int shift) {
  if (shift == shiftState::none && HandlePlainKey(keyCode)) return true;
  return cells_.TakeKey(keyCode, shift);
}

bool RecordEditing::HandlePlainKey(int keyCode) {
  switch (keyCode) {
    case key::f1: help_.ShowHelpTopic(window_.HelpContext()); return true;
    case key::f8: host_.mnuWindowSidebar_Click(); return true;
    case key::escape: return TakeBack();
    case key::del: return DeleteSelected();
    default: return false;
  }
}

/// "Orders.Note, row 3"; without the table when the column comes from none.
CellCommands::Cell RecordEditing::CurrentCell() const {
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  const int column = dataGrid_.CurrentColumn();
  if (rows == nullptr || column < 0) return {};
  const FieldInfo& field = rows->Fields().at(static_cast<std::size_t>(column));
  const std::string name = (field.baseTable.empty() ? "" : field.baseTable + ".") + field.name;
  if (dataGrid_.OnNewRow()) return {&field, name + ", new row"};
  if (rows->Bof() || rows->Eof()) return {&field, name};
  const auto position = rows->PositionOf(rows->CurrentBookmark());
  return {&field, name + ", row " + std::to_string(position.value_or(0) + 1)};
}

// --- deleting ------------------------------------------------------------------------------------

bool RecordEditing::DeleteSelected() {
  const std::vector<Bookmark> rows = dataGrid_.SelBookmarks();
  if (rows.empty() || !dataGrid_.AllowDelete() || dataGrid_.EditActive()) return false;
  AskToDelete(rows);
  return true;
}

/// The selected ones, or where none is the current one.
void RecordEditing::mnuRowsDelete_Click() {
  if (dataGrid_.EditActive() || !dataGrid_.AllowDelete()) return;
  std::vector<Bookmark> rows = dataGrid_.SelBookmarks();
  const std::shared_ptr<Recordset> source = dataGrid_.DataSource();
  if (rows.empty() && !dataGrid_.OnNewRow() && !source->Bof() && !source->Eof())
    rows.push_back(source->CurrentBookmark());
  if (!rows.empty()) AskToDelete(rows);
}

void RecordEditing::AskToDelete(const std::vector<Bookmark>& rows) {
  Message question{"Delete " + std::to_string(rows.size()) + " record(s)?", MessageButtons::YesNo,
                   MessageIcon::Question};
  question.defaultAnswer = MessageResult::No;
  const MessageResult answer = help_.Ask(std::move(question), helpContext::question);
  if (answer == MessageResult::Yes) DeleteRows(rows);
}

/// One by one, up to the first that cannot be deleted. A change that is pending is written first.
void RecordEditing::DeleteRows(const std::vector<Bookmark>& rows) {
  const std::shared_ptr<Recordset> source = dataGrid_.DataSource();
  if (!LeaveRecord()) return;
  help_.TryTo([&] {
    for (const Bookmark row : rows) {
      source->MoveTo(row);
      if (!async_.Run(source->StartDelete(), "Deleting the record...", writesAsync_)) return;
    }
  });
  if (dataGrid_.DataSource() != source) return;
  dataGrid_.Refresh();
  ShowEditButtons(false);
}

}  // namespace tessel
