#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "data/providers/text/ConnectionKeys.h"
#include "tests/data/support/DataTest.h"
#include "tests/data/tasks/ScriptedProvider.h"

namespace tessel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> Parsed(std::string_view text) {
  const ConnectionKeys keys = ConnectionKeys::Parse(text);
  std::vector<std::string> lines;
  for (const ConnectionKey& key : keys.Items())
    lines.push_back(key.name + "|" + key.value + "|" + key.text);
  return lines;
}

}  // namespace

TEST(ConnectionKeys, AreDividedBySemicolonsAndTheFirstEqualsSign) {
  EXPECT_THAT(Parsed("A=1;B=x=y; C C = z z ;"), ElementsAre("A|1|1", "B|x=y|x=y", "C C|z z|z z"));
  EXPECT_THAT(Parsed(""), ElementsAre());
  EXPECT_THAT(Parsed(";;;A=;"), ElementsAre("A||"));
}

TEST(ConnectionKeys, PartsWithoutANameOrAnEqualsSignAreLeftOut) {
  EXPECT_THAT(Parsed("word;=1;A=2;  "), ElementsAre("A|2|2"));
}

TEST(ConnectionKeys, ValuesInBracesMayHoldAnything) {
  EXPECT_THAT(Parsed("A={x;y=z};B=2"), ElementsAre("A|x;y=z|{x;y=z}", "B|2|2"));
  EXPECT_THAT(Parsed("A= {a}}b;} ;B=2"), ElementsAre("A|a}b;|{a}}b;}", "B|2|2"));
  EXPECT_THAT(Parsed("A={};B=2"), ElementsAre("A||{}", "B|2|2"));
  EXPECT_THAT(Parsed("A={}}};B=2"), ElementsAre("A|}|{}}}", "B|2|2"));
}

TEST(ConnectionKeys, BracesThatAreNotClosedAreKept) {
  EXPECT_THAT(Parsed("A={x;B=2"), ElementsAre("A|{x;B=2|{x;B=2"));
  EXPECT_THAT(Parsed("A=x{y;B=2"), ElementsAre("A|x{y|x{y", "B|2|2"));
}

TEST(ConnectionKeys, TheFirstOfSeveralCounts) {
  EXPECT_THAT(Parsed("Server=a;SERVER=b;server=c"), ElementsAre("Server|a|a"));
}

TEST(ConnectionKeys, AreFoundWithoutRegardToCase) {
  const ConnectionKeys keys = ConnectionKeys::Parse("Data Source=x;UID=u");
  EXPECT_EQ(keys.Get("DATA SOURCE"), "x");
  EXPECT_EQ(keys.Get("data"), "");
  EXPECT_EQ(keys.Get("data", "none"), "none");
  EXPECT_EQ(*keys.FindAny({"User ID", "uid"}), "u");
  EXPECT_EQ(keys.FindAny({"Password", "PWD"}), nullptr);
}

TEST(ConnectionKeys, AreChangedAndJoinedAgain) {
  ConnectionKeys keys = ConnectionKeys::Parse("Driver={My Driver};Server=s;X={a;b}");
  keys.Set("server", "t");
  keys.Set("PWD", "p;w}");
  keys.Remove("x");
  EXPECT_EQ(keys.Compose(), "Driver={My Driver};Server=t;PWD={p;w}}}");
  EXPECT_EQ(ConnectionKeys::Parse(keys.Compose()).Get("pwd"), "p;w}");
}

TEST(ProviderRegistry, FindsAProviderByNameOrBeginning) {
  class Two : public ScriptedProvider {
   public:
    using ScriptedProvider::ScriptedProvider;
    [[nodiscard]] std::vector<std::string> Names() const override { return {"Two", "Jet.*"}; }
  };
  const auto script = std::make_shared<Script>();
  ProviderRegistry registry;
  registry.Add(std::make_unique<ScriptedProvider>(script));
  registry.Add(std::make_unique<Two>(script), true);
  for (const char* text : {"Provider=scripted", "PROVIDER=two;x=y", "Provider=jet.OLEDB.4.0",
                           "Driver=x", "Provider=;Driver=x", ""})
    EXPECT_NE(registry.CreateSession(text), nullptr) << text;
  EXPECT_THAT(registry.Names(), ElementsAre("Jet.*", "Scripted", "Two"));
  const ErrorInfo error = ErrorOf([&] { (void)registry.CreateSession("Provider=Jet;PWD=secret"); });
  EXPECT_EQ(error.number, errorNumber::providerNotFound);
  EXPECT_THAT(error.description, HasSubstr("'Jet'"));
  EXPECT_THAT(error.description, HasSubstr("Jet.*, Scripted, Two."));
  EXPECT_THAT(error.description, Not(HasSubstr("secret")));
}

TEST(ProviderRegistry, NoProviderSeesWhereThePasswordIs) {
  class Seen : public ScriptedProvider {
   public:
    explicit Seen(std::string& keys) : ScriptedProvider(std::make_shared<Script>()), keys_(keys) {}
    [[nodiscard]] std::unique_ptr<ProviderSession>
    CreateSession(const ConnectionKeys& keys) const override {
      keys_ = keys.Compose();
      return ScriptedProvider::CreateSession(keys);
    }

   private:
    std::string& keys_;
  };
  std::string keys;
  ProviderRegistry registry;
  registry.Add(std::make_unique<Seen>(keys), true);
  (void)registry.CreateSession("Server=s;password from=Keyring;UID=u");
  EXPECT_EQ(keys, "Server=s;UID=u");
}

TEST(ProviderRegistry, WithoutADefaultANameIsNeeded) {
  ProviderRegistry registry;
  registry.Add(std::make_unique<ScriptedProvider>(std::make_shared<Script>()));
  EXPECT_THAT(ErrorOf([&] { (void)registry.CreateSession("Driver=x"); }).description,
              HasSubstr("names no provider"));
}

class ProgramProviders : public DataTest {};

TEST_F(ProgramProviders, AnUnknownProviderIsRefusedAtOnce) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString("Provider=Nonsense");
  const ErrorInfo error = ErrorOf([&] { (void)connection->StartOpen({}, {}); });
  EXPECT_EQ(error.number, errorNumber::providerNotFound);
  for (const std::string& name : data_.ProviderNames())
    EXPECT_THAT(error.description, HasSubstr(name));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_FALSE(data_.HasAbandonedWork());
}

TEST_F(ProgramProviders, AreListedInOrder) {
  const std::vector<std::string> names = data_.ProviderNames();
  EXPECT_THAT(names, Contains("SQLite"));
  EXPECT_THAT(names, Contains(StartsWith("MSDASQL")));
  EXPECT_THAT(names, Contains(StartsWith("SQLOLEDB")));
  EXPECT_TRUE(std::ranges::is_sorted(names, {}, [](const auto& name) { return AsciiUpper(name); }));
}

}  // namespace tessel::test
