#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/base/Error.h"
#include "contract/base/Event.h"
#include "contract/base/Properties.h"
#include "contract/data/CombinedRows.h"
#include "contract/data/Operation.h"
#include "contract/data/Recordset.h"
#include "contract/data/Transaction.h"

namespace tessel {

class LoadOperation;
struct LoadRequest;

/// Schema rowsets that Connection::StartSchema reads, each with its fields in their order. Names of
/// fields and the order of the restrictions are the classic ones. ORDINAL_POSITION, ORDINAL and
/// DATA_TYPE (a number of DataType) are whole numbers, IS_NULLABLE, UNIQUE and NEEDS_SCHEMA
/// booleans, all others text; what a database does not have, such as schemas, is null. Those behind
/// Tables are known to the databases that are spoken to without ODBC.
enum class SchemaRowset {
  Catalogs = 1,  ///< CATALOG_NAME, DESCRIPTION. Restrictions: CATALOG_NAME.
  Columns = 4,   ///< TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME, COLUMN_NAME, ORDINAL_POSITION (from
                 ///< 1), IS_NULLABLE, DATA_TYPE, TYPE_NAME, NEEDS_SCHEMA. Restrictions:
                 ///< TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME, COLUMN_NAME.
  Tables = 20,   ///< TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME, TABLE_TYPE ("TABLE", "VIEW", "SYSTEM
                 ///< TABLE"), DESCRIPTION, NEEDS_SCHEMA (SQL finds the table only with its schema,
                 ///< or else its catalog, in front). Restrictions: TABLE_CATALOG, TABLE_SCHEMA,
                 ///< TABLE_NAME, TABLE_TYPE.
  Indexes = 12,  ///< A row for each column of an index, by table, index and place: TABLE_CATALOG,
                 ///< TABLE_SCHEMA, TABLE_NAME, INDEX_NAME, UNIQUE, ORDINAL_POSITION (from 1),
                 ///< COLUMN_NAME (of an expression its text, where that is told). Restrictions:
                 ///< TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME.
  Procedures = 16,   ///< PROCEDURE_CATALOG, PROCEDURE_SCHEMA, PROCEDURE_NAME (where several may
                     ///< bear one name, with the types of its arguments in parentheses),
                     ///< PROCEDURE_TYPE ("FUNCTION", "PROCEDURE"). Restrictions: the same.
  ForeignKeys = 27,  ///< A row for each column of a key, by table, key and place: PK_TABLE_CATALOG,
                     ///< PK_TABLE_SCHEMA, PK_TABLE_NAME, PK_COLUMN_NAME, FK_TABLE_CATALOG,
                     ///< FK_TABLE_SCHEMA, FK_TABLE_NAME, FK_COLUMN_NAME, ORDINAL (from 1), FK_NAME
                     ///< (one of its own in its table). Restrictions: PK_TABLE_CATALOG,
                     ///< PK_TABLE_SCHEMA, PK_TABLE_NAME, FK_TABLE_CATALOG, FK_TABLE_SCHEMA,
                     ///< FK_TABLE_NAME.
  PrimaryKeys = 28,  ///< TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME, COLUMN_NAME, ORDINAL (from 1).
                     ///< Restrictions: TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME.
  Definitions = 1001  ///< One row, of the object that the restrictions name, all but the first two
                      ///< of which have to be given; none where there is no such object. The SQL
                      ///< that makes it: OBJECT_NAME, DEFINITION. Restrictions: OBJECT_CATALOG,
                      ///< OBJECT_SCHEMA, OBJECT_NAME, OBJECT_TYPE ("TABLE", "VIEW", "INDEX",
                      ///< "FUNCTION", "PROCEDURE"), TABLE_NAME (of an index).
};

/// One session with one database. UI thread only, except where said.
///
/// Each connection has a worker of its own that opens, executes, fetches and writes. One operation
/// runs at a time: to start another one raises Error(application), and Error(objectClosed) while
/// the connection is closed. Notices come through the event queue on the UI thread and are dropped
/// once the connection is gone. Destroying it cancels, ends the worker (or leaves one behind that
/// hangs in a driver, with all it uses) and closes the session.
class Connection {
 public:
  virtual ~Connection() = default;

  /// As it was set, passwords included: never to be shown as it is.
  [[nodiscard]] virtual const std::string& ConnectionString() const = 0;
  /// Kept until the next StartOpen, which reads it. Raises Error(objectOpen) unless the connection
  /// is closed.
  virtual void SetConnectionString(std::string connectionString) = 0;

  /// Opens by the connection string; `user` and `password` apply when the string names none. They
  /// are kept in memory only and appear in no message. Raises Error for an unknown provider or
  /// driver (the text lists those present) and when already open.
  [[nodiscard]] virtual std::shared_ptr<Operation> StartOpen(const std::string& user,
                                                             const std::string& password) = 0;

  /// Cancels what runs, closes the session. Closing a closed connection does nothing. The operation
  /// that ran still ends, by a notice of its own; recordsets keep the rows they have. Waits for a
  /// driver that hangs no longer than a moment. A session that is lost closes the connection by
  /// itself, and so does a driver that does not react to a cancel.
  virtual void Close() = 0;

  /// Bits of objectState. `open` goes with what runs; without it `connecting` stands alone.
  [[nodiscard]] virtual int State() const = 0;

  /// Errors, warnings and notices of the last operation, in the order reported. Emptied when the
  /// next one starts.
  [[nodiscard]] virtual const std::vector<ErrorInfo>& Errors() const = 0;
  virtual void ClearErrors() = 0;

  /// Provider properties, read when it is opened: "Data Source Object Threading Model" (bit 0:
  /// asynchronous work is possible), "DBMS Name", "DBMS Version", "Provider Name", "Identifier
  /// Quote Character" and more. "Catalog Change Ends Session" is true where a transaction does not
  /// outlive it. "Bracket Identifiers" is 0 where a name may not stand in brackets; where that is
  /// not told it may. "Schema By Rowsets" is 1 where the schema rowsets tell the tables of the
  /// catalog in use better than the standard views do.
  [[nodiscard]] virtual const Properties& ProviderProperties() const = 0;

  /// The catalog in use; empty when the database has none and while the connection is closed.
  /// Reading it never waits for a running command.
  [[nodiscard]] virtual std::string DefaultDatabase() const = 0;
  /// Changes the catalog in use, which stays as it was when that fails. `name` may stand in
  /// brackets. Fails with Error(notSupported) where the database has no catalogs.
  [[nodiscard]] virtual std::shared_ptr<Operation> StartUseCatalog(const std::string& name) = 0;

  /// The user's own transaction, as the database told after the last command, change of a row or
  /// change of the catalog; None while the connection is closed. Reading it never waits for a
  /// running command.
  [[nodiscard]] virtual TransactionState Transaction() const = 0;

  /// Runs `sql` as one command and fetches all that it gives. Its rows can be changed unless `lock`
  /// is ReadOnly. An error behind the first result with columns is listed in Errors and does not
  /// fail the command. Raises Error(application) for a text without content.
  [[nodiscard]] virtual std::shared_ptr<QueryOperation> StartQuery(const std::string& sql,
                                                                   LockType lock) = 0;

  /// Loads rows into a table (BulkLoad.h). The user's own open transaction goes on: what is loaded
  /// becomes part of it. Raises Error(readOnly) for a connection opened with Mode=ReadOnly, and
  /// Error(application) for a request without columns.
  [[nodiscard]] virtual std::shared_ptr<LoadOperation> StartLoad(LoadRequest request) = 0;

  /// Reads a schema rowset. `restrictions` stand in the order given at SchemaRowset; an empty or
  /// missing one restricts nothing. Fails with Error(notSupported) when the provider has no such
  /// rowset.
  [[nodiscard]] virtual std::shared_ptr<QueryOperation>
  StartSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) = 0;

  /// The state of Transaction changed, or the session ended: a notice of its own, behind those of
  /// what did it.
  Event<> TransactionChanged;
};

/// The door to every database. UI thread.
class DataAccess {
 public:
  virtual ~DataAccess() = default;

  /// A closed connection without a connection string. Whoever holds it keeps it open; it must be
  /// let go of on the UI thread.
  [[nodiscard]] virtual std::shared_ptr<Connection> CreateConnection() = 0;

  /// Names of the providers that a connection string may ask for, sorted.
  [[nodiscard]] virtual std::vector<std::string> ProviderNames() const = 0;
  /// Names of the installed ODBC drivers, in the driver manager's order; empty when it cannot be
  /// asked.
  [[nodiscard]] virtual std::vector<std::string> OdbcDrivers() const = 0;
  /// Names of the ODBC data sources, in the driver manager's order; empty when it cannot be asked.
  [[nodiscard]] virtual std::vector<std::string> OdbcDataSources() const = 0;

  // --- rows of the program's own ---------------------------------------------------------------
  /// A read-only recordset, without a connection, of rows that the program made itself. A row that
  /// is shorter than `fields` ends with nulls.
  [[nodiscard]] virtual std::shared_ptr<Recordset>
  MakeRecordset(std::vector<FieldInfo> fields, const std::vector<std::vector<Value>>& rows) = 0;
  /// All rows of the parts, one part behind the other, as one recordset. Its first field is
  /// "Connection", the name of the part; then come the columns of all parts united by their names,
  /// without regard to case, in the order of first appearance: the second of a name in one part
  /// stands with the second of that name in another. What a part does not have is null. A value
  /// keeps its type; the type of a field is the most particular one that holds those of all parts.
  /// Raises Error(objectClosed) for a part that is closed.
  [[nodiscard]] virtual std::shared_ptr<Recordset>
  MergeRows(const std::vector<NamedRows>& parts) = 0;
  /// A comparison that has yet to take its steps. Raises Error(objectClosed) for rows that are
  /// closed, Error(itemNotFound) for a key that one of them does not have, and Error(application)
  /// when they have no column in common.
  [[nodiscard]] virtual std::unique_ptr<RowComparison> CompareRows(CompareRequest request) = 0;
};

}  // namespace tessel
