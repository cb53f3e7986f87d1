#include "logic/connections/builders/dlgCnODBC.h"

#include "logic/connections/text/ConnectionPairs.h"

namespace tessel {

namespace {

std::string WithoutBraces(const std::string& name) {
  const bool braced = name.size() >= 2 && name.front() == '{' && name.back() == '}';
  return braced ? name.substr(1, name.size() - 2) : name;
}

}  // namespace

dlgCnODBC::dlgCnODBC(const Global& global)
    : Builder(global, "dlgCnODBC"),
      optDSN_(TheWindow().Find<OptionButton>("optDSN")),
      optDSNLess_(TheWindow().Find<OptionButton>("optDSNLess")),
      cboDSN_(TheWindow().Find<ComboBox>("cboDSN")),
      cboDriver_(TheWindow().Find<ComboBox>("cboDriver")) {
  for (const std::string& name : global.Data().OdbcDataSources()) cboDSN_.AddItem(name);
  for (const std::string& name : global.Data().OdbcDrivers()) cboDriver_.AddItem(name);
  optDSN_.Click = [this] { ShowMode(); };
  optDSNLess_.Click = [this] { ShowMode(); };
}

void dlgCnODBC::Parse(const std::string& connectionString) {
  const ConnectionPairs pairs = ParseConnectionString(connectionString);
  cboDSN_.SetText(GetConnectionStringValue(pairs, {"DSN", "Data Source"}));
  const std::string driver = GetConnectionStringValue(pairs, {"Driver"});
  (driver.empty() ? optDSN_ : optDSNLess_).SetValue(true);
  cboDriver_.SetText(WithoutBraces(driver));
  Box("txtServer").SetText(GetConnectionStringValue(pairs, {"Server"}));
  Box("txtDatabase").SetText(GetConnectionStringValue(pairs, {"Database", "Initial Catalog"}));
  Box("txtUsername").SetText(GetConnectionStringValue(pairs, {"UID", "User ID"}));
  Box("txtPassword").SetText(GetConnectionStringValue(pairs, {"Pwd", "Password"}));
  ShowMode();
}

/// Greys out what belongs to the other choice.
void dlgCnODBC::ShowMode() {
  SetEditable(cboDSN_, optDSN_.Value());
  SetEditable(cboDriver_, optDSNLess_.Value());
  SetEditable(Box("txtServer"), optDSNLess_.Value());
}

std::optional<std::string> dlgCnODBC::Build() const {
  std::string built;
  if (optDSN_.Value()) {
    AppendConnectionStringPair(built, "DSN", cboDSN_.Text());
  } else if (!cboDriver_.Text().empty()) {
    AppendConnectionStringPair(built, "Driver", "{" + cboDriver_.Text() + "}");
    AppendConnectionStringPair(built, "Server", TextOf("txtServer"));
  }
  if (built.empty()) return std::nullopt;
  AppendConnectionStringPair(built, "Database", TextOf("txtDatabase"));
  AppendConnectionStringPair(built, "UID", TextOf("txtUsername"));
  AppendConnectionStringPair(built, "Pwd", TextOf("txtPassword"));
  return built;
}

}  // namespace tessel
