#pragma once

#include <string>
#include <string_view>

#include "contract/data/Connection.h"

namespace tessel {

/// Where a schema comes from. Two databases of one name on two servers differ in it.
struct SchemaOrigin {
  std::string provider;  ///< Or the ODBC driver.
  std::string server;    ///< With its port, the data source or the whole path of a database's file.
  std::string database;  ///< The catalog in use, or else what the connection string names.

  bool operator==(const SchemaOrigin&) const = default;
};

/// Of an open connection.
[[nodiscard]] SchemaOrigin OriginOf(const Connection& connection);

/// The name of the file that keeps the schema: readable, safe in every folder, and another one for
/// every other origin; the database's name alone when nothing else is known. Empty when there is no
/// database.
[[nodiscard]] std::string SchemaFileNameOf(const SchemaOrigin& origin);

/// A name for a file that a person is asked for: that of the database, without what a file's name
/// cannot hold.
[[nodiscard]] std::string ProposedSchemaFileName(std::string_view database);

}  // namespace tessel
