#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "tests/data/conversion/RoundTrip.h"
#include "tests/data/support/DataTest.h"

namespace tessel::test {

/// The shared behaviours, by subject; their bodies stand in the sources of the same names.
class ConnectBodies : public DatabaseTest {};
class CommandBodies : public DatabaseTest {};
class CancelBodies : public DatabaseTest {};
class CursorBodies : public DatabaseTest {};
class ValueBodies : public DatabaseTest {};
class FieldBodies : public DatabaseTest {};
class SchemaBodies : public DatabaseTest {};

/// Records that can be changed, of a table "id, name, data, n"; a second connection looks at them
/// from outside.
class WriteTest : public DatabaseTest {
 protected:
  void SetUp() override;

  /// Rows that may be written; waits for them.
  [[nodiscard]] static std::shared_ptr<Recordset> OpenToWrite(Connection& connection,
                                                              const std::string& sql);
  [[nodiscard]] std::shared_ptr<Recordset> OpenAll() {
    return OpenToWrite(*connection_,
                       "select id, name, data, n from " + table_->Name() + " order by id");
  }
  /// The texts of a query on the other connection, row by row, joined by "|".
  [[nodiscard]] std::vector<std::string> Outside(const std::string& sql);
  [[nodiscard]] std::vector<std::string> Names() {
    return Outside("select id, name from " + table_->Name() + " order by id");
  }
  void RunOutside(const std::string& sql) { Run(*other_, sql); }

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Connection> other_;
  std::unique_ptr<ScratchTable> table_;
};

/// Every type that a database has, in tables "id, v" with a value and a null.
class TypeBodies : public DatabaseTest {
 protected:
  void SetUp() override;

  /// Calls `check` with each type and the name of its table.
  void ForEachType(const std::function<void(const TypeCase&, const std::string&)>& check);
  [[nodiscard]] std::shared_ptr<Recordset> Open(const std::string& sql);

  std::shared_ptr<Connection> connection_;
};

/// The same table in two catalogs of a server.
class CatalogBodies : public WriteTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// `action` is refused because the rows come from the catalog they were made in.
  void ExpectRefused(const std::function<void()>& action) const;
  /// The names in the other catalog's table.
  [[nodiscard]] std::vector<std::string> NamesElsewhere();

  std::string own_;                        ///< The catalog of `connection_` at first.
  std::shared_ptr<Connection> elsewhere_;  ///< Has the other catalog in use.
};

class EditBodies : public WriteTest {};
/// A connection that was opened with Mode=ReadOnly, beside one that writes.
class ReadOnlyBodies : public WriteTest {
 protected:
  void SetUp() override;

  /// A connection to the same database whose string has these keys in front of all others.
  [[nodiscard]] std::shared_ptr<Connection> ConnectWith(const std::string& keys) {
    return ConnectTo(keys + ";" + Db().ConnectionString());
  }
  /// The database itself says no, and the table is as it was.
  void ExpectRefused(Connection& connection, const std::string& sql);

  std::shared_ptr<Connection> readOnly_;
};
class WriteBodies : public WriteTest {};
/// Rows that are loaded into a table.
class LoadBodies : public WriteTest {
 protected:
  /// For the columns id and name of the table.
  [[nodiscard]] LoadRequest RequestOf(std::shared_ptr<RowFeed> rows) const;
  /// Loads to the end.
  [[nodiscard]] std::shared_ptr<LoadOperation> Load(LoadRequest request);
  /// How many rows the other connection sees in a table.
  [[nodiscard]] std::string Count(const std::string& table);
  [[nodiscard]] std::string Count() { return Count(table_->Name()); }
  /// Until some rows have gone to the database.
  void PumpToProgress(const LoadOperation& load);
  /// Cancels it once it has told of rows, and waits for its end.
  void CancelInTheMiddle(LoadOperation& load);
};
/// Records that are exported to a file and imported from it.
class RoundTripBodies : public DatabaseTest {
 protected:
  void SetUp() override;

  [[nodiscard]] std::vector<TableColumn> ColumnsOf(const std::string& table) const;
  /// Of a table with a number "row_no", the name of a hard value and a column for each kind.
  [[nodiscard]] std::string HardColumns() const;
  /// With every value that the database has.
  void FillWithHardValues(const std::string& table);
  static void ExpectLoaded(LoadOperation& load);
  /// Two tables hold the same rows.
  void ExpectSame(const std::string& a, const std::string& b, const std::string& key);
  /// The database finds no row of `a` that is not in `b`.
  void ExpectNoMore(const std::string& a, const std::string& b);
  /// Runs a file of statements.
  void RunFile(const std::string& path);

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<RoundTrip> trip_;
};
/// The same of a million rows. They take minutes, most of all in a build that is not optimised, and
/// are run by name.
class ManyRowsBodies : public RoundTripBodies {
 protected:
  /// Makes the table that the rows come from.
  void SetUp() override;

  /// Through a file and back, and says how long it took.
  void ExpectBack(const Passage& passage);
  void ExpectBack(const std::function<bool(const Passage&)>& chosen);
  /// The table holds the rows: the sum of their values, and that which the database makes itself.
  void ExpectSameRows(const std::string& table);
  /// A sum that the database makes; empty where it has none.
  [[nodiscard]] std::string OwnSum(const std::string& table) const;
  /// Changes one value of the table and expects that this is found.
  void ExpectOneOtherValueFound(const std::string& table);

  std::unique_ptr<ScratchTable> from_;
  RowSum sum_;
};
class WriteFaultBodies : public WriteTest {};
/// Texts of several statements, run as one command.
class StatementBodies : public WriteTest {
 protected:
  void SetUp() override;

  /// A statement that adds a row.
  [[nodiscard]] std::string Insert(int id) const;
  /// Runs it to its end, whatever that is.
  [[nodiscard]] StartedQuery RunToWrite(const std::string& sql);
  /// "2 select: 4 rows": number and first word of each result's statement, and what came of it.
  [[nodiscard]] static std::vector<std::string> ResultsOf(const QueryOperation& operation,
                                                          const std::string& sql);
  /// Where a text that fails is left.
  [[nodiscard]] TextStop StopOf(const std::string& sql);
};
/// What is told of the user's own transaction.
class TransactionBodies : public WriteTest {
 protected:
  void SetUp() override;
  [[nodiscard]] UserTransaction State() const { return connection_->Transaction().state; }
  void Insert(int id) {
    Run(*connection_,
        "insert into " + table_->Name() + " (id) values (" + std::to_string(id) + ")");
  }
};

/// The name of a database as a part of the names of its tests.
inline std::string DatabaseName(const testing::TestParamInfo<DatabaseParam>& info) {
  return info.param.name;
}

}  // namespace tessel::test

/// Runs every shared behaviour against the databases of `params`, a testing::Values(...) of
/// DatabaseParam. To be used once, in namespace tessel::test.
#define TESSEL_RUN_BODIES(prefix, params)                                                          \
  INSTANTIATE_TEST_SUITE_P(prefix, ConnectBodies, params, DatabaseName);                           \
  INSTANTIATE_TEST_SUITE_P(prefix, CommandBodies, params, DatabaseName);                           \
  INSTANTIATE_TEST_SUITE_P(prefix, CancelBodies, params, DatabaseName);                            \
  INSTANTIATE_TEST_SUITE_P(prefix, CursorBodies, params, DatabaseName);                            \
  INSTANTIATE_TEST_SUITE_P(prefix, ValueBodies, params, DatabaseName);                             \
  INSTANTIATE_TEST_SUITE_P(prefix, FieldBodies, params, DatabaseName);                             \
  INSTANTIATE_TEST_SUITE_P(prefix, SchemaBodies, params, DatabaseName)

/// Runs those that change records.
#define TESSEL_RUN_WRITE_BODIES(prefix, params)                                                    \
  INSTANTIATE_TEST_SUITE_P(prefix, EditBodies, params, DatabaseName);                              \
  INSTANTIATE_TEST_SUITE_P(prefix, CatalogBodies, params, DatabaseName);                           \
  INSTANTIATE_TEST_SUITE_P(prefix, TypeBodies, params, DatabaseName);                              \
  INSTANTIATE_TEST_SUITE_P(prefix, WriteBodies, params, DatabaseName);                             \
  INSTANTIATE_TEST_SUITE_P(prefix, WriteFaultBodies, params, DatabaseName);                        \
  INSTANTIATE_TEST_SUITE_P(prefix, StatementBodies, params, DatabaseName);                         \
  INSTANTIATE_TEST_SUITE_P(prefix, TransactionBodies, params, DatabaseName)

/// Runs those of rows that are loaded.
#define TESSEL_RUN_LOAD_BODIES(prefix, params)                                                     \
  INSTANTIATE_TEST_SUITE_P(prefix, LoadBodies, params, DatabaseName);                              \
  INSTANTIATE_TEST_SUITE_P(prefix, RoundTripBodies, params, DatabaseName);                         \
  INSTANTIATE_TEST_SUITE_P(prefix, ManyRowsBodies, params, DatabaseName)

/// Runs those of connections that are read-only by their string: the native providers know the key.
#define TESSEL_RUN_READ_ONLY_BODIES(prefix, params)                                                \
  INSTANTIATE_TEST_SUITE_P(prefix, ReadOnlyBodies, params, DatabaseName)
