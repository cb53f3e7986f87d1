#include "logic/connections/builders/dlgCnGeneric.h"

#include "logic/connections/text/ConnectionPairs.h"
#include "logic/connections/text/LinkFields.h"

namespace tessel {

dlgCnGeneric::dlgCnGeneric(const Global& global)
    : Builder(global, "dlgCnGeneric"), cboProvider_(TheWindow().Find<ComboBox>("cboProvider")) {
  cboProvider_.Clear();
  for (const std::string& name : {std::string("MSDAORA"), std::string("MSDASQL"),
                                  global.JetProviderName(), std::string("SQLOLEDB")})
    cboProvider_.AddItem(name);
  for (const std::string& name : NativeProviders(global.Data().ProviderNames()))
    cboProvider_.AddItem(name);
}

void dlgCnGeneric::Parse(const std::string& connectionString) {
  const ConnectionPairs pairs = ParseConnectionString(connectionString);
  cboProvider_.SetText(GetConnectionStringValue(pairs, {"Provider"}));
  Box("txtDataSource").SetText(GetConnectionStringValue(pairs, {"Data Source", "Server"}));
  Box("txtCatalog").SetText(GetConnectionStringValue(pairs, {"Initial Catalog", "Database"}));
  Box("txtUsername").SetText(GetConnectionStringValue(pairs, {"User ID", "UID"}));
  Box("txtPassword").SetText(GetConnectionStringValue(pairs, {"Password", "Pwd"}));
}

std::optional<std::string> dlgCnGeneric::Build() const {
  std::string built;
  AppendConnectionStringPair(built, "Provider", cboProvider_.Text());
  AppendConnectionStringPair(built, "Data Source", TextOf("txtDataSource"));
  AppendConnectionStringPair(built, "Initial Catalog", TextOf("txtCatalog"));
  AppendConnectionStringPair(built, "User ID", TextOf("txtUsername"));
  AppendConnectionStringPair(built, "Password", TextOf("txtPassword"));
  return built;
}

}  // namespace tessel
