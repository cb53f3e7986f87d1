#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/RecordsHost.h"
#include "logic/results/values/CellCommands.h"

namespace tessel {

/// The editing of the rows on show in a records window: the lock, the buttons that accept and
/// reject a change, the warning, the keys of the grid, deleting.
///
/// A change lies in the grid's cell and in the recordset until it is written: by the accept button,
/// or because the user goes to another row. One that cannot be written is shown with the reason and
/// stays.
class RecordEditing {
 public:
  /// All outlive it; `focusRecords` gives the keyboard back to the rows.
  RecordEditing(const Global& global, dlgAsync& async, RecordsHost& host, Window& window,
                std::function<void()> focusRecords);

  /// Whether the rows of the next query are to be read only.
  [[nodiscard]] bool Locked() const { return locked_; }
  /// Sets what the user may do with the rows that a query gave, before the grid is bound to them.
  /// `async`: their provider can write asynchronously.
  void ShowRecordset(const Recordset& recordset, bool async);
  /// To be asked before the rows go away, or can no longer be written. Where a change is pending
  /// the user says what becomes of it; saving it is done here. False: the rows stay as they are.
  [[nodiscard]] bool MayLeaveRows();
  /// Once the grid is bound to them: nothing is typed into columns that cannot be written.
  void LockColumns(const Recordset& recordset);
  /// The rows on show go away, and what was not written with them.
  void HideRecordset();
  /// Writes a change that is pending, as going to another row does; false when it still is.
  [[nodiscard]] bool SaveChange() { return Write(); }
  /// Drops a change that is pending; false when it could not be, which has been shown.
  bool DropChange();

  /// The record is edited in that grid too, which shows its fields; it outlives this object.
  void AlsoEditedIn(DataGrid& fields) { fields_ = &fields; }
  /// Writes what is pending, if anything is; false when it stays, which has been shown.
  [[nodiscard]] bool LeaveRecord() { return !ChangePending() || Write(); }
  /// Drops what is being typed, else what is pending in the record; false when there is nothing.
  bool TakeBack();

  void ShowEditButtons(bool visible);
  /// On the row of a new record there are none: it is written when the user goes on.
  void ShowEditButtonsUnlessNew();
  /// Keys of the grid that concern the current cell; true when one was taken.
  bool HandleGridKey(int keyCode, int shift);
  /// What the warning means, as its double click shows it; false when it is not there.
  bool ShowWarning();

 private:
  void chkLock_Click();
  void cmdAccept_Click();
  void cmdReject_Click();
  void lblWarning_DblClick();
  void mnuRowsDelete_Click();
  void AskToDelete(const std::vector<Bookmark>& rows);
  void DataGrid_RowColChange();

  [[nodiscard]] bool ChangePending() const;
  [[nodiscard]] DataGrid* GridBeingEdited();
  [[nodiscard]] bool InFields() const;
  void FocusEdited(bool inFields);
  bool HandlePlainKey(int keyCode);
  [[nodiscard]] CellCommands::Cell CurrentCell() const;
  bool Write();
  bool DeleteSelected();
  void DeleteRows(const std::vector<Bookmark>& rows);

  const Global& global_;
  dlgAsync& async_;
  RecordsHost& host_;
  Help help_;
  Window& window_;
  DataGrid& dataGrid_;
  CheckBox& chkLock_;
  Button& cmdAccept_;
  Button& cmdReject_;
  Label& lblWarning_;
  std::function<void()> focusRecords_;
  CellCommands cells_;
  DataGrid* fields_ = nullptr;  ///< Where the record is edited beside the grid; null: nowhere.
  bool locked_ = true;
  bool writesAsync_ = false;
};

}  // namespace tessel
