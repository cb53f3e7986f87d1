// The import dialog: three states, in which it waits for the user, looks through the source, or
// loads. What is guessed, mapped and loaded stands in parts of its own.

#include "logic/import/dlgImport.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "contract/text/Ascii.h"
#include "logic/program/EndNotice.h"
#include "logic/program/FileDialogs.h"

namespace tessel {

namespace {

constexpr std::int64_t sliceMilliseconds = 8;
constexpr int untilTyped = 600;  ///< Milliseconds behind the last key of a name.
constexpr std::int64_t rowsOfBatch = 10'000;
constexpr int columnsWithWidth = 3;  ///< The last one takes what is left.
constexpr int columnWidth = 2550;    ///< Twips.
constexpr const char* leftOut = "(not imported)";

struct Delimiter {
  char sign;
  const char* name;
};
constexpr std::array<Delimiter, 4> delimiters = {
    {{',', "Comma"}, {'\t', "Tab"}, {';', "Semicolon"}, {'|', "Bar"}}};
constexpr const char* jsonName = "(JSON)";

constexpr std::array encodings = {TextEncoding::Utf8, TextEncoding::Utf16LittleEndian,
                                  TextEncoding::Utf16BigEndian, TextEncoding::Windows1252};
constexpr std::array<const char*, 4> encodingNames = {"UTF-8", "UTF-16, little endian",
                                                      "UTF-16, big endian", "Windows-1252"};

/// A name for the table of a file: what SQL would not read as a part of a name becomes "_".
std::string TableNameOf(const std::string& path) {
  const std::string file = path.substr(path.rfind(pathSeparator) + 1);
  std::string name = file.substr(0, file.find('.'));
  for (char& c : name) {
    const bool belongs = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 0x80;
    c = belongs ? AsciiLower(c) : '_';
  }
  return name.empty() || (name[0] >= '0' && name[0] <= '9') ? "t_" + name : name;
}

void Fill(ComboBox& box, std::span<const char* const> texts) {
  for (const char* text : texts) box.AddItem(text);
}

}  // namespace

dlgImport::dlgImport(const Global& global, dlgAsync& async)
    : global_(global),
      async_(async),
      window_(global.TheDesktop().MakeWindow("dlgImport")),
      txtSource_(window_->Find<TextBox>("txtSource")),
      cboDelimiter_(window_->Find<ComboBox>("cboDelimiter")),
      cboEncoding_(window_->Find<ComboBox>("cboEncoding")),
      cboDecimal_(window_->Find<ComboBox>("cboDecimal")),
      txtNull_(window_->Find<TextBox>("txtNull")),
      chkHeader_(window_->Find<CheckBox>("chkHeader")),
      cboTable_(window_->Find<ComboBox>("cboTable")),
      lblKnown_(window_->Find<Label>("lblKnown")),
      lsvColumns_(window_->Find<ListView>("lsvColumns")),
      cboName_(window_->Find<ComboBox>("cboName")),
      cboType_(window_->Find<ComboBox>("cboType")),
      grdFirst_(window_->Find<DataGrid>("grdFirst")),
      chkBatches_(window_->Find<CheckBox>("chkBatches")),
      chkAsFile_(window_->Find<CheckBox>("chkAsFile")),
      lblStatus_(window_->Find<Label>("lblStatus")),
      prgProgress_(window_->Find<ProgressBar>("prgProgress")),
      cmdImport_(window_->Find<Button>("cmdImport")),
      cmdCancel_(window_->Find<Button>("cmdCancel")),
      tmrTable_(window_->TimerNamed("tmrTable")) {
  for (const Delimiter& delimiter : delimiters) cboDelimiter_.AddItem(delimiter.name);
  cboDelimiter_.AddItem(jsonName);
  Fill(cboEncoding_, encodingNames);
  constexpr std::array decimalSigns = {".", ","};
  Fill(cboDecimal_, decimalSigns);
  for (const ImportType& type : ImportTypes()) cboType_.AddItem(type.name);
  for (int column = 0; column < columnsWithWidth; ++column)
    lsvColumns_.SetColumnWidth(column, columnWidth);
  Wire();
  WireColumns();
}

/// The program may end while rows are loaded: the database takes them back without it.
dlgImport::~dlgImport() {
  if (load_ == nullptr || load_->HasEnded()) return;
  load_->Progress = nullptr;
  load_->Ended = nullptr;
  load_->Cancel();
  try {
    target_->TheConnection()->Close();
  } catch (const Error&) {
    // It is gone in any case.
  }
}

void dlgImport::Wire() {
  window_->Find<Button>("cmdFile").Click = [this] { cmdFile_Click(); };
  window_->Find<Button>("cmdClipboard").Click = [this] { cmdClipboard_Click(); };
  txtSource_.KeyDown = [this](KeyEvent& event) { txtSource_KeyDown(event); };
  txtSource_.LostFocus = [this] {
    if (window_->Visible()) TakeTypedSource();
  };
  for (ComboBox* box : {&cboDelimiter_, &cboEncoding_, &cboDecimal_})
    box->Click = [this] { TakeFormat(); };
  txtNull_.Change = [this] { TakeFormat(); };
  chkHeader_.Click = [this] { TakeFormat(); };
  cboTable_.Click = [this] { TakeTable(); };
  cboTable_.Change = [this] { TakeTypedTable(); };
  cmdImport_.Click = [this] { cmdImport_Click(); };
  cmdCancel_.Click = [this] { cmdCancel_Click(); };
  window_->QueryUnload = [this](bool& refuse, UnloadReason /*reason*/) {
    Form_QueryUnload(refuse);
  };
  Timer& timer = window_->TimerNamed("tmrStep");
  timer.SetInterval(1);
  timer.Tick = [this] { StepScan(); };
  tmrTable_.SetInterval(untilTyped);
  tmrTable_.Tick = [this] { TakeTable(); };
}

void dlgImport::WireColumns() {
  lsvColumns_.ItemClick = [this](int /*index*/) { ShowColumn(); };
  cboName_.Click = [this] { TakeName(); };
  cboName_.Change = [this] { TakeName(); };
  cboType_.Click = [this] { TakeType(); };
}

std::optional<ImportedTable> dlgImport::Go(Window& owner,
                                           const std::shared_ptr<Connection>& connection,
                                           const std::string& table) {
  target_.emplace(connection, async_);
  if (!target_->ReadTables()) return std::nullopt;
  chkAsFile_.SetVisible(target_->Dialect() == SqlDialect::MariaDB);
  showing_ = true;
  for (const std::string& listed : target_->Tables()) cboTable_.AddItem(listed);
  showing_ = false;
  cboTable_.SetText(table);
  TakeTable();
  window_->ShowModal(&owner);
  txtSource_.LostFocus = nullptr;
  window_->TimerNamed("tmrStep").SetEnabled(false);
  tmrTable_.SetEnabled(false);
  grdFirst_.SetDataSource(nullptr);
  return std::exchange(made_, std::nullopt);
}

// --- the source ----------------------------------------------------------------------------------

void dlgImport::cmdFile_Click() {
  FileDialog& dialog = window_->FileDialogNamed("dlgCommon");
  dialog.filter = "Texts (*.csv;*.tsv;*.tab;*.txt;*.json;*.jsonl;*.ndjson)|"
                  "*.csv;*.tsv;*.tab;*.txt;*.json;*.jsonl;*.ndjson|All Files (*.*)|*.*";
  if (!ShowOpenFileDialog(dialog, global_.TheFiles(), true)) return;
  (void)TakeFile(dialog.fileName);
}

bool dlgImport::TakeFile(const std::string& path) {
  return TakeSource({path, [&files = global_.TheFiles(), path] { return files.OpenToRead(path); }});
}

void dlgImport::cmdClipboard_Click() {
  const auto text = std::make_shared<const std::string>(global_.TheDesktop().TheClipboard().Text());
  (void)TakeSource({"the clipboard", [text] { return std::make_unique<TextReader>(text); }});
}

bool dlgImport::SourceIsTyped() const {
  return !txtSource_.Text().empty() && txtSource_.Text() != sourceText_;
}

/// A path that was typed is taken by Enter and when the box is left. False when there is none, or
/// nothing can be read there: then it stays to be corrected, and the source as it was.
bool dlgImport::TakeTypedSource() {
  return SourceIsTyped() && state_ != State::Loading && TakeFile(txtSource_.Text());
}

void dlgImport::txtSource_KeyDown(KeyEvent& event) {
  if (event.keyCode != key::enter || !SourceIsTyped()) return;
  event.handled = true;
  TakeTypedSource();
}

/// Something that cannot be read leaves the source before it as it was; then it returns false.
bool dlgImport::TakeSource(ImportSource source) {
  try {
    format_ = GuessFormat(source);
  } catch (const Error& error) {
    ShowStatus(error.Description());
    return false;
  }
  source_ = std::move(source);
  sourceText_ = source_->name;
  txtSource_.SetText(sourceText_);
  ShowFormat();
  ProposeTable();
  StartScan();
  return true;
}

/// A table that the user named stays.
void dlgImport::ProposeTable() {
  if (!cboTable_.Text().empty() || source_->name.find(pathSeparator) == std::string::npos) return;
  cboTable_.SetText(TableNameOf(source_->name));
}

void dlgImport::ShowFormat() {
  showing_ = true;
  const auto delimiter = std::ranges::find(delimiters, format_.delimiter, &Delimiter::sign);
  const auto number = format_.kind == ImportFormat::Kind::Json ? delimiters.end() : delimiter;
  cboDelimiter_.SetListIndex(static_cast<int>(number - delimiters.begin()));
  const auto encoding = std::ranges::find(encodings, format_.encoding);
  cboEncoding_.SetListIndex(
      encoding == encodings.end() ? 0 : static_cast<int>(encoding - encodings.begin()));
  cboDecimal_.SetListIndex(format_.decimalSign == '.' ? 0 : 1);
  txtNull_.SetText(format_.nullText);
  chkHeader_.SetValue(format_.hasHeader);
  showing_ = false;
}

void dlgImport::TakeFormat() {
  if (showing_ || !source_ || state_ == State::Loading) return;
  const auto delimiter = static_cast<std::size_t>(cboDelimiter_.ListIndex());
  const bool isJson = delimiter >= delimiters.size();
  format_.kind = isJson ? ImportFormat::Kind::Json : ImportFormat::Kind::Delimited;
  if (!isJson) format_.delimiter = delimiters[delimiter].sign;
  format_.encoding = encodings[static_cast<std::size_t>(cboEncoding_.ListIndex())];
  format_.decimalSign = cboDecimal_.Text().front();
  format_.nullText = txtNull_.Text();
  format_.hasHeader = chkHeader_.Value();
  StartScan();
}

void dlgImport::StartScan() {
  try {
    scan_ = std::make_unique<ImportScan>(*source_, format_);
  } catch (const Error& error) {
    scan_.reset();
    return EndScan(error.Description());
  }
  Enter(State::Scanning);
  StepScan();
  if (scan_ == nullptr) return;
  Map();
  ShowFirst();
}

/// The columns of a table that is there have their types, and those of a text with delimiters their
/// names in front: then a first look is enough.
bool dlgImport::NeedsFirstLookOnly() const {
  return TableIsThere() && format_.kind == ImportFormat::Kind::Delimited;
}

/// A slice.
void dlgImport::StepScan() {
  if (state_ != State::Scanning) return;
  const Clock& clock = global_.TheDesktop().TheClock();
  const std::int64_t start = clock.Milliseconds();
  try {
    do {
      if (!scan_->Step()) return EndScan("");
    } while (!NeedsFirstLookOnly() && clock.Milliseconds() - start < sliceMilliseconds);
  } catch (const Error& error) {
    return EndScan(error.Description());
  }
  if (NeedsFirstLookOnly() && scan_->Records() > 0) return EndScan("");
  ShowProgress(scan_->Progress());
  ShowStatus("Looking at all records: " + std::to_string(scan_->Records()) + " so far.");
}

/// `problem`: why it could not go on; empty: nothing.
void dlgImport::EndScan(const std::string& problem) {
  Enter(State::Idle);
  if (scan_ != nullptr) {
    Map();
    ShowFirst();
  }
  if (!problem.empty()) return ShowStatus(problem);
  ShowStatus(scan_->Ended() ? RecordsText(scan_->Records()) + " in " + source_->name + "."
                            : "Looked at the first " + RecordsText(scan_->Records()) + " of " +
                                  source_->name + ".");
}

void dlgImport::ShowFirst() {
  std::vector<FieldInfo> fields;
  for (const std::string& name : scan_->Names()) fields.emplace_back().name = name;
  grdFirst_.SetDataSource(
      fields.empty() ? nullptr
                     : global_.Data().MakeRecordset(std::move(fields), scan_->FirstRecords()));
}

// --- the table and its columns -------------------------------------------------------------------

/// The name changes with every key that is pressed, and what it is so far may name another table.
/// Keys that come while the database is asked for columns would be lost: it is asked when no more
/// come.
void dlgImport::TakeTypedTable() {
  if (showing_ || state_ == State::Loading) return;
  if (!target_->Find(cboTable_.Text())) return TakeTable();
  tmrTable_.SetEnabled(false);
  tmrTable_.SetEnabled(true);
  EnableControls();
}

/// Only a table that is there is asked for its columns.
void dlgImport::TakeTable() {
  tmrTable_.SetEnabled(false);
  if (showing_ || state_ == State::Loading) return;
  const std::optional<std::string> before = listedTable_;
  listedTable_ = target_->Find(cboTable_.Text());
  if (listedTable_ == before && (before || scan_ == nullptr)) {
    EnableControls();
    return;
  }
  tableColumns_.clear();
  if (listedTable_) tableColumns_ = target_->ReadColumns(*listedTable_);
  const bool sawAll = scan_ == nullptr || scan_->Ended();
  if (source_ && !TableIsThere() && !sawAll && state_ == State::Idle) return StartScan();
  Map();
}

void dlgImport::Map() {
  const std::string name = cboTable_.Text();
  if (TableIsThere()) lblKnown_.SetCaption("is there");
  else lblKnown_.SetCaption(name.empty() ? "" : "will be made");
  if (scan_ == nullptr) return EnableControls();
  const bool byPlace = format_.kind == ImportFormat::Kind::Delimited && !format_.hasHeader;
  mapping_ = TableIsThere() ? ImportMapping::ToTable(*scan_, tableColumns_, byPlace)
                            : ImportMapping::ToNew(*scan_);
  showing_ = true;
  cboName_.Clear();
  cboName_.AddItem(leftOut);
  for (const TableColumn& column : mapping_.TableColumns()) cboName_.AddItem(column.name);
  showing_ = false;
  ShowColumns();
  EnableControls();
}

void dlgImport::ShowColumns() {
  const int selected = std::max(lsvColumns_.SelectedIndex(), 0);
  lsvColumns_.Clear();
  for (const ImportMapping::Column& column : mapping_.Columns())
    lsvColumns_.Insert(lsvColumns_.Count(),
                       {.key = {},
                        .text = column.source,
                        .subItems = {column.target.empty() ? leftOut : column.target,
                                     column.target.empty() ? "" : column.typeName, column.first},
                        .toolTip = {}});
  if (lsvColumns_.Count() > 0)
    lsvColumns_.SetSelectedIndex(std::min(selected, lsvColumns_.Count() - 1));
  ShowColumn();
}

std::optional<std::size_t> dlgImport::SelectedColumn() const {
  const auto index = static_cast<std::size_t>(lsvColumns_.SelectedIndex());
  return index < mapping_.Columns().size() ? std::optional(index) : std::nullopt;
}

void dlgImport::ShowColumn() {
  const auto selected = SelectedColumn();
  if (!selected || showing_) return;
  showing_ = true;
  const ImportMapping::Column& column = mapping_.Columns()[*selected];
  cboName_.SetText(column.target.empty() ? leftOut : column.target);
  const auto types = ImportTypes();
  const auto type = std::ranges::find(types, column.type.type, &ImportType::type);
  cboType_.SetListIndex(type == types.end() ? 0 : static_cast<int>(type - types.begin()));
  showing_ = false;
}

void dlgImport::TakeName() {
  const auto selected = SelectedColumn();
  if (showing_ || !selected) return;
  const std::string name = cboName_.Text();
  mapping_.SetTarget(*selected, name == leftOut ? "" : name);
  showing_ = true;
  ShowColumns();
  showing_ = false;
}

void dlgImport::TakeType() {
  const auto selected = SelectedColumn();
  if (showing_ || !selected || !mapping_.IsNew()) return;
  mapping_.SetType(*selected, ImportTypes()[static_cast<std::size_t>(cboType_.ListIndex())].type);
  showing_ = true;
  ShowColumns();
  showing_ = false;
}

// --- loading -------------------------------------------------------------------------------------

LoadRequest dlgImport::MakeRequest() {
  const std::string name = cboTable_.Text();
  LoadRequest request;
  request.table = TableIsThere() ? target_->InSql(*listedTable_) : target_->TypedInSql(name);
  std::vector<ImportColumn> columns = mapping_.Loaded();
  for (ImportColumn& column : columns) {
    const std::string& typeName = mapping_.Columns()[column.source].typeName;
    column.keepsMoments = !ForgetsOfMoments(target_->Dialect(), column.target.type, typeName);
    column.target.type = ImportedType(target_->Dialect(), column.target.type);
    request.columns.push_back(column.target);
  }
  if (!TableIsThere()) request.createTable = target_->CreateTable(request.table, mapping_.Made());
  request.commitRows = chkBatches_.Value() ? rowsOfBatch : 0;
  request.asFile = chkAsFile_.Visible() && chkAsFile_.Value();
  feed_ = std::make_shared<ImportFeed>(*source_, format_, scan_->Names(), columns);
  request.rows = feed_;
  return request;
}

/// What is shown is imported, and nothing else: a path that was only typed is looked at first.
void dlgImport::cmdImport_Click() {
  if (SourceIsTyped()) return void(TakeTypedSource());
  if (const std::string problem = mapping_.Problem(); !problem.empty()) return ShowStatus(problem);
  Enter(State::Idle);
  try {
    load_ = target_->TheConnection()->StartLoad(MakeRequest());
  } catch (const Error& error) {
    return ShowStatus(error.Description());
  }
  start_ = global_.TheDesktop().TheClock().Milliseconds();
  cancelling_ = false;
  load_->Progress = [this] { ShowLoadProgress(); };
  load_->Ended = [this] { EndLoad(); };
  Enter(State::Loading);
  ShowLoadProgress();
}

std::string dlgImport::RateText(std::int64_t records) const {
  const std::int64_t elapsed = global_.TheDesktop().TheClock().Milliseconds() - start_;
  if (elapsed <= 0) return {};
  return ", " + std::to_string(records * 1000 / elapsed) + " a second";
}

void dlgImport::ShowLoadProgress() {
  if (cancelling_) return;
  ShowProgress(feed_->Progress());
  const auto percent = static_cast<int>(feed_->Progress() * 100);
  ShowStatus("Importing: " + RecordsText(load_->Rows()) + ", " + std::to_string(percent) + " %" +
             RateText(load_->Rows()) + ".");
}

void dlgImport::EndLoad() {
  Enter(State::Idle);
  if (load_->Outcome() != OperationOutcome::Done) {
    ShowStatus(FailureText());
    return;
  }
  const std::string name = cboTable_.Text();
  ShowStatus(RecordsText(load_->RowsKept()) + " imported into " + name + RateText(load_->Rows()) +
             ".");
  if (!TableIsThere()) {
    made_ = ImportedTable{name, {}};
    for (const NewColumn& column : mapping_.Made()) made_->columns.push_back(column.name);
  }
  source_.reset();
  cmdCancel_.SetCaption("Close");
  EnableControls();
  cmdCancel_.SetFocus();
}

std::string dlgImport::FailureText() const {
  std::string text;
  if (load_->Outcome() == OperationOutcome::Cancelled) {
    text = "Cancelled.";
  } else {
    if (const auto& refused = load_->Refused()) {
      text = "Line " + std::to_string(refused->line);
      if (!refused->column.empty()) text += ", column \"" + refused->column + "\"";
      text += ": ";
    }
    text += load_->Failure()->description;
  }
  text += load_->RowsKept() > 0 ? "\n" + RecordsText(load_->RowsKept()) + " stay imported."
                                : "\nNothing was imported.";
  if ((target_->TheConnection()->State() & objectState::open) != 0) return text;
  return text + " The connection is closed" +
         (LeavesTable() ? "; the table was made, and may still be there." : ".");
}

/// On a connection that was lost a table that was made at once could not be taken back.
bool dlgImport::LeavesTable() const {
  const SqlDialect dialect = target_->Dialect();
  return !TableIsThere() && dialect != SqlDialect::PostgreSQL && dialect != SqlDialect::SQLite;
}

// --- states --------------------------------------------------------------------------------------

/// What is under way is stopped first, and the window stays until it has ended.
void dlgImport::cmdCancel_Click() {
  switch (state_) {
    case State::Scanning: return EndScan("");
    case State::Loading: return CancelLoad();
    case State::Idle: window_->Hide();
  }
}

void dlgImport::Form_QueryUnload(bool& refuse) {
  refuse = state_ == State::Loading;
  if (refuse) CancelLoad();
}

/// To take back many records takes a database as long as to take them.
void dlgImport::CancelLoad() {
  cancelling_ = true;
  ShowStatus("Cancelling: the database takes back what it took.\n"
             "Cancel again to disconnect and leave it alone with that.");
  load_->Cancel();
}

void dlgImport::Enter(State state) {
  state_ = state;
  window_->TimerNamed("tmrStep").SetEnabled(state == State::Scanning);
  prgProgress_.SetVisible(state != State::Idle);
  EnableControls();
}

void dlgImport::ShowProgress(double done) { prgProgress_.SetValue(prgProgress_.Max() * done); }

void dlgImport::EnableControls() {
  const bool idle = state_ == State::Idle;
  const bool free = state_ != State::Loading;
  const bool imported = !source_ && load_ != nullptr;
  const bool isText = format_.kind == ImportFormat::Kind::Delimited;
  const bool hasColumns = source_ && scan_ != nullptr && !mapping_.Columns().empty();
  txtSource_.SetLocked(!free);
  for (const char* name : {"cmdFile", "cmdClipboard"})
    window_->Find<Control>(name).SetEnabled(free);
  for (const char* name : {"cboTable", "chkBatches", "chkAsFile"})
    window_->Find<Control>(name).SetEnabled(free && !imported);
  for (Control* control :
       std::initializer_list<Control*>{&cboDelimiter_, &cboEncoding_, &cboDecimal_})
    control->SetEnabled(free && source_.has_value());
  for (Control* control : std::initializer_list<Control*>{&txtNull_, &chkHeader_})
    control->SetEnabled(free && source_.has_value() && isText);
  lsvColumns_.SetEnabled(free && hasColumns);
  cboName_.SetEnabled(free && hasColumns);
  cboType_.SetEnabled(free && hasColumns && mapping_.IsNew());
  cmdImport_.SetEnabled(idle && hasColumns && !cboTable_.Text().empty() && !tmrTable_.Enabled());
}

}  // namespace tessel
