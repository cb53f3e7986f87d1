// The dialog of saved connections for the frame: it shows the list, fills and reads the boxes
// beside it, opens the builders of connection strings, and saves the list when a connection was
// opened.

#include "logic/connections/dlgConnect.h"

#include <functional>

#include "contract/text/Ascii.h"
#include "logic/connections/builders/dlgCnAccess.h"
#include "logic/connections/builders/dlgCnGeneric.h"
#include "logic/connections/builders/dlgCnODBC.h"
#include "logic/connections/builders/dlgCnSQLSrv.h"
#include "logic/connections/link/dlgDataLink.h"
#include "logic/connections/password/dlgPassword.h"
#include "logic/connections/text/PasswordPlace.h"

namespace tessel {

namespace {

constexpr int colorInitAndFullOpen = 3;

ListRow RowOf(const SavedConnection& connection, std::string key = {}) {
  ListRow row;
  row.key = std::move(key);
  row.text = connection.caption;
  row.subItems = {connection.connectionString};
  row.tag = connection.backColor;
  row.foreColor = connection.foreColor;
  return row;
}

SavedConnection ConnectionOf(const ListRow& row) {
  return {row.subItems.at(0), row.text, static_cast<Color>(row.tag), row.foreColor};
}

}  // namespace

dlgConnect::dlgConnect(const Global& global, ConnectionOpener& opener)
    : global_(global),
      opener_(opener),
      help_(global),
      window_(global.TheDesktop().MakeWindow("dlgConnect")),
      lsvConnections_(window_->Find<ListView>("lsvConnections")),
      txtCaption_(window_->Find<TextBox>("txtCaption")),
      txtCnStr_(window_->Find<TextBox>("txtCnStr")),
      txtUsername_(window_->Find<TextBox>("txtUsername")),
      txtPassword_(window_->Find<TextBox>("txtPassword")),
      chkLoadSchemaFromDB_(window_->Find<CheckBox>("chkLoadSchemaFromDB")),
      labColor_(window_->Find<Label>("labColor")),
      settings_(global) {
  WireControls();
  Form_Load();
}

void dlgConnect::Go(Window& owner) {
  while (window_->Loaded()) window_->ShowModal(&owner);
}

void dlgConnect::WireControls() {
  window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
  lsvConnections_.KeyDown = [this](KeyEvent& event) { lsvConnections_KeyDown(event); };
  lsvConnections_.ItemClick = [this](int) { lsvConnections_ItemClick(); };
  lsvConnections_.DblClick = [this] { cmdConnect_Click(); };
  lsvConnections_.ColumnClick = [this](int column) { lsvConnections_ColumnClick(column); };
  labColor_.MouseUp = [this](const MouseEvent& event) {
    PickColor(event.button == MouseButton::Left, event.shift);
  };
  const auto click = [this](const char* name, void (dlgConnect::*handler)()) {
    window_->Find<Button>(name).Click = [this, handler] { (this->*handler)(); };
  };
  click("cmdReassign", &dlgConnect::cmdReassign_Click);
  click("cmdRemove", &dlgConnect::cmdRemove_Click);
  click("cmdConnect", &dlgConnect::cmdConnect_Click);
  click("cmdOLEDB", &dlgConnect::cmdOLEDB_Click);
  WireBuilder<dlgCnODBC>("cmdODBC");
  WireBuilder<dlgCnAccess>("cmdDBAccess");
  WireBuilder<dlgCnSQLSrv>("cmdDBSQLServer");
  WireBuilder<dlgCnGeneric>("cmdDBGeneric");
  WireMenu();
  window_->Find<Button>("cmdMoveUp").Click = [this] { MoveEntry(-1); };
  window_->Find<Button>("cmdMoveDown").Click = [this] { MoveEntry(1); };
  window_->Find<Button>("cmdCancel").Click = [this] { window_->Unload(); };
}

/// The menu of the list, by the menu key and by the right button.
void dlgConnect::WireMenu() {
  const auto choose = [this](const char* entry, std::function<void()> action) {
    window_->Menu(entry).Click = std::move(action);
  };
  choose("mnuConConnect", [this] { cmdConnect_Click(); });
  choose("mnuConSortCaption", [this] { lsvConnections_ColumnClick(0); });
  choose("mnuConSortString", [this] { lsvConnections_ColumnClick(1); });
  choose("mnuConUp", [this] { MoveEntry(-1); });
  choose("mnuConDown", [this] { MoveEntry(1); });
  choose("mnuConReassign", [this] { cmdReassign_Click(); });
  choose("mnuConRemove", [this] { cmdRemove_Click(); });
  lsvConnections_.KeyUp = [this](KeyEvent& event) {
    event.handled = event.keyCode == key::contextMenu;
    if (event.handled) ShowMenu(&lsvConnections_);
  };
  lsvConnections_.MouseUp = [this](const MouseEvent& event) {
    if (event.button == MouseButton::Right) ShowMenu(nullptr);
  };
}

void dlgConnect::ShowMenu(Control* at) {
  constexpr int fromCorner = 300;
  for (const char* entry : {"mnuConReassign", "mnuConRemove"})
    window_->Menu(entry).SetEnabled(!IsNewRow(SelectedRow()));
  window_->PopupMenu(window_->Menu("menuConnections"), at, fromCorner, fromCorner);
}

/// A builder returns what it was given when the user cancels it.
template <class Dialog>
void dlgConnect::WireBuilder(const char* button) {
  window_->Find<Button>(button).Click = [this] {
    txtCnStr_.SetText(Dialog(global_).GetCnStr(*window_, txtCnStr_.Text()));
  };
}

void dlgConnect::Form_Load() {
  AddRow(RowOf({"", "(new)"}, "new"));
  lsvConnections_.SetSelectedIndex(0);
  labColor_.SetBackColor(color::windowBackground);
  labColor_.SetForeColor(color::windowText);
  for (const SavedConnection& connection : settings_.Load()) AddRow(RowOf(connection));
  ShowHint();
}

/// What to do next: at a first start there is nothing to choose from.
void dlgConnect::ShowHint() {
  const bool nothing = lsvConnections_.Count() == 1;
  window_->Find<Label>("lblHint").SetCaption(
      nothing ? "No connection is saved yet: press \"OLE DB...\" to build one, then Connect."
              : "Choose a connection below, or press \"OLE DB...\" to build one.");
}

// --- the list ------------------------------------------------------------------------------------

void dlgConnect::AddRow(ListRow row) {
  lsvConnections_.Insert(lsvConnections_.Count(), std::move(row));
}

int dlgConnect::SelectedRow() const {
  const int selected = lsvConnections_.SelectedIndex();
  return selected >= 0 ? selected : lsvConnections_.FindKey("new");
}

void dlgConnect::lsvConnections_ItemClick() {
  const int selected = SelectedRow();
  const SavedConnection connection = ConnectionOf(lsvConnections_.Row(selected));
  txtCaption_.SetText(IsNewRow(selected) ? "" : connection.caption);
  txtCnStr_.SetText(connection.connectionString);
  labColor_.SetBackColor(connection.backColor);
  labColor_.SetForeColor(connection.foreColor);
}

SavedConnection dlgConnect::Entry() const {
  return {txtCnStr_.Text(), txtCaption_.Text(), labColor_.BackColor(), labColor_.ForeColor()};
}

void dlgConnect::cmdReassign_Click() {
  if (!IsNewRow(SelectedRow())) lsvConnections_.SetRow(SelectedRow(), RowOf(Entry()));
}

void dlgConnect::cmdRemove_Click() {
  if (IsNewRow(SelectedRow())) return;
  lsvConnections_.Remove(SelectedRow());
  lsvConnections_ItemClick();
}

void dlgConnect::MoveEntry(int delta) {
  const int from = SelectedRow();
  const int to = from + delta;
  if (to < 0 || to >= lsvConnections_.Count()) return;
  ListRow row = lsvConnections_.Row(from);
  lsvConnections_.Remove(from);
  lsvConnections_.SetSelectedIndex(lsvConnections_.Insert(to, std::move(row)));
}

/// The first sort is confirmed, because the order saved is the sorted one from then on.
void dlgConnect::lsvConnections_ColumnClick(int column) {
  if (lsvConnections_.Sorted()) {
    const bool reverse =
        lsvConnections_.SortColumn() == column && !lsvConnections_.SortDescending();
    return lsvConnections_.Sort(column, reverse);
  }
  std::string caption = lsvConnections_.ColumnCaption(column);
  for (char& c : caption) c = AsciiLower(c);
  if (help_.HelpMsgBoxQuestion("Sort list by " + caption + "?", MessageButtons::OkCancel,
                               MessageIcon::Question) == MessageResult::Ok)
    lsvConnections_.Sort(column, false);
}

void dlgConnect::lsvConnections_KeyDown(KeyEvent& event) {
  const bool ctrl = event.shift == shiftState::ctrl;
  const bool plain = event.shift == shiftState::none;
  event.handled = true;
  if (ctrl && event.keyCode == key::equals) cmdReassign_Click();
  else if (ctrl && event.keyCode == key::up) MoveEntry(-1);
  else if (ctrl && event.keyCode == key::down) MoveEntry(1);
  else if (plain && event.keyCode == key::del) cmdRemove_Click();
  else if (ctrl && (event.keyCode == '1' || event.keyCode == '2'))
    lsvConnections_ColumnClick(event.keyCode - '1');
  else event.handled = false;
}

// --- colours -------------------------------------------------------------------------------------

void dlgConnect::Form_KeyDown(KeyEvent& event) {
  const bool alt = (event.shift & shiftState::alt) != 0;
  if (!alt || (event.keyCode != 'B' && event.keyCode != 'F')) return;
  event.handled = true;
  PickColor(event.keyCode == 'B', event.shift);
}

void dlgConnect::PickColor(bool isBackground, int shift) {
  const auto set = [&](Color color) {
    if (isBackground) labColor_.SetBackColor(color);
    else labColor_.SetForeColor(color);
  };
  if ((shift & shiftState::ctrl) != 0)
    return set(isBackground ? color::windowBackground : color::windowText);
  ColorDialog& dialog = window_->ColorDialogNamed("dlgCommon");
  dialog.flags = colorInitAndFullOpen;
  dialog.color = isBackground ? labColor_.BackColor() : labColor_.ForeColor();
  if (dialog.ShowColor()) set(dialog.color);
}

// --- connecting ----------------------------------------------------------------------------------

void dlgConnect::cmdConnect_Click() {
  const SavedConnection entry = Entry();
  if (entry.connectionString.empty()) {
    help_.HelpMsgBoxNotice("Please specify a connection string.", MessageButtons::Ok,
                           MessageIcon::Exclamation);
    return txtCnStr_.SetFocus();
  }
  const bool isNew = IsNewRow(SelectedRow());
  const SavedConnection selected = ConnectionOf(lsvConnections_.Row(SelectedRow()));
  const bool sameString = !isNew && selected.connectionString == entry.connectionString;
  const bool sameCaption = !isNew && selected.caption == entry.caption && !entry.caption.empty();
  if (!ConfirmCaption(entry, sameCaption, sameString)) return;
  const std::optional<std::string> password = PasswordOf(entry);
  if (!password) return;
  window_->Hide();
  if (!opener_.OpenRecordsWindow(entry, txtUsername_.Text(), *password,
                                 chkLoadSchemaFromDB_.Value())) {
    refused_ = entry.connectionString;
    return;
  }
  SaveList(entry, !(sameCaption || sameString));
  window_->Unload();
  opener_.FocusQueryWindow();
}

/// What was typed, or, where the string says "Password From" and nothing was, the keyring's or the
/// user's answer. Nothing when the user cancels.
std::optional<std::string> dlgConnect::PasswordOf(const SavedConnection& entry) {
  std::string typed = txtPassword_.Text();
  if (!typed.empty() || !AsksForPassword(SplitDataLink(entry.connectionString))) return typed;
  return AskPassword(global_, *window_, entry.connectionString, entry.connectionString == refused_);
}

/// Asks before a caption is used twice or an entry's string is replaced. An empty caption is never
/// asked about.
bool dlgConnect::ConfirmCaption(const SavedConnection& entry, bool sameCaption, bool sameString) {
  if (entry.caption.empty()) return true;
  if (!sameCaption) {
    return lsvConnections_.FindText(entry.caption) < 0 ||
           help_.HelpMsgBoxQuestion(
               "Note: The caption '" + entry.caption + "' has already been used.",
               MessageButtons::OkCancel, MessageIcon::Exclamation) == MessageResult::Ok;
  }
  return sameString || help_.HelpMsgBoxQuestion(
                           "The connection string for '" + entry.caption + "' will be updated.",
                           MessageButtons::OkCancel, MessageIcon::Information) == MessageResult::Ok;
}

void dlgConnect::SaveList(const SavedConnection& entry, bool addNew) {
  const int selected = SelectedRow();
  std::vector<SavedConnection> list;
  for (int index = 0; index < lsvConnections_.Count(); ++index) {
    if (IsNewRow(index)) continue;
    const bool update = index == selected && !addNew;
    list.push_back(update ? entry : ConnectionOf(lsvConnections_.Row(index)));
  }
  if (addNew) list.push_back(entry);
  std::string reason;
  if (!settings_.Save(list, &reason)) opener_.TellListNotSaved(reason);
}

void dlgConnect::cmdOLEDB_Click() {
  txtCnStr_.SetText(PromptDataLink(global_, *window_, txtCnStr_.Text(),
                                   {txtUsername_.Text(), txtPassword_.Text()}));
}

}  // namespace tessel
