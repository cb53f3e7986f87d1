#include "logic/results/export/dlgExport.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "logic/program/FileDialogs.h"
#include "logic/results/export/RememberedChoices.h"

namespace tessel {

namespace {

using enum ExportFormat;

struct FormatName {
  std::string_view text;
  std::string_view filter;
};

/// In the order of ExportFormat.
constexpr FormatName formats[] = {
    {"CSV, text with delimiters", "CSV Files (*.csv)|*.csv"},
    {"Tab-separated text", "Tab-separated Text (*.tsv,*.txt)|*.tsv;*.txt"},
    {"JSON, an array of objects", "JSON Files (*.json)|*.json"},
    {"JSON, one object a line", "JSON Lines (*.jsonl)|*.jsonl"},
    {"Markdown table", "Markdown Files (*.md)|*.md"},
    {"Sheets (XLSX)", "Sheets (*.xlsx)|*.xlsx"},
    {"SQL, INSERT statements", "SQL Files (*.sql)|*.sql"}};

struct List {
  const char* combo;
  std::vector<std::string_view> entries;
};

/// The entries of the lists, in the order of what they stand for in ExportChoices.
const std::vector<List>& Lists() {
  static const std::vector<List> lists = {
      {"cboDelimiter", {"Comma  ,", "Semicolon  ;", "Tab", "Bar  |"}},
      {"cboQuotes", {"Where needed", "Around texts", "Around all but NULL"}},
      {"cboEncoding", {"UTF-8", "UTF-8 with mark", "UTF-16", "ISO-8859-1"}},
      {"cboLineEnd", {"LF", "CR LF"}},
      {"cboNull", {"(nothing)", "NULL", "null", "\\N", "-", "N/A"}},
      {"cboDecimal", {"Point  .", "Comma  ,"}},
      {"cboBinary", {"Hexadecimal, 0x...", "Base64"}},
      {"cboDatabase", {"SQLite", "PostgreSQL", "MariaDB, MySQL", "SQL Server", "Other"}}};
  return lists;
}

/// A control of a choice, and the formats in which that means something.
struct Use {
  const char* control;
  std::vector<ExportFormat> formats;
};

const std::vector<Use>& Uses() {
  static const std::vector<Use> uses = {{"cboDelimiter", {Csv}},
                                        {"cboQuotes", {Csv, Tabs}},
                                        {"cboEncoding", {Csv, Tabs, Markdown}},
                                        {"cboLineEnd", {Csv, Tabs, Markdown}},
                                        {"cboNull", {Csv, Tabs, Markdown}},
                                        {"cboDecimal", {Csv, Tabs}},
                                        {"cboBinary", {Csv, Tabs, Markdown, Sheets}},
                                        {"chkHeader", {Csv, Tabs, Sheets}},
                                        {"cboDatabase", {Sql}},
                                        {"txtTable", {Sql}},
                                        {"txtBatch", {Sql}},
                                        {"chkCreate", {Sql}}};
  return uses;
}

template <class Array, class Item>
int PlaceIn(const Array& array, const Item& item) {
  return static_cast<int>(std::ranges::find(array, item) - std::begin(array));
}

std::size_t Chosen(const ComboBox& combo) { return static_cast<std::size_t>(combo.ListIndex()); }

}  // namespace

dlgExport::dlgExport(const Global& global)
    : global_(global), help_(global), window_(global.TheDesktop().MakeWindow("dlgExport")) {
  FillLists();
  Combo("cboFormat").Click = [this] { FormatChosen(); };
  window_->Find<Button>("cmdBrowse").Click = [this] { cmdBrowse_Click(); };
  window_->Find<Button>("cmdOK").Click = [this] { cmdOK_Click(); };
  window_->Find<Button>("cmdCancel").Click = [this] { window_->Hide(); };
}

std::optional<ExportRequest> dlgExport::Go(Window& owner, const std::vector<std::string>& offers,
                                           const std::string& table, SqlDialect database) {
  for (const std::string& offer : offers) Combo("cboWhat").AddItem(offer);
  Combo("cboWhat").SetListIndex(0);
  ShowChoices(RememberedChoices(global_, database));
  Box("txtTable").SetText(table);
  Box("txtFile").SetText((table.empty() ? "export" : table) + ending_);
  window_->ShowModal(&owner);
  std::optional<ExportRequest> request;
  if (confirmed_)
    request = ExportRequest{Choices(), Chosen(Combo("cboWhat")), Box("txtFile").Text()};
  window_->Unload();
  if (request) RememberChoices(global_, request->choices);
  return request;
}

void dlgExport::FillLists() {
  for (const FormatName& format : formats) Combo("cboFormat").AddItem(std::string(format.text));
  for (const List& list : Lists())
    for (const std::string_view entry : list.entries) Combo(list.combo).AddItem(std::string(entry));
}

void dlgExport::ShowChoices(const ExportChoices& choices) {
  Combo("cboDelimiter").SetListIndex(PlaceIn(exportDelimiters, choices.delimiter));
  Combo("cboQuotes").SetListIndex(static_cast<int>(choices.quotes));
  Combo("cboEncoding").SetListIndex(static_cast<int>(choices.code));
  Combo("cboLineEnd").SetListIndex(choices.lineEndWithReturn ? 1 : 0);
  Combo("cboNull").SetListIndex(PlaceIn(exportNullTexts, choices.nullText));
  Combo("cboDecimal").SetListIndex(choices.decimalSign == '.' ? 0 : 1);
  Combo("cboBinary").SetListIndex(static_cast<int>(choices.binary));
  Combo("cboDatabase").SetListIndex(PlaceIn(exportDatabases, choices.database));
  Check("chkHeader").SetValue(choices.header);
  Check("chkCreate").SetValue(choices.createTable);
  Box("txtBatch").SetText(std::to_string(choices.rowsPerInsert));
  Combo("cboFormat").SetListIndex(static_cast<int>(choices.format));
  FormatChosen();
}

ExportChoices dlgExport::Choices() const {
  ExportChoices choices;
  choices.format = Format();
  choices.delimiter = exportDelimiters[Chosen(Combo("cboDelimiter"))];
  choices.quotes = static_cast<QuoteRule>(Chosen(Combo("cboQuotes")));
  choices.code = static_cast<TextCode>(Chosen(Combo("cboEncoding")));
  choices.lineEndWithReturn = Chosen(Combo("cboLineEnd")) == 1;
  choices.nullText = exportNullTexts[Chosen(Combo("cboNull"))];
  choices.header = Check("chkHeader").Value();
  choices.decimalSign = Chosen(Combo("cboDecimal")) == 0 ? '.' : ',';
  choices.binary = static_cast<BinaryForm>(Chosen(Combo("cboBinary")));
  choices.database = exportDatabases[Chosen(Combo("cboDatabase"))];
  choices.table = Box("txtTable").Text();
  choices.createTable = Check("chkCreate").Value();
  const std::string batch = Box("txtBatch").Text();
  std::from_chars(batch.data(), batch.data() + batch.size(), choices.rowsPerInsert);
  choices.rowsPerInsert = std::max(choices.rowsPerInsert, 1);
  return choices;
}

ExportFormat dlgExport::Format() const {
  return static_cast<ExportFormat>(Chosen(Combo("cboFormat")));
}

/// A file's name that ends as the format before it did ends as the new one does.
void dlgExport::FormatChosen() {
  const std::string before = std::exchange(ending_, "." + std::string(EndingOf(Format())));
  std::string file = Box("txtFile").Text();
  if (!before.empty() && file.ends_with(before))
    Box("txtFile").SetText(file.substr(0, file.size() - before.size()) + ending_);
  EnableChoices();
}

void dlgExport::EnableChoices() {
  for (const Use& use : Uses())
    window_->Find<Control>(use.control)
        .SetEnabled(std::ranges::find(use.formats, Format()) != use.formats.end());
}

void dlgExport::cmdBrowse_Click() {
  FileDialog& dialog = window_->FileDialogNamed("dlgCommon");
  dialog.fileName = Box("txtFile").Text();
  dialog.filter = std::string(formats[Chosen(Combo("cboFormat"))].filter) + "|All Files (*.*)|*.*";
  dialog.defaultExtension = EndingOf(Format());
  if (!ShowSaveFileDialog(dialog, global_.TheFiles(), false)) return;
  Box("txtFile").SetText(dialog.fileName);
  mayReplace_ = dialog.fileName;
}

void dlgExport::cmdOK_Click() {
  if (Box("txtFile").Text().empty()) {
    help_.HelpMsgBoxNotice("Name the file to write.", MessageButtons::Ok, MessageIcon::Exclamation);
    return Box("txtFile").SetFocus();
  }
  if (Format() == Sql && Box("txtTable").Text().empty()) {
    help_.HelpMsgBoxNotice("Name the table to insert into.", MessageButtons::Ok,
                           MessageIcon::Exclamation);
    return Box("txtTable").SetFocus();
  }
  if (!MayReplace()) return Box("txtFile").SetFocus();
  confirmed_ = true;
  window_->Hide();
}

/// The file dialog has asked already about the file that was chosen there.
bool dlgExport::MayReplace() {
  const std::string path = Box("txtFile").Text();
  if (path == mayReplace_ || !global_.TheFiles().FileExists(path)) return true;
  return help_.HelpMsgBoxQuestion("The file '" + path + "' is there already. Replace it?",
                                  MessageButtons::YesNo,
                                  MessageIcon::Question) == MessageResult::Yes;
}

}  // namespace tessel
