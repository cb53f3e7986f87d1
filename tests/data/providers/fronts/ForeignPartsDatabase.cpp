#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/fronts/TableParts.h"
#include "tests/data/providers/postgresql/PostgresDatabase.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;

constexpr const char* database = "parts";

std::string PartsString() {
  return PostgresNative().StringAt(TestServers::Instance().Postgres().Login().port, database);
}

/// Runs one statement on the server that holds the part of that number.
std::string OnPart(int number, const std::string& sql) {
  return "select dblink_exec('part" + std::to_string(number) + "', " + Literal(sql) + ")";
}

std::string ServerStatement(int number) {
  const ServerLogin login = TestServers::Instance().PostgresPart(number).Login();
  const std::string name = "part" + std::to_string(number);
  return "create server " + name + " foreign data wrapper postgres_fdw options (host '" +
         login.host + "', port '" + std::to_string(login.port) + "', dbname '" + login.database +
         "'); create user mapping for public server " + name + " options (user '" + login.user +
         "', password '" + login.password + "')";
}

/// A server whose tables have their rows on two others.
class ForeignPartsDatabase : public PostgresDatabase {
 public:
  ForeignPartsDatabase() {
    static const bool made = MakeServers();
    (void)made;
  }

  [[nodiscard]] std::string ConnectionString() const override { return PartsString(); }
  [[nodiscard]] std::string TableCatalog() const override { return database; }
  [[nodiscard]] std::string CountedKeyType() const override { return "serial primary key"; }
  [[nodiscard]] DatabaseTraits Traits() const override {
    DatabaseTraits traits = PostgresDatabase::Traits();
    traits.holdsLongValues = false;
    traits.uniqueRows = false;
    return traits;
  }
  [[nodiscard]] std::vector<SkippedBody> Skipped() const override;
  /// Each makes three tables on three servers, which takes long.
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override { return PlainTypes(); }
  [[nodiscard]] std::vector<std::string> TypeSetup() const override { return {}; }
  [[nodiscard]] std::vector<std::string> MakeTable(const std::string& name,
                                                   const std::string& columns) const override {
    std::vector<std::string> statements = {"create table " + name + " (" + WithoutKeys(columns) +
                                           ") partition by hash (" + FirstColumn(columns) + ")"};
    for (const int number : {1, 2}) {
      const std::string part = std::to_string(number);
      statements.push_back(OnPart(number, "create table " + name + " (" + columns + ")"));
      statements.push_back("create foreign table " + name + "_" + part + " partition of " + name +
                           " for values with (modulus 2, remainder " + std::to_string(number - 1) +
                           ") server part" + part + " options (table_name '" + name + "')");
    }
    return statements;
  }
  [[nodiscard]] std::vector<std::string> DropTable(const std::string& name) const override {
    const std::string drop = "drop table " + name;
    return {drop, OnPart(1, drop), OnPart(2, drop)};
  }

 private:
  static bool MakeServers() {
    const auto run = [](const std::string& connectionString, const std::vector<std::string>& sql) {
      PumpQueue queue;
      DataAccessObjects data(queue, nullptr, RowMemory::OfMachine(), slowdown);
      const auto connection = data.CreateConnection();
      connection->SetConnectionString(connectionString);
      OpenNow(*connection);
      for (const std::string& statement : sql) QueryNow(*connection, statement);
    };
    run(PostgresNative().ConnectionString(), {std::string("create database ") + database});
    run(PartsString(), {"create extension postgres_fdw", "create extension dblink",
                        ServerStatement(1), ServerStatement(2)});
    return true;
  }
};

std::vector<SkippedBody> ForeignPartsDatabase::Skipped() const {
  return {{"CancelBodies.WorkThatWasDoneIsNotCalledCancelled",
           "the other server commits before its own end: a cancel in between undoes nothing there"},
          {"WriteFaultBodies.AnotherFieldChangedBySomebodyElseIsNone",
           "a table with parts on other servers has no key, so every field is compared"}};
}

const DatabaseParam foreignParts{"ForeignParts",
                                 [] { return std::make_shared<ForeignPartsDatabase>(); }};

TESSEL_RUN_BODIES(Spread, testing::Values(foreignParts));
TESSEL_RUN_WRITE_BODIES(Spread, testing::Values(foreignParts));

}  // namespace

class ForeignParts : public DataTest {
 protected:
  void SetUp() override {
    connection_ = ConnectTo(database_.ConnectionString());
    table_ = std::make_unique<ScratchTable>(database_, connection_,
                                            "id integer not null primary key, name varchar(200)");
    Run(*connection_, "insert into " + table_->Name() +
                          " select n, 'row ' || n"
                          " from generate_series(1, 100) n");
  }

  ForeignPartsDatabase database_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<ScratchTable> table_;
};

TEST_F(ForeignParts, HoldRowsOnBothServers) {
  for (const char* part : {"_1", "_2"})
    EXPECT_GT(Run(*connection_, "select id from " + table_->Name() + part)->RecordCount(), 10);
  EXPECT_EQ(Run(*connection_, "select id from " + table_->Name())->RecordCount(), 100);
}

TEST_F(ForeignParts, WithoutOneServerNothingIsHalfReadOrWritten) {
  const auto rows = QueryNow(*connection_,
                             "select id, name from " + table_->Name() +
                                 " where id = (select min(id) from " + table_->Name() + "_2)",
                             LockType::Optimistic);
  ASSERT_EQ(rows->RecordCount(), 1);
  rows->SetFieldValue(1, Text("mine"));
  Run(*connection_, OnPart(2, "checkpoint"));
  TestServers::Instance().PostgresPart(2).Kill();
  EXPECT_THROW(Run(*connection_, "select id from " + table_->Name()), Error);
  EXPECT_THROW(Update(*rows), Error);
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(rows->FieldValue(1)), "mine");
  TestServers::Instance().PostgresPart(2).Restart();
  EXPECT_EQ(Run(*connection_, "select id from " + table_->Name())->RecordCount(), 100);
  Update(*rows);
  EXPECT_THAT(
      TextsOf(*Run(*connection_, "select id from " + table_->Name() + " where name = 'mine'")),
      ElementsAre(ToText(rows->FieldValue(0))));
}

}  // namespace tessel::test
