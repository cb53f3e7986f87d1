#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/fronts/TableParts.h"
#include "tests/data/providers/mariadb/MariaDatabase.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;

std::string SpiderString() {
  return MariaNative().StringAt(TestServers::Instance().Spider().Login().port);
}

/// Runs one statement on the server that holds the part of that number.
std::string OnPart(int number, const std::string& sql) {
  return "select spider_direct_sql(" + Literal(sql) + ", '', 'srv \"part" + std::to_string(number) +
         "\"')";
}

/// A server whose tables have their rows on two others.
class SpiderDatabase : public MariaDatabase {
 public:
  [[nodiscard]] std::string ConnectionString() const override { return SpiderString(); }
  [[nodiscard]] DatabaseTraits Traits() const override {
    DatabaseTraits traits = MariaDatabase::Traits();
    traits.holdsLongValues = false;
    return traits;
  }
  [[nodiscard]] std::vector<SkippedBody> Skipped() const override;
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  /// A table with a unique column beside its first one cannot be spread: it stands on the first
  /// server as a whole.
  [[nodiscard]] std::vector<std::string> MakeTable(const std::string& name,
                                                   const std::string& columns) const override {
    const std::string make = "create table " + name + " (" + columns + ")";
    const std::string engine = make + " engine=spider comment='table \"" + name + "\"";
    if (columns.find(" unique") != std::string::npos)
      return {OnPart(1, make), engine + ", srv \"part1\"'"};
    return {OnPart(1, make), OnPart(2, make),
            engine + "' partition by key (" + FirstColumn(columns) +
                ") (partition one comment 'srv \"part1\"', partition two comment 'srv "
                "\"part2\"')"};
  }
  [[nodiscard]] std::vector<std::string> DropTable(const std::string& name) const override {
    const std::string drop = "drop table if exists " + name;
    return {drop, OnPart(1, drop), OnPart(2, drop)};
  }
  void KillServer() override { TestServers::Instance().Spider().Kill(); }
  void RestartServer() override { TestServers::Instance().Spider().Restart(); }
};

std::vector<SkippedBody> SpiderDatabase::Skipped() const {
  const std::string counts = "Spider does not count what it deletes from a table on two servers";
  const std::string savepoints = "Spider has no savepoints: a change in a transaction is refused";
  return {{"CommandBodies.RecordsAffectedAreCounted", counts},
          {"CommandBodies.OfSeveralStatementsTheCountsAreSummed", counts},
          {"CommandBodies.EveryResultOfSeveralStatementsIsKeptInItsOrder", counts},
          {"TransactionBodies.AWrittenRowLeavesItAsItIs", savepoints},
          {"StatementBodies.ASavepointThatIsGoneBackToEndsNoTransaction", savepoints},
          {"WriteBodies.TheUsersTransactionGoesOn", savepoints},
          {"WriteFaultBodies.AFailureInTheUsersTransactionUndoesOnlyItself", savepoints},
          {"WriteBodies.ComputedColumnsAreReadBackAndNotWritten",
           "Spider sends computed columns to the other servers, which refuse them"},
          {"WriteFaultBodies.ABlockedUpdateIsCancelled",
           "Spider waits for the lock on the other server whatever is cancelled"}};
}

/// Spider refuses numbers of single precision and asks the others wrongly for bits.
std::vector<TypeCase> SpiderDatabase::TypeCases() const {
  std::vector<TypeCase> cases = PlainTypes();
  for (TypeCase& type : cases)
    if (type.declaration.starts_with("bit")) type.notCompared = "finds no bits";
  return cases;
}

const DatabaseParam spider{"Spider", [] { return std::make_shared<SpiderDatabase>(); }};

TESSEL_RUN_BODIES(Spread, testing::Values(spider));
TESSEL_RUN_WRITE_BODIES(Spread, testing::Values(spider));

}  // namespace

class Spider : public DataTest {
 protected:
  void SetUp() override {
    connection_ = ConnectTo(database_.ConnectionString());
    table_ = std::make_unique<ScratchTable>(database_, connection_,
                                            "id integer not null primary key, name varchar(200)");
    Run(*connection_,
        "insert into " + table_->Name() + " select seq, concat('row ', seq) from seq_1_to_100");
  }

  SpiderDatabase database_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<ScratchTable> table_;
};

TEST_F(Spider, HoldsRowsOnBothServers) {
  for (const char* part : {"one", "two"})
    EXPECT_GT(Run(*connection_, "select id from " + table_->Name() + " partition (" + part + ")")
                  ->RecordCount(),
              10);
  EXPECT_EQ(Run(*connection_, "select id from " + table_->Name())->RecordCount(), 100);
}

TEST_F(Spider, WithoutOneServerNothingIsHalfReadOrWritten) {
  const auto rows =
      QueryNow(*connection_,
               "select id, name from " + table_->Name() + " partition (two) order by id limit 1",
               LockType::Optimistic);
  ASSERT_EQ(rows->RecordCount(), 1);
  rows->SetFieldValue(1, Text("mine"));
  TestServers::Instance().SpiderPart().Kill();
  EXPECT_THROW(Run(*connection_, "select id from " + table_->Name()), Error);
  EXPECT_THROW(Update(*rows), Error);
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(rows->FieldValue(1)), "mine");
  TestServers::Instance().SpiderPart().Restart();
  EXPECT_EQ(Run(*connection_, "select id from " + table_->Name())->RecordCount(), 100);
  Update(*rows);
  EXPECT_THAT(
      TextsOf(*Run(*connection_, "select id from " + table_->Name() + " where name = 'mine'")),
      ElementsAre(ToText(rows->FieldValue(0))));
}

/// What Spider cannot do in the user's transaction is refused, and the transaction stays whole.
TEST_F(Spider, AChangeInATransactionIsRefusedAndNothingLost) {
  Run(*connection_, "begin");
  Run(*connection_, "insert into " + table_->Name() + " values (200, 'earlier')");
  const auto rows =
      QueryNow(*connection_, "select id, name from " + table_->Name() + " where id = 1",
               LockType::Optimistic);
  rows->SetFieldValue(1, Text("mine"));
  EXPECT_THAT(ErrorOf([&] { Update(*rows); }).description, testing::HasSubstr("SAVEPOINT"));
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
  Run(*connection_, "commit");
  Update(*rows);
  EXPECT_THAT(TextsOf(*Run(*connection_, "select name from " + table_->Name() +
                                             " where id in (1, 200) order by id")),
              ElementsAre("mine", "earlier"));
}

}  // namespace tessel::test
