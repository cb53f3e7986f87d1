#include "data/providers/odbc/driver/OdbcKeys.h"

#include <charconv>

#include "contract/text/Ascii.h"

namespace tessel::odbc {

namespace {

using Rename = ProviderDialect::Rename;

constexpr Rename commonRenames[] = {
    {"User ID", "UID"}, {"Password", "PWD"}, {"Initial Catalog", "Database"}};
constexpr std::string_view commonDropped[] = {"Provider", "Persist Security Info"};

ProviderDialect OdbcDialect() {
  return {.provider = "MSDASQL*",
          .database = {},
          .renames = {{"Data Source", "DSN"}},
          .dropped = {},
          .drivers = {}};
}

ProviderDialect SqlServerDialect() {
  return {.provider = "SQLOLEDB*",
          .database = "SQL Server",
          .renames = {{"Data Source", "Server"},
                      {"Integrated Security", "Trusted_Connection"},
                      {"Application Name", "APP"},
                      {"Workstation ID", "WSID"}},
          .dropped = {"Network Library", "Packet Size", "Auto Translate",
                      "Use Procedure for Prepare", "Use Encryption for Data"},
          .drivers = {"odbc driver 18 for sql server", "odbc driver 17 for sql server",
                      "for sql server", "sql server", "freetds"}};
}

ProviderDialect AccessDialect() {
  return {.provider = "Microsoft.Jet.OLEDB.*",
          .database = "Access",
          .renames = {{"Data Source", "DBQ"}, {"Jet OLEDB:Database Password", "PWD"}},
          .dropped = {"Mode", "Jet OLEDB:System Database", "Jet OLEDB:Engine Type"},
          .drivers = {"microsoft access driver", "mdbtools"}};
}

ProviderDialect OracleDialect() {
  return {.provider = "MSDAORA*",
          .database = "Oracle",
          .renames = {{"Data Source", "DBQ"}},
          .dropped = {},
          .drivers = {"oracle"}};
}

/// "SSPI" asks for the account of the person who works.
void TranslateTrust(ConnectionKeys& keys) {
  const std::string* trusted = keys.Find("Trusted_Connection");
  if (trusted != nullptr && EqualNoCase(*trusted, "SSPI")) keys.Set("Trusted_Connection", "yes");
}

/// Beside a driver "Data Source" is a key of that driver's own.
void RenameKey(ConnectionKeys& keys, const Rename& rename) {
  const std::string* value = keys.Find(rename.from);
  if (value == nullptr || (rename.to == "DSN" && keys.Find("Driver") != nullptr)) return;
  if (keys.Find(rename.to) == nullptr) keys.Set(rename.to, std::string(*value));
  keys.Remove(rename.from);
}

bool HasAny(const ConnectionKeys& keys, std::initializer_list<std::string_view> names) {
  return keys.FindAny(names) != nullptr;
}

}  // namespace

const std::vector<ProviderDialect>& Dialects() {
  static const std::vector<ProviderDialect> dialects = {OdbcDialect(), SqlServerDialect(),
                                                        AccessDialect(), OracleDialect()};
  return dialects;
}

ConnectionKeys ToOdbcKeys(const ConnectionKeys& keys, const ProviderDialect& dialect) {
  ConnectionKeys translated = keys;
  for (const std::string_view name : dialect.dropped) translated.Remove(name);
  for (const std::string_view name : commonDropped) translated.Remove(name);
  for (const Rename& rename : dialect.renames) RenameKey(translated, rename);
  for (const Rename& rename : commonRenames) RenameKey(translated, rename);
  TranslateTrust(translated);
  return translated;
}

void AddLogin(ConnectionKeys& keys, const std::string& user, const std::string& password) {
  if (!user.empty() && !HasAny(keys, {"UID", "User", "Username"})) keys.Set("UID", user);
  if (!password.empty() && !HasAny(keys, {"PWD", "Password"})) keys.Set("PWD", password);
}

void AddDefaults(ConnectionKeys& keys, const DriverProfile& profile) {
  for (const DriverProfile::Key& key : profile.defaults)
    if (keys.Find(key.name) == nullptr) keys.Set(key.name, key.value);
  if (profile.optionKey.empty()) return;
  const std::string given = keys.Get(profile.optionKey, "0");
  std::uint64_t bits = 0;
  std::from_chars(given.data(), given.data() + given.size(), bits);
  keys.Set(profile.optionKey, std::to_string(bits | profile.optionBits));
}

std::string PasswordOf(const ConnectionKeys& keys) {
  const std::string* password = keys.FindAny({"PWD", "Password"});
  return password == nullptr ? std::string() : *password;
}

}  // namespace tessel::odbc
