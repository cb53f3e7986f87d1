#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <mysql.h>

#include "contract/base/Value.h"
#include "data/providers/WorkContext.h"
#include "data/providers/mariadb/client/MariaLibrary.h"

namespace tessel {

/// The one door to libmariadb: every call of it stands in this file or its source, is checked, and
/// raises Error with the server's own code, SQLSTATE and text. A connection and its results belong
/// to one thread at a time.

/// Where to connect, and how.
struct MariaLogin {
  std::string host;
  unsigned port = 0;  ///< 0: the usual one, and for "localhost" the local socket.
  std::string socket;
  std::string user;
  std::string password;
  std::string database;
  std::string applicationName = "Tessel";
  bool useSsl = false;
  bool verifyServer = false;
  std::string sslCa;  ///< These are files.
  std::string sslCert;
  std::string sslKey;
};

/// What is told of a result's column.
struct MariaColumn {
  std::string name;
  std::string baseCatalog;
  std::string baseTable;  ///< Empty: an expression.
  std::string baseColumn;
  enum_field_types type = MYSQL_TYPE_NULL;
  unsigned flags = 0;
  bool isBinary = false;     ///< Of strings: bytes.
  std::string extendedType;  ///< What the server calls it when `type` is only what it is kept as.
  std::uint64_t size = 0;    ///< Characters or bytes.
  unsigned decimals = 0;
};

/// A result, whose rows come one at a time from the server. Columns count from 0. Not to outlive
/// its connection; its destructor reads what is left.
class MariaResult {
 public:
  /// What is told of a column.
  [[nodiscard]] static MariaColumn Describe(const MYSQL_FIELD& field);

  MariaResult() = default;
  MariaResult(MYSQL_RES* result, MYSQL* connection) : result_(result), connection_(connection) {}

  /// False: there is none.
  explicit operator bool() const { return result_ != nullptr; }

  [[nodiscard]] unsigned ColumnCount() const { return mysql_num_fields(result_.get()); }
  [[nodiscard]] MariaColumn Column(unsigned column) const {
    return Describe(*mysql_fetch_field_direct(result_.get(), column));
  }

  /// To the next row; false when there is none. Raises Error.
  [[nodiscard]] bool Fetch() {
    row_ = mysql_fetch_row(result_.get());
    if (row_ == nullptr) [[unlikely]] {
      CheckEnd();
      return false;
    }
    lengths_ = mysql_fetch_lengths(result_.get());
    return true;
  }

  // Cells of the current row.
  [[nodiscard]] bool IsNullAt(unsigned column) const { return row_[column] == nullptr; }
  [[nodiscard]] std::string_view TextAt(unsigned column) const {
    return {row_[column], lengths_[column]};
  }

 private:
  struct Free {
    void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
  };
  void CheckEnd() const;

  std::unique_ptr<MYSQL_RES, Free> result_;
  MYSQL* connection_ = nullptr;
  MYSQL_ROW row_ = nullptr;
  unsigned long* lengths_ = nullptr;
};

/// A statement with parameters "?", run once. Not to outlive its connection.
class MariaStatement {
 public:
  /// Prepares it. Raises Error, as the others do.
  MariaStatement(MYSQL* connection, const std::string& sql);

  /// Runs it with the parameters, which are looked at until it has run.
  void Run(const std::vector<ValueView>& parameters);
  /// Of a statement without columns.
  [[nodiscard]] std::int64_t AffectedRows() const;

  [[nodiscard]] unsigned ColumnCount() const { return mysql_stmt_field_count(statement_.get()); }
  [[nodiscard]] std::vector<MariaColumn> Columns() const;
  /// To the next row; false when there is none.
  [[nodiscard]] bool Fetch();
  /// A cell of the current row, as text; nothing when it is null.
  [[nodiscard]] std::optional<std::string> CellAt(unsigned column);

 private:
  struct Close {
    void operator()(MYSQL_STMT* statement) const { mysql_stmt_close(statement); }
  };
  void Check(bool failed) const;
  void BindCells();

  std::unique_ptr<MYSQL_STMT, Close> statement_;
  std::vector<MYSQL_BIND> cells_;
  std::vector<unsigned long> lengths_;
  std::vector<my_bool> nulls_;
};

/// A session with a server. It reads no file of this machine, whatever the server asks for.
class MariaConnection {
 public:
  MariaConnection();
  MariaConnection(const MariaConnection&) = delete;
  MariaConnection& operator=(const MariaConnection&) = delete;

  /// Connects; called once. Raises Error when that fails or takes longer than `limit` (0: no
  /// limit), and CancelledError soon after `operation` was asked to stop; but looking up the
  /// server's name cannot be interrupted.
  void Open(const MariaLogin& login, std::chrono::seconds limit, const WorkContext& context);
  /// No call waits longer than this for the server. To be called before Open.
  void SetPatience(std::chrono::seconds patience);

  /// Runs the text up to the end of its first statement. Result and NextResult tell what comes of
  /// it. Raises Error.
  void Run(const std::string& sql);
  /// The same for LOAD DATA LOCAL, whose file is `data`, whatever it is called.
  void RunWithFile(const std::string& sql, std::string_view data);
  /// The result of the present statement; none when it has no columns.
  [[nodiscard]] MariaResult Result();
  /// Goes on to the end of the next statement; false when there is none. Raises Error.
  [[nodiscard]] bool NextResult();
  [[nodiscard]] bool HasMoreResults() { return mysql_more_results(connection_.get()) != 0; }

  // Of the present statement, when its rows are read.
  [[nodiscard]] std::int64_t AffectedRows() const;
  [[nodiscard]] unsigned WarningCount() const { return mysql_warning_count(connection_.get()); }

  void SelectDatabase(const std::string& name);
  /// The database in use, as the server has told it; empty when there is none.
  [[nodiscard]] std::string Database() const;

  [[nodiscard]] MariaStatement Prepare(const std::string& sql) {
    return MariaStatement(connection_.get(), sql);
  }
  [[nodiscard]] bool InTransaction() const;
  [[nodiscard]] bool CommitsByItself() const;

  /// `text` as a literal, within quotes.
  [[nodiscard]] std::string Quoted(const std::string& text) const;
  /// Adds it to `out`.
  void AppendQuoted(std::string_view text, std::string& out) const;

  /// The session's number at the server.
  [[nodiscard]] unsigned long Number() const { return mysql_thread_id(connection_.get()); }
  [[nodiscard]] bool IsMariaDb() const { return mariadb_connection(connection_.get()) != 0; }
  [[nodiscard]] std::string ServerVersion() const;
  [[nodiscard]] std::string HostInfo() const;
  [[nodiscard]] std::string Cipher() const;
  [[nodiscard]] std::string CharacterSet() const;
  [[nodiscard]] static std::string LibraryVersion();

 private:
  struct Close {
    void operator()(MYSQL* connection) const { mysql_close(connection); }
  };
  [[nodiscard]] unsigned ServerStatus() const;
  void ApplyOptions(const MariaLogin& login);
  void SetText(mysql_option option, const std::string& value);

  /// What the server gets when it asks for a file; nothing: it is refused.
  std::unique_ptr<std::optional<std::string_view>> offered_;
  std::unique_ptr<MYSQL, Close> connection_;
};

/// True when `error` says that the session is lost, or was never there.
[[nodiscard]] bool SaysSessionIsLost(const ErrorInfo& error);
/// True when `error` says that a KILL ended the statement.
[[nodiscard]] bool SaysInterrupted(const ErrorInfo& error);
/// True when `error` says that a statement was empty.
[[nodiscard]] bool SaysEmpty(const ErrorInfo& error);

}  // namespace tessel
