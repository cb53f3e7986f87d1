#include "data/providers/sqlite/SqliteApi.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <thread>

namespace tessel {

namespace {

[[noreturn]] void Raise(sqlite3* database, int code) {
  ErrorInfo info;
  info.number = errorNumber::database;
  info.nativeError = database == nullptr ? code : sqlite3_extended_errcode(database);
  info.source = "SQLite";
  info.description = database == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(database);
  throw Error(std::move(info));
}

/// A file that cannot be opened: the system knows why.
[[noreturn]] void RaiseOpen(sqlite3* database, const std::string& file, int code) {
  ErrorInfo info;
  info.number = errorNumber::database;
  info.nativeError = code;
  info.source = "SQLite";
  info.description = "The file '" + file + "' cannot be opened: " + sqlite3_errstr(code);
  if (const int reason = database == nullptr ? 0 : sqlite3_system_errno(database))
    info.description += " (" + std::generic_category().message(reason) + ")";
  info.description += ".";
  throw Error(std::move(info));
}

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

}  // namespace

// --- statements ----------------------------------------------------------------------------------

void SqliteStatement::CheckBound(int code) const {
  if (code != SQLITE_OK) Raise(Database(), code);
}

void SqliteStatement::BindText(int parameter, std::string_view text) {
  const char* data = text.empty() ? "" : text.data();  // Null would be the database's null.
  CheckBound(sqlite3_bind_text64(statement_.get(), parameter, data, text.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8));
}

void SqliteStatement::BindBlob(int parameter, std::span<const std::byte> bytes) {
  const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  CheckBound(
      sqlite3_bind_blob64(statement_.get(), parameter, data, bytes.size(), SQLITE_TRANSIENT));
}

bool SqliteStatement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code != SQLITE_ROW && code != SQLITE_DONE) Raise(Database(), code);
  return code == SQLITE_ROW;
}

/// The code that comes back is that of the last Step, which raised it.
void SqliteStatement::Reset() { sqlite3_reset(statement_.get()); }

std::string SqliteStatement::Text() const { return TextOf(sqlite3_sql(statement_.get())); }

std::string SqliteStatement::ColumnName(int column) const {
  return TextOf(sqlite3_column_name(statement_.get(), column));
}

std::string SqliteStatement::DeclaredType(int column) const {
  return TextOf(sqlite3_column_decltype(statement_.get(), column));
}

std::string SqliteStatement::OriginDatabase(int column) const {
  return TextOf(sqlite3_column_database_name(statement_.get(), column));
}

std::string SqliteStatement::OriginTable(int column) const {
  return TextOf(sqlite3_column_table_name(statement_.get(), column));
}

std::string SqliteStatement::OriginColumn(int column) const {
  return TextOf(sqlite3_column_origin_name(statement_.get(), column));
}

std::string_view SqliteStatement::EmptyOrNoMemory() const {
  if (sqlite3_errcode(Database()) == SQLITE_NOMEM) Raise(Database(), SQLITE_NOMEM);
  return {};
}

// --- databases -----------------------------------------------------------------------------------

/// Without a mutex of SQLite's own: one thread uses a database at a time.
SqliteDatabase::SqliteDatabase(const std::string& file, int flags) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  if (code != SQLITE_OK) RaiseOpen(handle, file, code);
  sqlite3_extended_result_codes(handle, 1);
}

SqliteStatement SqliteDatabase::Prepare(std::string_view& sql) {
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int limit = sqlite3_limit(handle_.get(), SQLITE_LIMIT_SQL_LENGTH, -1);
  if (sql.size() > static_cast<std::size_t>(limit)) Raise(nullptr, SQLITE_TOOBIG);
  const int code = sqlite3_prepare_v2(handle_.get(), sql.data(), static_cast<int>(sql.size()),
                                      &statement, &rest);
  if (code != SQLITE_OK) Raise(handle_.get(), code);
  sql.remove_prefix(static_cast<std::size_t>(rest - sql.data()));
  return SqliteStatement(statement);
}

std::optional<std::size_t> SqliteDatabase::ErrorOffset() const {
  const int offset = sqlite3_error_offset(handle_.get());
  if (offset < 0) return std::nullopt;
  return static_cast<std::size_t>(offset);
}

std::string SqliteDatabase::QueryText(std::string_view sql) {
  SqliteStatement statement = PrepareOne(sql);
  return statement.Step() ? std::string(statement.TextAt(0)) : std::string();
}

void SqliteDatabase::SetWatch(std::function<bool()> shouldStop,
                              std::chrono::milliseconds lockPatience) {
  constexpr int stepsBetweenLooks = 5000;
  shouldStop_ = std::move(shouldStop);
  lockPatience_ = lockPatience;
  sqlite3_progress_handler(handle_.get(), stepsBetweenLooks, OnProgress, this);
  const int code = sqlite3_busy_handler(handle_.get(), OnBusy, this);
  if (code != SQLITE_OK) Raise(handle_.get(), code);
}

int SqliteDatabase::OnProgress(void* database) {
  return static_cast<SqliteDatabase*>(database)->shouldStop_() ? 1 : 0;
}

/// Waits a little for a lock; 0 gives up.
int SqliteDatabase::OnBusy(void* database, int calls) {
  auto& self = *static_cast<SqliteDatabase*>(database);
  const auto now = std::chrono::steady_clock::now();
  if (calls == 0) self.busySince_ = now;
  if (self.shouldStop_() || now - self.busySince_ >= self.lockPatience_) return 0;
  std::this_thread::sleep_for(std::chrono::milliseconds(std::min(calls + 1, 25)));
  return 1;
}

}  // namespace tessel
