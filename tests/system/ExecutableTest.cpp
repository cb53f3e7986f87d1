#include "system/Executable.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tessel::test {
namespace {

/// Run by the tests below in a process of its own.
TEST(ExecutableTest, DISABLED_TellsItsPath) { std::cout << "path=" << ExecutablePath() << '\n'; }

/// What these tests say of their path when a shell starts them by that command.
std::string PathWhenStartedBy(const std::string& command) {
  const std::string whole =
      command +
      " --gtest_also_run_disabled_tests --gtest_filter=ExecutableTest.DISABLED_TellsItsPath";
  FILE* output = ::popen(whole.c_str(), "r");
  if (output == nullptr) return {};
  std::string path;
  std::array<char, 4096> line{};
  while (std::fgets(line.data(), line.size(), output) != nullptr)
    if (const std::string text = line.data(); text.starts_with("path="))
      path = text.substr(5, text.size() - 6);
  return ::pclose(output) == 0 ? path : std::string();
}

class ExecutableLinkTest : public ::testing::Test {
 protected:
  ExecutableLinkTest() {
    std::filesystem::create_directory(real);
    std::filesystem::create_directory_symlink(real, folder.Path() / "alias");
    std::filesystem::create_symlink(executable, link);
  }

  const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe");
  const TemporaryFolder folder;
  const std::filesystem::path real = std::filesystem::canonical(folder.Path()) / "program folder";
  const std::filesystem::path link = real / "Tessel";
};

TEST_F(ExecutableLinkTest, StartedThroughALinkItIsTheLink) {
  EXPECT_EQ(PathWhenStartedBy("'" + link.string() + "'"), link);
  EXPECT_EQ(PathWhenStartedBy("cd '" + real.string() + "' && ./Tessel"), link);
  EXPECT_EQ(PathWhenStartedBy("cd / && PATH='" + real.string() + "' Tessel"), link);
}

TEST_F(ExecutableLinkTest, ALinkToItsFolderDoesNotCount) {
  EXPECT_EQ(PathWhenStartedBy("'" + folder.File("alias/Tessel") + "'"), link);
}

TEST_F(ExecutableLinkTest, StartedWithoutALinkItIsTheFile) {
  EXPECT_EQ(PathWhenStartedBy("'" + executable.string() + "'"), executable);
}

TEST_F(ExecutableLinkTest, StartedFromAnOpenFileItIsTheFile) {
  EXPECT_EQ(PathWhenStartedBy("exec 3<'" + link.string() + "' && /proc/self/fd/3"), executable);
}

}  // namespace
}  // namespace tessel::test
