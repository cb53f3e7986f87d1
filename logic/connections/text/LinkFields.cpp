#include "logic/connections/text/LinkFields.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <span>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"
#include "contract/text/ServerKeyNames.h"

namespace tessel {

namespace {

using Names = std::vector<std::string_view>;

constexpr std::string_view nativeProviders[] = {"SQLite", "PostgreSQL", "MariaDB"};

/// The keys that say it, the one to be written first; none where the kind has no such field.
Names FileKeys(LinkField field) {
  switch (field) {
    case LinkField::File: return {"Data Source"};
    case LinkField::Mode: return {"Mode"};
    default: return {};
  }
}

/// Other names for the same are those of ServerKeyName.
Names ServerKeys(LinkField field) {
  switch (field) {
    case LinkField::Server: return {"Server"};
    case LinkField::Port: return {"Port"};
    case LinkField::User: return {"User ID"};
    case LinkField::Password: return {"Password"};
    case LinkField::Database: return {"Database", "dbname"};
    case LinkField::SslMode: return {"SSL Mode", "sslmode"};
    case LinkField::Mode: return {"Mode"};
    default: return {};
  }
}

Names OdbcKeys(LinkField field) {
  switch (field) {
    case LinkField::DataSourceName: return {"DSN", "Data Source"};
    case LinkField::Driver: return {"Driver"};
    case LinkField::Server: return {"Server"};
    case LinkField::Port: return {"Port"};
    case LinkField::User: return {"UID", "User ID"};
    case LinkField::Password: return {"PWD", "Password"};
    case LinkField::Database: return {"Database", "Initial Catalog"};
    default: return {};
  }
}

Names KeysOf(LinkKind kind, LinkField field) {
  switch (kind) {
    case LinkKind::Sqlite: return FileKeys(field);
    case LinkKind::PostgreSql:
    case LinkKind::MariaDb: return ServerKeys(field);
    case LinkKind::Odbc: return OdbcKeys(field);
    default: return {};
  }
}

bool IsServer(LinkKind kind) { return kind == LinkKind::PostgreSql || kind == LinkKind::MariaDb; }

bool Says(std::string_view key, LinkKind kind, const Names& names) {
  const std::string_view meaning = IsServer(kind) ? ServerKeyName(key) : key;
  return std::ranges::any_of(names, [&](std::string_view one) {
    return EqualNoCase(one, key) || EqualNoCase(one, meaning);
  });
}

DataLinkPairs::const_iterator Find(const DataLinkPairs& pairs, LinkKind kind, const Names& names) {
  return std::ranges::find_if(pairs,
                              [&](const auto& pair) { return Says(pair.first, kind, names); });
}

/// A driver's name stands in braces by custom.
std::string AsWritten(LinkField field, std::string_view value) {
  return field == LinkField::Driver ? InBraces(value) : BracedValue(value);
}

/// Small letters without blanks and signs, as the providers compare modes.
std::string PlainMode(std::string_view mode) {
  std::string plain;
  for (const char c : mode)
    if (c != ' ' && c != '-' && c != '_') plain += AsciiLower(c);
  return plain;
}

/// What a server of the other kind calls the mode; one that it does not have becomes the next
/// stronger one.
std::string Translated(LinkKind kind, const std::string& plain) {
  const bool postgres = kind == LinkKind::PostgreSql;
  if (plain.starts_with("disable") || plain == "none") return postgres ? "Disable" : "Disabled";
  if (plain.starts_with("require")) return postgres ? "Require" : "Required";
  if (plain == "verifyidentity") return "Verify Full";
  if (plain == "verifyca" && !postgres) return "Verify Full";
  return {};
}

}  // namespace

LinkKind LinkKindOf(std::string_view provider) {
  if (EqualNoCase(provider, "SQLite")) return LinkKind::Sqlite;
  if (EqualNoCase(provider, "PostgreSQL")) return LinkKind::PostgreSql;
  if (EqualNoCase(provider, "MariaDB")) return LinkKind::MariaDb;
  const bool odbc =
      provider.empty() || EqualNoCase(provider, odbcName) || StartsWithNoCase(provider, "MSDASQL");
  return odbc ? LinkKind::Odbc : LinkKind::Other;
}

std::string ProviderOf(const DataLinkPairs& pairs) {
  for (const auto& [name, value] : pairs)
    if (EqualNoCase(name, "Provider")) return BareValue(TrimSpaces(value), Wrapping::Braces);
  return {};
}

std::vector<std::string> NativeProviders(const std::vector<std::string>& known) {
  std::vector<std::string> native;
  for (const std::string_view name : nativeProviders)
    if (std::ranges::any_of(known, [&](const auto& one) { return EqualNoCase(one, name); }))
      native.emplace_back(name);
  return native;
}

bool HasField(LinkKind kind, LinkField field) { return !KeysOf(kind, field).empty(); }

std::string FieldOf(const DataLinkPairs& pairs, LinkKind kind, LinkField field) {
  const auto found = Find(pairs, kind, KeysOf(kind, field));
  if (found == pairs.end()) return {};
  return BareValue(TrimSpaces(found->second), Wrapping::Braces);
}

void SetField(DataLinkPairs& pairs, LinkKind kind, LinkField field, std::string_view value) {
  const Names names = KeysOf(kind, field);
  if (names.empty() || FieldOf(pairs, kind, field) == value) return;
  if (value.empty()) {
    std::erase_if(pairs, [&](const auto& pair) { return Says(pair.first, kind, names); });
    return;
  }
  const auto found = Find(pairs, kind, names);
  const std::string written = AsWritten(field, value);
  if (found == pairs.end()) pairs.emplace_back(names.front(), written);
  else pairs[static_cast<std::size_t>(found - pairs.begin())].second = written;
}

void RemoveFields(DataLinkPairs& pairs, LinkKind kind) {
  for (int field = 0; field <= static_cast<int>(LinkField::Mode); ++field) {
    const Names names = KeysOf(kind, static_cast<LinkField>(field));
    std::erase_if(pairs, [&](const auto& pair) { return Says(pair.first, kind, names); });
  }
}

std::vector<std::string> SslModesOf(LinkKind kind) {
  if (kind == LinkKind::PostgreSql)
    return {"", "Disable", "Allow", "Prefer", "Require", "Verify CA", "Verify Full"};
  if (kind == LinkKind::MariaDb) return {"", "Disabled", "Required", "Verify Full"};
  return {""};
}

std::string SslModeFor(LinkKind kind, const std::string& mode) {
  const std::string plain = PlainMode(mode);
  for (const std::string& one : SslModesOf(kind))
    if (PlainMode(one) == plain) return one;
  const std::string translated = Translated(kind, plain);
  if (!translated.empty()) return translated;
  return plain == "prefer" || plain == "allow" ? std::string() : mode;
}

}  // namespace tessel
