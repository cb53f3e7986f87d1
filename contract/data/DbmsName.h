#pragma once

#include <string>

#include "contract/data/Connection.h"

namespace tessel {

/// What the server of a connection, or its driver, calls itself, from the connection's property
/// "DBMS Name": for example "PostgreSQL", "MariaDB", "SQLite" or "Microsoft SQL Server". The same
/// server may have another name over another driver. `DialectOf` tells by it whose rules its SQL
/// is read by. Empty when the connection has no such property; `DialectOf` then answers Standard.
///
/// `connection`: one that was opened, since its properties are read then; before that the name is
/// empty. The answer is a copy and stays as it is when the connection goes. UI thread, as for the
/// connection itself.
[[nodiscard]] inline std::string DbmsName(const Connection& connection) {
  const Property* name = connection.ProviderProperties().Find("DBMS Name");
  return name == nullptr ? std::string() : ToText(ToView(name->value));
}

}  // namespace tessel
