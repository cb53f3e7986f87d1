#include "data/providers/odbc/OdbcProvider.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "contract/text/Ascii.h"
#include "data/providers/odbc/OdbcSession.h"
#include "data/providers/odbc/driver/OdbcApi.h"
#include "data/providers/odbc/driver/OdbcKeys.h"

namespace tessel {

namespace {

using odbc::NamedItem;
using Names = std::vector<std::string>;

/// What the driver manager knows; nothing when it cannot be asked.
struct Installed {
  std::vector<NamedItem> drivers;
  std::vector<NamedItem> dataSources;
};

Installed AskDriverManager() {
  try {
    const odbc::Environment environment;
    return {environment.Drivers(), environment.DataSources()};
  } catch (const odbc::Failure&) {
    return {};
  }
}

Names NamesOf(const std::vector<NamedItem>& items) {
  Names names;
  for (const NamedItem& item : items) names.push_back(item.first);
  return names;
}

const NamedItem* Find(const std::vector<NamedItem>& items, std::string_view name) {
  const auto found =
      std::ranges::find_if(items, [&](const auto& item) { return EqualNoCase(item.first, name); });
  return found == items.end() ? nullptr : &*found;
}

std::string Listed(const std::vector<NamedItem>& items) {
  std::string list;
  for (const NamedItem& item : items) list += (list.empty() ? "" : ", ") + item.first;
  return list.empty() ? "none" : list;
}

[[noreturn]] void RaiseNotFound(const std::string& what, const Installed& installed) {
  throw Error(errorNumber::providerNotFound, "ODBC",
              what + " Installed ODBC drivers: " + Listed(installed.drivers) +
                  ". Data sources: " + Listed(installed.dataSources) + ".");
}

/// A driver may also be named by its library.
bool IsLibrary(std::string_view driver) {
  return driver.find('/') != std::string_view::npos || driver.ends_with(".so");
}

const odbc::ProviderDialect& DialectOf(const std::string& provider) {
  const auto& dialects = odbc::Dialects();
  const auto serves = [&](const odbc::ProviderDialect& dialect) {
    const std::string_view name = dialect.provider;
    return StartsWithNoCase(provider, name.substr(0, name.size() - 1));
  };
  const auto found = std::ranges::find_if(dialects, serves);
  return found == dialects.end() ? dialects.front() : *found;
}

/// The first driver installed that serves the dialect, in the dialect's order.
std::optional<std::string> DriverFor(const odbc::ProviderDialect& dialect,
                                     const Installed& installed) {
  for (const std::string_view part : dialect.drivers)
    for (const NamedItem& driver : installed.drivers)
      if (AsciiUpper(driver.first).find(AsciiUpper(part)) != std::string::npos) return driver.first;
  return std::nullopt;
}

void CheckDriver(const std::string& driver, const Installed& installed) {
  if (!IsLibrary(driver) && Find(installed.drivers, driver) == nullptr)
    RaiseNotFound("There is no ODBC driver '" + driver + "'.", installed);
}

/// The driver behind a data source.
std::string DriverOf(const std::string& dataSource, const Installed& installed) {
  const NamedItem* found = Find(installed.dataSources, dataSource);
  if (found == nullptr) RaiseNotFound("There is no data source '" + dataSource + "'.", installed);
  return found->second;
}

odbc::Target Resolve(const ConnectionKeys& given) {
  const Installed installed = AskDriverManager();
  const odbc::ProviderDialect& dialect = DialectOf(given.Get("Provider"));
  ConnectionKeys keys = odbc::ToOdbcKeys(given, dialect);
  if (const std::string* driver = keys.Find("Driver")) {
    CheckDriver(*driver, installed);
    return {keys, *driver};
  }
  if (!dialect.drivers.empty()) {
    const std::optional<std::string> driver = DriverFor(dialect, installed);
    if (!driver)
      RaiseNotFound("No ODBC driver for " + std::string(dialect.database) + " is installed.",
                    installed);
    keys.Set("Driver", *driver);
    return {keys, *driver};
  }
  if (const std::string* dataSource = keys.Find("DSN"))
    return {keys, DriverOf(*dataSource, installed)};
  if (keys.Find("FILEDSN") != nullptr) return {keys, {}};
  RaiseNotFound("The connection string names neither a driver nor a data source.", installed);
}

}  // namespace

OdbcProvider::OdbcProvider(OdbcTrace trace)
    : trace_(trace ? std::make_shared<const OdbcTrace>(std::move(trace)) : nullptr) {}

std::vector<std::string> OdbcProvider::Names() const {
  std::vector<std::string> names;
  for (const odbc::ProviderDialect& dialect : odbc::Dialects())
    names.emplace_back(dialect.provider);
  return names;
}

std::unique_ptr<ProviderSession> OdbcProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<odbc::OdbcSession>(Resolve(keys), trace_);
}

std::vector<std::string> OdbcDrivers() { return NamesOf(AskDriverManager().drivers); }

std::vector<std::string> OdbcDataSources() { return NamesOf(AskDriverManager().dataSources); }

}  // namespace tessel
