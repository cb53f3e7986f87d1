#include "logic/connections/builders/dlgCnSQLSrv.h"

#include "contract/text/Ascii.h"
#include "logic/connections/text/ConnectionPairs.h"

namespace tessel {

namespace {

constexpr std::size_t netLibLength = 8;
constexpr const char* netLibs[] = {"DBNMPNTW (Named Pipes)",   "DBMSSOCN (TCP/IP)",
                                   "DBMSRPCN (Multiprotocol)", "DBMSSPXN (NWLink IPX/SPX)",
                                   "DBMSADSN (AppleTalk)",     "DBMSVINN (Banyan VINES)"};

bool IsTrusted(const ConnectionPairs& pairs) {
  return EqualNoCase(GetConnectionStringValue(pairs, {"Trusted_Connection"}), "yes") ||
         EqualNoCase(GetConnectionStringValue(pairs, {"Integrated Security"}), "SSPI");
}

}  // namespace

dlgCnSQLSrv::dlgCnSQLSrv(const Global& global)
    : Builder(global, "dlgCnSQLSrv"),
      chkTrusted_(TheWindow().Find<CheckBox>("chkTrusted")),
      cboNetLib_(TheWindow().Find<ComboBox>("cboNetLib")) {
  cboNetLib_.Clear();
  for (const char* name : netLibs) cboNetLib_.AddItem(name);
  chkTrusted_.Click = [this] { chkTrusted_Click(); };
}

void dlgCnSQLSrv::Parse(const std::string& connectionString) {
  const ConnectionPairs pairs = ParseConnectionString(connectionString);
  Box("txtServer").SetText(GetConnectionStringValue(pairs, {"Server", "Data Source"}));
  Box("txtDatabase").SetText(GetConnectionStringValue(pairs, {"Database", "Initial Catalog"}));
  const bool trusted = IsTrusted(pairs);
  chkTrusted_.SetValue(trusted);
  if (!trusted) {
    Box("txtUsername").SetText(GetConnectionStringValue(pairs, {"UID", "User ID"}));
    Box("txtPassword").SetText(GetConnectionStringValue(pairs, {"Pwd", "Password"}));
  }
  cboNetLib_.SetText(GetConnectionStringValue(pairs, {"Network Library"}));
  chkTrusted_Click();
}

void dlgCnSQLSrv::chkTrusted_Click() {
  SetEditable(Box("txtUsername"), !chkTrusted_.Value());
  SetEditable(Box("txtPassword"), !chkTrusted_.Value());
}

std::optional<std::string> dlgCnSQLSrv::Build() const {
  if (TextOf("txtServer").empty()) return {};
  std::string built = "Provider=SQLOLEDB";
  AppendConnectionStringPair(built, "Server", TextOf("txtServer"));
  AppendConnectionStringPair(built, "Database", TextOf("txtDatabase"));
  if (chkTrusted_.Value()) {
    AppendConnectionStringPair(built, "Trusted_Connection", "yes");
  } else {
    AppendConnectionStringPair(built, "UID", TextOf("txtUsername"));
    AppendConnectionStringPair(built, "Pwd", TextOf("txtPassword"));
  }
  AppendConnectionStringPair(built, "Network Library", cboNetLib_.Text().substr(0, netLibLength));
  return built;
}

}  // namespace tessel
