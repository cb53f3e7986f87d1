#include "system/PosixFiles.h"

#include <filesystem>
#include <iterator>
#include <string>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// What a process killed in its middle leaves behind: it takes the lock and never gives it back.
void LockAndDie(PosixFiles& files, const std::string& path) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto lock = files.Lock(path, 0);
    ::raise(SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
}

class PosixFilesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string File(const std::string& name) const { return folder_.File(name); }

  /// The description of the Error that `action` raises.
  template <class Action>
  [[nodiscard]] static std::string FailureOf(Action action) {
    try {
      action();
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::file);
      return error.Description();
    }
    return "(no failure)";
  }

  [[nodiscard]] std::string ReadFailure(const std::string& path) const {
    return FailureOf([&] { static_cast<void>(files_.ReadWhole(path)); });
  }
  [[nodiscard]] std::string WriteFailure(const std::string& path, std::string_view content = "x") {
    return FailureOf([&] { files_.ReplaceWhole(path, content, false); });
  }

  static mode_t Mode(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
  }

  [[nodiscard]] std::ptrdiff_t FileCount() const {
    return std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator());
  }

  TemporaryFolder folder_;
  PosixFiles files_;
};

TEST_F(PosixFilesTest, ALockKeepsOutTheNextUntilItIsGivenBack) {
  auto lock = files_.Lock(File("a"), 0);
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(files_.Lock(File("a"), 20), nullptr);
  EXPECT_NE(files_.Lock(File("b"), 0), nullptr) << "the lock of another file is another one";
  lock.reset();
  EXPECT_NE(files_.Lock(File("a"), 0), nullptr);
  EXPECT_EQ(FileCount(), 0) << "a lock leaves nothing behind";
}

TEST_F(PosixFilesTest, TheLockOfALinkIsThatOfItsFile) {
  fs::create_symlink(File("real"), File("link"));
  const auto lock = files_.Lock(File("link"), 0);
  EXPECT_EQ(files_.Lock(File("real"), 0), nullptr);
}

TEST_F(PosixFilesTest, AKilledProcessGivesItsLockBack) {
  LockAndDie(files_, File("a"));
  EXPECT_NE(files_.Lock(File("a"), 0), nullptr);
  EXPECT_EQ(FileCount(), 0);
}

TEST_F(PosixFilesTest, NoLockCanBeMadeInAFolderThatIsMissing) {
  EXPECT_EQ(FailureOf([&] { static_cast<void>(files_.Lock(File("none/a"), 0)); }),
            File("none/a") + ": No such file or directory");
}

TEST_F(PosixFilesTest, RemovingAMissingFileIsNoFailure) {
  files_.ReplaceWhole(File("a"), "x", false);
  files_.Remove(File("a"));
  EXPECT_EQ(FileCount(), 0);
  EXPECT_NO_THROW(files_.Remove(File("a")));
  fs::create_directory(File("folder"));
  EXPECT_EQ(FailureOf([&] { files_.Remove(File("folder")); }), File("folder") + ": Is a directory");
}

}  // namespace

TEST_F(PosixFilesTest, ReadsBackWhatWasWritten) {
  const std::string content = "select '\xF0\x9F\x98\x80'\r\n\0end\n"s;
  files_.ReplaceWhole(File("a.sql"), content, false);
  EXPECT_EQ(files_.ReadWhole(File("a.sql")), content);
  files_.ReplaceWhole(File("a.sql"), "", false);
  EXPECT_EQ(files_.ReadWhole(File("a.sql")), "");
  EXPECT_EQ(FileCount(), 1);
}

TEST_F(PosixFilesTest, ReadsLargeFilesWhole) {
  std::string content(50'000'000, 'a');
  content.back() = 'z';
  files_.ReplaceWhole(File("large"), content, false);
  EXPECT_EQ(files_.ReadWhole(File("large")), content);
}

TEST_F(PosixFilesTest, ReadsFilesWhoseSizeTheSystemDoesNotTell) {
  EXPECT_THAT(files_.ReadWhole("/proc/self/status"), testing::HasSubstr("Pid:"));
}

TEST_F(PosixFilesTest, TellsTheSizeOfAFileAndWhyItCannot) {
  files_.ReplaceWhole(File("a.sql"), "12345", false);
  EXPECT_EQ(files_.Size(File("a.sql")), 5U);
  const auto failure = [&](const std::string& path) {
    return FailureOf([&] { static_cast<void>(files_.Size(path)); });
  };
  EXPECT_EQ(failure(File("none")), File("none") + ": No such file or directory");
  EXPECT_EQ(failure(folder_.Path().string()), folder_.Path().string() + ": Is a directory");
}

TEST_F(PosixFilesTest, OnlyVisibleNormalFilesExist) {
  folder_.Write("file", "");
  folder_.Write(".hidden", "");
  fs::create_directory(File("folder"));
  fs::create_symlink("file", File("link"));
  fs::create_symlink("nowhere", File("dangling"));
  EXPECT_TRUE(files_.FileExists(File("file")));
  EXPECT_TRUE(files_.FileExists(File("link")));
  for (const char* name : {".hidden", "folder", "dangling", "missing", ""})
    EXPECT_FALSE(files_.FileExists(File(name))) << name;
  EXPECT_FALSE(files_.FileExists(""));
}

TEST_F(PosixFilesTest, SaysWhyAFileCannotBeRead) {
  fs::create_directory(File("folder"));
  ASSERT_EQ(::mkfifo(File("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadFailure(File("missing")), File("missing") + ": No such file or directory");
  EXPECT_EQ(ReadFailure(File("folder")), File("folder") + ": Is a directory");
  EXPECT_EQ(ReadFailure(File("pipe")), File("pipe") + ": Not a regular file");
}

TEST_F(PosixFilesTest, SaysWhyAFileCannotBeWritten) {
  fs::create_directory(File("folder"));
  ASSERT_EQ(::mkfifo(File("pipe").c_str(), 0600), 0);
  EXPECT_EQ(WriteFailure(File("no/file")), File("no/file") + ": No such file or directory");
  EXPECT_EQ(WriteFailure(File("folder")), File("folder") + ": Is a directory");
  EXPECT_EQ(WriteFailure(File("pipe")), File("pipe") + ": Not a regular file");
  EXPECT_TRUE(fs::is_fifo(File("pipe")));
}

TEST_F(PosixFilesTest, AFullDiskLeavesTheOldFile) {
  const std::string path = folder_.Write("settings", "old content");
  {
    const FileSizeLimit limit(4096);
    EXPECT_EQ(WriteFailure(path, std::string(10000, 'x')), path + ": File too large");
  }
  EXPECT_EQ(files_.ReadWhole(path), "old content");
  EXPECT_EQ(FileCount(), 1) << "the temporary file was left behind";
}

TEST_F(PosixFilesTest, AFullDiskMakesNoNewFile) {
  {
    const FileSizeLimit limit(4096);
    EXPECT_EQ(WriteFailure(File("new"), std::string(10000, 'x')), File("new") + ": File too large");
  }
  EXPECT_EQ(FileCount(), 0);
}

TEST_F(PosixFilesTest, KeepsThePermissionsOfAnExistingFile) {
  const std::string path = folder_.Write("query.sql", "old");
  fs::permissions(path, fs::perms(0640));
  files_.ReplaceWhole(path, "new", false);
  EXPECT_EQ(Mode(path), mode_t{0640});
  EXPECT_EQ(files_.ReadWhole(path), "new");
}

TEST_F(PosixFilesTest, AnOwnersFileIsForTheOwnerOnly) {
  const std::string path = folder_.Write("settings", "old");
  fs::permissions(path, fs::perms(0644));
  files_.ReplaceWhole(path, "new", true);
  EXPECT_EQ(Mode(path), mode_t{0600});
  files_.ReplaceWhole(File("fresh"), "new", true);
  EXPECT_EQ(Mode(File("fresh")), mode_t{0600});
}

TEST_F(PosixFilesTest, ANewFileObeysTheMask) {
  const mode_t old = ::umask(027);
  files_.ReplaceWhole(File("query.sql"), "select 1", false);
  ::umask(old);
  EXPECT_EQ(Mode(File("query.sql")), mode_t{0640});
}

TEST_F(PosixFilesTest, WritesThroughSymbolicLinks) {
  fs::create_directory(File("real"));
  folder_.Write("real/settings", "old");
  fs::create_symlink("real/settings", File("link"));
  fs::create_symlink(File("link"), File("outer"));
  files_.ReplaceWhole(File("outer"), "new", false);
  EXPECT_TRUE(fs::is_symlink(File("outer")));
  EXPECT_TRUE(fs::is_symlink(File("link")));
  EXPECT_EQ(files_.ReadWhole(File("real/settings")), "new");
}

TEST_F(PosixFilesTest, ADanglingLinkGetsItsFile) {
  fs::create_symlink("later", File("link"));
  files_.ReplaceWhole(File("link"), "new", false);
  EXPECT_TRUE(fs::is_symlink(File("link")));
  EXPECT_EQ(files_.ReadWhole(File("later")), "new");
}

TEST_F(PosixFilesTest, ACircleOfLinksIsRefused) {
  fs::create_symlink("b", File("a"));
  fs::create_symlink("a", File("b"));
  EXPECT_EQ(WriteFailure(File("a")), File("a") + ": Too many levels of symbolic links");
}

TEST_F(PosixFilesTest, ProtectedFilesAndFoldersAreRefused) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is protected from this user";
  const std::string path = folder_.Write("protected", "old");
  fs::permissions(path, fs::perms(0444));
  EXPECT_EQ(WriteFailure(path), path + ": Permission denied");
  fs::create_directory(File("folder"));
  fs::permissions(File("folder"), fs::perms(0555));
  EXPECT_EQ(WriteFailure(File("folder/new")), File("folder/new") + ": Permission denied");
}

TEST_F(PosixFilesTest, KnowsTheCurrentFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const std::string seen = files_.CurrentFolder();
  fs::current_path(before);
  EXPECT_EQ(fs::path(seen), fs::canonical(folder_.Path()));
}

// --- in pieces -----------------------------------------------------------------------------------

TEST_F(PosixFilesTest, AFileIsReadInPieces) {
  std::string content;
  for (int i = 0; i < 100'000; ++i) content += std::to_string(i);
  files_.ReplaceWhole(File("a"), content, false);
  const auto reader = files_.OpenToRead(File("a"));
  EXPECT_EQ(reader->Size(), content.size());
  std::string read;
  std::string piece(777, '\0');
  for (std::size_t length = 1; length != 0; read.append(piece, 0, length))
    length = reader->Read(piece);
  EXPECT_EQ(read, content);
  EXPECT_THROW(static_cast<void>(files_.OpenToRead(File("missing"))), Error);
  EXPECT_THROW(static_cast<void>(files_.OpenToRead(folder_.Path().string())), Error);
}

TEST_F(PosixFilesTest, WhatIsWrittenInPiecesReplacesTheFileOnlyInTheEnd) {
  files_.ReplaceWhole(File("a"), "old", false);
  ::chmod(File("a").c_str(), 0640);
  const auto fresh = files_.StartReplacing(File("a"));
  fresh->Write("new ");
  fresh->Write("content");
  EXPECT_EQ(files_.ReadWhole(File("a")), "old");
  fresh->PutInPlace();
  EXPECT_EQ(files_.ReadWhole(File("a")), "new content");
  EXPECT_EQ(Mode(File("a")), 0640U);
  EXPECT_EQ(FileCount(), 1);
}

TEST_F(PosixFilesTest, WhatIsNotPutInPlaceLeavesNothing) {
  files_.ReplaceWhole(File("a"), "old", false);
  files_.StartReplacing(File("a"))->Write("new");
  EXPECT_EQ(files_.ReadWhole(File("a")), "old");
  EXPECT_EQ(FileCount(), 1);
}

TEST_F(PosixFilesTest, AFullDiskInTheMiddleLeavesTheOldFile) {
  files_.ReplaceWhole(File("a"), "old", false);
  {
    const FileSizeLimit limit(1000);
    const auto fresh = files_.StartReplacing(File("a"));
    fresh->Write(std::string(900, 'x'));
    EXPECT_EQ(FailureOf([&] { fresh->Write(std::string(900, 'x')); }),
              File("a") + ": File too large");
  }
  EXPECT_EQ(files_.ReadWhole(File("a")), "old");
  EXPECT_EQ(FileCount(), 1);
}

TEST_F(PosixFilesTest, AFileThatMayNotBeWrittenIsRefusedAtOnce) {
  EXPECT_EQ(FailureOf([&] { static_cast<void>(files_.StartReplacing(File("no/a"))); }),
            File("no/a") + ": No such file or directory");
  EXPECT_EQ(FailureOf([&] { static_cast<void>(files_.StartReplacing(folder_.Path().string())); }),
            folder_.Path().string() + ": Is a directory");
}

}  // namespace tessel::test
