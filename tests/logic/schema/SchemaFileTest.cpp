#include "logic/schema/SchemaFile.h"

#include "tests/logic/schema/SchemaFixture.h"

namespace tessel {
namespace {

TEST(SchemaFileNameTest, IsTheFirstOfSixKeysThatIsThere) {
  EXPECT_EQ(SchemaFileName("Server=s;DSN=d;Data Source=ds;DBQ=q;Database=db;Initial Catalog=ic"),
            "ic.schema.xml");
  EXPECT_EQ(SchemaFileName("Server=s;DSN=d;Data Source=ds;DBQ=q;Database=db"), "db.schema.xml");
  EXPECT_EQ(SchemaFileName("Server=s;DSN=d;Data Source=ds;DBQ=q"), "q.schema.xml");
  EXPECT_EQ(SchemaFileName("Server=s;DSN=d;data source= ds "), "ds.schema.xml");
  EXPECT_EQ(SchemaFileName("Server=s;DSN=d"), "d.schema.xml");
  EXPECT_EQ(SchemaFileName("Server=s"), "s.schema.xml");
}

TEST(SchemaFileNameTest, IsTheNameOfADatabaseFileWithoutItsFolders) {
  EXPECT_EQ(SchemaFileName("Provider=SQLite;Data Source=/home/me/shop.db"), "shop.db.schema.xml");
  EXPECT_EQ(SchemaFileName("DBQ=C:\\data\\customers.mdb"), "customers.mdb.schema.xml");
  EXPECT_EQ(SchemaFileName("DBQ=C:/data/customers.mdb"), "customers.mdb.schema.xml");
  EXPECT_EQ(SchemaFileName("DBQ=C:\\data/sub\\x/customers.mdb"), "customers.mdb.schema.xml");
}

TEST(SchemaFileNameTest, IsEmptyWhenNothingIsLeft) {
  EXPECT_EQ(SchemaFileName("Provider=X;User ID=sa"), "");
  EXPECT_EQ(SchemaFileName(""), "");
  EXPECT_EQ(SchemaFileName("Database=  "), "");
  EXPECT_EQ(SchemaFileName("Data Source=/data/"), "");
}

TEST(SchemaOriginTest, FilesDifferByProviderServerAndDatabase) {
  const SchemaOrigin origin = {"PostgreSQL", "localhost:5432", "shop"};
  const std::string name = SchemaFileNameOf(origin);
  EXPECT_TRUE(name.starts_with("shop@localhost_5432-")) << name;
  EXPECT_TRUE(name.ends_with(".schema.xml")) << name;
  EXPECT_EQ(SchemaFileNameOf(origin), name);
  for (const SchemaOrigin& other : {SchemaOrigin{"MariaDB", "localhost:5432", "shop"},
                                    SchemaOrigin{"PostgreSQL", "localhost:5433", "shop"},
                                    SchemaOrigin{"PostgreSQL", "localhost:5432", "Shop"},
                                    SchemaOrigin{"PostgreSQL", "localhost/5432", "shop"}})
    EXPECT_NE(SchemaFileNameOf(other), name);
  EXPECT_EQ(SchemaFileNameOf({"", "", "shop"}), "shop.schema.xml");
  EXPECT_EQ(SchemaFileNameOf({"P", "s", ""}), "");
}

TEST(SchemaOriginTest, HostileNamesGiveSafeFileNames) {
  const std::string nul("a\0b\n", 4);
  for (const std::string& hostile :
       {std::string("../../etc/passwd"), std::string(".."), std::string("."), std::string("a\\b"),
        std::string(5'000, 'x'), nul, std::string("C:*?\"<>|"), std::string(300, '\xC3')}) {
    for (const SchemaOrigin& origin :
         {SchemaOrigin{"P", "s", hostile}, SchemaOrigin{"P", hostile, "d"},
          SchemaOrigin{"", "", hostile}}) {
      const std::string name = SchemaFileNameOf(origin);
      EXPECT_LT(name.size(), 200U);
      EXPECT_EQ(name.find_first_of("/\\:*?\"<>|\n" + std::string(1, '\0')), std::string::npos)
          << name;
      EXPECT_FALSE(name.starts_with('.')) << name;
    }
  }
  EXPECT_EQ(ProposedSchemaFileName(""), "database.schema.xml");
  EXPECT_EQ(ProposedSchemaFileName("a/b"), "a_b.schema.xml");
}

class SchemaFileTest : public test::SchemaFixture {
 protected:
  std::string Path() { return folder.File("shop.schema.xml"); }
  void Fill(const Schema& schema) {
    for (const TableSchema& table : schema) {
      tree.AddTables("d1", {table.name});
      tree.AddFields(TableNodeKey("d1", table.name), table.fields);
    }
  }
  /// Writes a file and reads it into the tree, with messages.
  void Load(const std::string& content) {
    folder.Write("shop.schema.xml", content);
    file.LoadSchemaXML("d1", Path(), true);
  }
  void ExpectNotice(const std::string& text, MessageIcon icon) {
    desktop.ExpectMessage(text, MessageResult::Ok, [icon](const Message& message) {
      EXPECT_EQ(message.icon, icon);
      EXPECT_EQ(message.buttons, MessageButtons::Ok);
      EXPECT_TRUE(message.help);
    });
  }
  void ExpectUnreadable() {
    ExpectNotice("Unable to load schema XML file: " + Path(), MessageIcon::Exclamation);
  }
  /// The file is refused and the tree stays as it was.
  void ExpectRefused(const std::string& content) {
    const Schema before = Tables();
    ExpectUnreadable();
    Load(content);
    EXPECT_EQ(Tables(), before);
  }

  SchemaFile file{global, async, tree};
};

TEST_F(SchemaFileTest, TheDocumentHoldsTablesAndColumnsWithTheirNamesAndNothingElse) {
  EXPECT_EQ(SchemaToXML({{"Customers", {"ID", "Name"}}, {"Empty", {}}}),
            "<Database>\n"
            "  <Table name=\"Customers\">\n"
            "    <Column name=\"ID\" />\n"
            "    <Column name=\"Name\" />\n"
            "  </Table>\n"
            "  <Table name=\"Empty\" />\n"
            "</Database>\n");
  EXPECT_EQ(SchemaToXML({}), "<Database />\n");
}

TEST_F(SchemaFileTest, TimeAndOriginStandAsAttributesThatAReaderMayIgnore) {
  const SchemaOrigin origin = {"PostgreSQL", "local\"host:5432", "shop & co"};
  const std::string xml = SchemaToXML({{"a", {"b"}}}, origin, "2026-01-02T03:04:05Z");
  EXPECT_TRUE(xml.starts_with("<Database saved=\"2026-01-02T03:04:05Z\" provider=\"PostgreSQL\""));
  Schema schema;
  SchemaOrigin told;
  EXPECT_TRUE(SchemaFromXML(xml, schema, &told));
  EXPECT_EQ(schema, (Schema{{"a", {"b"}}}));
  EXPECT_EQ(told, origin);
  EXPECT_TRUE(SchemaFromXML("<Database/>", schema, &told));
  EXPECT_EQ(told, SchemaOrigin());
}

TEST_F(SchemaFileTest, WhatCouldNotBeReadBackIsNotWritten) {
  folder.Write("shop.schema.xml", "old");
  Fill({{std::string(4097, 'x'), {}}});
  ExpectNotice("Error saving schema to XML: The name of a table or field is too long.",
               MessageIcon::Critical);
  file.SaveSchemaXML(Path(), "d1", true);
  EXPECT_EQ(Content("shop.schema.xml"), "old");
  Schema large;
  for (int i = 0; i < 9'000; ++i) large.push_back({std::string(4'000, 'x'), {}});
  EXPECT_THROW(static_cast<void>(SchemaToXML(large)), Error);
}

TEST_F(SchemaFileTest, ATreeIsSavedAndReadBackInItsOrder) {
  const Schema shop = {{"Orders", {"id", "date"}}, {"Items", {"z", "a"}}, {"Empty", {}}};
  Fill(shop);
  file.SaveSchemaXML(Path(), "d1", true);
  tree.RefreshDatabase("d1");
  file.LoadSchemaXML("d1", Path(), true);
  EXPECT_EQ(Tables(), shop);
  EXPECT_TRUE(view.Expanded("d1"));
}

TEST_F(SchemaFileTest, FewTablesAreReadWithoutATurnOfTheInterface) {
  desktop.OnProcessPending([](int) { FAIL() << "there is nothing to wait for"; });
  Load(SchemaToXML({{"Orders", {"id"}}}));
  EXPECT_EQ(Tables(), (Schema{{"Orders", {"id"}}}));
}

TEST_F(SchemaFileTest, ManyTablesLeaveTheInterfaceItsTurnsAndCanBeCancelled) {
  Schema schema;
  for (int i = 0; i < 3'000; ++i) schema.push_back({"t" + std::to_string(10'000 + i), {"id"}});
  folder.Write("shop.schema.xml", SchemaToXML(schema));
  int turns = 0;
  desktop.OnProcessPending([&](int number) {
    turns = number;
    if (number == 5) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  file.LoadSchemaXML("d1", Path(), true);
  EXPECT_EQ(turns, 5);
  EXPECT_EQ(Tables().size(), 3'000U);
  EXPECT_EQ(WordsOf(vocabulary.Fields()).size(), 5U * 64U) << "those of the tables before";
}

TEST_F(SchemaFileTest, AwkwardNamesComeBackUnchanged) {
  const Schema awkward = {
      {"a & b <c> \"d\" 'e'", {"é 漢字 😀", " leading and trailing ", "tab\there", "line\nbreak"}},
      {"&amp;", {"]]>", "<!--", "%s %n", "{%=tag%}", "back\\slash"}}};
  Fill(awkward);
  file.SaveSchemaXML(Path(), "d1", true);
  EXPECT_EQ(Content("shop.schema.xml").find("\"d\""), std::string::npos);
  tree.RefreshDatabase("d1");
  file.LoadSchemaXML("d1", Path(), true);
  EXPECT_EQ(Tables(), awkward);
}

TEST_F(SchemaFileTest, ADeclarationIndentationAndOtherEncodingsAreAccepted) {
  const std::string body = "<Database><Table name=\"Pr\xC3\xA9noms\"><Column name=\"a\"/></Table>"
                           "</Database>";
  const Schema expected = {{"Prénoms", {"a"}}};
  Load("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n" + body);
  EXPECT_EQ(Tables(), expected);
  Load("\xEF\xBB\xBF" + body);
  EXPECT_EQ(Tables(), expected);
  Load("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><Database><Table name=\"Pr\xE9noms\">"
       "<Column name=\"a\"/></Table></Database>");
  EXPECT_EQ(Tables(), expected);
}

TEST_F(SchemaFileTest, TablesAreFoundAtAnyDepth) {
  Load("<Database><Group><Group><Table name='a'><Part><Column name='x'/></Part></Table></Group>"
       "<Table name='b'/></Group><Column name='lost'/></Database>");
  EXPECT_EQ(Tables(), (Schema{{"a", {"x"}}, {"b", {}}}));
}

TEST_F(SchemaFileTest, AColumnBelongsToTheInnermostTable) {
  Load("<Database><Table name='a'><Column name='1'/><Table name='b'><Column name='2'/></Table>"
       "<Column name='3'/></Table></Database>");
  EXPECT_EQ(Tables(), (Schema{{"a", {"1", "3"}}, {"b", {"2"}}}));
}

TEST_F(SchemaFileTest, ElementsWithoutANameAreSkippedWithWhatTheyHold) {
  Load("<Database><Table name=''><Column name='x'/></Table><Table><Column name='y'/></Table>"
       "<Table name='a'><Column name=''/><Column/><Column name='z'/></Table></Database>");
  EXPECT_EQ(Tables(), (Schema{{"a", {"z"}}}));
}

TEST_F(SchemaFileTest, ReadingReplacesWhatWasThereWordsIncluded) {
  Fill({{"Earlier", {"old"}}});
  Load("<Database><Table name='New'><Column name='field'/></Table></Database>");
  EXPECT_EQ(Tables(), (Schema{{"New", {"field"}}}));
  EXPECT_EQ(WordsOf(vocabulary.Tables()), (std::vector<std::string>{"New"}));
  EXPECT_EQ(WordsOf(vocabulary.Fields()), (std::vector<std::string>{"field"}));
}

TEST_F(SchemaFileTest, TablesThatDifferOnlyInCaseAreOne) {
  Load("<Database><Table name='Orders'><Column name='id'/></Table>"
       "<Table name='ORDERS'><Column name='ID'/><Column name='more'/></Table></Database>");
  EXPECT_EQ(Tables(), (Schema{{"Orders", {"id", "more"}}}));
}

TEST_F(SchemaFileTest, AMissingFileIsToldOnlyWhenMessagesAreWanted) {
  Fill({{"Earlier", {"old"}}});
  file.LoadSchemaXML("d1", Path(), false);
  EXPECT_TRUE(desktop.Messages().empty());
  ExpectUnreadable();
  file.LoadSchemaXML("d1", Path(), true);
  EXPECT_EQ(Tables(), (Schema{{"Earlier", {"old"}}}));
}

TEST_F(SchemaFileTest, DamagedFilesAreToldAndLeaveTheTree) {
  Fill({{"Earlier", {"old"}}});
  for (const char* content : {"", "no XML", "<Database>", "<Database><Table name='a'>",
                              "<Database></Other>", "<Database><Table name=a/></Database>",
                              "<?xml version=\"1.0\"?>", "<Database", "\xFF\xFE<"})
    ExpectRefused(content);
  ExpectRefused(std::string("<Data\0base/>", 12));
}

TEST_F(SchemaFileTest, AFileThatCannotBeReadIsTold) {
  folder.Write("shop.schema.xml", "<Database/>");
  files.FailReads("Permission denied");
  ExpectUnreadable();
  file.LoadSchemaXML("d1", Path(), true);
}

TEST_F(SchemaFileTest, AWriteThatFailsIsToldOnlyWhenErrorsAreWantedAndLeavesTheOldFile) {
  folder.Write("shop.schema.xml", "old");
  Fill({{"Orders", {}}});
  files.FailWrites("No space left on device");
  ExpectNotice("Error saving schema to XML: " + Path() + ": No space left on device",
               MessageIcon::Critical);
  file.SaveSchemaXML(Path(), "d1", true);
  file.SaveSchemaXML(Path(), "d1", false);
  EXPECT_EQ(Content("shop.schema.xml"), "old");
}

TEST_F(SchemaFileTest, EntitiesOfADocumentAreNotExpanded) {
  Load("<!DOCTYPE Database [<!ENTITY a 'xxxxxxxxxx'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>"
       "<!ENTITY f SYSTEM 'file:///etc/passwd'>]>"
       "<Database><Table name='&b;'><Column name='&f;'/></Table></Database>");
  EXPECT_EQ(Tables(), (Schema{{"&b;", {"&f;"}}}));
}

TEST_F(SchemaFileTest, DeepNestingIsReadInTimeAndWithoutTroubleForTheStack) {
  constexpr int depth = 100'000;
  std::string open;
  std::string close;
  for (int i = 0; i < depth; ++i) open += "<Table name='t'><Column name='c'/>";
  for (int i = 0; i < depth; ++i) close += "</Table>";
  Load("<Database>" + open + close + "</Database>");
  EXPECT_EQ(Tables(), (Schema{{"t", {"c"}}}));
}

TEST_F(SchemaFileTest, ANameOfUnreasonableLengthEndsInTheMessageAndLeavesTheTree) {
  Fill({{"Earlier", {"old"}}});
  ExpectNotice("Error loading schema from XML: The name of a table or field is too long.",
               MessageIcon::Critical);
  Load("<Database><Table name='a'/><Table name='" + std::string(5000, 'x') + "'/></Database>");
  EXPECT_EQ(Tables(), (Schema{{"Earlier", {"old"}}}));
  Load("<Database><Table name='" + std::string(4096, 'x') + "'/></Database>");
  EXPECT_EQ(Tables(), (Schema{{std::string(4096, 'x'), {}}}));
}

TEST_F(SchemaFileTest, AFileOfUnreasonableSizeEndsInTheMessage) {
  ExpectNotice("Error loading schema from XML: The file is larger than 32 megabytes.",
               MessageIcon::Critical);
  Load("<Database>" + std::string(33 << 20, ' ') + "</Database>");
}

}  // namespace
}  // namespace tessel
