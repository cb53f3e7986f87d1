#pragma once

#include <filesystem>
#include <string>

#include "tests/data/servers/DatabaseServer.h"

namespace tessel::test {

/// The folder of the newest PostgreSQL server's programs. Throws std::runtime_error when there is
/// none.
[[nodiscard]] std::filesystem::path PostgresPrograms();

/// Throws std::runtime_error, which names the Debian package, when `program` is not there.
void RequireProgram(const std::filesystem::path& program, const std::string& package);

/// A file that the user of the servers can read.
void WriteText(const std::filesystem::path& file, const std::string& text);

/// As libpq takes it.
[[nodiscard]] std::string PostgresAddress(const ServerLogin& login);
/// Whether something that speaks as PostgreSQL runs statements there.
[[nodiscard]] bool PostgresAnswers(const ServerLogin& login);

/// The command that runs a PostgreSQL server on the data in `folder`.
[[nodiscard]] CommandLine PostgresCommand(const std::filesystem::path& folder,
                                          const ServerLogin& login);

}  // namespace tessel::test
