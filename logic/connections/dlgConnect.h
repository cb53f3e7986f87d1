#pragma once

#include <memory>
#include <optional>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/connections/SettingsFile.h"
#include "logic/program/Help.h"

namespace tessel {

/// What the saved-connections dialog asks of the frame.
class ConnectionOpener {
 public:
  /// Makes a records window and connects it; the fields of `connection` are what the dialog holds.
  /// False when it did not connect.
  virtual bool OpenRecordsWindow(const SavedConnection& connection, const std::string& userName,
                                 const std::string& password, bool loadSchemaFromDB) = 0;
  virtual void FocusQueryWindow() = 0;
  /// Says, without a question, that the list could not be saved after the window opened last had
  /// connected.
  virtual void TellListNotSaved(const std::string& reason) = 0;

 protected:
  ~ConnectionOpener() = default;
};

/// The dialog "Connect to Database": the user's list of saved connections, and the way to every
/// records window.
class dlgConnect {
 public:
  dlgConnect(const Global& global, ConnectionOpener& opener);

  /// Shows the dialog over `owner` until a connection has succeeded or the user cancels.
  void Go(Window& owner);

 private:
  void Form_Load();
  void WireControls();
  void WireMenu();
  void ShowMenu(Control* at);
  template <class Dialog>
  void WireBuilder(const char* button);
  void Form_KeyDown(KeyEvent& event);
  void lsvConnections_KeyDown(KeyEvent& event);
  void lsvConnections_ItemClick();
  void lsvConnections_ColumnClick(int column);
  void cmdReassign_Click();
  void cmdRemove_Click();
  void cmdConnect_Click();
  void cmdOLEDB_Click();

  void AddRow(ListRow row);
  void MoveEntry(int delta);
  void PickColor(bool isBackground, int shift);
  [[nodiscard]] bool ConfirmCaption(const SavedConnection& entry, bool sameCaption,
                                    bool sameString);
  [[nodiscard]] std::optional<std::string> PasswordOf(const SavedConnection& entry);
  void ShowHint();
  void SaveList(const SavedConnection& entry, bool addNew);
  [[nodiscard]] bool IsNewRow(int index) const { return lsvConnections_.Row(index).key == "new"; }
  /// What the boxes and the colour sample hold.
  [[nodiscard]] SavedConnection Entry() const;
  /// The selected row, or the "(new)" row's while none is selected.
  [[nodiscard]] int SelectedRow() const;

  const Global& global_;
  ConnectionOpener& opener_;
  Help help_;
  std::unique_ptr<Window> window_;
  ListView& lsvConnections_;
  TextBox& txtCaption_;
  TextBox& txtCnStr_;
  TextBox& txtUsername_;
  TextBox& txtPassword_;
  CheckBox& chkLoadSchemaFromDB_;
  Label& labColor_;
  SettingsFile settings_;
  std::string refused_;  ///< The string that did not connect with the keyring's password.
};

}  // namespace tessel
