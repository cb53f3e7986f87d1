#include "tests/support/FakeFiles.h"

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel::test {

TEST(FakeFilesTest, KeepsFilesInMemoryAndFailsOnDemand) {
  FakeFiles files;
  files.ReplaceWhole("/home/me/a.sql", "select 1", true);
  EXPECT_EQ(files.ReadWhole("/home/me/a.sql"), "select 1");
  EXPECT_TRUE(files.IsOwnerOnly("/home/me/a.sql"));
  EXPECT_TRUE(files.FileExists("/home/me/a.sql"));
  EXPECT_FALSE(files.FileExists("/home/me/b.sql"));
  EXPECT_THROW(static_cast<void>(files.ReadWhole("/home/me/b.sql")), Error);
  files.FailWrites();
  try {
    files.ReplaceWhole("/home/me/a.sql", "select 2", false);
    ADD_FAILURE() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "/home/me/a.sql: No space left on device");
  }
  EXPECT_EQ(files.ReadWhole("/home/me/a.sql"), "select 1");
  files.FailReads();
  EXPECT_THROW(static_cast<void>(files.ReadWhole("/home/me/a.sql")), Error);
}

}  // namespace tessel::test
