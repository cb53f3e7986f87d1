// A records window: it opens its connection, binds the grid to the rows that came, and tells in its
// lines what there is. Running SQL and the layout have files of their own; conversions, editing and
// history are parts of their own, which this file wires.

#include "logic/results/frmRecords.h"

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "logic/connections/text/ConnectionText.h"
#include "logic/results/FrameCommands.h"
#include "logic/results/conversions/GridTagValue.h"
#include "logic/schema/SchemaTree.h"
#include "logic/tags/TagValue.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr int windowContext = 8400;
constexpr int errorsContext = 8403;
constexpr int propertiesContext = 8404;

/// What the user calls the connection; a string may hold a password.
std::string ShownName(const ConnectRequest& request) {
  return request.caption.empty() ? WithoutPasswords(request.connectionString) : request.caption;
}

}  // namespace

std::optional<Color> ConnectRequest::Mark() const {
  for (const Color chosen : {backColor, foreColor})
    if (!IsSystemColor(chosen)) return chosen;
  return std::nullopt;
}

frmRecords::frmRecords(const Global& global, dlgAsync& async, RecordsHost& host)
    : global_(global),
      async_(async),
      host_(host),
      help_(global),
      window_(global.TheDesktop().MakeWindow("frmRecords")),
      cmdCnErrors_(window_->Find<Button>("cmdCnErrors")),
      cmdStatements_(window_->Find<Button>("cmdStatements")),
      cmdReconnect_(window_->Find<Button>("cmdReconnect")),
      cmdAccept_(window_->Find<Button>("cmdAccept")),
      cmdReject_(window_->Find<Button>("cmdReject")),
      cboCatalog_(window_->Find<ComboBox>("cboCatalog")),
      chkLock_(window_->Find<CheckBox>("chkLock")),
      chkRecords_(window_->Find<CheckBox>("chkRecords")),
      chkTakesPart_(window_->Find<CheckBox>("chkTakesPart")),
      txtStatus_(window_->Find<TextBox>("txtStatus")),
      lblTimer_(window_->Find<Label>("lblTimer")),
      lblWarning_(window_->Find<Label>("lblWarning")),
      dataGrid_(window_->Find<DataGrid>("DataGrid")),
      menuRecords_(window_->Menu("menuRecords")),
      topRow_(*window_),
      status_(global.TheDesktop().TheClock(), txtStatus_, cmdCnErrors_),
      history_(global.TheDesktop(), *window_, *this),
      editing_(global, async, host, *window_, [this] { FocusRecords(); }),
      rowTools_(*window_, global.TheDesktop().TheClock(), RowToolsHost()),
      paste_(dataGrid_, global.TheDesktop().TheClipboard(), HostOfPasting()),
      transaction_(global, async, *window_),
      blobs_(global, *window_, editing_),
      conversion_(global, *window_, async, host),
      export_(
          global, *window_, async,
          [this](const std::string& text) { SetStatus(text, statusColor::records); },
          [&host] { return host.RowsOfAll(); }),
      results_(*window_, [this](const auto& rows) { return ShowOtherResult(rows); }),
      side_(global, host, *window_, OwnerOfPanes()),
      keyMenu_(*window_, [this](int keyCode, int shift) {
        return HandleKey(keyCode, shift) || editing_.HandleGridKey(keyCode, shift) ||
               rowTools_.TakeKey(keyCode, shift);
      }) {
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
  editing_.AlsoEditedIn(side_.Fields());
  WireFrameCommands(*window_, host_);
  WireZoomReset(*window_, dataGrid_);
  Form_Resize();
}

RowTools::Host frmRecords::RowToolsHost() {
  return {[this] { return editing_.SaveChange(); },
          [this](const std::string& text, bool isCount) { Tell(text, isCount); },
          [this] { ShowRowText(); },
          [this] { PlaceGrid(window_->ScaleWidth(), window_->ScaleHeight()); }};
}

/// Each row is saved under the progress window of its own: this one shows how far all of them are.
std::int64_t frmRecords::PasteRows(std::int64_t count,
                                   const std::function<bool(std::int64_t)>& step) {
  dlgAsync loop = async_.ForLoop();
  loop.InitProgress("Pasting rows...", static_cast<double>(count), mCn_.get(), "rows");
  const UnloadAtEnd unload(loop);
  std::int64_t done = 0;
  while (done < count && step(done)) {
    ++done;
    if (!loop.DoProgress(1)) break;
  }
  return done;
}

void frmRecords::TellIfLost() {
  if ((mCn_->State() & objectState::open) == 0) SetStatus("Disconnected.", statusColor::plain);
}

/// What the user did to the rows on show, in the status line.
void frmRecords::Tell(const std::string& text, bool isCount) {
  SetStatus(text, isCount ? statusColor::records : statusColor::plain,
            {false, false, cmdCnErrors_.Visible()});
}

PasteHost frmRecords::HostOfPasting() {
  return {[this](const std::function<void()>& action) { return help_.TryTo(action); },
          [this] { return editing_.SaveChange(); },
          [this] { editing_.ShowEditButtonsUnlessNew(); },
          [this](const std::string& reason) { help_.Show(reason, MessageIcon::Exclamation); },
          [this](const std::string& text) { Tell(text, false); },
          [this](std::int64_t count, const std::function<bool(std::int64_t)>& step) {
            return PasteRows(count, step);
          }};
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
  cmdStatements_.Click = [this] { host_.ShowStatements(*this); };
  cmdReconnect_.Click = [this] { cmdReconnect_Click(); };
  cboCatalog_.Click = [this] { cboCatalog_Click(); };
  chkRecords_.Click = [this] { chkRecords_Click(); };
  chkTakesPart_.Click = [this] { ShowMarks(); };
  dataGrid_.RowsChange = [this] {
    ShowRow();
    side_.Follow(RowText(dataGrid_));
  };
  dataGrid_.KeyDown = [this](KeyEvent& event) { DataGrid_KeyDown(event); };
  dataGrid_.KeyUp = [this](KeyEvent& event) { DataGrid_KeyUp(event); };
}

PaneOwner frmRecords::OwnerOfPanes() {
  return {[this] { return editing_.LeaveRecord(); },
          [this] { editing_.ShowEditButtonsUnlessNew(); }, [this] { return editing_.TakeBack(); },
          [this] { FocusRecords(); }, [this] { Form_Resize(); }};
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
  ForgetStatements();
  query_.reset();
  mCn_.reset();
  host_.CountRecordsWindow(-1);
  if (onUnloaded) onUnloaded();
}

// --- the connection ------------------------------------------------------------------------------

bool frmRecords::Connect(const ConnectRequest& request) {
  mCn_->SetConnectionString(request.connectionString);
  async_.NameConnection(mCn_, ShownName(request), request.Mark());
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
  caption_ = ShownName(request);
  for (Control* control : {static_cast<Control*>(&dataGrid_), static_cast<Control*>(&cboCatalog_),
                           static_cast<Control*>(&lblTimer_)}) {
    control->SetBackColor(request.backColor);
    control->SetForeColor(request.foreColor);
  }
  SetStatus("Connected.", statusColor::plain);
  window_->SetMark(request.Mark());
  window_->Show();
  const std::string nodeKey = DatabaseNodeKey(windowID_);
  host_.AddDatabaseNode(nodeKey, caption_, request.Mark());
  ShowMarks();
  loadSchemaFromDB_ = request.loadSchemaFromDB;
  catalogInTree_ = mCn_->DefaultDatabase();
  host_.LoadSchema(nodeKey, mCn_, loadSchemaFromDB_);
  return true;
}

/// What is particular about the connection stands behind its caption, in the title and in the tree.
void frmRecords::ShowMarks() {
  const bool readOnly = mCn_->ProviderProperties().Number("Read Only", 0) != 0;
  const std::string title = caption_ + (readOnly ? " [read-only]" : "");
  window_->SetCaption(title);
  host_.NameDatabaseNode(DatabaseNodeKey(windowID_),
                         title + (TakesPart() ? "" : " [does not take part]"));
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
  if (keepsRows_) return true;
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

/// A change that could not be saved because the session was lost stays on show with its rows: it
/// can be saved once there is a session again.
void frmRecords::cmdReconnect_Click() {
  keepsRows_ = mCn_->State() == objectState::closed && dataGrid_.ChangePending();
  if (!keepsRows_ && !MayEndSession(OpenTransaction::Session::GoesOn)) return FocusRecords();
  if (!keepsRows_) {
    dataGrid_.SetDataSource(nullptr);
    query_.reset();
    ForgetStatements();
    EnableRecords(false);
  }
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
  if (keepsRows_) AddNotice(" The change to this record is not saved yet.");
  keepsRows_ = false;
  FocusRecords();
}

// --- showing rows --------------------------------------------------------------------------------

void frmRecords::ShowRecordset(const std::shared_ptr<Recordset>& recordset) {
  SetStatus(CountText(*recordset), statusColor::records);
  editing_.ShowRecordset(*recordset, freeThreaded_);
  PlaceGrid(window_->ScaleWidth(), window_->ScaleHeight());
  dataGrid_.SetDataSource(recordset);
  editing_.LockColumns(*recordset);
  blobs_.ShowRecordset(*recordset);
  rowTools_.ShowRecordset();
}

/// The user chose it. A change that is pending in the rows on show is asked about first.
bool frmRecords::ShowOtherResult(const std::shared_ptr<Recordset>& recordset) {
  if (!editing_.MayLeaveRows() || !editing_.DropChange()) return false;
  editing_.HideRecordset();
  ShowRecordset(recordset);
  SetStatus(results_.Text(), statusColor::plain, {true, false, cmdCnErrors_.Visible()});
  FocusRecords();
  return true;
}

void frmRecords::EnableRecords(bool on) {
  menuRecords_.SetEnabled(on);
  chkRecords_.SetEnabled(on);
  dataGrid_.SetVisible(on);
  ShowRow();
  if (on) return;
  rowTools_.ShowRecordset();
  editing_.HideRecordset();
  results_.Clear();
  Form_Resize();
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
  const bool hadErrors = cmdCnErrors_.Visible();
  status_.SetStatus(text, color, options);
  if (cmdCnErrors_.Visible() != hadErrors) Form_Resize();
}

/// The box opens the Records menu below itself, and never stays checked.
void frmRecords::chkRecords_Click() {
  if (!chkRecords_.Value()) return;
  chkRecords_.SetValue(false);
  window_->PopupMenu(window_->Menu("menuRecords"), &chkRecords_, 0, chkRecords_.Bounds().height);
}

void frmRecords::cmdCnErrors_Click() {
  std::string text;
  for (const std::string& error : ShownErrors()) text += error + "\r\n";
  if (!text.empty()) ShowLongText(text, errorsContext, TitleOf("Errors"));
  FocusRecords();
}

void frmRecords::ShowProperties() {
  std::string text;
  for (const Property& property : mCn_->ProviderProperties())
    text += property.name + "=" + ToText(ToView(property.value)) + "\r\n";
  ShowLongText(text, propertiesContext, TitleOf("Properties"));
}

std::string frmRecords::TitleOf(const std::string& what) const { return what + " of " + caption_; }

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
  if (DataGrid* chosen = host_.RowsForTags())
    return GridTagValue(*chosen, async_, fieldName, asList, quoted);
  return GridTagValue(dataGrid_, async_, fieldName, asList, quoted);
}

}  // namespace tessel
