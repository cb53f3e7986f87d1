#pragma once

#include <filesystem>
#include <string>

namespace tessel::test {

/// Makes this process use ODBC driver definitions of its own instead of the machine's:
/// `folder`/odbcinst.ini lists the drivers found on the machine ("PostgreSQL Unicode", "MariaDB
/// Unicode", "SQLite3", "FreeTDS", "MDBTools"; three of them once more as "Nameless P", "M" and
/// "S", by which the program does not know them) and `folder`/odbc.ini holds `dataSources`, given
/// as the file's text. Call it before the first use of ODBC.
void UseOwnOdbcFiles(const std::filesystem::path& folder, const std::string& dataSources = {});

}  // namespace tessel::test
