#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Properties.h"
#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"
#include "data/changes/RowStatement.h"
#include "data/providers/RowLoader.h"
#include "data/providers/SchemaRows.h"
#include "data/providers/WorkContext.h"
#include "data/providers/text/ConnectionKeys.h"
#include "data/rows/RowSink.h"

namespace tessel {

/// User and password given beside a connection string; they apply when the string names none.
struct Login {
  std::string user;
  std::string password;
};

/// One session with one database, as a provider makes it.
///
/// Every function but Cancel and CancelPatience is called on the connection's worker thread only,
/// one at a time, in this order: Open; then any number of commands (ExecuteCommand, FetchRows until
/// it returns false, NextResult and its rows until there is none, CloseResult, CompleteFields,
/// FindKey), changes of rows, schema
/// rowsets and catalog changes; Close; destructor. All may raise Error, except Cancel,
/// CancelPatience, CloseResult, Close and the destructor.
///
/// Cancelling: the core sets WorkContext::StopAsked and then calls Cancel from a helper thread,
/// again every few milliseconds, until the running function returns. A function that ends because
/// of it raises CancelledError() whatever the database called it, or (FetchRows) returns what it
/// has. Work that was finished when the request came is reported as finished. When nothing returns
/// within CancelPatience the core announces the end by itself and leaves thread and session behind:
/// a session must own all it uses, and may be destroyed late, on its own thread.
class ProviderSession {
 public:
  virtual ~ProviderSession() = default;

  /// Opens the session. Raises Error with the reason; the password must not stand in its text.
  virtual void Open(const Login& login, WorkContext& context) = 0;
  /// Ends the session; what is open is dropped. Called once after an Open that succeeded.
  virtual void Close() noexcept = 0;
  /// False once the session is known to be lost (server gone): the core then closes the connection.
  [[nodiscard]] virtual bool IsAlive() noexcept { return true; }

  /// Properties of the open session, read once: at least "Data Source Object Threading Model" (1),
  /// "Provider Name", "DBMS Name", "DBMS Version", "Identifier Quote Character".
  [[nodiscard]] virtual Properties ReadProperties() = 0;

  /// Runs the whole text as one command, up to and with the first result that has columns, and
  /// gives its fields; none: there is no such result, and the whole text has been run. Each
  /// statement without columns on the way is told by WorkContext::EndStatement, and where each one
  /// begins by BeginStatement, before it runs. `sql` is not blank.
  [[nodiscard]] virtual std::vector<FieldInfo> ExecuteCommand(const std::string& sql,
                                                              WorkContext& context) = 0;
  /// Adds up to `maxRows` rows of the result to `rows`, whose columns are those of its fields.
  /// Between rows it looks at StopAsked and returns early. False: there are no more rows. On Error
  /// the rows that are complete stay; a row that was begun is dropped.
  [[nodiscard]] virtual bool FetchRows(RowSink& rows, std::size_t maxRows,
                                       WorkContext& context) = 0;
  /// Runs what follows, up to and with the next result that has columns, in the same way. An Error
  /// raised here is listed in the connection's Errors and does not fail the command.
  [[nodiscard]] virtual std::vector<FieldInfo> NextResult(WorkContext& context) = 0;
  /// Drops what is left of the command, if anything; called once after each ExecuteCommand, also
  /// after one that failed.
  virtual void CloseResult() noexcept = 0;
  /// Adds to the fields of result number `result` (from 0, of those with columns) of the command
  /// just closed what could not be asked for while rows were on their way, such as base names;
  /// names and types stay. Must be quick, as FindKey.
  virtual void CompleteFields(std::size_t /*result*/, std::vector<FieldInfo>& /*fields*/) {}
  /// The fields that make a whole primary key, or a unique not-null index, of the one base table of
  /// `fields`, those of the same result; none when they hold no such key. Also asked after a fetch
  /// that was cancelled; must be quick.
  [[nodiscard]] virtual std::vector<std::size_t> FindKey(std::size_t result,
                                                         const std::vector<FieldInfo>& fields) = 0;

  /// How statements that change rows are to be written for this database; null: it cannot be done.
  [[nodiscard]] virtual const WriteDialect* Writing() { return nullptr; }
  /// What the user's transaction on this session is like; read after each task, so it must be quick
  /// and change nothing.
  [[nodiscard]] virtual UserTransaction Transaction() { return UserTransaction::None; }
  /// Runs one statement with its parameters, to its end.
  [[nodiscard]] virtual StatementResult RunStatement(const RowStatement& statement,
                                                     WorkContext& context);
  /// Runs a statement that begins or ends a transaction or savepoint. With an operation it may be
  /// cancelled where the database then undoes it.
  virtual void RunControl(std::string_view sql, const WorkContext* context);

  /// Begins to load rows into a table, which is there, within whatever transaction there is. One at
  /// a time; nothing else is called while there is one. Where a provider has no way of its own the
  /// rows go by RunStatement, one by one.
  [[nodiscard]] virtual std::unique_ptr<RowLoader> BeginLoad(const LoadRequest& request,
                                                             WorkContext& context);

  /// Called when the end of an operation has been announced: for what takes long and nobody needs
  /// to wait for.
  virtual void TidyUp() noexcept {}

  /// The catalog in use, empty when there is none; read after Open and after each command.
  [[nodiscard]] virtual std::string CurrentCatalog() = 0;
  /// Changes the catalog in use; raises Error and leaves it as it was on failure.
  virtual void SetCatalog(const std::string& name, WorkContext& context) = 0;
  /// Adds the rows of a schema rowset; SchemaRows leaves out those that its restrictions exclude,
  /// so using the restrictions to ask the database for less is optional. Raises Error(notSupported)
  /// when there is no such rowset.
  virtual void ReadSchema(SchemaRows& rows, WorkContext& context) = 0;

  /// Asks the function that runs to end soon. Any thread; repeatedly; in every phase, Open
  /// included, and between two functions of one command, but never before an operation has begun or
  /// after it has ended. May block when the server does. Does nothing where the phase cannot be
  /// interrupted.
  virtual void Cancel() noexcept = 0;
  /// How long a cancelled function may take to return before the session is given up. Asked for at
  /// each cancel: it may differ with what runs. Any thread.
  [[nodiscard]] virtual std::chrono::milliseconds CancelPatience() const noexcept {
    return std::chrono::milliseconds(150);
  }
};

/// Makes sessions. One provider may serve several names and read their keys each in its own way:
/// that of ODBC also serves "SQLOLEDB", "Microsoft.Jet.OLEDB.*" and "MSDAORA" and translates their
/// keys for itself; keys that it does not know go to the driver as they were written
/// (ConnectionKey::text). UI thread only. A session may outlive the provider that made it.
class Provider {
 public:
  virtual ~Provider() = default;

  /// Names that the key "Provider" may give, as shown to a person, for example "SQLite"; a name
  /// ending in "*" stands for all that begin so.
  [[nodiscard]] virtual std::vector<std::string> Names() const = 0;

  /// A session for a connection string, "Provider" among its keys, not yet open. Touches no
  /// network; raises Error(providerNotFound) for a driver that is not installed, with the drivers
  /// present in its text.
  [[nodiscard]] virtual std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const = 0;
};

/// The providers there are.
class ProviderRegistry {
 public:
  /// `isDefault`: also serves connection strings that name no provider.
  void Add(std::unique_ptr<Provider> provider, bool isDefault = false);

  /// The session for `connectionString`. Raises Error(providerNotFound), whose text lists the
  /// providers there are.
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const std::string& connectionString) const;
  /// Names of all providers, sorted without regard to case.
  [[nodiscard]] std::vector<std::string> Names() const;

 private:
  [[nodiscard]] const Provider* Find(std::string_view name) const;

  std::vector<std::unique_ptr<Provider>> providers_;
  const Provider* default_ = nullptr;
};

}  // namespace tessel
