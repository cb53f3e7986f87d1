// A records window from its query to its rows: it opens its connection, runs the text, binds the
// grid to what came, keeps the history, and tells in its lines what there is. Conversions, editing,
// history and layout are parts of their own, which this file wires.

#include "logic/results/frmRecords.h"

#include "contract/base/Ascii.h"
#include "contract/base/Error.h"
#include "logic/connections/ConnectionText.h"
#include "logic/schema/SchemaTree.h"
#include "logic/tags/TagValue.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr int confirmContext = 8203;
constexpr int windowContext = 8400;
constexpr int errorsContext = 8403;
constexpr int propertiesContext = 8404;
constexpr int propertiesOfQueryContext = 8405;
constexpr const char* sqlFilter = "SQL Files (*.sql)|*.sql";

bool IsNoInterface(const ErrorInfo& error) { return error.number == errorNumber::noInterface; }

/// What the user calls the connection; a string may hold a password.
std::string ShownName(const ConnectRequest& request) {
  return request.caption.empty() ? WithoutPasswords(request.connectionString) : request.caption;
}

/// The progress window without a bar, for as long as this lives.
class ProcessShown {
 public:
  ProcessShown(dlgAsync& async, const std::string& message, const Connection& connection)
      : async_(async) {
    async.InitProcess(message, &connection);
  }
  ~ProcessShown() { async_.Unload(); }
  ProcessShown(const ProcessShown&) = delete;
  ProcessShown& operator=(const ProcessShown&) = delete;

 private:
  dlgAsync& async_;
};

}  // namespace

frmRecords::frmRecords(const Global& global, dlgAsync& async, RecordsHost& host)
    : global_(global),
      async_(async),
      host_(host),
      help_(global),
      window_(global.TheDesktop().MakeWindow("frmRecords")),
      cmdCnErrors_(window_->Find<Button>("cmdCnErrors")),
      cmdReconnect_(window_->Find<Button>("cmdReconnect")),
      cmdAccept_(window_->Find<Button>("cmdAccept")),
      cmdReject_(window_->Find<Button>("cmdReject")),
      cboCatalog_(window_->Find<ComboBox>("cboCatalog")),
      chkLock_(window_->Find<CheckBox>("chkLock")),
      chkRecords_(window_->Find<CheckBox>("chkRecords")),
      txtStatus_(window_->Find<TextBox>("txtStatus")),
      lblTimer_(window_->Find<Label>("lblTimer")),
      lblWarning_(window_->Find<Label>("lblWarning")),
      dataGrid_(window_->Find<DataGrid>("DataGrid")),
      menuRecords_(window_->Menu("menuRecords")),
      topRow_(*window_),
      status_(global.TheDesktop().TheClock(), txtStatus_, cmdCnErrors_),
      history_(global.TheDesktop(), *window_, *this),
      editing_(global, async, host, *window_, [this] { FocusRecords(); }),
      transaction_(global, async, *window_),
      blobs_(global, *window_, editing_),
      conversion_(global, *window_, async, host) {
  Form_Load();
}

frmRecords::~frmRecords() {
  onUnloaded = nullptr;
  Form_Unload();
}

void frmRecords::Form_Load() {
  host_.CountRecordsWindow(1);
  window_->SetHelpContext(windowContext);
  mCn_ = global_.Data().CreateConnection();
  mCn_->TransactionChanged = [this] { ShowTransaction(); };
  WireControls();
  WireMenus();
  Form_Resize();
}

void frmRecords::WireControls() {
  window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
  window_->Resize = [this] { Form_Resize(); };
  window_->QueryUnload = [this](bool& refuse, UnloadReason reason) {
    using Session = OpenTransaction::Session;
    refuse = !MayEndSession(reason == UnloadReason::Frame ? Session::Ends : Session::GoesOn);
  };
  window_->Unloaded = [this] { Form_Unload(); };
  cmdCnErrors_.Click = [this] { cmdCnErrors_Click(); };
  cmdReconnect_.Click = [this] { cmdReconnect_Click(); };
  cboCatalog_.Click = [this] { cboCatalog_Click(); };
  chkRecords_.Click = [this] { chkRecords_Click(); };
  dataGrid_.KeyDown = [this](KeyEvent& event) { DataGrid_KeyDown(event); };
  dataGrid_.KeyUp = [this](KeyEvent& event) { DataGrid_KeyUp(event); };
}

/// The Window and Help commands are the frame's.
void frmRecords::WireMenus() {
  const auto forward = [this](const char* item, void (RecordsHost::*command)()) {
    window_->Menu(item).Click = [this, command] { (host_.*command)(); };
  };
  forward("mnuNewInstance", &RecordsHost::mnuNewInstance_Click);
  forward("mnuWindowSidebar", &RecordsHost::mnuWindowSidebar_Click);
  forward("mnuWindowTileHoriz", &RecordsHost::mnuWindowTileHoriz_Click);
  forward("mnuWindowTileVert", &RecordsHost::mnuWindowTileVert_Click);
  forward("mnuHelpContents", &RecordsHost::mnuHelpContents_Click);
  forward("mnuHelpIndex", &RecordsHost::mnuHelpIndex_Click);
  forward("mnuHelpShortcuts", &RecordsHost::mnuHelpShortcuts_Click);
  forward("mnuHelpAbout", &RecordsHost::mnuHelpAbout_Click);
  window_->Menu("menuWindow").Click = [this] {
    window_->Menu("mnuWindowSidebar").SetChecked(host_.SidebarShown());
    host_.ListWindowsIn(*window_);
  };
}

/// What would be lost is asked about first: the change, which may become part of the transaction,
/// and the transaction.
bool frmRecords::MayEndSession(OpenTransaction::Session session) {
  return editing_.MayLeaveRows() && transaction_.MayEnd(mCn_, session);
}

void frmRecords::ShowTransaction() {
  transaction_.Show(*mCn_);
  Form_Resize();
}

void frmRecords::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  host_.RemoveDatabaseNode(DatabaseNodeKey(windowID_));
  dataGrid_.SetDataSource(nullptr);
  try {
    if (mCn_->State() != objectState::closed) mCn_->Close();
  } catch (const Error&) {
    // The window goes all the same.
  }
  mCn_->TransactionChanged = nullptr;
  query_.reset();
  mCn_.reset();
  host_.CountRecordsWindow(-1);
  if (onUnloaded) onUnloaded();
}

// --- the connection ------------------------------------------------------------------------------

bool frmRecords::Connect(const ConnectRequest& request) {
  mCn_->SetConnectionString(request.connectionString);
  async_.NameConnection(mCn_, ShownName(request));
  userName_ = request.userName;
  password_ = request.password;
  bool connected = false;
  try {
    connected = OpenConnection();
  } catch (const Error& error) {
    help_.Show(error.Description(), MessageIcon::Critical);
  }
  if (!connected) {
    window_->Unload();
    return false;
  }
  windowID_ = host_.GetNextID();
  const std::string caption = ShownName(request);
  window_->SetCaption(caption);
  for (Control* control : {static_cast<Control*>(&dataGrid_), static_cast<Control*>(&cboCatalog_),
                           static_cast<Control*>(&lblTimer_)}) {
    control->SetBackColor(request.backColor);
    control->SetForeColor(request.foreColor);
  }
  SetStatus("Connected.", statusColor::plain);
  window_->Show();
  const std::string nodeKey = DatabaseNodeKey(windowID_);
  host_.AddDatabaseNode(nodeKey, caption);
  loadSchemaFromDB_ = request.loadSchemaFromDB;
  catalogInTree_ = mCn_->DefaultDatabase();
  host_.LoadSchema(nodeKey, mCn_, loadSchemaFromDB_);
  return true;
}

bool frmRecords::OpenConnection() {
  if (!async_.DoConnect(mCn_, userName_, password_)) return false;
  freeThreaded_ = AllowsAsynchronousWork(*mCn_);
  conversion_.SetQuoting(NameQuoting(mCn_->ProviderProperties()));
  ListCatalogs();
  ShowTransaction();
  return (mCn_->State() & objectState::open) != 0;  // A cancel may have cost the connection.
}

void frmRecords::ListCatalogs() {
  const std::string remembered = cboCatalog_.Text();
  cboCatalog_.SetVisible(false);
  cboCatalog_.Clear();
  const std::string inUse = mCn_->DefaultDatabase();
  if (inUse.empty()) return;
  cboCatalog_.AddItem(inUse);
  cboCatalog_.SetListIndex(0);
  cboCatalog_.SetVisible(true);
  AddOtherCatalogs(inUse);
  if (!remembered.empty()) cboCatalog_.SetText(remembered);
}

/// A provider that knows no list of catalogs leaves the one in use as the only choice, and so does
/// a cancel.
void frmRecords::AddOtherCatalogs(const std::string& inUse) {
  try {
    const std::shared_ptr<Recordset> catalogs =
        async_.ReadSchema(*mCn_, SchemaRowset::Catalogs, {});
    if (catalogs == nullptr) return;
    const auto nameField = catalogs->FindField("CATALOG_NAME");
    for (std::int64_t row = 0; nameField && row < catalogs->RecordCount(); ++row) {
      const std::string name = ToText(catalogs->ValueAt(row, *nameField));
      if (!EqualNoCase(name, inUse)) cboCatalog_.AddItem(name);
    }
    catalogs->Close();
  } catch (const Error& error) {
    if (error.Number() != errorNumber::notSupported) throw;
  }
}

void frmRecords::cboCatalog_Click() {
  if (!cboCatalog_.Visible() || choosingCatalog_) return;
  choosingCatalog_ = true;
  const std::string name = cboCatalog_.Text();
  const std::string before = mCn_->DefaultDatabase();
  try {
    if (MayChangeCatalog() && UseCatalog(name))
      SetStatus("Using '" + mCn_->DefaultDatabase() + "'.", statusColor::plain);
    else cboCatalog_.SetText(before);
  } catch (const Error& error) {
    help_.Show("Error using '" + name + "': " + error.Description(), MessageIcon::Critical);
    cboCatalog_.SetText(before);
  }
  choosingCatalog_ = false;
  FollowCatalog();
}

/// The schema browser shows the tables of the catalog in use.
void frmRecords::FollowCatalog() {
  const std::string inUse = mCn_->DefaultDatabase();
  if (windowID_ < 0 || inUse.empty() || inUse == catalogInTree_) return;
  catalogInTree_ = inUse;
  host_.FollowCatalog(DatabaseNodeKey(windowID_), mCn_, loadSchemaFromDB_);
}

/// A command may have chosen another catalog, as USE does. While errors are listed nothing else
/// runs, which would clear the list.
void frmRecords::FollowCommand() {
  const std::string inUse = mCn_->DefaultDatabase();
  if (inUse.empty() || inUse == catalogInTree_) return;
  choosingCatalog_ = true;
  if (cboCatalog_.Visible()) cboCatalog_.SetText(inUse);
  choosingCatalog_ = false;
  if (mCn_->Errors().empty()) FollowCatalog();
}

/// The rows stay on show, but they are the former catalog's.
bool frmRecords::MayChangeCatalog() {
  const bool endsSession = mCn_->ProviderProperties().Number("Catalog Change Ends Session", 0) != 0;
  return editing_.MayLeaveRows() &&
         (!endsSession || transaction_.MayEnd(mCn_, OpenTransaction::Session::GoesOn)) &&
         editing_.DropChange();
}

/// Some databases want the name in brackets, others as it is. False when the user cancelled.
bool frmRecords::UseCatalog(const std::string& name) {
  const auto use = [this](const std::string& written) {
    return async_.Run(mCn_->StartUseCatalog(written), "Executing...", freeThreaded_);
  };
  try {
    return use("[" + name + "]");
  } catch (const Error&) {
    return use(name);
  }
}

void frmRecords::cmdReconnect_Click() {
  if (!MayEndSession(OpenTransaction::Session::GoesOn)) return FocusRecords();
  dataGrid_.SetDataSource(nullptr);
  query_.reset();
  EnableRecords(false);
  cboCatalog_.SetVisible(false);
  try {
    mCn_->Close();
  } catch (const Error&) {
    // It is opened anew in any case.
  }
  mCn_->ClearErrors();
  ShowTransaction();
  SetStatus("Disconnected.", statusColor::plain);
  try {
    const bool connected = OpenConnection();
    FollowCatalog();
    if (connected) SetStatus("Re-connected.", statusColor::plain);
    else if ((mCn_->State() & objectState::open) != 0)
      SetStatus("Re-connected. [Interrupted]", statusColor::interrupted);
  } catch (const Error& error) {
    SetStatus(error.Description(), statusColor::failure, {false, true, !mCn_->Errors().empty()});
  }
  FocusRecords();
}

// --- running SQL ---------------------------------------------------------------------------------

bool frmRecords::DoQueryTags(const std::string& taggedSQL, bool confirmFirst, int historyPosition) {
  std::optional<SubstitutedText> filled = Preprocess(taggedSQL);
  if (!filled) return false;
  return ExecuteSQL(
      {std::move(filled->text), taggedSQL, confirmFirst, historyPosition, filled->usedSources});
}

/// Nothing when the tags could not be filled in; the reason has been shown then.
std::optional<SubstitutedText> frmRecords::Preprocess(const std::string& taggedSQL) {
  if (!MayHoldTags(taggedSQL)) return SubstitutedText{taggedSQL};
  try {
    const ProcessShown shown(async_, "Preprocessing SQL...", *mCn_);
    return SubstituteTags(taggedSQL, *this);
  } catch (const Error& error) {
    help_.HelpMsgBoxNotice(error.Description(), MessageButtons::Ok, MessageIcon::Exclamation);
    return std::nullopt;
  }
}

bool frmRecords::ExecuteSQL(Execution execution) {
  if (execution.confirmFirst && !ConfirmSQL(execution.sql)) return false;
  if (!editing_.MayLeaveRows()) return false;
  const std::int64_t start = global_.TheDesktop().TheClock().Milliseconds();
  try {
    if (!Run(execution, start)) return false;
    FollowCommand();
    return true;
  } catch (const Error& error) {
    UpdateTimer(start);
    SetStatus(error.Description(), statusColor::failure, {false, true, !mCn_->Errors().empty()});
    return false;
  }
}

bool frmRecords::ConfirmSQL(std::string& sql) {
  return ShowText(global_, host_, sql,
                  {confirmContext, sqlFilter, 9600, 2400, true, true, TitleOf("SQL")});
}

bool frmRecords::Run(const Execution& execution, std::int64_t start) {
  dataGrid_.SetDataSource(nullptr);
  EnableRecords(false);
  mCn_->ClearErrors();
  query_.reset();
  query_ = mCn_->StartQuery(execution.sql,
                            editing_.Locked() ? LockType::ReadOnly : LockType::Optimistic);
  std::int64_t recordsAffected = -3;
  bool interrupted = false;
  try {
    interrupted = !async_.DoQuery(query_, recordsAffected, freeThreaded_);
  } catch (const Error& error) {
    const std::shared_ptr<Recordset> rows = query_->FirstRows();
    if (rows == nullptr) throw;
    ShowRowsOf(execution, rows, start);
    ReportBrokenFetch(*rows, error);
    return false;
  }
  if (const std::shared_ptr<Recordset> rows = query_->FirstRows()) {
    ShowRowsOf(execution, rows, start);
  } else {
    UpdateTimer(start);
    if (!ReportNoRows(recordsAffected, interrupted)) return false;
  }
  if (interrupted) {
    SetStatus("[Interrupted]", statusColor::interrupted, {true, false, false});
    return false;
  }
  ReportErrors();
  return true;
}

void frmRecords::ShowRowsOf(const Execution& execution, const std::shared_ptr<Recordset>& recordset,
                            std::int64_t start) {
  UpdateTimer(start);
  ShowRecordset(recordset);
  EnableRecords(true);
  history_.Record({execution.taggedSQL, execution.tagKind, execution.sql, recordset->RecordCount()},
                  execution.historyPosition);
}

/// The rows that came before the failure are there and stay.
void frmRecords::ReportBrokenFetch(const Recordset& recordset, const Error& error) {
  SetStatus(std::to_string(recordset.RecordCount()) + " record(s). " + error.Description(),
            statusColor::failure, {false, true, !mCn_->Errors().empty()});
}

/// False when the statement was cancelled before anything came of it.
bool frmRecords::ReportNoRows(std::int64_t recordsAffected, bool interrupted) {
  if (recordsAffected >= 0) {
    SetStatus(std::to_string(recordsAffected) + " record(s) affected.",
              statusColor::recordsAffected);
    return true;
  }
  if (interrupted) {
    SetStatus("Execution cancelled.", statusColor::interrupted);
    return false;
  }
  SetStatus("Execution completed.", statusColor::completed);
  return true;
}

/// Errors that the provider reported beside a success.
void frmRecords::ReportErrors() {
  const auto& errors = mCn_->Errors();
  const auto count =
      static_cast<std::int64_t>(errors.size()) - std::ranges::count_if(errors, IsNoInterface);
  if (count != 0)
    SetStatus("[" + std::to_string(count) + " error(s) occurred]", statusColor::errorsOccurred,
              {true, false, true});
}

void frmRecords::RunAgain(const HistoryEntry& entry, bool confirmFirst, int position) {
  ExecuteSQL({entry.sql, entry.taggedSQL, confirmFirst, position, 0});
}

void frmRecords::RunTagged(const HistoryEntry& entry, bool confirmFirst, int position) {
  DoQueryTags(entry.taggedSQL, confirmFirst, position);
}

void frmRecords::ShowSQL(const std::string& sql) {
  std::string shown = sql;
  ShowText(global_, host_, shown,
           {propertiesOfQueryContext, sqlFilter, 9600, 2400, false, true, TitleOf("SQL")});
}

// --- showing rows --------------------------------------------------------------------------------

void frmRecords::ShowRecordset(const std::shared_ptr<Recordset>& recordset) {
  SetStatus(std::to_string(recordset->RecordCount()) + " record(s).", statusColor::records);
  editing_.ShowRecordset(*recordset, freeThreaded_);
  PlaceGrid(window_->ScaleWidth(), window_->ScaleHeight());
  dataGrid_.SetDataSource(recordset);
  editing_.LockColumns(*recordset);
  blobs_.ShowRecordset(*recordset);
}

void frmRecords::EnableRecords(bool on) {
  menuRecords_.SetEnabled(on);
  chkRecords_.SetEnabled(on);
  dataGrid_.SetVisible(on);
  if (!on) editing_.HideRecordset();
}

void frmRecords::FocusRecords() {
  if (dataGrid_.Visible()) dataGrid_.SetFocus();
  else if (txtStatus_.Visible()) txtStatus_.SetFocus();
}

void frmRecords::AddNotice(std::string_view text) {
  SetStatus(text, statusColor::failure, {true, true, cmdCnErrors_.Visible()});
}

void frmRecords::SetStatus(std::string_view text, Color color, StatusLine::Options options) {
  status_.SetWindowHeight(window_->ScaleHeight());
  status_.SetStatus(text, color, options);
}

void frmRecords::UpdateTimer(std::int64_t start) {
  lblTimer_.SetCaption(FormatElapsed(global_.TheDesktop().TheClock().Milliseconds() - start));
  lblTimer_.SetVisible(true);
}

/// The box opens the Records menu below itself, and never stays checked.
void frmRecords::chkRecords_Click() {
  if (!chkRecords_.Value()) return;
  chkRecords_.SetValue(false);
  window_->PopupMenu(window_->Menu("menuRecords"), &chkRecords_, 0, chkRecords_.Bounds().height);
}

void frmRecords::cmdCnErrors_Click() {
  std::string text;
  for (const ErrorInfo& error : mCn_->Errors())
    if (!IsNoInterface(error)) text += error.description + "\r\n";
  if (!text.empty()) ShowLongText(text, errorsContext, TitleOf("Errors"));
  FocusRecords();
}

void frmRecords::ShowProperties() {
  std::string text;
  for (const Property& property : mCn_->ProviderProperties())
    text += property.name + "=" + ToText(ToView(property.value)) + "\r\n";
  ShowLongText(text, propertiesContext, TitleOf("Properties"));
}

std::string frmRecords::TitleOf(const std::string& what) const {
  return what + " of " + window_->Caption();
}

void frmRecords::ShowLongText(const std::string& text, int helpContext, const std::string& title) {
  std::string shown = text;
  ShowText(global_, host_, shown, {helpContext, "", 9600, 6300, false, true, title});
}

// --- values for tags -----------------------------------------------------------------------------

std::string frmRecords::Resolve(const Tag& tag) {
  switch (tag.type) {
    case tagType::field: return GetTagFieldValue(tag.name, tag.List(), tag.Quoted());
    case tagType::named: return host_.GetTagValue(tag.name, tag.List(), tag.Quoted());
    default:
      return GetClipboardTag(global_.TheDesktop().TheClipboard(), tag.name, tag.List(),
                             tag.Quoted());
  }
}

std::string frmRecords::GetTagFieldValue(const std::string& fieldName, bool asList, bool quoted) {
  if (!dataGrid_.Visible() || dataGrid_.DataSource() == nullptr)
    RaiseAppError("No records available.");
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  const auto field = rows->FindField(fieldName);
  if (!field) RaiseAppError("Field '" + fieldName + "' not available.");
  if (rows->RecordCount() == 0) RaiseAppError("No data available.");
  if (asList) return ListOfValues(*rows, *field, quoted);
  if (dataGrid_.OnNewRow() || rows->Bof() || rows->Eof())
    RaiseAppError("Select an existing record.");
  return FormatTagValue(rows->FieldValue(*field), quoted);
}

/// Works on a clone, so that the grid's position is not moved.
std::string frmRecords::ListOfValues(Recordset& rows, std::size_t field, bool quoted) {
  const std::shared_ptr<Recordset> clone = rows.Clone(LockType::ReadOnly);
  const std::string separator = ", ";
  std::string list;
  const auto append = [&] {
    if (!async_.Yield()) RaiseAppError("Cancelled.");
    list += separator + FormatTagValue(clone->FieldValue(field), quoted);
  };
  const std::vector<Bookmark> selected = dataGrid_.SelBookmarks();
  for (const Bookmark bookmark : selected) {
    clone->MoveTo(bookmark);
    append();
  }
  if (selected.empty())
    for (clone->MoveFirst(); !clone->Eof(); clone->MoveNext()) append();
  clone->Close();
  return "(" + list.substr(separator.size()) + ")";
}

}  // namespace tessel
