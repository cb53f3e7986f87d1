#pragma once

#include <cstddef>
#include <string>

#include "bench/RawBlock.h"

namespace tessel::bench {

/// Each reads all of the table `orders` in the way that the library's manual shows and keeps it in
/// typed arrays. They connect first; the figure "seconds" that they tell begins with the command.
/// The connection strings are those of the native providers; that of ODBC goes to its driver
/// manager.
[[nodiscard]] RawBlocks ReadPostgresOrders(const std::string& connectionString);
[[nodiscard]] RawBlocks ReadMariaOrders(const std::string& connectionString);
[[nodiscard]] RawBlocks ReadOdbcOrders(const std::string& connectionString);

/// So many of these loops over libpq at once, each on a connection and a thread of its own;
/// "seconds" ends with the last of them. Returns the number of rows of all.
[[nodiscard]] std::int64_t ReadPostgresOrdersTogether(const std::string& connectionString,
                                                      std::size_t count);

/// Asks libpq for the tables and columns of all schemas with the provider's own queries, and looks
/// at every cell. Returns the number of rows.
[[nodiscard]] std::int64_t ReadPostgresCatalog(const std::string& connectionString);

}  // namespace tessel::bench
