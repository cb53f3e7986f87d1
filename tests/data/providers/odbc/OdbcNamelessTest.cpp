#include "tests/data/providers/odbc/OdbcFixture.h"
#include "tests/support/ErrorNumber.h"

namespace tessel::test {

namespace {

using Lines = std::vector<std::vector<std::string>>;

Value Text(const char* text) { return std::string(text); }

/// A driver under a name that the program does not know, and the connection string of its own name.
struct NamelessDriver {
  std::string name;
  std::string (*known)();
};

std::string SqliteFile() { return SqliteString("nameless.db"); }

void PrintTo(const NamelessDriver& driver, std::ostream* out) { *out << driver.name; }

}  // namespace

/// What can be edited with a driver that nothing is known of.
class OdbcNameless : public OdbcTest, public testing::WithParamInterface<NamelessDriver> {
 protected:
  void SetUp() override {
    std::string string = GetParam().known();
    string.replace(0, string.find(';'), "Driver={" + GetParam().name + "}");
    connection_ = Connect(string);
    other_ = Connect(GetParam().known());
    Run(*other_,
        "create table nameless (id integer not null primary key, v varchar(20), n integer)");
    Run(*other_, "insert into nameless values (1, 'one', 10)");
    Run(*other_, "insert into nameless values (2, 'two', null)");
  }
  void TearDown() override {
    if (other_) Run(*other_, "drop table nameless");
  }

  std::shared_ptr<Recordset> OpenToWrite(const std::string& sql) {
    const auto recordset = QueryNow(*connection_, sql, LockType::Optimistic);
    return recordset;
  }
  Lines Stored() { return AllText(*Run(*other_, "select id, v, n from nameless order by id")); }

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Connection> other_;
};

TEST_P(OdbcNameless, APlainQueryOfOneTableIsEdited) {
  const auto recordset = OpenToWrite("select id, v, n from nameless order by id");
  ASSERT_FALSE(recordset->WhyNotChangeable());
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", 0), 1);
  recordset->SetFieldValue(1, Text("mine"));
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(1)), "mine");
  recordset->AddNew();
  recordset->SetFieldValue(0, Value(std::int64_t{3}));
  recordset->SetFieldValue(1, Text("three"));
  Update(*recordset);
  recordset->MoveTo(2);
  Delete(*recordset);
  EXPECT_EQ(Stored(), (Lines{{"1", "mine", "10"}, {"3", "three", "(null)"}}));
}

TEST_P(OdbcNameless, WhatOthersChangedIsAConflict) {
  const auto recordset = OpenToWrite("select * from nameless order by id");
  Run(*other_, "update nameless set v = 'theirs' where id = 1");
  recordset->SetFieldValue(1, Text("mine"));
  EXPECT_EQ(ErrorNumberOf([&] { Update(*recordset); }), errorNumber::changeConflict);
  recordset->CancelUpdate();
  Run(*other_, "update nameless set n = 99, v = 'one' where id = 1");
  EXPECT_EQ(ErrorNumberOf([&] { Delete(*recordset); }), errorNumber::changeConflict);
  EXPECT_EQ(Stored(), (Lines{{"1", "one", "99"}, {"2", "two", "(null)"}}));
}

TEST_P(OdbcNameless, WhatCannotBeWrittenIsNotOffered) {
  Run(*other_, "create table nameless2 (k integer not null primary key, w varchar(20))");
  Run(*other_, "insert into nameless2 values (1, 'x')");
  for (const char* sql :
       {"select id, v, w from nameless, nameless2 where id = k",
        "select count(*) as n from nameless", "select v from nameless",
        "select id, v from nameless union select k, w from nameless2", "select 1 as id"}) {
    const auto recordset = OpenToWrite(sql);
    EXPECT_TRUE(recordset->WhyNotChangeable()) << sql;
    for (const FieldInfo& field : recordset->Fields()) EXPECT_FALSE(field.updatable) << sql;
  }
  Run(*other_, "drop table nameless2");
}

/// Either it is seen through, or nothing is offered; never is the wrong column written.
TEST_P(OdbcNameless, AnAliasIsSeenThroughOrNotBelieved) {
  const auto recordset = OpenToWrite("select id, v as n, n as v from nameless order by id");
  if (recordset->WhyNotChangeable()) {
    for (const FieldInfo& field : recordset->Fields()) EXPECT_FALSE(field.updatable);
    return;
  }
  recordset->SetFieldValue(1, Text("mine"));
  Update(*recordset);
  EXPECT_EQ(Stored()[0], (std::vector<std::string>{"1", "mine", "10"}));
}

/// Nothing is known of its transactions: the user's own is neither ended nor undone.
TEST_P(OdbcNameless, TheUsersTransactionIsLeftAlone) {
  Run(*connection_, "begin");
  const auto recordset = OpenToWrite("select id, v from nameless order by id");
  recordset->SetFieldValue(1, Text("mine"));
  Update(*recordset);
  Run(*connection_, "rollback");
  EXPECT_EQ(Stored()[0], (std::vector<std::string>{"1", "one", "10"}));
}

INSTANTIATE_TEST_SUITE_P(Drivers, OdbcNameless,
                         testing::Values(NamelessDriver{"Nameless P", &PostgresString},
                                         NamelessDriver{"Nameless M", &MariaDbString},
                                         NamelessDriver{"Nameless S", &SqliteFile}),
                         [](const auto& info) { return std::string(1, info.param.name.back()); });

/// Both databases have a table of the name.
TEST_F(OdbcTest, RowsOfAnAttachedDatabaseAreWrittenThere) {
  const auto connection = Connect(SqliteString("attaching.db"));
  Run(*connection, "create table if not exists t (id integer not null primary key, v varchar(9))");
  Run(*connection, "delete from t");
  Run(*connection, "insert into t values (1, 'main')");
  Run(*connection, "attach ':memory:' as x");
  Run(*connection, "create table x.t (id integer not null primary key, v varchar(9))");
  Run(*connection, "insert into x.t values (1, 'main')");
  const auto recordset = QueryNow(*connection, "select id, v from x.t", LockType::Optimistic);
  recordset->SetFieldValue(1, Text("mine"));
  Update(*recordset);
  EXPECT_EQ(Single(*connection, "select v from x.t"), Text("mine"));
  EXPECT_EQ(Single(*connection, "select v from main.t"), Text("main"));
}

}  // namespace tessel::test
