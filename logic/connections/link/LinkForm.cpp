#include "logic/connections/link/LinkForm.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"
#include "logic/program/FileDialogs.h"

namespace tessel {

namespace {

constexpr const char* readOnlyMode = "ReadOnly";
constexpr const char* createMode = "ReadWriteCreate";
constexpr const char* defaultSslMode = "Default";

std::string PortTip(LinkKind kind) {
  if (kind == LinkKind::PostgreSql) return "5432 when empty";
  if (kind == LinkKind::MariaDb) return "3306 when empty";
  return "The driver's own when empty";
}

}  // namespace

LinkForm::LinkForm(const Global& global, Window& window)
    : global_(global),
      window_(window),
      txtPassword_(window.Find<TextBox>("txtPassword")),
      cboDatabase_(window.Find<ComboBox>("cboDatabase")),
      cboSSL_(window.Find<ComboBox>("cboSSL")),
      chkCreate_(window.Find<CheckBox>("chkCreate")),
      chkReadOnly_(window.Find<CheckBox>("chkReadOnly")) {
  for (const std::string& name : global.Data().OdbcDataSources())
    window.Find<ComboBox>("cboDSN").AddItem(name);
  for (const std::string& name : global.Data().OdbcDrivers())
    window.Find<ComboBox>("cboDriver").AddItem(name);
  AddText(LinkField::File, {"lblFile", "txtFile", "cmdBrowse", "chkCreate"}, "txtFile");
  AddCombo(LinkField::DataSourceName, {"lblDSN", "cboDSN"}, "cboDSN");
  AddCombo(LinkField::Driver, {"lblDriver", "cboDriver"}, "cboDriver");
  AddText(LinkField::Server, {"lblServer", "txtServer"}, "txtServer");
  AddText(LinkField::Port, {"lblPort", "txtPort"}, "txtPort");
  AddText(LinkField::User, {"lblUsername", "txtUsername"}, "txtUsername");
  AddText(LinkField::Password, {"lblPassword", "txtPassword", "chkKeep"}, "txtPassword");
  AddCombo(LinkField::Database, {"lblDatabase", "cboDatabase"}, "cboDatabase");
  boxes_.push_back({LinkField::SslMode,
                    {"lblSSL", "cboSSL"},
                    [this] { return SslMode(); },
                    [this](const std::string& mode) { ShowSslMode(mode); }});
  WireBoxes();
}

void LinkForm::AddText(LinkField field, std::vector<const char*> controls, const char* name) {
  auto& box = window_.Find<TextBox>(name);
  box.Change = [this] { Changed(); };
  boxes_.push_back({field, std::move(controls), [&box] { return box.Text(); },
                    [&box](const std::string& text) { box.SetText(text); }});
}

void LinkForm::AddCombo(LinkField field, std::vector<const char*> controls, const char* name) {
  auto& box = window_.Find<ComboBox>(name);
  box.Change = [this] { Changed(); };
  box.Click = [this] { Changed(); };
  boxes_.push_back({field, std::move(controls), [&box] { return box.Text(); },
                    [&box](const std::string& text) { box.SetText(text); }});
}

void LinkForm::WireBoxes() {
  window_.Find<Button>("cmdBrowse").Click = [this] { cmdBrowse_Click(); };
  window_.FileDialogNamed("dlgCommon").filter =
      "SQLite Databases (*.db, *.sqlite, *.sqlite3)|*.db;*.sqlite;*.sqlite3|All Files (*.*)|*.*";
  cboSSL_.Click = [this] { Changed(); };
  cboDatabase_.GotFocus = [this] {
    if (onDatabaseEntered) onDatabaseEntered();
  };
  chkCreate_.Click = [this] { ModeClicked(chkCreate_, chkReadOnly_); };
  chkReadOnly_.Click = [this] { ModeClicked(chkReadOnly_, chkCreate_); };
}

/// A file that is to be made is named as one to save, but nothing is replaced.
void LinkForm::cmdBrowse_Click() {
  FileDialog& dialog = window_.FileDialogNamed("dlgCommon");
  auto& box = window_.Find<TextBox>("txtFile");
  dialog.fileName = box.Text();
  dialog.flags = fileDialogFlag::hideReadOnly | fileDialogFlag::noChangeDir;
  const bool chosen = chkCreate_.Value() ? dialog.ShowSave()
                                         : ShowOpenFileDialog(dialog, global_.TheFiles(), false);
  if (chosen) box.SetText(dialog.fileName);
}

void LinkForm::Quietly(const std::function<void()>& change) {
  const bool before = std::exchange(quiet_, true);
  change();
  quiet_ = before;
}

void LinkForm::Changed() {
  if (!quiet_ && onChanged) onChanged();
}

/// What is only to be looked at is not made.
void LinkForm::ModeClicked(CheckBox& clicked, CheckBox& other) {
  if (clicked.Value()) Quietly([&] { other.SetValue(false); });
  Changed();
}

void LinkForm::ShowKind(LinkKind kind) {
  kind_ = kind;
  for (const Box& box : boxes_)
    for (const char* name : box.controls)
      window_.Find<Control>(name).SetVisible(HasField(kind, box.field));
  chkReadOnly_.SetVisible(HasField(kind, LinkField::Mode));
  window_.Find<Label>("lblNoFields").SetVisible(kind == LinkKind::Other);
  window_.Find<TextBox>("txtPort").SetToolTip(PortTip(kind));
  const std::string mode = SslMode();
  Quietly([&] { ShowSslMode(SslModeFor(kind, mode)); });
}

void LinkForm::ShowPairs(const DataLinkPairs& pairs) {
  Quietly([&] {
    for (const Box& box : boxes_)
      if (HasField(kind_, box.field)) box.write(FieldOf(pairs, kind_, box.field));
    const std::string mode = FieldOf(pairs, kind_, LinkField::Mode);
    chkReadOnly_.SetValue(EqualNoCase(mode, readOnlyMode));
    chkCreate_.SetValue(EqualNoCase(mode, createMode));
  });
}

void LinkForm::WriteTo(DataLinkPairs& pairs) const {
  for (const Box& box : boxes_) SetField(pairs, kind_, box.field, box.read());
  const std::string before = FieldOf(pairs, kind_, LinkField::Mode);
  SetField(pairs, kind_, LinkField::Mode, Mode(before));
}

/// A mode that has no box of its own stays as it was.
std::string LinkForm::Mode(const std::string& before) const {
  if (chkReadOnly_.Value()) return readOnlyMode;
  if (chkCreate_.Value() && kind_ == LinkKind::Sqlite) return createMode;
  const bool boxed = EqualNoCase(before, readOnlyMode) || EqualNoCase(before, createMode);
  return boxed ? "" : before;
}

void LinkForm::SetPassword(const std::string& password) {
  Quietly([&] { txtPassword_.SetText(password); });
}

void LinkForm::OfferDatabases(const std::vector<std::string>& names) {
  Quietly([&] {
    const std::string typed = cboDatabase_.Text();
    cboDatabase_.Clear();
    for (const std::string& name : names) cboDatabase_.AddItem(name);
    cboDatabase_.SetText(typed);
  });
}

/// A mode that the form does not know is offered beside the others.
void LinkForm::ShowSslMode(const std::string& mode) {
  cboSSL_.Clear();
  std::vector<std::string> modes = SslModesOf(kind_);
  const std::string known = SslModeFor(kind_, mode);
  const bool same = known.empty() == mode.empty();
  const std::string& shown = same ? known : mode;
  if (std::ranges::find(modes, shown) == modes.end()) modes.push_back(shown);
  for (const std::string& one : modes) cboSSL_.AddItem(one.empty() ? defaultSslMode : one);
  const auto place = std::ranges::find(modes, shown) - modes.begin();
  cboSSL_.SetListIndex(static_cast<int>(place));
}

std::string LinkForm::SslMode() const {
  return cboSSL_.ListIndex() <= 0 ? std::string() : cboSSL_.Text();
}

}  // namespace tessel
