#include "data/providers/postgresql/PostgresProperties.h"

#include <string>

#include "data/providers/postgresql/PostgresQuery.h"

namespace tessel {

namespace {

/// Since then every digit that matters is written.
constexpr int version12 = 120000;

/// Names without quotes, as ODBC counts the ways.
constexpr std::int64_t foldsToSmallLetters = 2;

struct Fact {
  const char* name;
  const char* value;
};

/// True of every server.
constexpr Fact facts[] = {
    {"Provider Name", "PostgreSQL"}, {"DBMS Name", "PostgreSQL"},
    {"Driver Name", "libpq"},        {"Identifier Quote Character", "\""},
    {"Catalog Term", "database"},    {"Schema Term", "schema"},
    {"Table Term", "table"},         {"Procedure Term", "function"},
    {"Catalog Name Separator", "."},
};

/// Settings that the server tells unasked; older ones do not tell all.
constexpr Fact settings[] = {
    {"DBMS Version", "server_version"},
    {"Server Encoding", "server_encoding"},
    {"Time Zone", "TimeZone"},
    {"Date Style", "DateStyle"},
    {"Interval Style", "IntervalStyle"},
    {"Application Name", "application_name"},
    {"Session User", "session_authorization"},
    {"Superuser", "is_superuser"},
    {"Read-Only By Default", "default_transaction_read_only"},
    {"Hot Standby", "in_hot_standby"},
};

/// As 15.18 for 150018.
std::string VersionText(int version) {
  constexpr int major = 10000;
  return std::to_string(version / major) + "." + std::to_string(version % major);
}

}  // namespace

Properties ReadPostgresProperties(const PqConnection& connection) {
  Properties properties;
  for (const Fact& fact : facts) properties.Set(fact.name, std::string(fact.value));
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  properties.Set("Driver Version", VersionText(PqConnection::LibraryVersion()));
  properties.Set("Current Catalog", connection.Database());
  properties.Set("Server Name", connection.Host());
  properties.Set("Server Port", connection.Port());
  properties.Set("User Name", connection.User());
  properties.Set("Encrypted", connection.UsesSsl());
  properties.Set("Bracket Identifiers", std::int64_t{0});
  properties.Set("Identifier Case Sensitivity", foldsToSmallLetters);
  properties.Set("Schema By Rowsets", std::int64_t{1});
  properties.Set("Multiple Results", true);
  properties.Set("Catalog Change Ends Session", true);
  properties.Set("Maximum Identifier Length", std::int64_t{63});
  for (const Fact& setting : settings)
    properties.Set(setting.name, connection.Setting(setting.value));
  return properties;
}

void UseFixedForms(PqConnection& connection) {
  const auto nothing = [](const PqResult&) {};
  if (!connection.Setting("DateStyle").starts_with("ISO"))
    ForEachRow(connection, "set datestyle to iso", {}, nothing);
  if (connection.ServerVersion() < version12)
    ForEachRow(connection, "set extra_float_digits to 3", {}, nothing);
}

}  // namespace tessel
