#include "logic/schema/SchemaBrowser.h"

#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

using test::AnswerViews;

/// Stands for the frame and the query window.
class FakeSchemaHost : public SchemaHost, public SqlTarget {
 public:
  std::shared_ptr<Connection> ConnectionOf(int windowNumber) override {
    const auto found = connections.find(windowNumber);
    return found == connections.end() ? nullptr : found->second;
  }
  void FocusQueryWindow() override { ++focused; }
  void ImportRecords(const std::string& databaseKey, const std::string& table) override {
    imports.push_back(databaseKey + " " + table);
  }
  void InsertText(std::string_view text) override { inserted += text; }
  std::string Taken() { return std::exchange(inserted, {}); }

  std::map<int, std::shared_ptr<Connection>> connections;
  int focused = 0;
  std::vector<std::string> imports;
  std::string inserted;
};

class SchemaBrowserTest : public test::SchemaFixture {
 protected:
  SchemaBrowserTest() {
    host.connections[1] = connection;
    tree.AddTables("d1", {"Order Details", "Orders"});
    tree.AddFields("td1.ORDER DETAILS", {"Order ID", "2nd", "price"});
    tree.AddFields("td1.ORDERS", {"id"});
  }

  test::HeadlessWindow& W() { return desktop.WindowOf("frmMDI"); }
  void Check(const std::string& key) { W().CheckNode("trvBrowser", key); }
  void Select(const std::string& key) { view.SelectNode(key); }
  /// The selected node goes.
  void SelectNothing() {
    browser.AddDatabaseNode("d9", "Gone");
    Select("d9");
    browser.RemoveDatabaseNode("d9");
  }
  /// Clicks a node with the right button.
  void RightClick(const std::string& key) {
    const Rect at = view.NodeBounds(key);
    W().MouseUp("trvBrowser", {MouseButton::Right, 0, at.left + 15, at.top + 15});
  }
  /// Chooses a command of the pop-up menu of a node; gives what it puts into the query window.
  std::string Choose(const std::string& key, const std::string& command) {
    const char* menus[] = {"menuDB", "menuTable", "menuField"};
    desktop.ExpectPopup(menus[key.front() == 'd' ? 0 : key.front() == 't' ? 1 : 2], command);
    Select(key);
    RightClick(key);
    return host.Taken();
  }
  void ExpectNotice(const std::string& text) {
    desktop.ExpectMessage(text, MessageResult::Ok, [](const Message& message) {
      EXPECT_EQ(message.icon, MessageIcon::Exclamation);
      EXPECT_EQ(message.buttons, MessageButtons::Ok);
      EXPECT_TRUE(message.help);
    });
  }
  [[nodiscard]] const WordList& CustomWords(const std::string& name) {
    return Vocabulary::ListNamed(vocabulary.Custom(), name);
  }

  FakeSchemaHost host;
  SchemaBrowser browser{{global, *frame, async, vocabulary, host, host}};
};

const std::string details = "td1.ORDER DETAILS";
const std::string price = "fd1.ORDER DETAILS.PRICE";
const std::string secondField = "fd1.ORDER DETAILS.2ND";
const std::string distinctPrices = "SELECT DISTINCT price FROM [Order Details]";

// --- checks --------------------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, CheckingATableChecksAllItsFieldsAndUncheckingUnchecksThem) {
  Check(details);
  EXPECT_EQ(tree.CheckedFields(details), (std::vector<std::string>{"Order ID", "2nd", "price"}));
  EXPECT_TRUE(tree.CheckedFields("td1.ORDERS").empty());
  Check(details);
  EXPECT_TRUE(tree.CheckedFields(details).empty());
}

TEST_F(SchemaBrowserTest, CheckingAFieldChecksNothingElse) {
  Check(price);
  EXPECT_EQ(tree.CheckedFields(details), (std::vector<std::string>{"price"}));
  EXPECT_FALSE(view.Checked(details));
}

TEST_F(SchemaBrowserTest, ADatabaseHasNoCheckBox) {
  W().ClickNode("trvBrowser", "d1");
  W().PressKey(key::space);
  EXPECT_FALSE(view.Checked("d1"));
  W().ClickNode("trvBrowser", details);
  W().PressKey(key::space);
  EXPECT_TRUE(view.Checked(details));
  EXPECT_EQ(tree.CheckedFields(details).size(), 3U);
}

// --- table commands ------------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, TableCommandsWithoutCheckedFields) {
  EXPECT_EQ(Choose(details, "mnuTableName"), "[Order Details]");
  EXPECT_EQ(Choose(details, "mnuTableFieldNames"), "");
  EXPECT_EQ(Choose(details, "mnuTableSelect"), "SELECT * FROM [Order Details]\r\n");
  EXPECT_EQ(Choose(details, "mnuTableCount"), "SELECT COUNT(*) AS n FROM [Order Details]\r\n");
  EXPECT_EQ(Choose(details, "mnuTableInsert"), "INSERT INTO [Order Details] VALUES()\r\n");
  EXPECT_EQ(Choose(details, "mnuTableUpdate"), "UPDATE [Order Details] SET \r\n");
  EXPECT_EQ(Choose(details, "mnuTableDelete"), "DELETE FROM [Order Details] WHERE \r\n");
  EXPECT_EQ(Choose(details, "mnuTableWhere"), "WHERE ");
}

TEST_F(SchemaBrowserTest, TableCommandsWithTwoCheckedFields) {
  Check(secondField);
  Check("fd1.ORDER DETAILS.ORDER ID");
  EXPECT_EQ(Choose(details, "mnuTableName"), "[Order Details]");
  EXPECT_EQ(Choose(details, "mnuTableFieldNames"), "[Order ID], [2nd]");
  EXPECT_EQ(Choose(details, "mnuTableSelect"), "SELECT [Order ID], [2nd] FROM [Order Details]\r\n");
  EXPECT_EQ(Choose(details, "mnuTableCount"),
            "SELECT [Order ID], [2nd], COUNT(*) AS n FROM [Order Details]\r\n"
            "GROUP BY [Order ID], [2nd]\r\n");
  EXPECT_EQ(Choose(details, "mnuTableInsert"),
            "INSERT INTO [Order Details]([Order ID], [2nd])\r\n VALUES()\r\n");
  EXPECT_EQ(Choose(details, "mnuTableUpdate"),
            "UPDATE [Order Details] SET [Order ID] = , [2nd] = \r\n");
  EXPECT_EQ(Choose(details, "mnuTableDelete"),
            "DELETE FROM [Order Details] WHERE [Order ID] =  AND [2nd] = \r\n");
  EXPECT_EQ(Choose(details, "mnuTableWhere"), "WHERE [Order ID] =  AND [2nd] = ");
}

// --- field commands ------------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, FieldCommandsWriteTheFieldAndItsTable) {
  EXPECT_EQ(Choose(secondField, "mnuFieldName"), "[2nd]");
  EXPECT_EQ(Choose(price, "mnuFieldName"), "price");
  EXPECT_EQ(Choose(price, "mnuFieldMinMax"),
            "SELECT MIN(price) AS a, MAX(price) AS b FROM [Order Details]\r\n");
}

TEST_F(SchemaBrowserTest, TheFourTagCommandsWriteTheFieldsTag) {
  EXPECT_EQ(Choose(secondField, "mnuFieldTag_0"), "<%=2nd%>");
  EXPECT_EQ(Choose(secondField, "mnuFieldTag_1"), "<*=2nd*>");
  EXPECT_EQ(Choose(secondField, "mnuFieldTag_2"), "{%=2nd%}");
  EXPECT_EQ(Choose(secondField, "mnuFieldTag_3"), "{*=2nd*}");
}

TEST_F(SchemaBrowserTest, ImportIsAskedForTheTableOfTheNode) {
  Choose(details, "mnuTableImport");
  Choose("d1", "mnuDBImport");
  EXPECT_EQ(host.imports, (std::vector<std::string>{"d1 Order Details", "d1 "}));
}

TEST_F(SchemaBrowserTest, ATableThatWasMadeJoinsALoadedSchema) {
  browser.AddTable("d1", "fresh", {"id", "name"});
  EXPECT_TRUE(view.Exists("td1.FRESH"));
  EXPECT_EQ(view.Children("td1.FRESH").size(), 2U);
  browser.AddDatabaseNode("d2", "Empty");
  browser.AddTable("d2", "fresh", {"id"});
  EXPECT_TRUE(view.Children("d2").empty());
}

TEST_F(SchemaBrowserTest, ACommandOnANodeOfAnotherKindOrWithoutOneDoesNothing) {
  const std::vector<std::string> commands = {
      "mnuTableName",          "mnuTableFieldNames",     "mnuTableSelect",      "mnuTableCount",
      "mnuTableInsert",        "mnuTableUpdate",         "mnuTableDelete",      "mnuTableWhere",
      "mnuFieldName",          "mnuFieldMinMax",         "mnuFieldBuildVocab",  "mnuFieldTag_0",
      "mnuDBLoadSchemaFromDB", "mnuDBLoadSchemaFromXML", "mnuDBSaveSchemaToXML"};
  for (const std::string& command : commands) W().Menu(command).Choose();
  for (const std::string& key : {std::string("d1"), details, price}) {
    Select(key);
    for (const std::string& command : commands)
      if (!command.starts_with(key == "d1" ? "mnuDB" : key == price ? "mnuField" : "mnuTable"))
        W().Menu(command).Choose();
  }
  EXPECT_EQ(host.inserted, "");
  EXPECT_TRUE(data.ExecutedSql().empty());
  EXPECT_TRUE(desktop.FileDialogs().empty());
}

// --- mouse and keys ------------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, ADoubleClickTakesTheNameAndInvertsTheNodesState) {
  view.SetExpanded("d1", true);
  W().ClickNode("trvBrowser", details);
  W().DoubleClick("trvBrowser");
  EXPECT_EQ(host.Taken(), "[Order Details]");
  EXPECT_TRUE(view.Expanded(details));
  EXPECT_EQ(host.focused, 1);
  W().DoubleClick("trvBrowser");
  EXPECT_FALSE(view.Expanded(details));
}

TEST_F(SchemaBrowserTest, ADoubleClickBesideTheNodesTakesNothing) {
  Select(details);
  W().MouseDown("trvBrowser", {MouseButton::Left, 0, 15, 100'000});
  W().DoubleClick("trvBrowser");
  EXPECT_EQ(host.Taken(), "");
  const Rect at = view.NodeBounds(details);
  W().MouseDown("trvBrowser", {MouseButton::Left, 0, at.left, at.top});
  W().DoubleClick("trvBrowser");
  EXPECT_EQ(host.Taken(), "[Order Details]");
}

TEST_F(SchemaBrowserTest, ADoubleClickOfAnotherButtonOrOnACheckBoxTakesNothing) {
  Select(details);
  const Rect at = view.NodeBounds(details);
  W().MouseDown("trvBrowser", {MouseButton::Right, 0, at.left, at.top});
  W().DoubleClick("trvBrowser");
  W().MouseDown("trvBrowser", {MouseButton::Left, 0, at.left, at.top});
  Check(details);
  W().DoubleClick("trvBrowser");
  EXPECT_EQ(host.Taken(), "");
}

TEST_F(SchemaBrowserTest, TheEnterKeyTakesTheNameLikeADoubleClick) {
  browser.SetFocus();
  Select("td1.ORDERS");
  W().PressKey(key::enter);
  EXPECT_EQ(host.Taken(), "Orders");
  EXPECT_TRUE(view.Expanded("td1.ORDERS"));
  EXPECT_EQ(host.focused, 1);
  W().PressKey(key::enter, shiftState::ctrl);
  EXPECT_EQ(host.Taken(), "");
}

TEST_F(SchemaBrowserTest, TheEnterKeyWithoutASelectedNodeDoesNothing) {
  browser.SetFocus();
  SelectNothing();
  W().PressKey(key::enter);
  EXPECT_EQ(host.Taken(), "");
  EXPECT_EQ(host.focused, 0);
}

TEST_F(SchemaBrowserTest, F7GoesToTheQueryWindow) {
  browser.SetFocus();
  W().PressKey(key::f7, shiftState::shift);
  EXPECT_EQ(host.focused, 0);
  W().PressKey(key::f7);
  EXPECT_EQ(host.focused, 1);
}

TEST_F(SchemaBrowserTest, TheRightButtonSelectsTheNodeAndOpensTheMenuOfItsKindAtThePointer) {
  view.SetExpanded("d1", true);
  view.SetExpanded(details, true);
  for (const auto& [key, menu] : {std::pair("d1", "menuDB"), std::pair("td1.ORDERS", "menuTable"),
                                  std::pair("fd1.ORDER DETAILS.PRICE", "menuField")}) {
    desktop.ExpectPopup(menu, "");
    RightClick(key);
    EXPECT_EQ(view.SelectedKey(), key);
    EXPECT_EQ(desktop.Popups().back().at, "");
  }
}

TEST_F(SchemaBrowserTest, TheRightButtonBesideTheNodesAndTheLeftOneOpenNothing) {
  W().MouseUp("trvBrowser", {MouseButton::Right, 0, 15, 100'000});
  const Rect at = view.NodeBounds("d1");
  W().MouseUp("trvBrowser", {MouseButton::Left, 0, at.left, at.top});
  EXPECT_TRUE(desktop.Popups().empty());
}

TEST_F(SchemaBrowserTest, TheContextMenuKeyOpensTheMenuAtAFixedOffsetFromTheNode) {
  browser.SetFocus();
  SelectNothing();
  W().PressKey(key::contextMenu);
  EXPECT_TRUE(desktop.Popups().empty()) << "no node is selected";
  Select("td1.ORDERS");
  desktop.ExpectPopup("menuTable", "mnuTableSelect");
  W().PressKey(key::contextMenu);
  EXPECT_EQ(host.Taken(), "SELECT * FROM Orders\r\n");
  const test::ShownPopup& popup = desktop.Popups().back();
  const Rect node = view.NodeBounds("td1.ORDERS");
  EXPECT_EQ(popup.at, "trvBrowser");
  EXPECT_EQ(popup.x, node.left + 300);
  EXPECT_EQ(popup.y, node.top + node.height);
}

// --- a database that takes no brackets -----------------------------------------------------------

class SchemaBrowserQuotesTest : public SchemaBrowserTest {
 protected:
  SchemaBrowserQuotesTest() {
    data.properties.Set("Bracket Identifiers", std::int64_t{0});
    data.properties.Set("Identifier Case Sensitivity", std::int64_t{2});
    data.properties.Set("Schema By Rowsets", std::int64_t{1});
    data.tables = {{"", "public", "OrderId", "TABLE", MemoryFields({"user", "Order ID", "plain"})},
                   {"", "archive", "OrderId", "TABLE", MemoryFields({"old"}), true}};
    connection->Close();
    test::OpenNow(*connection);
    browser.LoadSchema("d1", connection, true);
  }
  const std::string table = "td1.ORDERID";
};

TEST_F(SchemaBrowserQuotesTest, CommandsWriteTheDatabasesOwnQuotes) {
  Check(table);
  EXPECT_EQ(Choose(table, "mnuTableSelect"),
            "SELECT \"user\", \"Order ID\", plain FROM \"OrderId\"\r\n");
  EXPECT_EQ(Choose(table, "mnuTableUpdate"),
            "UPDATE \"OrderId\" SET \"user\" = , \"Order ID\" = , plain = \r\n");
  EXPECT_EQ(Choose("fd1.ORDERID.ORDER ID", "mnuFieldName"), "\"Order ID\"");
  EXPECT_EQ(Choose("fd1.ORDERID.ORDER ID", "mnuFieldMinMax"),
            "SELECT MIN(\"Order ID\") AS a, MAX(\"Order ID\") AS b FROM \"OrderId\"\r\n");
  EXPECT_EQ(Choose("td1.ARCHIVE.ORDERID", "mnuTableSelect"),
            "SELECT * FROM archive.\"OrderId\"\r\n");
}

TEST_F(SchemaBrowserQuotesTest, TheNamesStayQuotedWhenTheServerIsGone) {
  connection->Close();
  Select(table);
  W().PressKey(key::f7);
  EXPECT_EQ(Choose(table, "mnuTableName"), "\"OrderId\"");
  folder.Write("mine.schema.xml", "<Database><Table name='My Table'/></Database>");
  desktop.AnswerFile(folder.File("mine.schema.xml"));
  Choose("d1", "mnuDBLoadSchemaFromXML");
  EXPECT_EQ(Choose("td1.MY TABLE", "mnuTableName"), "\"My Table\"");
}

TEST_F(SchemaBrowserQuotesTest, WordsAreBuiltFromAFieldInQuotes) {
  data.Answer("SELECT DISTINCT \"user\" FROM \"OrderId\"", MemoryFields({"user"}), {});
  ExpectNotice("The table 'OrderId' is empty.");
  Choose("fd1.ORDERID.USER", "mnuFieldBuildVocab");
}

// --- schema commands -----------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, TheSchemaIsLoadedFromTheDatabaseOfTheNode) {
  AnswerViews(data, {{"New", {"field"}}});
  Choose("d1", "mnuDBLoadSchemaFromDB");
  EXPECT_EQ(Tables(), (Schema{{"New", {"field"}}}));
  EXPECT_EQ(view.SelectedKey(), "d1");
  AnswerViews(data, {{"Newer", {}}});
  Choose("d1", "mnuDBLoadSchemaFromDB");
  EXPECT_EQ(Tables(), (Schema{{"Newer", {}}}));
}

TEST_F(SchemaBrowserTest, TheSchemaIsSavedToAFileProposedByTheConnection) {
  desktop.AnswerFile(folder.File("mine.schema.xml"));
  Choose("d1", "mnuDBSaveSchemaToXML");
  const test::ShownFileDialog& dialog = desktop.FileDialogs().back();
  EXPECT_TRUE(dialog.save);
  EXPECT_EQ(dialog.fileName, folder.File("shop.schema.xml"));
  EXPECT_EQ(dialog.initialFolder, "") << "it opens where the proposed file would lie";
  EXPECT_EQ(dialog.filter, "Schema Files (*.schema.xml)|*.schema.xml");
  EXPECT_NE(dialog.flags & fileDialogFlag::overwritePrompt, 0);
  EXPECT_NE(Content("mine.schema.xml").find("<Table name=\"Order Details\">"), std::string::npos);
}

TEST_F(SchemaBrowserTest, TheSchemaIsLoadedFromAChosenFile) {
  folder.Write("mine.schema.xml", "<Database><Table name='New'/></Database>");
  desktop.AnswerFile(folder.File("mine.schema.xml"));
  Choose("d1", "mnuDBLoadSchemaFromXML");
  EXPECT_EQ(Tables(), (Schema{{"New", {}}}));
  const test::ShownFileDialog& dialog = desktop.FileDialogs().back();
  EXPECT_FALSE(dialog.save);
  EXPECT_EQ(dialog.fileName, folder.File("shop.schema.xml"));
  EXPECT_NE(dialog.flags & fileDialogFlag::fileMustExist, 0);
}

TEST_F(SchemaBrowserTest, AConnectionThatNamesNoDatabaseProposesAPatternOrAPlainWord) {
  connection->Close();
  connection->SetConnectionString("Provider=X");
  desktop.CancelFile();
  Choose("d1", "mnuDBLoadSchemaFromXML");
  EXPECT_EQ(desktop.FileDialogs().back().fileName, folder.File("*.schema.xml"));
  desktop.CancelFile();
  Choose("d1", "mnuDBSaveSchemaToXML");
  EXPECT_EQ(desktop.FileDialogs().back().fileName, folder.File("database.schema.xml"));
}

TEST_F(SchemaBrowserTest, AHostileNameOfADatabaseIsProposedAsASafeOne) {
  connection->Close();
  for (const auto& [name, proposed] :
       {std::pair("..", "_..schema.xml"), std::pair("a*b?", "a_b_.schema.xml"),
        std::pair("/etc/pass:wd", "pass_wd.schema.xml")}) {
    connection->SetConnectionString(std::string("Database=") + name);
    desktop.CancelFile();
    Choose("d1", "mnuDBSaveSchemaToXML");
    EXPECT_EQ(desktop.FileDialogs().back().fileName, folder.File(proposed));
  }
}

TEST_F(SchemaBrowserTest, CancellingTheFileDialogsChangesNothing) {
  const Schema before = Tables();
  desktop.CancelFile();
  Choose("d1", "mnuDBLoadSchemaFromXML");
  desktop.CancelFile();
  Choose("d1", "mnuDBSaveSchemaToXML");
  EXPECT_EQ(Tables(), before);
  EXPECT_EQ(files.WriteCount(), 0);
}

TEST_F(SchemaBrowserTest, FailuresOfChosenFilesAreShown) {
  desktop.AnswerFile(folder.Write("bad.schema.xml", "no XML"));
  ExpectNotice("Unable to load schema XML file: " + folder.File("bad.schema.xml"));
  Choose("d1", "mnuDBLoadSchemaFromXML");
  files.FailWrites("No space left on device");
  desktop.AnswerFile(folder.File("full.schema.xml"));
  desktop.ExpectMessage("Error saving schema to XML: " + folder.File("full.schema.xml") +
                        ": No space left on device");
  Choose("d1", "mnuDBSaveSchemaToXML");
}

TEST_F(SchemaBrowserTest, WithoutItsRecordsWindowANodesCommandsDoNothing) {
  host.connections.clear();
  Choose("d1", "mnuDBLoadSchemaFromDB");
  Choose("d1", "mnuDBLoadSchemaFromXML");
  Choose("d1", "mnuDBSaveSchemaToXML");
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_TRUE(data.ExecutedSql().empty());
  EXPECT_TRUE(desktop.FileDialogs().empty());
}

TEST_F(SchemaBrowserTest, TheMenuOfADatabaseOffersTheFramesDatabaseCommandsToo) {
  int chosen = 0;
  for (const char* command : {"mnuDBExecute", "mnuDBPreview", "mnuDBConnect"}) {
    W().Menu(command).Click = [&chosen] { ++chosen; };
    Choose("d1", command);
  }
  EXPECT_EQ(chosen, 3);
}

// --- a new connection ----------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, ASchemaReadAtConnectionIsKeptInItsFile) {
  AnswerViews(data, {{"New", {"field"}}});
  browser.LoadSchema("d1", connection, true);
  EXPECT_EQ(Tables(), (Schema{{"New", {"field"}}}));
  EXPECT_EQ(Content("shop.schema.xml"),
            SchemaToXML({{"New", {"field"}}}, {"", "", "shop"}, "2026-01-01T12:00:00Z"));
}

TEST_F(SchemaBrowserTest, ASchemaReadThroughTheMenuIsKeptToo) {
  AnswerViews(data, {{"New", {"field"}}});
  Choose("d1", "mnuDBLoadSchemaFromDB");
  EXPECT_NE(Content("shop.schema.xml").find("<Column name=\"field\""), std::string::npos);
}

TEST_F(SchemaBrowserTest, ALoadThatWasCancelledLeavesTheFile) {
  folder.Write("shop.schema.xml", "old");
  AnswerViews(data, {{"a", {"1"}}, {"b", {"2"}}, {"c", {"3"}}});
  CancelAt(3 + 2);
  browser.LoadSchema("d1", connection, true);
  EXPECT_EQ(Tables(), (Schema{{"a", {"1"}}, {"b", {"2"}}, {"c", {}}}));
  EXPECT_EQ(Content("shop.schema.xml"), "old");
}

TEST_F(SchemaBrowserTest, DatabasesOfOneNameOnTwoServersDoNotShareAFile) {
  folder.Write("shop.schema.xml", "<Database><Table name='Earlier'/></Database>");
  for (const std::string server : {"one", "two"}) {
    const std::string text = "Provider=P;Server=" + server + ";Database=shop";
    AnswerViews(data.ServerOf(text), {{"Of " + server, {}}});
    connection = data.CreateConnection();
    connection->SetConnectionString(text);
    test::OpenNow(*connection);
    browser.LoadSchema("d1", connection, false);
    EXPECT_EQ(Tables(), (Schema{{"Earlier", {}}})) << "there is no newer file";
    browser.LoadSchema("d1", connection, true);
    browser.FollowCatalog("d1", connection, false);
    EXPECT_EQ(Tables(), (Schema{{"Of " + server, {}}}));
  }
  EXPECT_EQ(files.WriteCount(), 2);
}

TEST_F(SchemaBrowserTest, AFileThatTellsAnotherServerIsNotReadAsAnEarlierOne) {
  const Schema before = Tables();
  folder.Write("shop.schema.xml", SchemaToXML({{"Wrong", {}}}, {"P", "elsewhere", "shop"}));
  browser.LoadSchema("d1", connection, false);
  EXPECT_EQ(Tables(), before);
}

TEST_F(SchemaBrowserTest, AnotherCatalogHasAFileOfItsOwn) {
  data.catalogs = {"shop", "archive"};
  data.defaultDatabase = "shop";
  connection->Close();
  test::OpenNow(*connection);
  folder.Write("shop.schema.xml", "<Database><Table name='Shop'/></Database>");
  browser.LoadSchema("d1", connection, false);
  EXPECT_EQ(Tables(), (Schema{{"Shop", {}}}));
  test::UseCatalog(*connection, "archive");
  browser.FollowCatalog("d1", connection, false);
  EXPECT_EQ(Tables(), Schema()) << "nothing is known of it";
  EXPECT_TRUE(WordsOf(vocabulary.Tables()).empty());
  AnswerViews(data, {{"Archive", {}}});
  Choose("d1", "mnuDBLoadSchemaFromDB");
  test::UseCatalog(*connection, "shop");
  browser.FollowCatalog("d1", connection, false);
  EXPECT_EQ(Tables(), (Schema{{"Shop", {}}}));
  test::UseCatalog(*connection, "archive");
  browser.FollowCatalog("d1", connection, false);
  EXPECT_EQ(Tables(), (Schema{{"Archive", {}}}));
}

TEST_F(SchemaBrowserTest, ASchemaThatCannotBeReadLeavesTheFile) {
  folder.Write("shop.schema.xml", "old");
  data.AnswerError(test::tablesQuery, MemoryError("no"));
  data.schemaFailures[SchemaRowset::Tables] = MemoryError("not allowed");
  desktop.ExpectMessage("Unable to get database schema information: not allowed");
  browser.LoadSchema("d1", connection, true);
  EXPECT_EQ(Content("shop.schema.xml"), "old");
}

TEST_F(SchemaBrowserTest, OtherwiseTheFileOfTheConnectionIsReadSilently) {
  folder.Write("shop.schema.xml", "<Database><Table name='Kept'/></Database>");
  browser.LoadSchema("d1", connection, false);
  EXPECT_EQ(Tables(), (Schema{{"Kept", {}}}));
  EXPECT_TRUE(data.ExecutedSql().empty());
}

TEST_F(SchemaBrowserTest, AMissingOrDamagedFileIsNotTold) {
  const Schema before = Tables();
  browser.LoadSchema("d1", connection, false);
  folder.Write("shop.schema.xml", "no XML");
  browser.LoadSchema("d1", connection, false);
  EXPECT_EQ(Tables(), before);
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(SchemaBrowserTest, AConnectionThatNamesNoDatabaseNeitherReadsNorWritesAFile) {
  MemoryServer& server = data.ServerOf("Provider=X");
  AnswerViews(server, {{"New", {"field"}}});
  connection = data.CreateConnection();
  connection->SetConnectionString("Provider=X");
  test::OpenNow(*connection);
  folder.Write(".schema.xml", "<Database><Table name='Wrong'/></Database>");
  browser.LoadSchema("d1", connection, false);
  EXPECT_EQ(Tables().size(), 2U);
  browser.LoadSchema("d1", connection, true);
  EXPECT_EQ(Tables(), (Schema{{"New", {"field"}}}));
  EXPECT_EQ(files.WriteCount(), 0);
}

TEST_F(SchemaBrowserTest, AFullDiskAtConnectionIsNotTold) {
  AnswerViews(data, {{"New", {}}});
  files.FailWrites();
  browser.LoadSchema("d1", connection, true);
  EXPECT_TRUE(desktop.Messages().empty());
}

// --- words of a field ----------------------------------------------------------------------------

TEST_F(SchemaBrowserTest, TheValuesOfAFieldBecomeWordsWhenTheUserAcceptsThem) {
  data.Answer(distinctPrices, MemoryFields({"price"}),
              {{std::string("  Paris")},
               {Value()},
               {std::string("   ")},
               {std::string("Rome ")},
               {Value(std::int64_t{42})}});
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "Paris\r\nRome \r\n42\r\n");
    EXPECT_TRUE(w.VisibleInFact("cmdOK"));
    w.Find<RichTextBox>("txtText").SetText("Paris\r\nRome\r\n");
    w.Click("cmdOK");
  });
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_EQ(CustomWords(price), (WordList{"Paris", "Rome"}));
  EXPECT_EQ(vocabulary.Custom().front().first, "_Global") << "the user's own words come first";
  EXPECT_TRUE(vocabulary.GlobalWords().empty());
}

TEST_F(SchemaBrowserTest, BuildingTheWordsOfAFieldAgainReplacesThem) {
  data.Answer(distinctPrices, MemoryFields({"price"}), {{std::string("one")}});
  data.Answer(distinctPrices, MemoryFields({"price"}), {{std::string("two")}});
  for (int i = 0; i < 2; ++i) {
    desktop.OnModal("frmText", [](test::HeadlessWindow& w) { w.Click("cmdOK"); });
    Choose(price, "mnuFieldBuildVocab");
  }
  EXPECT_EQ(CustomWords(price), (WordList{"two"}));
}

TEST_F(SchemaBrowserTest, ValuesThatTheUserDoesNotAcceptAreForgotten) {
  data.Answer(distinctPrices, MemoryFields({"price"}), {{std::string("one")}});
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_TRUE(CustomWords(price).empty());
}

TEST_F(SchemaBrowserTest, AnEmptyTableIsTold) {
  data.Answer(distinctPrices, MemoryFields({"price"}), {});
  ExpectNotice("The table 'Order Details' is empty.");
  Choose(price, "mnuFieldBuildVocab");
}

TEST_F(SchemaBrowserTest, AFieldWhoseEveryValueIsNullOrBlankIsTold) {
  data.Answer(distinctPrices, MemoryFields({"price"}),
              {{Value()}, {std::string("")}, {std::string("   ")}});
  ExpectNotice("All values of 'price' are blank.");
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(SchemaBrowserTest, AQueryForValuesThatFailsIsTold) {
  data.AnswerError(distinctPrices, MemoryError("no such column"));
  desktop.ExpectMessage("no such column", MessageResult::Ok, [](const Message& message) {
    EXPECT_EQ(message.icon, MessageIcon::Critical);
  });
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_TRUE(connection->Errors().empty());
}

TEST_F(SchemaBrowserTest, AQueryForValuesThatIsCancelledEndsTheCommand) {
  data.Answer(distinctPrices, MemoryFields({"price"}), {{std::string("one")}}).HoldAtRow(1);
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  Choose(price, "mnuFieldBuildVocab");
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(SchemaBrowserTest, CancellingTheReadingOfValuesShowsThoseRead) {
  data.Answer(distinctPrices, MemoryFields({"price"}),
              {{std::string("a")}, {std::string("b")}, {std::string("c")}});
  desktop.OnProcessPending([this](int call) {
    test::HeadlessWindow& window = desktop.WindowOf("dlgAsync");
    EXPECT_EQ(window.Find<Label>("lblMessage").Caption(), "Reading vocabulary...");
    if (call == 2) window.Click("cmdCancel");
  });
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "a\r\nb\r\n");
    w.Click("cmdCancel");
  });
  Choose(price, "mnuFieldBuildVocab");
}

}  // namespace
}  // namespace tessel
