#include "tests/data/servers/OdbcFiles.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <utility>

namespace tessel::test {

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::pair<const char*, const char*>, 8> drivers{{
    {"PostgreSQL Unicode", "psqlodbcw.so"},
    {"MariaDB Unicode", "libmaodbc.so"},
    {"SQLite3", "libsqlite3odbc.so"},
    {"FreeTDS", "libtdsodbc.so"},
    {"MDBTools", "libmdbodbc.so"},
    {"Nameless P", "psqlodbcw.so"},
    {"Nameless M", "libmaodbc.so"},
    {"Nameless S", "libsqlite3odbc.so"},
}};

std::optional<fs::path> FindDriver(const std::string& library) {
  for (const auto& entry : fs::directory_iterator("/usr/lib")) {
    const fs::path file = entry.path() / "odbc" / library;
    std::error_code unreadable;
    if (fs::exists(file, unreadable)) return file;
  }
  return std::nullopt;
}

}  // namespace

void UseOwnOdbcFiles(const fs::path& folder, const std::string& dataSources) {
  std::ofstream list(folder / "odbcinst.ini");
  for (const auto& [name, library] : drivers)
    if (const auto file = FindDriver(library))
      list << '[' << name << "]\nDriver=" << file->string() << "\n\n";
  std::ofstream(folder / "odbc.ini") << dataSources;
  setenv("ODBCSYSINI", folder.c_str(), 1);
  setenv("ODBCINI", (folder / "user-odbc.ini").c_str(), 1);
  unsetenv("ODBCINSTINI");
}

}  // namespace tessel::test
