#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logic/connections/text/DataLinkText.h"

namespace tessel {

/// What kind of database a connection string leads to: each has a form of its own.
enum class LinkKind { Sqlite, PostgreSql, MariaDb, Odbc, Other };

/// What a form asks for. Which keys say it depends on the kind.
enum class LinkField {
  File,
  DataSourceName,
  Driver,
  Server,
  Port,
  User,
  Password,
  Database,
  SslMode,
  Mode
};

/// What the user calls the driver manager, which needs no Provider in the string.
inline constexpr std::string_view odbcName = "ODBC";

/// The kind of a provider's name; without a name ODBC is meant.
[[nodiscard]] LinkKind LinkKindOf(std::string_view provider);
/// The value of the key Provider, or nothing.
[[nodiscard]] std::string ProviderOf(const DataLinkPairs& pairs);
/// Names of providers for a list: the native ones that are among `known` first.
[[nodiscard]] std::vector<std::string> NativeProviders(const std::vector<std::string>& known);

/// Whether the form of that kind asks for it.
[[nodiscard]] bool HasField(LinkKind kind, LinkField field);
/// The value of the first key that says it, bare of its braces; empty without one.
[[nodiscard]] std::string FieldOf(const DataLinkPairs& pairs, LinkKind kind, LinkField field);
/// Gives the first key that says it this value, as it has to stand, or adds the key; an empty value
/// takes all of them away. Nothing changes when it has the value already, or the kind has no such
/// field.
void SetField(DataLinkPairs& pairs, LinkKind kind, LinkField field, std::string_view value);
/// Takes away all keys that say what the form of that kind asks for.
void RemoveFields(DataLinkPairs& pairs, LinkKind kind);

/// The values of SslMode that the form offers; the first one, empty, leaves it to the provider.
[[nodiscard]] std::vector<std::string> SslModesOf(LinkKind kind);
/// The mode of SslModesOf that comes nearest to `mode`, never a weaker one; `mode` itself when it
/// is none of any kind.
[[nodiscard]] std::string SslModeFor(LinkKind kind, const std::string& mode);

}  // namespace tessel
