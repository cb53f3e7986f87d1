// The frame's menus and what they do, and the way a query takes from the query window through the
// tags to a records window. Each menu command has its handler here; the sidebar and the list of
// windows are classes of their own.

#include "logic/app/frmMDI.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "contract/data/DbmsName.h"
#include "contract/text/TextCut.h"
#include "logic/app/EditMenu.h"
#include "logic/app/dlgAbout.h"
#include "logic/import/dlgImport.h"
#include "logic/plan/chart/dlgChart.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr const char* newLine = "\r\n";
constexpr const char* tabsSetting = "tabs";
constexpr const char* firstStep = "No database yet. Database > Connect... (Alt+D, C)";

/// Spaces cut from both ends, then any white space from the front.
std::string TrimSelection(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  return text;
}

}  // namespace

frmMDI::frmMDI(const Global& global, Vocabulary& vocabulary, TagStore& tags)
    : global_(global),
      vocabulary_(vocabulary),
      help_(global),
      window_(global.TheDesktop().MakeWindow("frmMDI")),
      sidebar_(*window_),
      settings_(global),
      async_(global.TheDesktop(), *window_),
      main_(std::make_unique<frmMain>(global, static_cast<QueryHost&>(*this), vocabulary)),
      droppedFiles_(global, *main_, [this](const std::string& path) { ConnectToFile(path); }),
      browser_({global, *window_, async_, vocabulary, *main_, *this}),
      tagsPanel_({global, *window_, tags, *main_, *this}),
      explain_(global, *window_, async_, *main_),
      diagram_(global, *window_, async_),
      allConnections_(global, async_, *window_, static_cast<RecordsHost&>(*this),
                      [this] { return RecordsWindows(); }),
      windowMenu_(global, *window_,
                  {[this] { return DocumentWindows(); },
                   [this](std::size_t index) { ChooseWindow(index); }}) {
  sidebar_.onPlaced = [this] { tagsPanel_.FollowResize(); };
  WireMenus();
  window_->KeyDown = [this](KeyEvent& event) { MDIForm_KeyDown(event); };
  window_->Unloaded = [this] { MDIForm_Unload(); };
  window_->SetTabbed(settings_.Number(tabsSetting, 0) != 0);
  ShowNextStep();
  global.TheDesktop().SessionEnds = [this] {
    main_->EndSession();
    async_.Cancel();
  };
}

frmMDI::~frmMDI() { global_.TheDesktop().SessionEnds = nullptr; }

void frmMDI::Show() {
  window_->Show();
  MDIForm_Load();
}

void frmMDI::MDIForm_Load() {
  main_->TheWindow().Show();
  Arrange(tiling_);
  main_->FocusText();
  mnuDBConnect_Click();
}

void frmMDI::MDIForm_Unload() { async_.Unload(); }

// --- menus ---------------------------------------------------------------------------------------

void frmMDI::WireMenus() {
  WireFileMenu();
  WireDatabaseMenu();
  WireEdit();
  WireWindowMenu();
}

void frmMDI::WireDatabaseMenu() {
  window_->Menu("mnuDBExecute").Click = [this] { DoSQL(false); };
  window_->Menu("mnuDBPreview").Click = [this] { DoSQL(true); };
  window_->Menu("mnuDBExecuteStatement").Click = [this] { DoStatement(); };
  window_->Menu("mnuDBExecuteAll").Click = [this] { DoSQLAtOnce(false); };
  window_->Menu("mnuDBPreviewAll").Click = [this] { DoSQLAtOnce(true); };
  window_->Menu("mnuDBMergedRows").Click = [this] { allConnections_.ShowMergedRows(); };
  window_->Menu("mnuDBDifferences").Click = [this] { allConnections_.ShowDifferences(); };
  window_->Menu("mnuDBSummary").Click = [this] { allConnections_.ShowSummary(); };
  window_->Menu("mnuDBExplain").Click = [this] { ExplainSQL(); };
  window_->Menu("mnuDBDiagram").Click = [this] { ShowDiagram(); };
  window_->Menu("mnuDBConnect").Click = [this] { mnuDBConnect_Click(); };
}

void frmMDI::WireEdit() {
  window_->Menu("menuEdit").Click = [this] {
    window_->Menu("mnuEditWordWrap").SetChecked(main_->WordWrapBox().Value());
    ShowEditMenu(*window_, *main_);
  };
  WireEditMenu(*window_, *main_);
  window_->Menu("mnuEditWordWrap").Click = [this] { mnuEditWordWrap_Click(); };
  window_->Menu("mnuEditVocab").Click = [this] { mnuEditVocab_Click(); };
}

void frmMDI::WireFileMenu() {
  window_->Menu("mnuFileNew").Click = [this] {
    main_->cmdNew_Click();
    FocusQueryWindow();
  };
  window_->Menu("mnuFileOpen").Click = [this] {
    main_->cmdOpen_Click();
    FocusQueryWindow();
  };
  window_->Menu("mnuFileSave").Click = [this] { main_->cmdSave_Click(); };
  window_->Menu("mnuFileSaveAs").Click = [this] { main_->cmdSaveAs_Click(); };
  window_->Menu("mnuFileExit").Click = [this] { window_->Unload(); };
}

void frmMDI::WireWindowMenu() {
  window_->Menu("menuWindow").Click = [this] {
    window_->Menu("mnuWindowSidebar").SetChecked(sidebar_.Shown());
    ListWindowsIn(*window_);
  };
  WireWindowMenu(*window_);
  window_->Menu("mnuNewInstance").Click = [this] { mnuNewInstance_Click(); };
  window_->Menu("mnuWindowSidebar").Click = [this] { mnuWindowSidebar_Click(); };
  window_->Menu("mnuWindowTileHoriz").Click = [this] { mnuWindowTileHoriz_Click(); };
  window_->Menu("mnuWindowTileVert").Click = [this] { mnuWindowTileVert_Click(); };
  window_->Menu("mnuWindowTabs").Click = [this] { mnuWindowTabs_Click(); };
  window_->Menu("mnuWindowMaximize").Click = [this] { mnuWindowMaximize_Click(); };
  window_->Menu("mnuHelpContents").Click = [this] { mnuHelpContents_Click(); };
  window_->Menu("mnuHelpIndex").Click = [this] { mnuHelpIndex_Click(); };
  window_->Menu("mnuHelpShortcuts").Click = [this] { mnuHelpShortcuts_Click(); };
  window_->Menu("mnuHelpAbout").Click = [this] { mnuHelpAbout_Click(); };
}

/// The choice holds for the next start too.
void frmMDI::mnuWindowTabs_Click() {
  const bool tabs = !window_->Tabbed();
  window_->SetTabbed(tabs);
  Arrange(tiling_);
  settings_.SetNumber(tabsSetting, tabs ? 1 : 0);
}

void frmMDI::mnuWindowMaximize_Click() {
  for (Window* document : DocumentWindows())
    if (document->Active()) return document->SetMaximized(!document->Maximized());
}

void frmMDI::mnuEditWordWrap_Click() {
  main_->WordWrapBox().SetValue(!main_->WordWrapBox().Value());
}

void frmMDI::mnuEditVocab_Click() {
  std::string text;
  WordListToText(text, vocabulary_.GlobalWords());
  if (!ShowText(global_, *this, text, {0, "", 4800, 6300, true, false, "Vocabulary"})) return;
  WordList words;
  ParseWordList(words, text);
  vocabulary_.GlobalWords() = std::move(words);
  vocabulary_.WriteWordListFile(vocabulary_.FilePath(), vocabulary_.GlobalWords(), false);
}

void frmMDI::mnuHelpShortcuts_Click() {
  std::string text = LoadShortcutText();
  ShowText(global_, *this, text, {});
}

void frmMDI::mnuHelpAbout_Click() { ShowAbout(global_, *window_); }

void frmMDI::mnuNewInstance_Click() {
  const std::string path = global_.Executable();
  try {
    global_.TheDesktop().StartProcess(path);
  } catch (const Error& error) {
    help_.Show("Error executing " + path + ": " + error.Description() + newLine +
                   "Please try starting another instance of Tessel yourself.",
               MessageIcon::Critical);
  }
}

// --- running SQL ---------------------------------------------------------------------------------

void frmMDI::DoSQL(bool preview) {
  const std::optional<std::string> sql = SelectedSQL();
  if (!sql) return;
  const std::vector<frmRecords*> windows = allConnections_.TakingPart();
  main_->ForgetFailure();
  std::size_t ran = 0;
  for (frmRecords* window : windows) {
    const bool succeeded = window->DoQueryTags(*sql, preview, newQuery);
    ShowFailureOf({window});
    ShowResults();
    if (++ran == windows.size() || succeeded) continue;
    if (!AskToContinue(*window)) break;
  }
  allConnections_.NoteRun(*sql, windows, ran);
  FocusQueryWindow();
}

void frmMDI::DoSQLAtOnce(bool preview) {
  const std::optional<std::string> sql = SelectedSQL();
  if (!sql) return;
  main_->ForgetFailure();
  const bool ran = allConnections_.RunAtOnce(*sql, preview);
  if (ran) ShowFailureOf(allConnections_.TakingPart());
  if (ran) ShowResults();
  FocusQueryWindow();
  if (ran && allConnections_.TakingPart().size() > 1) allConnections_.ShowSummary();
}

void frmMDI::DoStatement() {
  if (main_->SelectStatement(DialectInUse())) return DoSQL(false);
  help_.HelpMsgBoxNotice("There is no statement at the caret.", MessageButtons::Ok,
                         MessageIcon::Exclamation);
  FocusQueryWindow();
}

void frmMDI::ExplainSQL() {
  const std::optional<std::string> sql = SelectedSQL();
  if (!sql) return;
  frmRecords* window = WindowToExplainOn();
  if (window != nullptr) explain_.Show(*window, *sql);
  FocusQueryWindow();
}

/// A plan is that of one database. The user sees in its title which one.
frmRecords* frmMDI::WindowToExplainOn() const {
  const std::vector<frmRecords*> windows = allConnections_.TakingPart();
  for (frmRecords* window : windows)
    if (window->TheWindow().Active()) return window;
  return windows.empty() ? nullptr : windows.front();
}

void frmMDI::ShowDiagram() {
  const std::string database = browser_.DatabaseInUse();
  const bool known = !database.empty();
  diagram_.Show(known ? browser_.StructureOf(database) : nullptr,
                known ? browser_.CaptionOf(database) : "");
}

void frmMDI::ShowChart(frmRecords& window) {
  const std::shared_ptr<Recordset> rows = window.RowsOnShow();
  if (rows == nullptr)
    return help_.Show("There are no rows on show to draw.", MessageIcon::Exclamation);
  dlgChart(global_).Go(*window_, window.Caption(), rows);
}

/// Where the connections are of several kinds, the one that was opened first decides: it is the
/// first to run what is selected, and the user sees what that is before it runs on the others.
SqlDialect frmMDI::DialectInUse() const {
  for (const frmRecords* window : allConnections_.TakingPart()) {
    const std::string name = DbmsName(*window->TheConnection());
    if (!name.empty()) return DialectOf(name);
  }
  return SqlDialect::Standard;
}

/// Of several failures the first one is marked. What is trimmed from the front of the selection has
/// not run.
void frmMDI::ShowFailureOf(const std::vector<frmRecords*>& windows) {
  const std::string selected = main_->SelectedText();
  const std::size_t trimmed = selected.find_first_not_of(" \t\r\n");
  for (const frmRecords* window : windows) {
    const std::optional<TextRange>& place = window->LastRun().failedPlace;
    if (!place || main_->HasFailure() || trimmed == std::string::npos) continue;
    main_->ShowFailure({trimmed + place->begin, trimmed + place->end});
  }
}

/// What is selected in the query window; nothing when there is none, or no connection to run it on,
/// which has been said then.
std::optional<std::string> frmMDI::SelectedSQL() {
  std::string sql = TrimSelection(main_->SelectedText());
  if (!sql.empty()) {
    if (SomeTakePart()) return sql;
  } else {
    help_.HelpMsgBoxNotice("Please select the SQL to be executed.", MessageButtons::Ok,
                           MessageIcon::Exclamation);
  }
  FocusQueryWindow();
  return std::nullopt;
}

/// Without any connection no message comes up, as ever; a line in the query window says what to do.
bool frmMDI::SomeTakePart() {
  if (RecordsWindows().empty()) main_->ShowHint(firstStep);
  if (RecordsWindows().empty() || !allConnections_.TakingPart().empty()) return true;
  help_.Show("No connection takes part: tick \"Takes Part\" in a records window.",
             MessageIcon::Exclamation);
  return false;
}

/// A window that fills the frame hides what the others have to show.
void frmMDI::ShowResults() {
  if (std::ranges::any_of(DocumentWindows(), &Window::Maximized)) Arrange(tiling_);
}

bool frmMDI::AskToContinue(frmRecords& failed) {
  const std::string text = std::string("The query did not complete successfully on:-") + newLine +
                           "    " + failed.Caption() + newLine + newLine +
                           "Continue executing on the remaining connections?";
  return help_.HelpMsgBoxQuestion(text, MessageButtons::OkCancel, MessageIcon::Exclamation) ==
         MessageResult::Ok;
}

std::vector<frmRecords*> frmMDI::RecordsWindows() const {
  std::vector<frmRecords*> windows;
  for (const auto& window : records_)
    if (window->TheWindow().Loaded()) windows.push_back(window.get());
  return windows;
}

// --- connecting ----------------------------------------------------------------------------------

void frmMDI::mnuDBConnect_Click() {
  if (recordsWindowCount_ == 1 && !AskWhichInstance()) return;
  dlgConnect(global_, *this).Go(*window_);
}

void frmMDI::ConnectToFile(const std::string& path) {
  if (recordsWindowCount_ == 1 && !AskWhichInstance()) return;
  std::string name = path;
  KeepAfterLast(name, std::string_view(&pathSeparator, 1));
  OpenRecordsWindow({ConnectionToFile(path), name}, "", "", false);
}

/// Going from one connection to two is a choice that the user may not expect. True to go on in this
/// instance.
bool frmMDI::AskWhichInstance() {
  const std::string text =
      std::string("Do you want to connect to another database using this instance of Tessel?") +
      newLine + newLine +
      "- To execute the same SQL commands on ALL connections at once - click 'Yes'." + newLine +
      "- For a separate, independent connection using a new instance of Tessel - click 'No'." +
      newLine +
      "- To switch to a new connection - click 'Cancel', close the existing Database window and "
      "then select the "
      "'Connect...' command." +
      newLine + newLine;
  const MessageResult answer =
      help_.HelpMsgBoxQuestion(text, MessageButtons::YesNoCancel, MessageIcon::Question);
  if (answer == MessageResult::No) mnuNewInstance_Click();
  return answer == MessageResult::Yes;
}

bool frmMDI::OpenRecordsWindow(const SavedConnection& connection, const std::string& userName,
                               const std::string& password, bool loadSchemaFromDB) {
  auto window = std::make_unique<frmRecords>(global_, async_, static_cast<RecordsHost&>(*this));
  const ConnectRequest request{connection.connectionString, userName,         password,
                               connection.caption,          loadSchemaFromDB, connection.backColor,
                               connection.foreColor};
  if (!window->Connect(request)) return false;
  window->onUnloaded = [this, closed = window.get()] { ForgetRecordsWindow(closed); };
  records_.push_back(std::move(window));
  OfferTakingPart();
  main_->ShowConnectionColor(connection.backColor);
  return true;
}

/// The frame tiles windows that connect later in the same way: none hides another's failure.
void frmMDI::Arrange(Tiling tiling) {
  tiling_ = tiling;
  window_->Arrange(tiling);
}

/// With a single connection there is nothing to choose.
void frmMDI::OfferTakingPart() {
  const std::vector<frmRecords*> windows = RecordsWindows();
  for (frmRecords* window : windows) window->OfferTakingPart(windows.size() > 1);
}

/// A window cannot be destroyed from inside its own handler: it goes from the top of the event
/// loop.
void frmMDI::ForgetRecordsWindow(frmRecords* closed) {
  global_.TheDesktop().Defer([this, closed, alive = std::weak_ptr<const void>(alive_)] {
    if (alive.expired()) return;
    std::erase_if(records_, [closed](const auto& window) { return window.get() == closed; });
    OfferTakingPart();
  });
}

void frmMDI::TellListNotSaved(const std::string& reason) {
  if (!records_.empty())
    records_.back()->AddNotice("The list of connections was not saved: " + reason + ".");
}

void frmMDI::CountRecordsWindow(int change) {
  recordsWindowCount_ += change;
  ShowNextStep();
}

/// On the ground while there is no connection. The hint in the query window comes with a command
/// that needs one.
void frmMDI::ShowNextStep() {
  const bool connected = recordsWindowCount_ > 0;
  window_->SetGroundText(connected ? "" : firstStep);
  if (connected) main_->ShowHint("");
}

// --- focus and schema browser --------------------------------------------------------------------

void frmMDI::FocusFirstRecordsWindow() {
  if (!RecordsWindows().empty()) ChooseWindow(1);
}

void frmMDI::FocusQueryWindow() {
  main_->TheWindow().Activate();
  main_->FocusText();
}

std::vector<Window*> frmMDI::DocumentWindows() const {
  std::vector<Window*> windows{&main_->TheWindow()};
  for (frmRecords* records : RecordsWindows()) windows.push_back(&records->TheWindow());
  for (Window* rows : allConnections_.RowsWindows()) windows.push_back(rows);
  return windows;
}

void frmMDI::WireWindowMenu(Window& window) {
  windowMenu_.Wire(window);
  window.Menu("mnuSidebarWider").Click = [this] { sidebar_.Widen(true); };
  window.Menu("mnuSidebarNarrower").Click = [this] { sidebar_.Widen(false); };
}

bool frmMDI::HandleFrameKey(int keyCode, int shift) {
  return windowMenu_.HandleKey(keyCode, shift) || sidebar_.HandleKey(keyCode, shift);
}

/// While the sidebar has the keyboard.
void frmMDI::MDIForm_KeyDown(KeyEvent& event) {
  event.handled = HandleFrameKey(event.keyCode, event.shift);
  if (event.handled || event.shift != shiftState::none) return;
  event.handled = true;
  if (event.keyCode == key::f6) FocusFirstRecordsWindow();
  else if (event.keyCode == key::escape && sidebar_.HasFocus()) FocusQueryWindow();
  else event.handled = false;
}

/// The first one listed is the query window.
void frmMDI::ChooseWindow(std::size_t index) {
  const std::vector<frmRecords*> records = RecordsWindows();
  if (index == 0) return FocusQueryWindow();
  DocumentWindows().at(index)->Activate();
  if (index <= records.size()) records[index - 1]->FocusRecords();
}

void frmMDI::FocusBrowser() {
  if (sidebar_.Shown()) browser_.SetFocus();
}

void frmMDI::ImportRecords(frmRecords& window) {
  ImportRecords(DatabaseNodeKey(window.WindowID()), "");
}

void frmMDI::ImportRecords(const std::string& databaseKey, const std::string& table) {
  const int number = WindowNumberOf(databaseKey);
  const auto connection = ConnectionOf(number);
  if (connection == nullptr) return;
  dlgImport dialog(global_, async_);
  if (const auto made = dialog.Go(*window_, connection, table))
    browser_.AddTable(databaseKey, made->listed, made->columns);
  for (frmRecords* window : RecordsWindows())
    if (window->WindowID() == number) window->TellIfLost();
}

std::shared_ptr<Connection> frmMDI::ConnectionOf(int windowNumber) {
  for (frmRecords* window : RecordsWindows())
    if (window->WindowID() == windowNumber) return window->TheConnection();
  return nullptr;
}

}  // namespace tessel
