#pragma once

#include <filesystem>
#include <vector>

#include "tests/data/servers/DatabaseServer.h"

namespace tessel::test {

/// Recipes of what stands before database servers and looks like one to its clients, and of servers
/// that are made for it. Those behind must run.

/// PgBouncer in transaction mode: each transaction gets whatever connection to the server has been
/// idle for the longest time. The database "pooled" is `behind`'s, "narrow" the same through a
/// single connection; others keep their names.
[[nodiscard]] ServerRecipe PgBouncerRecipe(const std::filesystem::path& folder,
                                           const ServerLogin& login, const ServerLogin& behind);

/// A PostgreSQL server that has committed what its standby server shows.
[[nodiscard]] ServerRecipe PrimaryRecipe(const std::filesystem::path& folder,
                                         const ServerLogin& login);
/// Shows what `primary` holds.
[[nodiscard]] ServerRecipe StandbyRecipe(const std::filesystem::path& folder,
                                         const ServerLogin& login, const ServerLogin& primary);
/// pgpool-II: what only reads goes to `primary` or `standby`, statement by statement.
[[nodiscard]] ServerRecipe PgPoolRecipe(const std::filesystem::path& folder,
                                        const ServerLogin& login, const ServerLogin& primary,
                                        const ServerLogin& standby);

/// A MariaDB server with the engine Spider, which knows `parts` as its servers "part1", "part2"...
[[nodiscard]] ServerRecipe SpiderRecipe(const std::filesystem::path& folder,
                                        const ServerLogin& login,
                                        const std::vector<ServerLogin>& parts);

}  // namespace tessel::test
