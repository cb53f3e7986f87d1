#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <libpq-fe.h>

#include "data/providers/WorkContext.h"
#include "data/providers/postgresql/client/PqLibrary.h"

namespace tessel {

/// The one door to libpq: every call of it stands in this file or its source, and is checked. A
/// connection and its results belong to one thread at a time, except PqConnection::SendCancel.

/// A connection keyword of libpq and its value.
struct PqKeyword {
  std::string name;
  std::string value;
};

/// All connection keywords that libpq knows, with the values that they have when they are not
/// given: of its environment variables, for example; empty: none.
[[nodiscard]] std::vector<PqKeyword> PqDefaults();

/// An error or notice in its parts; those that are not told are empty or 0.
struct PqMessage {
  std::string severity;  ///< As the server says it, in its language.
  std::string sqlState;
  std::string text;
  std::string detail;
  std::string hint;
  std::string context;
  std::string column;      ///< The table's column that it is about.
  int position = 0;        ///< Character of the command text, from 1.
  std::string innerQuery;  ///< What a function of the server ran.
  int innerPosition = 0;   ///< Character of innerQuery, from 1.
};

/// What is known of a result's column without asking the catalog.
struct PqColumn {
  std::string name;
  Oid type = 0;
  int modifier = -1;
  Oid table = 0;  ///< 0: an expression.
  int number = 0;
};

/// What a parameter of a statement stands for.
struct PqParameter {
  std::optional<std::string> value;  ///< None: null. Of text no byte is 0.
  bool isBinary = false;             ///< The bytes of the type's binary form.
};

enum class PqKind {
  Row,      ///< One row of a result.
  Rows,     ///< The end of a result with columns, behind its last row.
  Done,     ///< A statement without columns.
  Empty,    ///< No statement at all.
  CopyIn,   ///< COPY waits for data: LeaveCopy.
  CopyOut,  ///< COPY sends data: LeaveCopy.
  Error,
};

/// A piece of what a command gives. Columns count from 0.
class PqResult {
 public:
  PqResult() = default;
  explicit PqResult(PGresult* result) : result_(result) {}

  /// False: the command has ended.
  explicit operator bool() const { return result_ != nullptr; }
  [[nodiscard]] PqKind Kind() const;

  [[nodiscard]] int ColumnCount() const { return pq::Nfields(result_.get()); }
  [[nodiscard]] PqColumn Column(int column) const;

  // Cells of a Row.
  [[nodiscard]] bool IsNullAt(int column) const {
    return pq::Getisnull(result_.get(), 0, column) != 0;
  }
  /// Ends with a NUL that is not counted.
  [[nodiscard]] std::string_view TextAt(int column) const {
    return {pq::Getvalue(result_.get(), 0, column),
            static_cast<std::size_t>(pq::Getlength(result_.get(), 0, column))};
  }

  /// Of a statement that counts rows; -1 for others.
  [[nodiscard]] std::int64_t AffectedRows() const;
  /// How the server names what a Done statement did: "INSERT 0 1", "COMMIT".
  [[nodiscard]] std::string Tag() const { return pq::CmdStatus(result_.get()); }
  /// Of an Error.
  [[nodiscard]] PqMessage Message() const;

 private:
  struct Clear {
    void operator()(PGresult* result) const { pq::Clear(result); }
  };
  std::unique_ptr<PGresult, Clear> result_;
};

/// The bytes of a cell of type bytea.
class PqBytes {
 public:
  /// `text` as TextAt gives it.
  explicit PqBytes(std::string_view text);

  [[nodiscard]] std::span<const std::byte> View() const;

 private:
  struct Free {
    void operator()(unsigned char* bytes) const { pq::Freemem(bytes); }
  };
  std::size_t size_ = 0;
  std::unique_ptr<unsigned char, Free> bytes_;
};

/// A session with a server. Nothing in it waits for the server but Open and Next, and LeaveCopy for
/// data.
class PqConnection {
 public:
  PqConnection() = default;
  PqConnection(const PqConnection&) = delete;
  PqConnection& operator=(const PqConnection&) = delete;

  /// Connects; called once. Raises Error when that fails or takes longer than `limit` (0: no
  /// limit), and CancelledError soon after `operation` was asked to stop; but looking up the
  /// server's name cannot be interrupted.
  void Open(const std::vector<PqKeyword>& keywords, std::chrono::seconds limit,
            const WorkContext& context);
  [[nodiscard]] bool IsAlive() const { return pq::Status(connection_.get()) == CONNECTION_OK; }

  /// Sends a text of any number of statements. Next tells what comes of it, to its end.
  void Send(const std::string& sql);
  /// Sends one statement whose $1, $2... stand for texts.
  void Send(const std::string& sql, const std::vector<std::string>& parameters);
  /// Sends one statement whose $1, $2... stand for values.
  void Send(const std::string& sql, const std::vector<PqParameter>& parameters);
  [[nodiscard]] PqResult Next();
  /// Ends a COPY with the client: as failed when it waits for data; data sent are dropped.
  void LeaveCopy(PqKind kind);

  /// Sends data of a COPY that waits for them; waits until the server has taken most of what was
  /// sent before. Raises Error when the session is lost.
  void SendCopyData(std::string_view data);
  /// Tells that these were all. Next tells what comes of it.
  void EndCopyData();

  /// Asks the server to cancel what runs. Any thread, between Open and the destructor; blocks when
  /// the server does.
  void SendCancel() noexcept;

  /// Notices since the last call, and notifications as such.
  [[nodiscard]] std::vector<PqMessage> TakeNotices();

  /// True in a transaction.
  [[nodiscard]] bool InTransaction() const {
    return pq::TransactionStatus(connection_.get()) == PQTRANS_INTRANS;
  }
  /// True in a transaction that failed: the server refuses every command but its end.
  [[nodiscard]] bool InFailedTransaction() const {
    return pq::TransactionStatus(connection_.get()) == PQTRANS_INERROR;
  }
  /// The number of the server's process, as whoever answered the login told it.
  [[nodiscard]] int ProcessNumber() const { return pq::BackendPID(connection_.get()); }
  [[nodiscard]] std::string Database() const;
  [[nodiscard]] std::string User() const;
  [[nodiscard]] std::string Host() const;
  [[nodiscard]] std::string Port() const;
  [[nodiscard]] bool UsesSsl() const { return pq::SslInUse(connection_.get()) != 0; }
  /// As 150018 for version 15.18.
  [[nodiscard]] int ServerVersion() const { return pq::ServerVersion(connection_.get()); }
  /// What the server tells of its settings unasked, such as "server_encoding"; empty for others.
  [[nodiscard]] std::string Setting(const char* name) const;
  [[nodiscard]] static int LibraryVersion() { return pq::LibVersion(); }

 private:
  struct Finish {
    void operator()(PGconn* connection) const { pq::Finish(connection); }
  };
  struct FreeCancel {
    void operator()(PGcancel* cancel) const { pq::FreeCancel(cancel); }
  };

  static void OnNotice(void* connection, const PGresult* notice);
  [[noreturn]] void RaiseFailure(const char* sqlState) const;
  void CheckSent(int sent);
  bool Receive();
  void FlushAll();

  std::vector<PqMessage> notices_;
  std::unique_ptr<PGconn, Finish> connection_;
  std::unique_ptr<PGcancel, FreeCancel> cancel_;
};

}  // namespace tessel
