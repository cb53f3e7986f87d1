// The keys of a connection string by what a form asks for, and where a password is kept.

#include "logic/connections/text/LinkFields.h"

#include <gtest/gtest.h>

#include "contract/text/ConnectionParts.h"
#include "logic/connections/text/ConnectionText.h"
#include "logic/connections/text/PasswordPlace.h"

namespace tessel {
namespace {

constexpr LinkField allFields[] = {
    LinkField::File, LinkField::DataSourceName, LinkField::Driver,   LinkField::Server,
    LinkField::Port, LinkField::User,           LinkField::Password, LinkField::Database};
constexpr LinkKind kindsWithForm[] = {LinkKind::Sqlite, LinkKind::PostgreSql, LinkKind::MariaDb,
                                      LinkKind::Odbc};

TEST(LinkFieldsTest, HostileValuesComeBackEqual) {
  for (const std::string value :
       {"a;b", "}",    "{",      "{}",  "}}",  "a}b", "=",  "a=b", " a ", "\"a\"",
        "'",   "'a;b", "a\"b;c", "é;ö", "{a}", "{a",  "a}", ";",   "  ",  "Password=x;Server=y"})
    for (const LinkKind kind : kindsWithForm)
      for (const LinkField field : allFields) {
        if (!HasField(kind, field)) continue;
        DataLinkPairs pairs = SplitDataLink("First=1");
        SetField(pairs, kind, field, value);
        pairs.emplace_back("Last", "2");
        const std::string text = JoinDataLink(pairs);
        const DataLinkPairs again = SplitDataLink(text);
        EXPECT_EQ(FieldOf(again, kind, field), value) << text;
        EXPECT_EQ(again.size(), 3U) << text;
      }
}

TEST(LinkFieldsTest, AKeyKeepsItsPlaceAndItsSpelling) {
  DataLinkPairs pairs = SplitDataLink("provider=PostgreSQL;host=a;X=1;uid=me");
  SetField(pairs, LinkKind::PostgreSql, LinkField::Server, "b");
  SetField(pairs, LinkKind::PostgreSql, LinkField::User, "you");
  SetField(pairs, LinkKind::PostgreSql, LinkField::Port, "1");
  EXPECT_EQ(JoinDataLink(pairs), "provider=PostgreSQL;host=b;X=1;uid=you;Port=1");
}

TEST(LinkFieldsTest, AnEmptyValueTakesAllKeysOfTheMeaningAway) {
  DataLinkPairs pairs = SplitDataLink("Server=a;X=1;Host=b");
  SetField(pairs, LinkKind::MariaDb, LinkField::Server, "");
  EXPECT_EQ(JoinDataLink(pairs), "X=1");
}

TEST(LinkFieldsTest, AValueThatIsThereAlreadyIsLeftAsWritten) {
  DataLinkPairs pairs = SplitDataLink("Server={a};Database= d ");
  SetField(pairs, LinkKind::MariaDb, LinkField::Server, "a");
  SetField(pairs, LinkKind::MariaDb, LinkField::Database, "d");
  EXPECT_EQ(JoinDataLink(pairs), "Server={a};Database= d ");
}

TEST(LinkFieldsTest, EachKindHasItsOwnKeys) {
  const DataLinkPairs pairs = SplitDataLink("Data Source=x;UID=u");
  EXPECT_EQ(FieldOf(pairs, LinkKind::Sqlite, LinkField::File), "x");
  EXPECT_EQ(FieldOf(pairs, LinkKind::PostgreSql, LinkField::Server), "x");
  EXPECT_EQ(FieldOf(pairs, LinkKind::Odbc, LinkField::DataSourceName), "x");
  EXPECT_EQ(FieldOf(pairs, LinkKind::Sqlite, LinkField::User), "");
  EXPECT_EQ(FieldOf(pairs, LinkKind::Other, LinkField::User), "");
}

TEST(LinkFieldsTest, AnSslModeNeverBecomesAWeakerOne) {
  EXPECT_EQ(SslModeFor(LinkKind::MariaDb, "Require"), "Required");
  EXPECT_EQ(SslModeFor(LinkKind::MariaDb, "verify-ca"), "Verify Full");
  EXPECT_EQ(SslModeFor(LinkKind::PostgreSql, "Disabled"), "Disable");
  EXPECT_EQ(SslModeFor(LinkKind::PostgreSql, "verify_full"), "Verify Full");
  EXPECT_EQ(SslModeFor(LinkKind::MariaDb, "Prefer"), "");
  EXPECT_EQ(SslModeFor(LinkKind::MariaDb, "odd"), "odd");
}

TEST(PasswordPlaceTest, TheWordStandsInPlaceOfThePasswordAndGoesAgain) {
  DataLinkPairs pairs = SplitDataLink("Provider=PostgreSQL;Server=s;PWD=secret;User ID=u");
  EXPECT_FALSE(AsksForPassword(pairs));
  SetKeptInKeyring(pairs, true);
  EXPECT_EQ(JoinDataLink(pairs), "Provider=PostgreSQL;Server=s;User ID=u;Password From=Keyring");
  EXPECT_TRUE(AsksKeyring(pairs));
  SetKeptInKeyring(pairs, false);
  EXPECT_EQ(JoinDataLink(pairs), "Provider=PostgreSQL;Server=s;User ID=u");
}

TEST(PasswordPlaceTest, AnyOtherPlaceMeansToAskAndAPasswordInTheStringCounts) {
  EXPECT_TRUE(AsksForPassword(SplitDataLink("password from=Somewhere")));
  EXPECT_FALSE(AsksKeyring(SplitDataLink("password from=Somewhere")));
  EXPECT_FALSE(AsksForPassword(SplitDataLink("Password From=Keyring;Password=x")));
  EXPECT_FALSE(AsksForPassword(SplitDataLink("Server=s")));
}

TEST(PasswordPlaceTest, TheNameInTheKeyringIsThatOfTheServerAndTheUser) {
  const std::string name = KeyringName(SplitDataLink("Provider=PostgreSQL;Server=S;User ID=u"));
  EXPECT_EQ(name, "provider=postgresql;server=S;user id=u");
  for (const char* same :
       {"provider=postgresql;UID=u;host=S", "Provider=PostgreSQL;Server={S};User=u;Database=d",
        "Provider=PostgreSQL;Server=S;User ID=u;Mode=ReadOnly;SSL Mode=Require;PWD=x",
        "Password From=Keyring;Provider=PostgreSQL;Server=S;User ID=u;Connect Timeout=3"})
    EXPECT_EQ(KeyringName(SplitDataLink(same)), name) << same;
  for (const char* other :
       {"Provider=MariaDB;Server=S;User ID=u", "Provider=PostgreSQL;Server=T;User ID=u",
        "Provider=PostgreSQL;Server=S;User ID=v", "Provider=PostgreSQL;Server=S;User ID=u;Port=1",
        "Provider=PostgreSQL;Server=S;User ID=u;hostaddr=10.0.0.1",
        "Provider=PostgreSQL;Server={S;user id=u}", "Server=S;User ID=u"})
    EXPECT_NE(KeyringName(SplitDataLink(other)), name) << other;
}

TEST(PasswordPlaceTest, ALoginIsToldForAPerson) {
  EXPECT_EQ(LoginText(SplitDataLink("Provider=MariaDB;Server=h;UID=me")), "me at h (MariaDB)");
  EXPECT_EQ(LoginText(SplitDataLink("DSN=shop;UID=me")), "me at shop (ODBC)");
  EXPECT_EQ(LoginText(SplitDataLink("Provider=Odd")), "Odd");
}

TEST(PasswordPlaceTest, TheWordIsNoSecret) {
  EXPECT_EQ(WithoutPasswords("Password From=Keyring;Password=x"),
            "Password From=Keyring;Password=*****");
}

}  // namespace
}  // namespace tessel
