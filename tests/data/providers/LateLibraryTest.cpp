// Client libraries that are loaded when they are first needed.

#include "data/providers/LateLibrary.h"

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel::test {
namespace {

TEST(LateLibraryTest, AFunctionIsCalledAsItIsDeclared) {
  constexpr LateLibrary library("libc.so.6", "C", "libc6");
  const LateFunction<int(int)> absolute(library, "abs");
  EXPECT_EQ(absolute(-7), 7);
}

TEST(LateLibraryTest, ALibraryThatIsNotThereIsAnErrorWithItsPackage) {
  constexpr LateLibrary library("libnosuch.so.9", "NoSuch", "libnosuch9");
  const LateFunction<int(int)> function(library, "abs");
  try {
    function(1);
    FAIL() << "it is there";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), errorNumber::database);
    EXPECT_TRUE(error.Description().starts_with(
        "The client library of NoSuch cannot be loaded (package libnosuch9): libnosuch.so.9"))
        << error.Description();
  }
}

}  // namespace
}  // namespace tessel::test
