#include "logic/program/Global.h"

#include <filesystem>

#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class GlobalTest : public test::LogicFixture {
 protected:
  std::string Detected(std::vector<std::string> names) {
    classes = std::move(names);
    global.DetectJetProvider();
    return global.JetProviderName();
  }
};

TEST_F(GlobalTest, TheHighestJetVersionThatIsRegisteredIsTaken) {
  struct {
    std::vector<std::string> registered;
    std::string version;
    const char* rule;
  } const cases[] = {
      {{}, "3.51", "none is registered"},
      {{"Excel.Sheet.8", "Microsoft.Jet"}, "3.51", "others do not count"},
      {{"Microsoft.Jet.OLEDB.3.51", "microsoft.jet.oledb.4.0"}, "4.0", "in any case"},
      {{"Microsoft.Jet.OLEDB.4.0", "Microsoft.Jet.OLEDB.4.00"}, "4.0", "the first of equal ones"},
      {{"Microsoft.Jet.OLEDB.4.00", "Microsoft.Jet.OLEDB.4.0"}, "4.00", "the first of equal ones"},
      {{"Microsoft.Jet.OLEDB.12.0", "Microsoft.Jet.OLEDB.4.0"}, "12.0", "compared as numbers"},
      {{"Microsoft.Jet.OLEDB.4.0", "Microsoft.Jet.OLEDB.12.0"}, "12.0", "compared as numbers"},
      {{"Microsoft.Jet.OLEDB.4.0.Foo", "Microsoft.Jet.OLEDB."}, "3.51", "a number and no more"},
      {{std::string("Microsoft.Jet.OLEDB.4.0\0junk", 28)}, "4.0", "cut at the first NUL"},
  };
  for (const auto& [registered, version, rule] : cases)
    EXPECT_EQ(Detected(registered), "Microsoft.Jet.OLEDB." + version) << rule;
}

TEST_F(GlobalTest, WithoutARegistryTheJetVersionIs351) {
  Global plain(Platform{desktop, data, files, "/x", "/x/Tessel", "1.0", nullptr});
  plain.DetectJetProvider();
  EXPECT_EQ(plain.JetProviderName(), "Microsoft.Jet.OLEDB.3.51");
}

TEST_F(GlobalTest, AFailingRegistryEndsTheDetectionSilentlyWithWhatWasFound) {
  Global failing(Platform{desktop, data, files, "/x", "/x/Tessel", "1.0",
                          [](int index) -> std::optional<std::string> {
                            if (index == 1) throw std::runtime_error("no more");
                            return "Microsoft.Jet.OLEDB.4.0";
                          }});
  EXPECT_NO_THROW(failing.DetectJetProvider());
  EXPECT_EQ(failing.JetProviderName(), "Microsoft.Jet.OLEDB.4.0");
}

TEST_F(GlobalTest, TheProgramsFilesLieBesideTheExecutableWhateverTheCurrentFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path("/");
  global.SetHelpFile();
  EXPECT_EQ(global.SettingsFilePath(), folder.File("Tessel.ini.xml"));
  EXPECT_EQ(global.LegacySettingsFilePath(), folder.File("Tessel.ini"));
  EXPECT_EQ(global.HelpFile(), folder.File("Tessel.chm"));
  std::filesystem::current_path(before);
}

TEST(RaiseAppErrorTest, CarriesTheApplicationsNumberSourceAndText) {
  try {
    RaiseAppError("Something is wrong.");
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), -2147220991);
    EXPECT_EQ(error.Info().source, "Tessel");
    EXPECT_EQ(error.Description(), "Something is wrong.");
  }
}

}  // namespace
}  // namespace tessel
