#include "data/providers/sqlite/SqliteFile.h"

#include <charconv>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

[[noreturn]] void Refuse(const std::string& text) {
  throw Error(errorNumber::database, "SQLite", text);
}

std::chrono::milliseconds PatienceOf(const std::string& seconds) {
  int number = 0;
  const char* const last = seconds.data() + seconds.size();
  const auto [end, error] = std::from_chars(seconds.data(), last, number);
  constexpr int most = 24 * 3600;
  if (error != std::errc() || end != last || number < 0 || number > most)
    Refuse("The Timeout '" + seconds + "' is no whole number of seconds.");
  return std::chrono::seconds(number);
}

void CheckFolder(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::path folder = file.parent_path();
  if (folder.empty() || std::filesystem::is_directory(folder, error)) return;
  Refuse("The file '" + file.string() + "' cannot be created: there is no folder '" +
         folder.string() + "'.");
}

/// What only a look at the file system tells well, and what must not be opened even for a look.
void CheckFile(const std::string& name, ConnectionMode mode) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(name, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    if (mode == ConnectionMode::ReadWriteCreate) return CheckFolder(name);
    Refuse("There is no file '" + name +
           "'. To create it add Mode=ReadWriteCreate to the connection string.");
  }
  if (std::filesystem::is_directory(status))
    Refuse("'" + name + "' is a folder, not a database file.");
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    Refuse("'" + name + "' is not an ordinary file.");
}

}  // namespace

SqliteFile SqliteFile::FromKeys(const ConnectionKeys& keys) {
  SqliteFile file;
  file.name = keys.Get("Data Source");
  if (file.name.empty())
    Refuse("The connection string names no database: add Data Source= with a file or :memory:.");
  file.mode = ToConnectionMode(keys.Get("Mode"), "SQLite", true);
  if (const std::string* timeout = keys.Find("Timeout")) file.lockPatience = PatienceOf(*timeout);
  if (file.name != ":memory:") CheckFile(file.name, file.mode);
  return file;
}

int SqliteFile::Flags() const {
  switch (mode) {
    case ConnectionMode::ReadOnly: return SQLITE_OPEN_READONLY;
    case ConnectionMode::ReadWriteCreate: return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    default: return SQLITE_OPEN_READWRITE;
  }
}

void SqliteFile::Check(SqliteDatabase& database) const {
  try {
    (void)database.QueryText("select count(*) from sqlite_master");
  } catch (const Error& error) {
    ErrorInfo info = error.Info();
    const std::string reason = info.description + ".";
    if (HasCode(error, SQLITE_NOTADB))
      info.description = "'" + name + "' is no database: " + reason;
    else if (HasCode(error, SQLITE_CORRUPT))
      info.description = "'" + name + "' is damaged: " + reason;
    else if (HasCode(error, SQLITE_BUSY))
      info.description = "'" + name + "' is in use by another program: " + reason;
    else info.description = "'" + name + "' cannot be read: " + reason;
    throw Error(std::move(info));
  }
}

}  // namespace tessel
