#include "logic/schema/SchemaTree.h"

#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

using Texts = std::vector<std::string>;

class SchemaTreeTest : public test::SchemaFixture {};

TEST_F(SchemaTreeTest, KeysTellKindsAndHoldNamesInUpperCase) {
  EXPECT_EQ(DatabaseNodeKey(12), "d12");
  EXPECT_EQ(TableNodeKey("d12", "Order Détails"), "td12.ORDER DÉTAILS");
  EXPECT_EQ(FieldNodeKey("td12.ORDERS", "Id"), "fd12.ORDERS.ID");
  EXPECT_EQ(KindOfNode("d12"), NodeKind::Database);
  EXPECT_EQ(KindOfNode("td12.X"), NodeKind::Table);
  EXPECT_EQ(KindOfNode("fd12.X.Y"), NodeKind::Field);
  EXPECT_EQ(KindOfNode(""), NodeKind::None);
  EXPECT_EQ(WindowNumberOf("d12"), 12);
  EXPECT_EQ(WindowNumberOf("td12.X"), 0);
  EXPECT_EQ(WindowNumberOf(""), 0);
}

TEST_F(SchemaTreeTest, NodesKeepTheSpellingOfTheDatabase) {
  tree.AddTables("d1", {"Orders"});
  tree.AddFields("td1.ORDERS", {"Order ID", "Prénom"});
  EXPECT_EQ(view.Text("td1.ORDERS"), "Orders");
  EXPECT_EQ(view.Text("fd1.ORDERS.ORDER ID"), "Order ID");
  EXPECT_EQ(view.Text("fd1.ORDERS.PRÉNOM"), "Prénom");
}

TEST_F(SchemaTreeTest, ImagesTellDatabasesTablesAndFieldsApart) {
  tree.AddTables("d1", {"Orders"});
  tree.AddFields("td1.ORDERS", {"id"});
  EXPECT_EQ(view.Image("d1"), 1);
  EXPECT_EQ(view.Image("td1.ORDERS"), 2);
  EXPECT_EQ(view.Image("fd1.ORDERS.ID"), 3);
}

TEST_F(SchemaTreeTest, ATableThatDiffersOnlyInCaseIsNotAddedAgain) {
  tree.AddTables("d1", {"Orders", "orders", "Other"});
  EXPECT_EQ(Tables(), (Schema{{"Orders", {}}, {"Other", {}}}));
}

TEST_F(SchemaTreeTest, TwoConnectionsHaveNodesOfTheirOwn) {
  tree.AddDatabase("d10", "Same");
  tree.AddTables("d1", {"Orders"});
  tree.AddTables("d10", {"Orders"});
  tree.AddFields("td10.ORDERS", {"id"});
  EXPECT_EQ(Tables("d1"), (Schema{{"Orders", {}}}));
  EXPECT_EQ(Tables("d10"), (Schema{{"Orders", {"id"}}}));
  EXPECT_EQ(tree.DatabaseOf("fd10.ORDERS.ID"), "d10");
  EXPECT_EQ(tree.DatabaseOf("d1"), "d1");
  EXPECT_EQ(tree.DatabaseOf(""), "");
}

TEST_F(SchemaTreeTest, RefreshingDiscardsWhatHangsOnTheNodeAndKeepsItsKeyAndText) {
  tree.AddTables("d1", {"Orders"});
  view.SetExpanded("d1", true);
  tree.RefreshDatabase("d1");
  EXPECT_EQ(view.Text("d1"), "Shop");
  EXPECT_TRUE(view.Children("d1").empty());
  EXPECT_FALSE(view.Expanded("d1"));
}

TEST_F(SchemaTreeTest, RefreshingKeepsTheSelectionOnTheNode) {
  tree.AddTables("d1", {"Orders"});
  view.SelectNode("td1.ORDERS");
  tree.RefreshDatabase("d1");
  EXPECT_EQ(view.SelectedKey(), "d1");
  tree.AddDatabase("d2", "Other");
  view.SelectNode("d2");
  tree.AddTables("d1", {"Orders"});
  tree.RefreshDatabase("d1");
  EXPECT_EQ(view.SelectedKey(), "d2");
}

TEST_F(SchemaTreeTest, NamesBecomeWordsAndLeaveWithTheirDatabase) {
  tree.AddDatabase("d2", "Other");
  tree.AddTables("d1", {"Orders", "Items"});
  tree.AddFields("td1.ORDERS", {"id", "date"});
  tree.AddTables("d2", {"People"});
  tree.AddFields("td2.PEOPLE", {"name"});
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (Texts{"Orders", "Items", "People"}));
  EXPECT_EQ(WordsOf(vocabulary.Fields()), (Texts{"id", "date", "name"}));
  tree.RefreshDatabase("d1");
  tree.AddTables("d1", {"New"});
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (Texts{"People", "New"}));
  EXPECT_EQ(WordsOf(vocabulary.Fields()), (Texts{"name"}));
  tree.RemoveDatabase("d2");
  EXPECT_FALSE(view.Exists("d2"));
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (Texts{"New"}));
  EXPECT_TRUE(vocabulary.Fields().empty());
}

TEST_F(SchemaTreeTest, RemovingANodeThatIsNotThereDoesNothing) {
  tree.RemoveDatabase("d-1");
  EXPECT_TRUE(view.Exists("d1"));
}

TEST_F(SchemaTreeTest, CheckedFieldsComeInTheOrderOfTheTree) {
  tree.AddTables("d1", {"Orders"});
  tree.AddFields("td1.ORDERS", {"c", "a", "b"});
  view.SetChecked("fd1.ORDERS.B", true);
  view.SetChecked("fd1.ORDERS.C", true);
  EXPECT_EQ(tree.CheckedFields("td1.ORDERS"), (Texts{"c", "b"}));
  tree.CheckFields("td1.ORDERS", true);
  EXPECT_EQ(tree.CheckedFields("td1.ORDERS"), (Texts{"c", "a", "b"}));
  tree.CheckFields("td1.ORDERS", false);
  EXPECT_TRUE(tree.CheckedFields("td1.ORDERS").empty());
}

}  // namespace
}  // namespace tessel
