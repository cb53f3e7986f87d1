#include "logic/connections/text/ConnectionText.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(ConnectionTextTest, PasswordsAreShownAsStars) {
  EXPECT_EQ(WithoutPasswords("Provider=PostgreSQL;Server=s;Password=secret;Database=d"),
            "Provider=PostgreSQL;Server=s;Password=*****;Database=d");
  EXPECT_EQ(WithoutPasswords("DSN=d; pwd = secret "), "DSN=d; pwd = ***** ");
  EXPECT_EQ(WithoutPasswords("Jet OLEDB:Database Password=secret"),
            "Jet OLEDB:Database Password=*****");
  EXPECT_EQ(WithoutPasswords("sslpassword=secret;PWD=other"), "sslpassword=*****;PWD=*****");
}

TEST(ConnectionTextTest, ValuesInBracesAndQuotesAreHiddenWhole) {
  EXPECT_EQ(WithoutPasswords("PWD={se;cret};Database=d"), "PWD=*****;Database=d");
  EXPECT_EQ(WithoutPasswords("PWD={se}};cr=et};Database=d"), "PWD=*****;Database=d");
  EXPECT_EQ(WithoutPasswords("Password=\"se;cr\"\"et\";Database=d"), "Password=*****;Database=d");
  EXPECT_EQ(WithoutPasswords("Password='se;cret';Database=d"), "Password=*****;Database=d");
}

TEST(ConnectionTextTest, AValueThatIsNotClosedIsHiddenToTheEnd) {
  EXPECT_EQ(WithoutPasswords("PWD={se;cret"), "PWD=*****");
  EXPECT_EQ(WithoutPasswords("PWD='se;cret"), "PWD=*****");
}

TEST(ConnectionTextTest, EverythingElseStaysAsItIs) {
  for (const char* text : {"", ";;", "Server=s", "Database={a;PWD=no password}", "PWD=;Server=s",
                           "PWD", "no keys at all", "=x;;Server = {a}}b} "})
    EXPECT_EQ(WithoutPasswords(text), text);
}

}  // namespace
}  // namespace tessel
