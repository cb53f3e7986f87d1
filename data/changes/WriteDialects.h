#pragma once

#include <string_view>

#include "data/changes/RowStatement.h"

namespace tessel {

/// The dialects of the databases that this program knows, for parameters "?".
[[nodiscard]] WriteDialect SqliteDialect();
[[nodiscard]] WriteDialect PostgresDialect();
/// Of a server named `server` ("MariaDB", "MySQL") of `version` ("10.11.4-MariaDB").
[[nodiscard]] WriteDialect MariaDialect(std::string_view server, std::string_view version);

/// Of a database of which nothing is known but the sign in which it quotes names; 0: none.
[[nodiscard]] WriteDialect UnknownDialect(char quote);
/// Of SQL Server, whose transactions are left alone in the same way.
[[nodiscard]] WriteDialect SqlServerDialect();

}  // namespace tessel
