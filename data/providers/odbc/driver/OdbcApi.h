#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sql.h>
#include <sqlext.h>

/// The one door to ODBC: every call of the program goes through these classes. Each call's return
/// code is checked, diagnostics are read at once, and each call can be traced. Narrow calls only:
/// text goes in and comes out as UTF-8.
#include "data/providers/CancelSwitch.h"

namespace tessel::odbc {

/// One diagnostic record as the driver gave it.
struct Diagnostic {
  std::string state;  ///< SQLSTATE; empty when the driver gives none.
  std::int32_t native = 0;
  std::string text;
  bool operator==(const Diagnostic&) const = default;
};
using Diagnostics = std::vector<Diagnostic>;

/// A call that failed. There is at least one record.
class Failure : public std::exception {
 public:
  explicit Failure(Diagnostics records) : records_(std::move(records)) {}
  [[nodiscard]] const char* what() const noexcept override { return records_.front().text.c_str(); }
  [[nodiscard]] const Diagnostics& Records() const { return records_; }
  [[nodiscard]] const std::string& State() const { return records_.front().state; }

 private:
  Diagnostics records_;
};

/// Takes one line a call: the function, what it returned, and SQLSTATE and native code of every
/// record read. Never a text: neither commands nor connection strings nor messages. Called on
/// whatever thread makes the call.
using Trace = std::function<void(std::string_view)>;

enum class Outcome { Success, SuccessWithInfo, NoData };

/// An environment, connection or statement handle. Not to be used by two threads at a time.
class Handle {
 public:
  /// Throws Failure when the driver manager gives none.
  Handle(SQLSMALLINT type, SQLHANDLE parent, std::shared_ptr<const Trace> trace);
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle();

  /// Throws Failure, with all records, when `code` says so.
  Outcome Check(const char* function, SQLRETURN code) const;
  [[nodiscard]] Diagnostics ReadDiagnostics() const;
  [[nodiscard]] SQLHANDLE Raw() const { return handle_; }
  [[nodiscard]] const std::shared_ptr<const Trace>& TraceSink() const { return trace_; }

 private:
  void Note(const char* function, SQLRETURN code, const Diagnostics& records) const;

  SQLSMALLINT type_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
  std::shared_ptr<const Trace> trace_;
};

/// A name and what stands beside it: a driver and its attributes, a data source and its driver.
using NamedItem = std::pair<std::string, std::string>;

/// Each connection has an environment of its own, so that one that hangs holds up no other.
class Environment {
 public:
  explicit Environment(std::shared_ptr<const Trace> trace = nullptr);

  /// Installed drivers and known data sources, in the driver manager's order.
  [[nodiscard]] std::vector<NamedItem> Drivers() const;
  [[nodiscard]] std::vector<NamedItem> DataSources() const;
  [[nodiscard]] const Handle& Get() const { return handle_; }

 private:
  Handle handle_;
};

/// One session with a data source.
class Dbc {
 public:
  explicit Dbc(std::shared_ptr<const Trace> trace);
  Dbc(const Dbc&) = delete;
  /// Disconnects when connected.
  ~Dbc();

  /// Returns what the driver remarked. Throws Failure. Cannot be interrupted; a driver that obeys
  /// gives up after `timeout`.
  Diagnostics Connect(const std::string& connectionString, std::chrono::seconds timeout);

  /// Nothing when the driver does not answer the question.
  [[nodiscard]] std::optional<std::string> InfoText(SQLUSMALLINT question) const;
  [[nodiscard]] std::optional<std::uint32_t> InfoNumber(SQLUSMALLINT question) const;

  [[nodiscard]] std::string CurrentCatalog() const;
  void SetCurrentCatalog(const std::string& name);
  /// Whether the session is lost; nothing when the driver cannot tell. Only after a call that
  /// failed: before, drivers are wrong or ask the server.
  [[nodiscard]] std::optional<bool> IsDead() const noexcept;
  [[nodiscard]] const Handle& Get() const { return handle_; }

 private:
  Environment environment_;
  Handle handle_;
  bool connected_ = false;
};

/// What the driver says of a result column.
struct ColumnDescription {
  std::string name;
  SQLSMALLINT type = SQL_UNKNOWN_TYPE;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
  bool nullable = true;
};

/// Name parts of catalog calls; a part that is not there is null, which restricts nothing.
struct CatalogName {
  std::optional<std::string> catalog;
  std::optional<std::string> schema;
  std::optional<std::string> table;
  bool operator==(const CatalogName&) const = default;
};

/// One statement. Columns count from 1, as in ODBC. It can be cancelled in Execute and MoreResults
/// only: elsewhere a cancel would close a cursor under the worker's hands.
class Statement {
 public:
  explicit Statement(const Dbc& dbc);

  /// The value of a "?" in what is run next, from 1 on. `buffer` and `indicator` must stay where
  /// they are until it has run.
  void BindParameter(SQLUSMALLINT number, SQLSMALLINT cType, SQLSMALLINT sqlType, void* buffer,
                     SQLLEN* indicator);
  /// Runs `sql`, which may be cancelled meanwhile; adds what the driver remarked to `notices`.
  /// NoData: it ran and touched no row.
  Outcome Execute(const std::string& sql, CancelSwitch& cancel, Diagnostics& notices);
  /// Makes `sql` ready to be run again and again by ExecutePrepared.
  void Prepare(const std::string& sql);
  /// From now on each "?" has so many values, one for each run of the statement. What came of each
  /// is put into `states`. False: the driver does not know how.
  bool SetArray(SQLULEN rows, SQLUSMALLINT* states);
  /// The values of a "?", one behind the other, `width` bytes each.
  void BindArray(SQLUSMALLINT number, SQLSMALLINT cType, SQLSMALLINT sqlType, char* values,
                 SQLLEN width, SQLLEN* indicators);
  Outcome ExecutePrepared(CancelSwitch& cancel, Diagnostics& notices);
  /// False when there are no more results, or the driver knows of no more than one.
  bool MoreResults(CancelSwitch& cancel, Diagnostics& notices);

  [[nodiscard]] SQLSMALLINT ColumnCount() const;
  [[nodiscard]] ColumnDescription Describe(SQLUSMALLINT column) const;
  /// Nothing when the driver does not know the attribute.
  [[nodiscard]] std::optional<std::string> ColumnText(SQLUSMALLINT column,
                                                      SQLUSMALLINT attribute) const;
  [[nodiscard]] std::optional<std::int64_t> ColumnNumber(SQLUSMALLINT column,
                                                         SQLUSMALLINT attribute) const;
  /// -1 when unknown.
  [[nodiscard]] std::int64_t RowCount() const;

  /// `buffer` and `indicator` must stay where they are while rows are fetched.
  void Bind(SQLUSMALLINT column, SQLSMALLINT type, void* buffer, SQLLEN size, SQLLEN* indicator);
  /// Lets go of all buffers.
  void Unbind();
  /// False when there are no more rows. A value cut short in its buffer is no failure.
  bool Fetch();
  /// The value, or the next piece of it, as SQLGetData gives it.
  Outcome GetData(SQLUSMALLINT column, SQLSMALLINT type, void* buffer, SQLLEN size,
                  SQLLEN* indicator);

  /// Catalog functions; the result is then fetched as any other. Names are search patterns where
  /// ODBC says so. `types` is a list such as "'TABLE','VIEW'", or empty for all.
  void Tables(const CatalogName& pattern, const std::string& types);
  void Columns(const CatalogName& pattern);
  void PrimaryKeys(const CatalogName& name);
  void UniqueIndexes(const CatalogName& name);

 private:
  template <class Function>
  SQLRETURN RunCancellable(CancelSwitch& cancel, Function function);

  Handle handle_;
};

}  // namespace tessel::odbc
