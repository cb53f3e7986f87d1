#include "system/PosixPrograms.h"

#include <gtest/gtest.h>

#include <chrono>

#include "contract/base/Error.h"

namespace tessel {
namespace {

class PosixProgramsTest : public ::testing::Test {
 protected:
  /// Waits for the end; false when it takes longer than ten seconds.
  static bool Ends(RunningProgram& program) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end)
      if (program.HasEnded(20)) return true;
    return false;
  }

  PosixPrograms programs;
};

TEST_F(PosixProgramsTest, AProgramIsFoundOnTheSearchPath) {
  EXPECT_FALSE(programs.Find("cat").empty());
  EXPECT_EQ(programs.Find("there is no such program"), "");
}

TEST_F(PosixProgramsTest, TextsOfAnyLengthGoThroughIt) {
  std::string text;
  for (int i = 0; i < 400'000; ++i) text += std::to_string(i) + "\n";
  const auto run = programs.Start(programs.Find("cat"), {}, text);
  ASSERT_TRUE(Ends(*run));
  EXPECT_TRUE(run->Output() == text);
  EXPECT_EQ(run->ExitStatus(), 0);
}

TEST_F(PosixProgramsTest, ArgumentsAreReadByNoShell) {
  const auto run = programs.Start(programs.Find("printf"), {"%s|", "a b", "$HOME", "'"}, "");
  ASSERT_TRUE(Ends(*run));
  EXPECT_EQ(run->Output(), "a b|$HOME|'|");
}

TEST_F(PosixProgramsTest, AFailureTellsItsStatusAndItsWords) {
  const auto run = programs.Start(programs.Find("sh"), {"-c", "echo no >&2; exit 3"}, "text");
  EXPECT_EQ(run->ExitStatus(), -1);
  ASSERT_TRUE(Ends(*run));
  EXPECT_EQ(run->ExitStatus(), 3);
  EXPECT_EQ(run->Complaints(), "no\n");
}

TEST_F(PosixProgramsTest, AProgramThatReadsNothingEndsAllTheSame) {
  const auto run =
      programs.Start(programs.Find("true"), {}, std::string(std::size_t{4} << 20U, 'x'));
  ASSERT_TRUE(Ends(*run));
  EXPECT_EQ(run->ExitStatus(), 0);
}

TEST_F(PosixProgramsTest, OneThatIsLetGoOfIsEnded) {
  const auto begin = std::chrono::steady_clock::now();
  {
    const auto run = programs.Start(programs.Find("sleep"), {"30"}, "");
    EXPECT_FALSE(run->HasEnded(1));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(PosixProgramsTest, OneThatCannotBeStartedIsAnError) {
  try {
    const auto run = programs.Start("/nowhere/at/all", {}, "");
    FAIL() << "it started";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), errorNumber::file);
    EXPECT_EQ(error.Description(), "/nowhere/at/all: No such file or directory");
  }
}

}  // namespace
}  // namespace tessel
