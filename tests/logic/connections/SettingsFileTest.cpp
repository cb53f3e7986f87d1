#include "logic/connections/SettingsFile.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class SettingsFileTest : public test::LogicFixture {
 protected:
  SettingsFile settings{global};

  std::vector<SavedConnection> LoadFrom(const std::string& text) {
    folder.Write("Tessel.ini.xml", text);
    return settings.Load();
  }
};

TEST(ColorTextTest, ColoursAreEightUpperCaseHexadecimalDigits) {
  EXPECT_EQ(ColorToHex(0x000000FF), "000000FF");
  EXPECT_EQ(ColorToHex(0x80000005), "80000005");
  EXPECT_EQ(ColorToHex(0xABCDEF), "00ABCDEF");
  EXPECT_EQ(HexToColor("00FF0000"), 0x00FF0000U);
  EXPECT_EQ(HexToColor("80000005"), 0x80000005U);
  EXPECT_EQ(HexToColor("ff"), 0xFFU);
  EXPECT_THROW(static_cast<void>(HexToColor("red")), Error);
  EXPECT_THROW(static_cast<void>(HexToColor("")), Error);
  EXPECT_THROW(static_cast<void>(HexToColor("112233445")), Error);
}

TEST_F(SettingsFileTest, AFirstStartHasNoConnectionsAndWritesAWholeDocument) {
  EXPECT_TRUE(settings.Load().empty());
  ASSERT_TRUE(settings.CanSave());
  settings.Save({{"Provider=X", "Mine", 0xFF, 0x80000008}});
  EXPECT_EQ(
      Content("Tessel.ini.xml"),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Tessel>\n  <Connections>\n    <Connection "
      "connectionString=\"Provider=X\" caption=\"Mine\" backColor=\"000000FF\" "
      "foreColor=\"80000008\"/>\n"
      "  </Connections>\n</Tessel>\n");
}

TEST_F(SettingsFileTest, TheSettingsFileIsReadableByItsOwnerOnly) {
  settings.Load();
  settings.Save({});
  const auto permissions = std::filesystem::status(folder.File("Tessel.ini.xml")).permissions();
  EXPECT_EQ(permissions & std::filesystem::perms::all,
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(SettingsFileTest, WhatIsWrittenReadsBackWithEveryKindOfCharacter) {
  const std::vector<SavedConnection> list = {{"Driver={a\"b};x=<&>'", "Grüße 😀\ttab", 1, 2},
                                             {"line\r\nbreak", "", 0x80000005, 0x80000008}};
  settings.Load();
  settings.Save(list);
  EXPECT_EQ(SettingsFile(global).Load(), list);
}

TEST_F(SettingsFileTest, TheOlderFileGivesOneConnectionForEachLineThatIsNotBlank) {
  folder.Write("Tessel.ini", "  Provider=A  \r\n\r\n   \r\nDSN=b\r\n C=1;D=2");
  const std::vector<SavedConnection> expected = {
      {"Provider=A", "", 0x80000005, 0x80000008}, {"DSN=b", ""}, {"C=1;D=2", ""}};
  EXPECT_EQ(settings.Load(), expected);
  settings.Save(expected);
  EXPECT_EQ(Content("Tessel.ini"), "  Provider=A  \r\n\r\n   \r\nDSN=b\r\n C=1;D=2");
}

TEST_F(SettingsFileTest, TheOlderFileIsIgnoredOnceThereIsANewOne) {
  folder.Write("Tessel.ini", "Provider=A");
  EXPECT_TRUE(LoadFrom("<Tessel><Connections/></Tessel>").empty());
}

TEST_F(SettingsFileTest, EverythingElseInTheFileIsKept) {
  LoadFrom(
      "<?xml version=\"1.0\"?>\n<!-- mine -->\n<Root a='1'>\n  <Other "
      "x=\"y\">text<![CDATA[<raw>]]></Other>\n"
      "  <Connections>\n    <Connection connectionString=\"A\" caption=\"\" backColor=\"80000005\" "
      "foreColor=\"80000008\"/>\n  </Connections>\n  <Last/>\n</Root>\n");
  settings.Save({});
  EXPECT_EQ(Content("Tessel.ini.xml"), "<?xml version=\"1.0\"?>\n<!-- mine -->\n<Root a=\"1\">\n  "
                                       "<Other x=\"y\">text<![CDATA[<raw>]]></Other>\n"
                                       "  <Connections>\n  </Connections>\n  <Last/>\n</Root>\n");
}

TEST_F(SettingsFileTest, AFileInAnotherEncodingIsWrittenAsTheUtf8ItThenSaysItIs) {
  LoadFrom("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><T><Connections/><N a=\"\xE9\"/></T>");
  settings.Save({});
  EXPECT_NE(Content("Tessel.ini.xml").find("encoding=\"UTF-8\""), std::string::npos);
  EXPECT_NE(Content("Tessel.ini.xml").find("a=\"é\""), std::string::npos);
}

class DamagedSettingsTest : public SettingsFileTest,
                            public ::testing::WithParamInterface<const char*> {};

TEST_P(DamagedSettingsTest, ADamagedFileIsLeftUntouchedToTheByte) {
  LoadFrom(GetParam());
  EXPECT_FALSE(settings.CanSave());
  settings.Save({{"Provider=X", "Mine"}});
  EXPECT_EQ(Content("Tessel.ini.xml"), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Damage, DamagedSettingsTest,
    ::testing::Values(
        "", "not xml", "<Tessel><Connections>", "<Tessel><Connections></Tessel>", "<Tessel/>",
        "<Tessel><Connections><Connection connectionString=\"A\"/></Connections></Tessel>",
        "<Tessel><Connections><Connection connectionString=\"A\" caption=\"\" backColor=\"red\" "
        "foreColor=\"0\"/></Connections></Tessel>"));

TEST_F(SettingsFileTest, ReadingStopsAtAnElementThatLacksAnAttribute) {
  const auto list =
      LoadFrom("<Tessel><Connections>"
               "<Connection connectionString=\"A\" caption=\"a\" backColor=\"0\" foreColor=\"0\"/>"
               "<Connection connectionString=\"B\" caption=\"b\" backColor=\"0\"/>"
               "<Connection connectionString=\"C\" caption=\"c\" backColor=\"0\" foreColor=\"0\"/>"
               "</Connections></Tessel>");
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0].caption, "a");
}

TEST_F(SettingsFileTest, AFullDiskLeavesTheOldFileAndTellsWhy) {
  const std::string before = "<Tessel><Connections/></Tessel>";
  LoadFrom(before);
  files.FailWrites("No space left on device");
  std::string reason;
  EXPECT_FALSE(settings.Save({{"Provider=X", "Mine"}}, &reason));
  EXPECT_EQ(reason, folder.File("Tessel.ini.xml") + ": No space left on device");
  EXPECT_EQ(Content("Tessel.ini.xml"), before);
}

TEST_F(SettingsFileTest, WhatAnotherProgramAddedMeanwhileStays) {
  settings.Load();
  ASSERT_TRUE(settings.Save({{"A", "a"}}));
  SettingsFile other(global);
  auto list = other.Load();
  list.push_back({"B", "b"});
  ASSERT_TRUE(other.Save(list));
  EXPECT_TRUE(settings.Save({{"A", "a"}, {"C", "c"}}));
  const std::vector<SavedConnection> all = {{"A", "a"}, {"B", "b"}, {"C", "c"}};
  EXPECT_EQ(SettingsFile(global).Load(), all);
}

TEST_F(SettingsFileTest, WhatAnotherProgramWroteBesideTheListStays) {
  LoadFrom("<Tessel><Connections/></Tessel>");
  folder.Write("Tessel.ini.xml", "<Tessel><Connections/><Later x=\"1\"/></Tessel>");
  EXPECT_TRUE(settings.Save({{"A", "a"}}));
  EXPECT_NE(Content("Tessel.ini.xml").find("<Later x=\"1\"/>"), std::string::npos);
}

TEST_F(SettingsFileTest, AFileThatWasDamagedMeanwhileIsLeftAlone) {
  LoadFrom("<Tessel><Connections/></Tessel>");
  folder.Write("Tessel.ini.xml", "<Tessel><Conn");
  EXPECT_FALSE(settings.Save({{"A", "a"}}));
  EXPECT_EQ(Content("Tessel.ini.xml"), "<Tessel><Conn");
}

TEST_F(SettingsFileTest, AFileThatWasRemovedMeanwhileIsWrittenAnew) {
  LoadFrom("<Tessel><Connections/></Tessel>");
  std::filesystem::remove(folder.File("Tessel.ini.xml"));
  EXPECT_TRUE(settings.Save({{"A", "a"}}));
  EXPECT_EQ(SettingsFile(global).Load().size(), 1U);
}

TEST_F(SettingsFileTest, SavingLeavesNoLockBehind) {
  settings.Load();
  settings.Save({{"A", "a"}});
  const std::filesystem::directory_iterator files(folder.Path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

constexpr int savesOfEach = 100;

/// What one of two programs does: it reads the list, adds a connection and saves, again and again.
int SaveOften(const Global& global, const std::string& name) {
  int failures = 0;
  for (int i = 0; i < savesOfEach; ++i) {
    SettingsFile settings(global);
    auto list = settings.Load();
    list.push_back({name + std::to_string(i), name});
    if (!settings.Save(list)) ++failures;
  }
  return failures;
}

TEST_F(SettingsFileTest, TwoRunningProgramsLoseNoneOfTwoHundredSaves) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) ::_exit(SaveOften(global, "child"));
  EXPECT_EQ(SaveOften(global, "parent"), 0);
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  const auto list = settings.Load();
  EXPECT_EQ(list.size(), 2U * savesOfEach);
  for (int i = 0; i < savesOfEach; ++i)
    for (const std::string name : {"child", "parent"})
      EXPECT_EQ(std::ranges::count(list, SavedConnection{name + std::to_string(i), name}), 1)
          << name << i;
}

}  // namespace
}  // namespace tessel
