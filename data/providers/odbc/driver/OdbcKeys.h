#pragma once

#include <string>
#include <vector>

#include "data/providers/odbc/driver/OdbcProfile.h"
#include "data/providers/text/ConnectionKeys.h"

namespace tessel::odbc {

/// A name that the key "Provider" may give, and how its connection strings are said in ODBC.
struct ProviderDialect {
  struct Rename {
    std::string_view from;
    std::string_view to;
  };
  std::string_view provider;    ///< As of Provider::Names.
  std::string_view database;    ///< What it leads to, for a person; empty: the string says.
  std::vector<Rename> renames;  ///< Keys of the same meaning.
  std::vector<std::string_view> dropped;  ///< Keys without a meaning in ODBC.
  /// Parts of the names of drivers that serve it, in lower case; the first that is installed is
  /// taken. Empty: the string names the driver or the data source.
  std::vector<std::string_view> drivers;
};

[[nodiscard]] const std::vector<ProviderDialect>& Dialects();

/// The keys as ODBC wants them; the driver is not among them unless `keys` name it.
[[nodiscard]] ConnectionKeys ToOdbcKeys(const ConnectionKeys& keys, const ProviderDialect& dialect);

/// Adds user and password where the keys have none.
void AddLogin(ConnectionKeys& keys, const std::string& user, const std::string& password);
/// Adds what the driver must be told.
void AddDefaults(ConnectionKeys& keys, const DriverProfile& profile);
/// The password among the keys; empty if there is none.
[[nodiscard]] std::string PasswordOf(const ConnectionKeys& keys);

}  // namespace tessel::odbc
