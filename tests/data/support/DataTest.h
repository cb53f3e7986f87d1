#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/cursor/DataAccessObjects.h"
#include "tests/data/support/Database.h"
#include "tests/data/support/EventLog.h"
#include "tests/data/support/PumpQueue.h"
#include "tests/support/DataSteps.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

/// The error that `action` raises; fails the test and gives an empty one when it raises none.
[[nodiscard]] ErrorInfo ErrorOf(const std::function<void()>& action);

/// The rows of a recordset in their present order, each with its values.
[[nodiscard]] std::vector<std::vector<Value>> RowsOf(const Recordset& recordset);
/// The values of one field, as text; null as "NULL".
[[nodiscard]] std::vector<std::string> TextsOf(const Recordset& recordset, std::size_t field = 0);

/// Has the providers of the program and an event queue that the test pumps.
class DataTest : public testing::Test {
 protected:
  /// Opens and waits.
  [[nodiscard]] std::shared_ptr<Connection> ConnectTo(const std::string& connectionString);
  /// Runs and waits. The recordset is closed when there are no columns.
  static StartedQuery Run(Connection& connection, const std::string& sql);
  /// The first cell of a query.
  static Value Cell(Connection& connection, const std::string& sql);
  /// Starts without waiting; `log` watches.
  static StartedQuery Start(Connection& connection, const std::string& sql, EventLog& log);
  /// Pumps until `log` has seen the end of `ends` operations.
  [[nodiscard]] bool PumpToEnd(const EventLog& log, int ends = 1);

  /// `patience`: how many times longer than usual a database is waited for after a cancel.
  explicit DataTest(int patience = 1)
      : data_(queue_, nullptr, RowMemory::OfMachine(), slowdown * patience) {}

  PumpQueue queue_;
  DataAccessObjects data_;
};

/// A behaviour that every database has to show.
class DatabaseTest : public DataTest, public testing::WithParamInterface<DatabaseParam> {
 protected:
  DatabaseTest() : DatabaseTest(GetParam().make()) {}
  void SetUp() override;

  [[nodiscard]] Database& Db() const { return *database_; }
  [[nodiscard]] std::shared_ptr<Connection> Connect() { return ConnectTo(Db().ConnectionString()); }

 private:
  explicit DatabaseTest(std::shared_ptr<Database> database)
      : DataTest(database->Traits().patience), database_(std::move(database)) {}

  std::shared_ptr<Database> database_;
};

/// A table that is dropped at the end. Its name is new in this process.
class ScratchTable {
 public:
  /// `columns` as between the parentheses of `create table`.
  ScratchTable(std::shared_ptr<Connection> connection, const std::string& columns);
  /// Made as `database` makes its tables.
  ScratchTable(const Database& database, std::shared_ptr<Connection> connection,
               const std::string& columns);
  ScratchTable(const ScratchTable&) = delete;
  ScratchTable& operator=(const ScratchTable&) = delete;
  ~ScratchTable();

  [[nodiscard]] const std::string& Name() const { return name_; }
  void Insert(const std::string& values) const;

 private:
  std::shared_ptr<Connection> connection_;
  std::string name_;
  std::vector<std::string> drops_;
};

}  // namespace tessel::test
