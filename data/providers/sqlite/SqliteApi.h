#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "data/providers/WorkContext.h"

namespace tessel {

/// The one door to libsqlite3: every call of it stands in this file or its source, is checked, and
/// raises Error with SQLite's own code and text. One thread at a time, except Interrupt.

enum class SqliteStorage {
  Integer = SQLITE_INTEGER,
  Real = SQLITE_FLOAT,
  Text = SQLITE_TEXT,
  Blob = SQLITE_BLOB,
  Null = SQLITE_NULL
};

/// A cell of a statement's current row, found once and then looked at: valid until the next Step.
class SqliteCell {
 public:
  explicit SqliteCell(sqlite3_value* value) : value_(value) {}

  [[nodiscard]] SqliteStorage Storage() const {
    return static_cast<SqliteStorage>(sqlite3_value_type(value_));
  }
  [[nodiscard]] std::int64_t Integer() const { return sqlite3_value_int64(value_); }
  [[nodiscard]] double Real() const { return sqlite3_value_double(value_); }
  /// Its data is null when there was no memory.
  [[nodiscard]] std::string_view Text() const {
    const unsigned char* text = sqlite3_value_text(value_);
    return {reinterpret_cast<const char*>(text),
            static_cast<std::size_t>(text == nullptr ? 0 : sqlite3_value_bytes(value_))};
  }
  [[nodiscard]] std::span<const std::byte> Blob() const {
    const void* blob = sqlite3_value_blob(value_);
    return {static_cast<const std::byte*>(blob),
            static_cast<std::size_t>(sqlite3_value_bytes(value_))};
  }

 private:
  sqlite3_value* value_;
};

/// A compiled statement. Not to outlive its database. Columns count from 0, parameters from 1.
class SqliteStatement {
 public:
  SqliteStatement() = default;
  explicit SqliteStatement(sqlite3_stmt* statement) : statement_(statement) {}

  /// False for the nothing that a comment or an empty text is compiled to.
  explicit operator bool() const { return statement_ != nullptr; }

  void Bind(int parameter, const std::string& text) { BindText(parameter, text); }
  // Texts and blobs are copied.
  void BindNull(int parameter) { CheckBound(sqlite3_bind_null(statement_.get(), parameter)); }
  void BindInteger(int parameter, std::int64_t number) {
    CheckBound(sqlite3_bind_int64(statement_.get(), parameter, number));
  }
  void BindReal(int parameter, double number) {
    CheckBound(sqlite3_bind_double(statement_.get(), parameter, number));
  }
  void BindText(int parameter, std::string_view text);
  void BindBlob(int parameter, std::span<const std::byte> bytes);
  // Without a copy: what is bound stays in its place until the next Reset.
  void BindTextInPlace(int parameter, std::string_view text) {
    const char* data = text.empty() ? "" : text.data();
    CheckBound(sqlite3_bind_text64(statement_.get(), parameter, data, text.size(), SQLITE_STATIC,
                                   SQLITE_UTF8));
  }
  void BindBlobInPlace(int parameter, std::span<const std::byte> bytes) {
    const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
    CheckBound(sqlite3_bind_blob64(statement_.get(), parameter, data, bytes.size(), SQLITE_STATIC));
  }
  /// To the next row; false when there is none.
  [[nodiscard]] bool Step();
  /// Back to before the first row; parameters stay.
  void Reset();

  /// The statement's own text.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] bool IsReadOnly() const { return sqlite3_stmt_readonly(statement_.get()) != 0; }

  [[nodiscard]] int ColumnCount() const { return sqlite3_column_count(statement_.get()); }
  [[nodiscard]] std::string ColumnName(int column) const;
  /// Empty for an expression, or a column declared without a type.
  [[nodiscard]] std::string DeclaredType(int column) const;
  /// Where the column comes from, also behind aliases and views; empty for an expression.
  [[nodiscard]] std::string OriginDatabase(int column) const;
  [[nodiscard]] std::string OriginTable(int column) const;
  [[nodiscard]] std::string OriginColumn(int column) const;

  // Cells of the current row. Texts and blobs are valid until the next Step.
  [[nodiscard]] SqliteCell CellAt(int column) const {
    return SqliteCell(sqlite3_column_value(statement_.get(), column));
  }
  [[nodiscard]] SqliteStorage StorageAt(int column) const { return CellAt(column).Storage(); }
  [[nodiscard]] std::int64_t IntegerAt(int column) const { return CellAt(column).Integer(); }
  [[nodiscard]] std::string_view TextAt(int column) const { return Checked(CellAt(column).Text()); }
  /// `text` of a cell; raises Error when there was no memory for it.
  [[nodiscard]] std::string_view Checked(std::string_view text) const {
    return text.data() == nullptr ? EmptyOrNoMemory() : text;
  }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  void CheckBound(int code) const;
  [[nodiscard]] std::string_view EmptyOrNoMemory() const;
  [[nodiscard]] sqlite3* Database() const { return sqlite3_db_handle(statement_.get()); }

  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An open database.
class SqliteDatabase {
 public:
  /// `flags` are SQLITE_OPEN_READONLY, SQLITE_OPEN_READWRITE and SQLITE_OPEN_CREATE as needed. The
  /// file itself may not be looked at before the first statement.
  SqliteDatabase(const std::string& file, int flags);
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  /// Compiles the first statement of `sql` and cuts it off its front. Raises Error when it is
  /// wrong.
  [[nodiscard]] SqliteStatement Prepare(std::string_view& sql);
  /// Compiles a single statement of this program's own.
  [[nodiscard]] SqliteStatement PrepareOne(std::string_view sql) { return Prepare(sql); }
  /// Behind a Prepare that failed: the byte of its text that is complained of; nothing where that
  /// is not told.
  [[nodiscard]] std::optional<std::size_t> ErrorOffset() const;
  /// The first cell of the first row of a statement of this program's own.
  [[nodiscard]] std::string QueryText(std::string_view sql);

  /// Makes what runs end with SQLITE_INTERRUPT. Any thread.
  void Interrupt() noexcept { sqlite3_interrupt(handle_.get()); }
  /// `shouldStop` is asked every few thousand steps of a running statement, and while it waits for
  /// a lock: true makes it end. It waits no longer than `lockPatience`.
  void SetWatch(std::function<bool()> shouldStop, std::chrono::milliseconds lockPatience);

  [[nodiscard]] std::int64_t TotalChanges() const { return sqlite3_total_changes64(handle_.get()); }
  /// Of the last statement that changed rows, without those of triggers.
  [[nodiscard]] bool InTransaction() const { return sqlite3_get_autocommit(handle_.get()) == 0; }
  [[nodiscard]] std::int64_t Changes() const { return sqlite3_changes64(handle_.get()); }
  [[nodiscard]] bool IsReadOnly() const { return sqlite3_db_readonly(handle_.get(), "main") == 1; }
  [[nodiscard]] static std::string LibraryVersion() { return sqlite3_libversion(); }

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };

  static int OnProgress(void* database);
  static int OnBusy(void* database, int calls);

  std::function<bool()> shouldStop_;
  std::chrono::milliseconds lockPatience_{0};
  std::chrono::steady_clock::time_point busySince_;
  std::unique_ptr<sqlite3, Close> handle_;
};

/// True when `error` came from SQLite with that primary code, such as SQLITE_BUSY.
[[nodiscard]] inline bool HasCode(const Error& error, int code) {
  return (error.Info().nativeError & 0xFF) == code;
}

/// `error` as the cancel that it comes from, if it does.
[[nodiscard]] inline Error AsCancelled(const Error& error, const WorkContext& context) {
  const bool interrupted = HasCode(error, SQLITE_INTERRUPT) || HasCode(error, SQLITE_BUSY);
  return interrupted && context.StopAsked() ? CancelledError() : error;
}

}  // namespace tessel
