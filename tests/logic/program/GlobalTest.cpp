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

TEST_F(GlobalTest, WithoutRegisteredProvidersTheJetVersionIs351) {
  EXPECT_EQ(Detected({}), "Microsoft.Jet.OLEDB.3.51");
  EXPECT_EQ(Detected({"Excel.Sheet.8", "Microsoft.Jet"}), "Microsoft.Jet.OLEDB.3.51");
}

TEST_F(GlobalTest, WithoutARegistryTheJetVersionIs351) {
  Global plain(Platform{desktop, data, files, "/x", "/x/Tessel", "1.0", nullptr});
  plain.DetectJetProvider();
  EXPECT_EQ(plain.JetProviderName(), "Microsoft.Jet.OLEDB.3.51");
}

TEST_F(GlobalTest, TheHighestJetVersionWinsWhateverTheCaseOfItsPrefix) {
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.3.51", "microsoft.jet.oledb.4.0"}),
            "Microsoft.Jet.OLEDB.4.0");
}

TEST_F(GlobalTest, OfEqualJetVersionsTheFirstIsKept) {
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.4.0", "Microsoft.Jet.OLEDB.4.00"}),
            "Microsoft.Jet.OLEDB.4.0");
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.4.00", "Microsoft.Jet.OLEDB.4.0"}),
            "Microsoft.Jet.OLEDB.4.00");
}

TEST_F(GlobalTest, JetVersionsAreComparedAsNumbers) {
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.12.0", "Microsoft.Jet.OLEDB.4.0"}),
            "Microsoft.Jet.OLEDB.12.0");
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.4.0", "Microsoft.Jet.OLEDB.12.0"}),
            "Microsoft.Jet.OLEDB.12.0");
}

TEST_F(GlobalTest, JetNamesWithLettersBehindTheVersionAreIgnored) {
  EXPECT_EQ(Detected({"Microsoft.Jet.OLEDB.4.0.Foo", "Microsoft.Jet.OLEDB."}),
            "Microsoft.Jet.OLEDB.3.51");
}

TEST_F(GlobalTest, AClassNameIsCutAtItsFirstNul) {
  EXPECT_EQ(Detected({std::string("Microsoft.Jet.OLEDB.4.0\0junk", 28)}),
            "Microsoft.Jet.OLEDB.4.0");
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
