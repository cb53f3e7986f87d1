// The sidebar, tags and history at work on real databases: the same walk on each of them.

#include <algorithm>
#include <filesystem>
#include <functional>
#include <ostream>

#include "contract/desktop/controls/TreeView.h"
#include "logic/query/completion/NameQuoting.h"
#include "tests/data/servers/TestServers.h"
#include "tests/desktop/program/ProgramFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel::test {
namespace {

/// A database that the walk is taken on.
struct WalkPlace {
  std::string name;
  std::function<std::string(const TemporaryFolder&)> connectionString;
  std::string cacheFile;  ///< As earlier versions named it.
};

void PrintTo(const WalkPlace& place, std::ostream* out) { *out << place.name; }

std::string NativeString(const std::string& provider, const DatabaseServer& server) {
  const ServerLogin& login = server.Login();
  return "Provider=" + provider + ";Server=" + login.host + ";Port=" + std::to_string(login.port) +
         ";Database=" + login.database + ";User ID=" + login.user + ";Password=" + login.password;
}

std::string OdbcString(const std::string& driver, const DatabaseServer& server) {
  const ServerLogin& login = server.Login();
  return "Driver={" + driver + "};Server=" + login.host + ";Port=" + std::to_string(login.port) +
         ";Database=" + login.database + ";UID=" + login.user + ";PWD=" + login.password;
}

std::vector<WalkPlace> Places() {
  return {{"SQLite",
           [](const TemporaryFolder& folder) {
             return "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder.File("walk.db");
           },
           "walk.db.schema.xml"},
          {"PostgreSQL",
           [](const TemporaryFolder&) {
             return NativeString("PostgreSQL", TestServers::Instance().Postgres());
           },
           "shop.schema.xml"},
          {"MariaDB",
           [](const TemporaryFolder&) {
             return NativeString("MariaDB", TestServers::Instance().MariaDb());
           },
           "shop.schema.xml"},
          {"PostgreSQLOverOdbc",
           [](const TemporaryFolder&) {
             return OdbcString("PostgreSQL Unicode", TestServers::Instance().Postgres());
           },
           "shop.schema.xml"}};
}

void ExecuteOn(DataAccess& data, const std::string& connectionString,
               const std::vector<std::string>& statements) {
  const auto connection = data.CreateConnection();
  connection->SetConnectionString(connectionString);
  OpenNow(*connection);
  for (const std::string& sql : statements) {
    const auto recordset = QueryNow(*connection, sql);
  }
}

class WalkTest : public ProgramFixture, public ::testing::WithParamInterface<WalkPlace> {
 protected:
  void SetUp() override {
    connectionString = GetParam().connectionString(folder);
    Execute({"DROP TABLE IF EXISTS walk_items", "DROP TABLE IF EXISTS walk_orders",
             "CREATE TABLE walk_orders (id int PRIMARY KEY, customer varchar(40), total int)",
             "CREATE TABLE walk_items (order_id int, article varchar(40))",
             "INSERT INTO walk_orders VALUES (1, 'O''Hara', 10), (2, 'Szabó', NULL), "
             "(3, 'Ito', 30), (4, NULL, 40), (5, '  ', 50)",
             "INSERT INTO walk_items VALUES (1, 'nail'), (1, 'nut'), (2, 'saw'), (3, 'axe')"});
  }
  void TearDown() override { Execute({"DROP TABLE walk_items", "DROP TABLE walk_orders"}); }

  void Execute(const std::vector<std::string>& statements) {
    ExecuteOn(data, connectionString, statements);
  }
  void StartWithSchema() {
    loadsSchema = true;
    Start(connectionString, GetParam().name);
  }

  TreeView& Tree() { return Frame().Find<TreeView>("trvBrowser"); }
  RichTextBox& Box() { return Query().Find<RichTextBox>("txtQuery"); }
  std::vector<std::string> FieldsOf(const std::string& table) {
    std::vector<std::string> names;
    for (const std::string& key : Tree().Children(table))
      if (key.front() == 'f') names.push_back(Tree().Text(key));  // Indexes stand below them.
    return names;
  }
  /// Chooses a command from the menu that the context-menu key opens on a node.
  void Choose(const std::string& node, const std::string& menu, const std::string& command) {
    Tree().SelectNode(node);
    Tree().SetFocus();
    host.Settle();
    host.OnPopup(menu, command);
    host.PressKey(Frame(), key::contextMenu);
    WaitForKeyboard();
  }
  /// The text that a command of the table's menu writes.
  std::string Written(const std::string& command) {
    Box().SetText("");
    Choose(orders, "menuTable", command);
    return Box().Text();
  }
  std::string StatusAfter(const std::string& sql) {
    Run(sql);
    return Status(0);
  }
  static std::string Filled(std::string text, const std::string& gap, const std::string& value) {
    const std::size_t at = text.find(gap);
    if (at != std::string::npos) text.replace(at, gap.size(), value);
    return text;
  }

  /// The schema files beside the program.
  std::vector<std::string> KeptFiles() {
    std::vector<std::string> kept;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
      if (entry.path().string().ends_with(".schema.xml")) kept.push_back(entry.path().string());
    return kept;
  }

  std::string connectionString;
  const std::string orders = "td1.WALK_ORDERS";
  const std::string items = "td1.WALK_ITEMS";
};

TEST_P(WalkTest, TheTreeHoldsTheTablesWithTheirFieldsInColumnOrder) {
  StartWithSchema();
  ASSERT_TRUE(Tree().Exists(orders));
  EXPECT_EQ(Tree().Text(orders), "walk_orders");
  EXPECT_EQ(FieldsOf(orders), (std::vector<std::string>{"id", "customer", "total"}));
  EXPECT_EQ(FieldsOf(items), (std::vector<std::string>{"order_id", "article"}));
  EXPECT_TRUE(Tree().Expanded("d1"));
  EXPECT_EQ(Tree().Text("d1"), GetParam().name);
}

TEST_P(WalkTest, LoadingAgainShowsWhatChanged) {
  StartWithSchema();
  Execute({"DROP TABLE walk_items", "CREATE TABLE walk_items (only_field int)",
           "CREATE TABLE walk_later (id int)"});
  Choose("d1", "menuDB", "mnuDBLoadSchemaFromDB");
  Execute({"DROP TABLE walk_later"});
  EXPECT_TRUE(Tree().Exists("td1.WALK_LATER"));
  EXPECT_EQ(FieldsOf(items), std::vector<std::string>{"only_field"});
  EXPECT_EQ(FieldsOf(orders).size(), 3U);
}

TEST_P(WalkTest, TheTextsOfTheTablesMenuRun) {
  StartWithSchema();
  EXPECT_EQ(StatusAfter(Written("mnuTableSelect")), "5 record(s).");
  EXPECT_EQ(StatusAfter(Written("mnuTableCount")), "1 record(s).");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "5");
  for (const char* field : {".ID", ".CUSTOMER"})
    Tree().SetChecked("fd1.WALK_ORDERS" + std::string(field), true);
  EXPECT_EQ(StatusAfter(Written("mnuTableSelect")), "5 record(s).");
  EXPECT_EQ(Grid(0).ShownText(0, 1), "O'Hara");
  EXPECT_EQ(StatusAfter(Written("mnuTableCount")), "5 record(s).");
  const std::string insert = Filled(Written("mnuTableInsert"), "VALUES()", "VALUES(6, 'New')");
  EXPECT_EQ(StatusAfter(insert), "1 record(s) affected.");
  Tree().SetChecked("fd1.WALK_ORDERS.ID", false);
  const std::string update = Filled(Written("mnuTableUpdate"), "= ", "= 'Changed' ");
  Tree().SetChecked("fd1.WALK_ORDERS.ID", true);
  Tree().SetChecked("fd1.WALK_ORDERS.CUSTOMER", false);
  const std::string where = Filled(Written("mnuTableWhere"), "= ", "= 6");
  EXPECT_EQ(StatusAfter(update + where), "1 record(s) affected.");
  EXPECT_EQ(StatusAfter(Filled(Written("mnuTableDelete"), "= ", "= 6")), "1 record(s) affected.");
}

TEST_P(WalkTest, TheTextsOfATableWhoseNamesNeedQuotesRun) {
  const auto connection = data.CreateConnection();
  connection->SetConnectionString(connectionString);
  OpenNow(*connection);
  const NameQuoting quoting(connection->ProviderProperties());
  connection->Close();
  const std::string table = quoting.Name("Walk Order");
  const std::string field = quoting.Name("Order ID");
  Execute({"DROP TABLE IF EXISTS " + table, "CREATE TABLE " + table + " (" + field + " int)",
           "INSERT INTO " + table + " VALUES (7)"});
  StartWithSchema();
  Tree().SetChecked("fd1.WALK ORDER.ORDER ID", true);
  Box().SetText("");
  Choose("td1.WALK ORDER", "menuTable", "mnuTableCount");
  EXPECT_EQ(StatusAfter(Box().Text()), "1 record(s).");
  Box().SetText("");
  Choose("fd1.WALK ORDER.ORDER ID", "menuField", "mnuFieldMinMax");
  EXPECT_EQ(StatusAfter(Box().Text()), "1 record(s).");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "7");
  Execute({"DROP TABLE " + table});
}

TEST_P(WalkTest, NativeProvidersOfServersListNoTablesOfTheServer) {
  StartWithSchema();
  EXPECT_TRUE(Tree().Exists(orders));
  const bool native = GetParam().name == "PostgreSQL" || GetParam().name == "MariaDB";
  for (const char* system : {"td1.PG_CLASS", "td1.SQL_FEATURES", "td1.GLOBAL_PRIV", "td1.PLUGIN"})
    EXPECT_FALSE(native && Tree().Exists(system)) << system;
}

TEST_P(WalkTest, TheTextsOfTheFieldsMenuRun) {
  StartWithSchema();
  Box().SetText("");
  Choose("fd1.WALK_ORDERS.TOTAL", "menuField", "mnuFieldMinMax");
  EXPECT_EQ(StatusAfter(Box().Text()), "1 record(s).");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "10");
  EXPECT_EQ(Grid(0).ShownText(0, 1), "50");
}

TEST_P(WalkTest, TheValuesOfAFieldBecomeWords) {
  StartWithSchema();
  Tree().SelectNode("fd1.WALK_ORDERS.CUSTOMER");
  Tree().SetFocus();
  host.OnPopup("menuField", "mnuFieldBuildVocab");
  std::string shown;
  host.OnModal("frmText", [&](Window& w) {
    shown = w.Find<RichTextBox>("txtText").Text();
    host.Click(w, "cmdOK");
  });
  host.PressKey(Frame(), key::contextMenu);
  WaitForKeyboard();
  for (const char* line : {"O'Hara\r\n", "Szabó\r\n", "Ito\r\n"})
    EXPECT_NE(shown.find(line), std::string::npos) << line;
  EXPECT_EQ(std::ranges::count(shown, '\n'), 3) << "neither the null nor the blank";
  Box().SetText("it");
  Box().Select(2, 0);
  Box().SetFocus();
  host.PressKey(Query(), key::fullStop, shiftState::ctrl);
  EXPECT_EQ(Box().Text(), "Ito");
}

TEST_P(WalkTest, AListTagTakesTheIdsOfTheRowsOnShow) {
  Start(connectionString, GetParam().name);
  const std::string byRows = "SELECT article FROM walk_items WHERE order_id IN {%=id%}";
  Run("SELECT id, customer FROM walk_orders ORDER BY id");
  Run(byRows);
  EXPECT_EQ(Status(0), "4 record(s).");
  Run("SELECT id, customer FROM walk_orders ORDER BY id");
  host.SelectGridRows(Records(0), "DataGrid", {2, 1});
  Run(byRows);
  EXPECT_EQ(Status(0), "2 record(s).");
  EXPECT_EQ(Box().Text(), byRows) << "the text in the window keeps its tag";
}

TEST_P(WalkTest, QuotedTagsAndNullsReachTheDatabaseUnharmed) {
  Start(connectionString, GetParam().name);
  Run("SELECT id, customer, total FROM walk_orders ORDER BY id");
  Run("SELECT id FROM walk_orders WHERE customer = <*=customer*>");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "1");
  Run("SELECT id, customer, total FROM walk_orders ORDER BY id");
  Run("SELECT id FROM walk_orders WHERE customer IN {*=customer*} ORDER BY id");
  EXPECT_EQ(Status(0), "4 record(s).");
  Run("SELECT id, customer, total FROM walk_orders WHERE id = 2");
  Run("SELECT 1 AS one FROM walk_orders WHERE <*=total*> IS NULL");
  EXPECT_EQ(Status(0), "5 record(s).");
}

TEST_P(WalkTest, FortyQueriesLeaveTheLastThirtyTwo) {
  Start(connectionString, GetParam().name);
  for (int i = 1; i <= 40; ++i)
    Run("SELECT id + " + std::to_string(i) + " AS n FROM walk_orders WHERE id = 1");
  auto& back = Records(0).Find<Button>("cmdHistoryBack");
  int steps = 0;
  for (; back.Enabled() && steps < 40; ++steps) host.Click(Records(0), "cmdHistoryBack");
  EXPECT_EQ(steps, 31);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "10") << "the ninth query is the oldest left";
  EXPECT_TRUE(Records(0).Find<Button>("cmdHistoryForward").Enabled());
  host.PressKey(Records(0), key::right, shiftState::alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "11");
  Run("SELECT id + 100 AS n FROM walk_orders WHERE id = 1");
  EXPECT_FALSE(Records(0).Find<Button>("cmdHistoryForward").Enabled());
  host.Click(Records(0), "cmdHistoryBack");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "11");
}

TEST_P(WalkTest, TheSchemaIsFoundAgainAtTheNextConnection) {
  StartWithSchema();
  const std::vector<std::string> kept = KeptFiles();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_NE(kept.front(), folder.File(GetParam().cacheFile)) << "that is the name of earlier files";
  EXPECT_NE(files.ReadWhole(kept.front()).find("<Table name=\"walk_orders\""), std::string::npos);
  const auto tables = Tree().Children("d1").size();
  host.CloseByControlBox(Records(0));
  EXPECT_TRUE(Tree().Children("").empty());
  loadsSchema = false;
  Connect(connectionString, "The same again");
  EXPECT_EQ(Tree().Children("d2").size(), tables);
  EXPECT_EQ(FieldsOf("td2.WALK_ORDERS"), (std::vector<std::string>{"id", "customer", "total"}));
}

TEST_P(WalkTest, TheWordsComeAndGoWithTheConnection) {
  StartWithSchema();
  const auto completed = [&] {
    Box().SetText("FROM walk_or");
    Box().Select(12, 0);
    Box().SetFocus();
    host.PressKey(Query(), 'T', shiftState::ctrl);
    return Box().Text();
  };
  EXPECT_EQ(completed(), "FROM walk_orders");
  host.CloseByControlBox(Records(0));
  EXPECT_EQ(completed(), "FROM walk_or");
}

TEST_P(WalkTest, AHostileSchemaFileHarmsNothing) {
  Start(connectionString, GetParam().name);
  const std::string deep = [] {
    std::string text = "<Database>";
    for (int i = 0; i < 50'000; ++i) text += "<Table name=\"t\">";
    return text;
  }();
  for (const std::string& text :
       {std::string("<!DOCTYPE a [<!ENTITY x \"xxxx\"><!ENTITY y \"&x;&x;&x;\">]><Database><Table "
                    "name=\"&y;\"/></Database>"),
        std::string("<Database><Table name=\""), deep, std::string("\0\xFF\xFE", 3)}) {
    files.ReplaceWhole(folder.File(GetParam().cacheFile), text, false);
    host.CloseByControlBox(Records(0));
    Connect(connectionString, "Again after " + std::to_string(text.size()) + " bytes");
    EXPECT_EQ(StatusAfter("SELECT 1 AS one"), "1 record(s).");
    EXPECT_LE(Tree().Children(Tree().Children("").front()).size(), 1U);
  }
}

class ServerWalkTest : public ProgramFixture {
 protected:
  void Execute(const std::string& connectionString, const std::vector<std::string>& commands) {
    ExecuteOn(data, connectionString, commands);
  }
  TreeView& Tree() { return Frame().Find<TreeView>("trvBrowser"); }
};

TEST_F(ServerWalkTest, TablesOfOneNameInTwoSchemasAreTwoNodesAndBothRun) {
  const std::string server = NativeString("PostgreSQL", TestServers::Instance().Postgres());
  Execute(server, {"drop schema if exists walk_old cascade", "create schema walk_old",
                   "drop table if exists walk_pair", "create table walk_pair (id int, new int)",
                   "create table walk_old.walk_pair (id int, old int)"});
  loadsSchema = true;
  Start(server, "Server");
  EXPECT_EQ(Tree().Text("td1.WALK_OLD.WALK_PAIR"), "walk_old.walk_pair");
  EXPECT_EQ(Tree().ChildTexts("td1.WALK_OLD.WALK_PAIR"), (std::vector<std::string>{"id", "old"}));
  EXPECT_EQ(Tree().ChildTexts("td1.WALK_PAIR"), (std::vector<std::string>{"id", "new"}));
  auto& box = Query().Find<RichTextBox>("txtQuery");
  box.SetText("");
  Tree().SelectNode("td1.WALK_OLD.WALK_PAIR");
  Frame().Menu("mnuTableSelect").Choose();
  EXPECT_EQ(box.Text(), "SELECT * FROM walk_old.walk_pair\r\n");
  Run(box.Text());
  EXPECT_EQ(Status(0), "0 record(s).");
  Execute(server, {"drop schema walk_old cascade", "drop table walk_pair"});
}

TEST_F(ServerWalkTest, TheTreeFollowsTheCatalog) {
  const std::string server = NativeString("MariaDB", TestServers::Instance().MariaDb());
  Execute(server,
          {"create or replace database walk_other", "create table walk_other.only_there (id int)",
           "create or replace table only_here (id int)"});
  loadsSchema = true;
  Start(server, "Server");
  EXPECT_TRUE(Tree().Exists("td1.ONLY_HERE"));
  EXPECT_FALSE(Tree().Exists("td1.ONLY_THERE"));
  Records(0).Find<ComboBox>("cboCatalog").SetText("walk_other");
  host.Settle();
  EXPECT_EQ(Tree().ChildTexts("d1"), std::vector<std::string>{"only_there"});
  Records(0).Find<ComboBox>("cboCatalog").SetText("shop");
  host.Settle();
  EXPECT_TRUE(Tree().Exists("td1.ONLY_HERE"));
  Execute(server, {"drop database walk_other", "drop table only_here"});
}

INSTANTIATE_TEST_SUITE_P(Databases, WalkTest, testing::ValuesIn(Places()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tessel::test
