#pragma once

#include <string_view>

namespace tessel {

/// The keys with which connection strings name a database server, whatever provider reads them:
/// "Server" ("Host", "Data Source"); "Port"; "Database" ("Initial Catalog"); "User ID" ("UID",
/// "User", "Username", "User Name"); "Password" ("PWD"); "Mode"; "SSL Mode"; "Connect Timeout"
/// ("Connection Timeout", "Timeout"); "Application Name".
///
/// Returns the first name of such a key, or `name` itself when it is none of them. Any thread.
[[nodiscard]] std::string_view ServerKeyName(std::string_view name);

/// The key that says where the password of a connection string is to be taken from, because it
/// does not stand there itself. It is for whoever opens the connection: no provider sees it.
inline constexpr std::string_view passwordFromKey = "Password From";
/// Its value for the keyring of the user's desktop. Where that has none, and with any other value,
/// the user is asked.
inline constexpr std::string_view passwordFromKeyring = "Keyring";

}  // namespace tessel
