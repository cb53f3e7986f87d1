// What is known of a database beyond the names of its tables and fields: how it is read, shown,
// kept in the schema file, and what joins it offers.

#include <gmock/gmock.h>

#include "contract/desktop/controls/TextBox.h"
#include "logic/schema/SchemaFile.h"
#include "logic/schema/SchemaLoading.h"
#include "logic/schema/StructureCommands.h"
#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class StructureTest : public test::SchemaFixture, public SqlTarget {
 protected:
  StructureTest() {
    data.properties.Set("Schema By Rowsets", std::int64_t{1});
    connection->Close();
    test::OpenNow(*connection);
    FieldInfo id = MemoryField("id", DataType::Integer);
    id.typeName = "integer";
    id.nullable = false;
    FieldInfo customer = MemoryField("customer_id", DataType::Integer);
    customer.typeName = "integer";
    data.tables = {{"shop", "public", "customers", "TABLE", {id, MemoryField("name")}},
                   {"shop", "public", "orders", "TABLE", {id, customer}},
                   {"shop", "archive", "orders", "TABLE", {id, customer}, true},
                   {"shop", "public", "busy", "VIEW", {id}}};
    data.primaryKeys = {{"shop", "public", "customers", "id", 1},
                        {"shop", "public", "orders", "id", 1}};
    data.foreignKeys = {{.catalog = "shop",
                         .schema = "public",
                         .table = "orders",
                         .column = "customer_id",
                         .toCatalog = "shop",
                         .toSchema = "public",
                         .toTable = "customers",
                         .toColumn = "id",
                         .ordinal = 1,
                         .key = "fk_customer"}};
    data.indexes = {{"shop", "public", "orders", "by_customer", true, 1, "customer_id"},
                    {"shop", "public", "orders", "by_customer", true, 2, std::nullopt}};
    data.routines = {{"shop", "public", "total(integer)", "FUNCTION"}};
  }

  void InsertText(std::string_view text) override { inserted += text; }
  bool Load() { return loading.LoadSchemaFromDB("d1", connection); }
  std::vector<std::string> Texts(const std::string& key) { return view.ChildTexts(key); }
  std::string Saved() {
    SchemaFile(global, async, tree).SaveSchemaXML(folder.File("s.xml"), "d1", true);
    return Content("s.xml");
  }

  SchemaLoading loading{global, async, tree};
  StructureCommands commands{global, *frame, async, tree, *this};
  std::string inserted;
};

TEST_F(StructureTest, FurtherNodesStandBelowTheGivenOnes) {
  ASSERT_TRUE(Load());
  EXPECT_THAT(Texts("d1"),
              ElementsAre("customers", "orders", "archive.orders", "Views", "Routines"));
  EXPECT_THAT(Texts("td1.ORDERS"), ElementsAre("id", "customer_id", "by_customer"));
  EXPECT_THAT(Texts("gd1.VIEWS"), ElementsAre("busy"));
  EXPECT_THAT(Texts("gd1.ROUTINES"), ElementsAre("total(integer)"));
  EXPECT_EQ(Tables().size(), 3U) << "views are no tables";
  EXPECT_THAT(Tables()[2].fields, ElementsAre("id", "customer_id"));
}

/// Neither views nor the tables that a database keeps for itself are drawn, and none hangs
/// together.
TEST_F(StructureTest, OnlyListedTablesHaveAStructure) {
  ASSERT_TRUE(Load());
  std::vector<std::string> names;
  for (const TableFacts* table : tree.StructureOf("d1").Tables()) names.push_back(table->listed);
  EXPECT_THAT(names, testing::UnorderedElementsAre("customers", "orders", "archive.orders"));
}

TEST_F(StructureTest, AFieldTellsItsTypeItsKeyAndWhatItRefersTo) {
  ASSERT_TRUE(Load());
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.ID").toolTip, "integer, NOT NULL\nPrimary key");
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.CUSTOMER_ID").toolTip,
            "integer\nRefers to customers (id) by fk_customer");
  EXPECT_EQ(view.NoteOf("td1.CUSTOMERS").toolTip, "Primary key: id\nReferred to by orders");
  EXPECT_EQ(view.NoteOf("id1.ORDERS.BY_CUSTOMER").toolTip,
            "Unique index of customer_id, (expression)");
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.ID").detail, "") << "only when the user wants it";
}

TEST_F(StructureTest, TypesAreShownOnceTheUserWantsThem) {
  ASSERT_TRUE(Load());
  const int before = view.Refreshed();
  commands.FlipTypes();
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.ID").detail, "integer, NOT NULL, key");
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.CUSTOMER_ID").detail, "integer \xE2\x86\x92 customers");
  EXPECT_EQ(view.Refreshed(), before + 1);
  const StructureCommands next{global, *frame, async, tree, *this};
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.ID").detail, "integer, NOT NULL, key") << "it is remembered";
}

TEST_F(StructureTest, ADatabaseThatTellsNothingIsLoadedAsEver) {
  data.schemaFailures[SchemaRowset::PrimaryKeys] = MemoryError("Not known here.");
  ASSERT_TRUE(Load());
  EXPECT_TRUE(loading.Complete());
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_TRUE(connection->Errors().empty());
  EXPECT_THAT(Texts("d1"), ElementsAre("customers", "orders", "archive.orders"));
  EXPECT_EQ(view.NoteOf("d1").toolTip, "Not known here.");
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.ID").toolTip, "integer, NOT NULL") << "what is known is told";
}

TEST_F(StructureTest, ACancelWhileKeysAreReadLeavesTheTables) {
  data.holdSchemas = {SchemaRowset::ForeignKeys};
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.CloseByControlBox(); });
  EXPECT_TRUE(Load());
  EXPECT_TRUE(loading.Complete());
  EXPECT_EQ(Tables().size(), 3U);
}

TEST_F(StructureTest, ItIsKeptInTheSchemaFileAndReadBack) {
  ASSERT_TRUE(Load());
  const std::string saved = Saved();
  EXPECT_THAT(saved, HasSubstr("<Column name=\"id\" type=\"integer\" notNull=\"1\" key=\"1\" />"));
  const auto before = view.NoteOf("fd1.ORDERS.CUSTOMER_ID").toolTip;
  tree.RefreshDatabase("d1");
  EXPECT_EQ(tree.FindStructure("d1"), nullptr);
  SchemaFile(global, async, tree).LoadSchemaXML("d1", folder.File("s.xml"), true);
  EXPECT_EQ(view.NoteOf("fd1.ORDERS.CUSTOMER_ID").toolTip, before);
  EXPECT_THAT(Texts("td1.ORDERS"), ElementsAre("id", "customer_id", "by_customer"));
  EXPECT_THAT(Texts("gd1.VIEWS"), ElementsAre("busy"));
  EXPECT_EQ(Saved(), saved);
}

TEST_F(StructureTest, AReaderOfTablesAndColumnsFindsNothingElseInTheFile) {
  ASSERT_TRUE(Load());
  Schema schema;
  ASSERT_TRUE(SchemaFromXML(Saved(), schema));
  EXPECT_EQ(schema, Tables());
}

TEST_F(StructureTest, AnotherLoadForgetsTheEarlierStructure) {
  ASSERT_TRUE(Load());
  data.foreignKeys.clear();
  data.indexes.clear();
  data.routines.clear();
  ASSERT_TRUE(Load());
  EXPECT_THAT(Texts("d1"), ElementsAre("customers", "orders", "archive.orders", "Views"));
  EXPECT_EQ(view.NoteOf("td1.CUSTOMERS").toolTip, "Primary key: id");
}

TEST_F(StructureTest, CheckingATableLeavesItsIndexesAlone) {
  ASSERT_TRUE(Load());
  tree.CheckFields("td1.ORDERS", true);
  EXPECT_THAT(tree.CheckedFields("td1.ORDERS"), ElementsAre("id", "customer_id"));
  EXPECT_FALSE(view.Checked("id1.ORDERS.BY_CUSTOMER"));
}

// --- definitions ---------------------------------------------------------------------------------

TEST_F(StructureTest, ADefinitionIsShownInAWindow) {
  data.definitions = {{"TABLE orders", "CREATE TABLE orders ();"},
                      {"VIEW busy", "CREATE VIEW busy"},
                      {"FUNCTION total(integer)", "CREATE FUNCTION total"},
                      {"INDEX by_customer", "CREATE INDEX by_customer"}};
  ASSERT_TRUE(Load());
  for (const auto& [key, text] :
       {std::pair("td1.ORDERS", "CREATE TABLE orders ();"),
        std::pair("vd1.BUSY", "CREATE VIEW busy"),
        std::pair("rd1.TOTAL(INTEGER)", "CREATE FUNCTION total"),
        std::pair("id1.ORDERS.BY_CUSTOMER", "CREATE INDEX by_customer")}) {
    desktop.OnModal("frmText", [text = text](test::HeadlessWindow& w) {
      EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), text);
      w.CloseByControlBox();
    });
    commands.ShowDefinition(key, *connection);
  }
}

TEST_F(StructureTest, AnObjectWithoutADefinitionIsSaid) {
  ASSERT_TRUE(Load());
  desktop.ExpectMessage("The database keeps no definition of 'busy'.");
  commands.ShowDefinition("vd1.BUSY", *connection);
  data.schemaFailures[SchemaRowset::Definitions] = MemoryError("permission denied");
  desktop.ExpectMessage("The definition of 'busy' cannot be read: permission denied");
  commands.ShowDefinition("vd1.BUSY", *connection);
}

// --- joins ---------------------------------------------------------------------------------------

TEST_F(StructureTest, FieldsTickedInTwoTablesAreJoinedAlongTheirKey) {
  ASSERT_TRUE(Load());
  commands.PrepareMenu("td1.ORDERS");
  EXPECT_FALSE(frame->Menu("menuTableJoin").Enabled()) << "nothing is ticked";
  view.SetChecked("fd1.ORDERS.ID", true);
  view.SetChecked("fd1.CUSTOMERS.NAME", true);
  commands.PrepareMenu("td1.ORDERS");
  EXPECT_TRUE(frame->Menu("menuTableJoin").Enabled());
  EXPECT_EQ(frame->Menu("mnuTableJoin_0").Caption(), "orders.customer_id = customers.id");
  EXPECT_FALSE(frame->Menu("mnuTableJoin_1").Visible());
  commands.InsertJoin(0);
  EXPECT_EQ(inserted, "SELECT orders.id, customers.name\r\nFROM orders\r\n"
                      "JOIN customers ON orders.customer_id = customers.id\r\n");
}

TEST(Joins, EachKeyBetweenTwoTablesIsAnOffer) {
  const std::vector<ForeignKey> keys = {{"a", "flight", {"origin"}, "port", {"id"}},
                                        {"b", "flight", {"target", "zone"}, "port", {"id", "z"}},
                                        {"c", "plane", {"home"}, "port", {"id"}}};
  const auto offers = JoinOffers({{"port", {"id"}}, {"flight", {"2nd"}}}, keys);
  ASSERT_EQ(offers.size(), 2U);
  EXPECT_EQ(offers[1].caption, "flight.target = port.id AND flight.zone = port.z");
  EXPECT_EQ(offers[0].sql, "SELECT port.id, flight.[2nd]\r\nFROM port\r\n"
                           "JOIN flight ON flight.origin = port.id\r\n");
}

TEST(Joins, MoreTablesAreJoinedWhenKeysLeadToAllOfThem) {
  const std::vector<ForeignKey> keys = {{"a", "item", {"o"}, "orders", {"id"}},
                                        {"b", "orders", {"c"}, "customer", {"id"}}};
  const std::vector<TickedTable> all = {{"customer", {"n"}}, {"item", {"q"}}, {"orders", {"d"}}};
  const auto offers = JoinOffers(all, keys);
  ASSERT_EQ(offers.size(), 1U);
  EXPECT_EQ(offers[0].sql, "SELECT customer.n, item.q, orders.d\r\nFROM customer\r\n"
                           "JOIN orders ON orders.c = customer.id\r\n"
                           "JOIN item ON item.o = orders.id\r\n");
  EXPECT_TRUE(JoinOffers({{"customer", {"n"}}, {"item", {"q"}}, {"alien", {"d"}}}, keys).empty());
  EXPECT_TRUE(JoinOffers({{"item", {"q"}}}, keys).empty());
}

}  // namespace
}  // namespace tessel
