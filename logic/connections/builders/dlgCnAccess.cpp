#include "logic/connections/builders/dlgCnAccess.h"

#include "logic/connections/text/ConnectionPairs.h"
#include "logic/program/FileDialogs.h"

namespace tessel {

dlgCnAccess::dlgCnAccess(const Global& global) : Builder(global, "dlgCnAccess"), global_(global) {
  TheWindow().Find<Button>("cmdBrowse").Click = [this] { cmdBrowse_Click(); };
  TheWindow().FileDialogNamed("dlgCommon").filter =
      "Access Databases (*.mdb, *.accdb)|*.mdb;*.accdb|All Files (*.*)|*.*";
}

void dlgCnAccess::Parse(const std::string& connectionString) {
  Box("txtFile").SetText(
      GetConnectionStringValue(ParseConnectionString(connectionString), {"Data Source"}));
}

void dlgCnAccess::cmdBrowse_Click() {
  FileDialog& dialog = TheWindow().FileDialogNamed("dlgCommon");
  dialog.fileName = TextOf("txtFile");
  if (ShowOpenFileDialog(dialog, global_.TheFiles(), false))
    Box("txtFile").SetText(dialog.fileName);
}

std::optional<std::string> dlgCnAccess::Build() const {
  if (TextOf("txtFile").empty()) return {};
  std::string built = "Provider=" + global_.JetProviderName();
  AppendConnectionStringPair(built, "Data Source", TextOf("txtFile"));
  return built;
}

}  // namespace tessel
