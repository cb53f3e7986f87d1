#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "contract/base/Value.h"
#include "contract/data/Connection.h"

namespace tessel::test {

/// A declared column type, a value of it as SQL and what must arrive.
struct TypeCase {
  std::string declaration;       ///< For `create table t (v <declaration>)`.
  std::string literal;           ///< For `insert into t values (<literal>)`.
  DataType type;                 ///< Of the field.
  Value value;                   ///< Of the cell.
  std::string notWritten = {};   ///< Why the cell cannot be written back as it was read.
  std::string notCompared = {};  ///< Why its row cannot be found by it.
  std::string notImported = {};  ///< Why a file does not bring it back into its column.
};

/// What a database or its driver cannot do; the bodies that need it are skipped with the reason.
struct DatabaseTraits {
  bool severalStatements = true;           ///< Several statements in one text.
  bool keepsStatementsBeforeError = true;  ///< In "insert ...; bad" the insert stays done.
  bool tellsFailedStatement = true;        ///< Which one of several it was.
  bool rowsBeforeLast =
      true;                 ///< Rows arrive before the database has made the last one (streaming).
  bool baseColumns = true;  ///< FieldInfo::baseTable and baseColumn are told, also behind an alias.
  bool uniqueRows = true;   ///< "Unique Rows" is told.
  bool limitsText = true;   ///< A text longer than its column is an error.
  bool holdsLongValues = true;      ///< 100 megabytes in one cell are no matter.
  bool hasServer = true;            ///< It can be ended while a connection is open.
  bool tellsTransaction = true;     ///< What the user's own transaction is like.
  bool tellsRefusedColumn = true;   ///< Of a row that is loaded and refused.
  bool structure = true;            ///< Keys, indexes and definitions are told.
  bool syntaxErrorHasState = true;  ///< An error carries SQLSTATE or a native code.
  bool zeroInText = true;           ///< The driver writes a text with a zero character in it.
  /// How many times longer than usual it is waited for after a cancel: what stands between takes
  /// its time on a busy machine.
  int patience = 1;
};

/// A body that cannot hold on a database, and why.
struct SkippedBody {
  std::string body;  ///< "WriteBodies.AnAliasIsNoColumn", or "WriteBodies" for all of them.
  std::string reason;
};

/// One database that the shared bodies run against: how to connect, and how things are said there.
/// A body makes its own tables (ScratchTable) and drops them.
class Database {
 public:
  virtual ~Database() = default;

  /// Why it cannot be used on this machine; empty when it can.
  [[nodiscard]] virtual std::string WhyUnavailable() { return {}; }
  [[nodiscard]] virtual DatabaseTraits Traits() const { return {}; }
  [[nodiscard]] virtual std::vector<SkippedBody> Skipped() const { return {}; }

  /// Leads to an empty scratch database that several connections may use at once.
  [[nodiscard]] virtual std::string ConnectionString() const = 0;
  /// Leads nowhere: opening fails soon.
  [[nodiscard]] virtual std::string BadConnectionString() const = 0;

  /// A statement that runs for half a minute or longer, reacts to a cancel and gives no row before
  /// its end.
  [[nodiscard]] virtual std::string SlowStatement() const = 0;
  /// A query of `rows` rows: n (a whole number from 1 on), t ("row " and the number), d (n / 2.0,
  /// floating).
  [[nodiscard]] virtual std::string Series(std::int64_t rows) const = 0;
  /// An expression that makes a text of `length` times "x".
  [[nodiscard]] virtual std::string LongText(std::size_t length) const = 0;
  /// An expression that makes `length` zero bytes.
  [[nodiscard]] virtual std::string LongBinary(std::size_t length) const = 0;
  /// A query that gives `goodRows` rows or more and then fails while rows are fetched; empty:
  /// cannot be said.
  [[nodiscard]] virtual std::string FailsAfter(std::int64_t goodRows) const = 0;

  /// Statements that make a table with `columns`, as between the parentheses of `create table`, and
  /// that drop it.
  [[nodiscard]] virtual std::vector<std::string> MakeTable(const std::string& name,
                                                           const std::string& columns) const {
    return {"create table " + name + " (" + columns + ")"};
  }
  [[nodiscard]] virtual std::vector<std::string> DropTable(const std::string& name) const {
    return {"drop table " + name};
  }

  /// Declarations of a whole-number key, a text that takes 200 characters and a binary column.
  [[nodiscard]] virtual std::string KeyType() const { return "integer not null primary key"; }
  [[nodiscard]] virtual std::string TextType() const { return "varchar(200)"; }
  [[nodiscard]] virtual std::string BinaryType() const { return "blob"; }
  [[nodiscard]] virtual std::string LongTextType() const { return "text"; }
  [[nodiscard]] virtual std::vector<TypeCase> TypeCases() const = 0;
  /// Makes the types that some cases need; may be run again.
  [[nodiscard]] virtual std::vector<std::string> TypeSetup() const { return {}; }
  /// The declaration of a whole-number key that the database counts up by itself.
  [[nodiscard]] virtual std::string CountedKeyType() const = 0;
  /// The declaration of a whole number that is 2 * n of the same row, and cannot be written.
  [[nodiscard]] virtual std::string DoubledType() const {
    return "integer generated always as (2 * n) stored";
  }
  [[nodiscard]] virtual std::string BeginStatement() const { return "begin"; }
  /// Locks the row 1 of a table for a transaction that was begun.
  [[nodiscard]] virtual std::string LockStatement(const std::string& table) const {
    return "update " + table + " set n = n where id = 1";
  }
  /// A statement after which what was committed outlives KillServer.
  [[nodiscard]] virtual std::string FlushStatement() const { return "select 1"; }
  /// Ends the server at once, and starts it again; not for databases without one.
  virtual void KillServer() {}
  virtual void RestartServer() {}

  /// The catalog and schema in which a table made without them stands, as the schema rowsets tell
  /// it.
  [[nodiscard]] virtual std::string TableCatalog() const { return {}; }
  [[nodiscard]] virtual std::string TableSchema() const { return {}; }

  /// Another catalog of the server than that of ConnectionString, and what makes it there; empty:
  /// there are none to change between.
  [[nodiscard]] virtual std::string OtherCatalog() const { return {}; }
  [[nodiscard]] virtual std::vector<std::string> OtherCatalogSetup() const { return {}; }
  /// A statement that changes the catalog in use; empty: there is none.
  [[nodiscard]] virtual std::string UseStatement(const std::string& /*catalog*/) const {
    return {};
  }
};

/// A name and a way to make the database of that name: the parameter of every body.
struct DatabaseParam {
  std::string name;
  std::function<std::shared_ptr<Database>()> make;
};

inline void PrintTo(const DatabaseParam& param, std::ostream* out) { *out << param.name; }

}  // namespace tessel::test
