#include <fstream>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include "data/cursor/ClientRecordset.h"
#include "data/rows/RowMemory.h"
#include "logic/results/Conversions.h"
#include "tests/data/conversion/HardValues.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

constexpr std::int64_t rows = 150'000;
constexpr std::size_t megabyte = 1'000'000;

/// Rows of every kind of cell, with nulls, and one column whose cells differ in kind.
const std::string manyRows =
    "with recursive c(n) as (select 1 union all select n + 1 from c where n < " +
    std::to_string(rows) +
    ") select n, n * 7919 % 100003 / 8.0 as amount, 'row ' || (n * 104729 % 1000003) as name,"
    " case when n % 7 = 3 then null else zeroblob(n % 5) || char(65 + n % 26) end as bytes,"
    " null as empty, case n % 3 when 0 then n when 1 then 'x' || n else n / 2.0 end as mixed"
    " from c";

/// Memory of this process that is in use now, in bytes.
std::size_t ResidentBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// A chunk of one column of numbers.
ChunkPtr NumbersFrom(std::int64_t first, std::int64_t count) {
  RowSink sink(1);
  for (std::int64_t n = first; n < first + count; ++n) {
    sink.Column(0).AppendInteger(n);
    sink.EndRow();
  }
  sink.CloseChunk();
  return sink.TakeChunks().at(0);
}

/// While it lives, no file may become larger.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

/// A file system of one megabyte, where this user may make one.
class SmallDisk {
 public:
  SmallDisk() : mounted_(mount("tessel", folder_.Path().c_str(), "tmpfs", 0, "size=1m") == 0) {}
  SmallDisk(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (mounted_) umount(folder_.Path().c_str());
  }
  [[nodiscard]] bool IsThere() const { return mounted_; }
  [[nodiscard]] std::filesystem::path Folder() const { return folder_.Path(); }

 private:
  TemporaryFolder folder_;
  bool mounted_;
};

}  // namespace

class BeyondMemory : public testing::Test {
 protected:
  [[nodiscard]] std::shared_ptr<Connection> ConnectWith(std::size_t bytes,
                                                        const std::filesystem::path& folder) {
    data_ =
        std::make_unique<DataAccessObjects>(queue_, nullptr, RowMemory{bytes, folder}, slowdown);
    auto connection = data_->CreateConnection();
    connection->SetConnectionString("Provider=SQLite;Data Source=:memory:");
    OpenNow(*connection);
    return connection;
  }
  [[nodiscard]] static std::shared_ptr<Recordset> Read(Connection& connection,
                                                       const std::string& sql = manyRows) {
    return QueryNow(connection, sql);
  }
  [[nodiscard]] static std::size_t HeldBytes(const Recordset& recordset) {
    return static_cast<const ClientRecordset&>(recordset).HeldBytes();
  }
  /// Fetches until there is no more room, and checks what is told and kept.
  void ExpectEndsFull(Connection& connection) {
    EventLog log;
    const StartedQuery recordset(connection.StartQuery(manyRows, LockType::ReadOnly));
    log.Watch(recordset.Operation());
    ASSERT_TRUE(queue_.PumpUntil([&] { return log.Ends() > 0; }));
    ASSERT_TRUE(log.LastError());
    EXPECT_EQ(log.LastError()->number, errorNumber::file);
    EXPECT_THAT(log.LastError()->description, testing::HasSubstr("fetched so far are kept"));
    EXPECT_EQ(connection.Errors().size(), 1U);
    EXPECT_EQ(recordset.State(), objectState::open);
    EXPECT_GT(recordset->RecordCount(), 0);
    EXPECT_LT(recordset->RecordCount(), rows);
    for (std::int64_t row = 0; row < recordset->RecordCount(); ++row)
      ASSERT_EQ(ToValue(recordset->ValueAt(row, 0)), Value(row + 1));
    EXPECT_EQ(ToText(Read(connection, "select 42")->ValueAt(0, 0)), "42");
  }

  PumpQueue queue_;
  std::unique_ptr<DataAccessObjects> data_;
};

TEST_F(BeyondMemory, EveryCellIsThatOfTheSameRowsInMemory) {
  const auto memory = ConnectWith(1000 * megabyte, "/nowhere");
  const auto spilling = ConnectWith(megabyte, SpillFolder());
  const auto expected = Read(*memory);
  const auto found = Read(*spilling);
  ASSERT_EQ(found->RecordCount(), rows);
  EXPECT_GT(HeldBytes(*expected), 4 * megabyte);
  EXPECT_LE(HeldBytes(*found), megabyte);
  for (std::int64_t row = 0; row < rows; ++row)
    for (std::size_t field = 0; field < found->Fields().size(); ++field)
      ASSERT_EQ(ToValue(found->ValueAt(row, field)), ToValue(expected->ValueAt(row, field)))
          << "row " << row << ", field " << field;
}

TEST_F(BeyondMemory, NothingIsWrittenWhileTheRowsFit) {
  const auto connection = ConnectWith(1000 * megabyte, "/nowhere");
  EXPECT_EQ(Read(*connection)->RecordCount(), rows);
}

TEST_F(BeyondMemory, SortsAndClonesAsInMemory) {
  const auto memory = ConnectWith(1000 * megabyte, "/nowhere");
  const auto spilling = ConnectWith(megabyte, SpillFolder());
  const auto expected = Read(*memory);
  const auto found = Read(*spilling);
  const auto clone = found->Clone(LockType::ReadOnly);
  for (const char* order : {"amount DESC, n", "name, n DESC", "mixed, n"}) {
    expected->SetSort(order);
    found->SetSort(order);
    for (std::int64_t row = 0; row < rows; ++row)
      ASSERT_EQ(found->BookmarkAt(row), expected->BookmarkAt(row)) << order << ", row " << row;
  }
  EXPECT_EQ(ToValue(clone->ValueAt(rows - 1, 0)), Value(rows));
}

TEST_F(BeyondMemory, EveryConversionIsThatOfTheSameRowsInMemory) {
  const auto memory = ConnectWith(1000 * megabyte, "/nowhere");
  const auto spilling = ConnectWith(megabyte, SpillFolder());
  const auto expected = Read(*memory);
  const auto found = Read(*spilling);
  ASSERT_LE(HeldBytes(*found), megabyte);
  for (const std::string& command : ConversionCommands()) {
    const std::string text = Converted(*expected, command, "t");
    EXPECT_GT(text.size(), megabyte / 2) << command;
    EXPECT_TRUE(Converted(*found, command, "t") == text) << command;
  }
}

TEST_F(BeyondMemory, AViewStaysGoodWhenItsMemoryWasGivenBack) {
  const auto connection = ConnectWith(megabyte, SpillFolder());
  const auto recordset = Read(*connection);
  const auto row = rows - 10;
  const auto view = std::get<std::string_view>(recordset->ValueAt(row, 2));
  const std::string text(view);
  for (int round = 0; round < 3; ++round) {
    for (std::int64_t other = 0; other < rows; other += 1000) (void)recordset->ValueAt(other, 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
  }
  EXPECT_EQ(view, text);
  EXPECT_EQ(std::get<std::string_view>(recordset->ValueAt(row, 2)).data(), view.data());
}

/// The clone outlives the recordset, and the connection with its worker.
TEST_F(BeyondMemory, RowsOutliveWhoFetchedThem) {
  auto connection = ConnectWith(megabyte, SpillFolder());
  auto recordset = Read(*connection);
  const auto clone = recordset->Clone(LockType::ReadOnly);
  recordset->Close();
  recordset.reset();
  connection->Close();
  EXPECT_EQ(ToValue(clone->ValueAt(rows - 1, 0)), Value(rows));
}

TEST_F(BeyondMemory, LookingAtEveryRowTakesBoundedMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "The sanitizer takes memory of its own.";
#endif
  const auto connection = ConnectWith(megabyte, SpillFolder());
  const auto recordset =
      Read(*connection, "with recursive c(n) as (select 1 union all select n + 1 from c where n < "
                        "300000) select n, hex(zeroblob(500)) as wide from c");
  const std::size_t before = ResidentBytes();
  std::size_t most = 0;
  std::size_t sum = 0;
  for (std::int64_t row = 0; row < recordset->RecordCount(); ++row) {
    sum += std::get<std::string_view>(recordset->ValueAt(row, 1)).size();
    if (row % 1000 == 0) most = std::max(most, ResidentBytes());
  }
  EXPECT_EQ(sum, 300'000'000U);
  EXPECT_LT(most - std::min(most, before), 200 * megabyte);
}

TEST_F(BeyondMemory, TheFileHasNoName) {
  const TemporaryFolder folder;
  const auto connection = ConnectWith(megabyte, folder.Path());
  const auto recordset = Read(*connection);
  ASSERT_LE(HeldBytes(*recordset), megabyte);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

// --- no room -------------------------------------------------------------------------------------

TEST_F(BeyondMemory, AFullDiskEndsTheFetchWithTheRowsSoFar) {
  const SmallDisk disk;
  if (!disk.IsThere()) GTEST_SKIP() << "Only root can make a small disk.";
  ExpectEndsFull(*ConnectWith(megabyte, disk.Folder()));
}

TEST_F(BeyondMemory, AFileThatMayNotGrowEndsTheFetchWithTheRowsSoFar) {
  const TemporaryFolder folder;
  const auto connection = ConnectWith(megabyte, folder.Path());
  const FileSizeLimit limit(4 * megabyte);
  ExpectEndsFull(*connection);
}

TEST_F(BeyondMemory, AMissingFolderEndsTheFetchWithTheRowsSoFar) {
  ExpectEndsFull(*ConnectWith(megabyte, "/nowhere/at/all"));
}

TEST_F(BeyondMemory, ACancelIsStillACancelWhenThereIsNoRoom) {
  const auto connection = ConnectWith(megabyte, SpillFolder());
  EventLog log;
  const StartedQuery recordset(connection->StartQuery(
      "with recursive c(n) as (select 1 union all select n + 1 from c) select n from c",
      LockType::ReadOnly));
  log.Watch(recordset.Operation());
  ASSERT_TRUE(
      queue_.PumpUntil([&] { return recordset.State() > 0 && log.LastProgress() > 300'000; }));
  recordset.Cancel();
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.Ends() > 0; }));
  ASSERT_TRUE(log.LastError());
  EXPECT_EQ(log.LastError()->number, errorNumber::cancelled);
  EXPECT_EQ(ToValue(recordset->ValueAt(recordset->RecordCount() - 1, 0)),
            Value(recordset->RecordCount()));
}

// --- the parts -----------------------------------------------------------------------------------

TEST(ChunkKeeper, KeepsInMemoryWhatFitsAndNoMore) {
  ChunkKeeper keeper({.bytes = 20'000, .folder = SpillFolder()});
  std::vector<ChunkPtr> chunks = {NumbersFrom(0, 1000), NumbersFrom(1000, 1000),
                                  NumbersFrom(2000, 1000)};
  EXPECT_FALSE(keeper.Keep(chunks));
  EXPECT_EQ(chunks[0]->part, nullptr);
  EXPECT_EQ(chunks[1]->part, nullptr);
  ASSERT_NE(chunks[2]->part, nullptr);
  EXPECT_EQ(chunks[2]->HeldBytes(), 0U);
  EXPECT_EQ(ToValue(chunks[2]->columns[0].At(999)), Value(std::int64_t{2999}));
  chunks[2]->part->LetGo();
  EXPECT_EQ(ToValue(chunks[2]->columns[0].At(0)), Value(std::int64_t{2000}));
}

TEST(ChunkKeeper, TellsOnceThatThereIsNoRoomAndKeepsTheRows) {
  ChunkKeeper keeper({.bytes = 1, .folder = "/nowhere/at/all"});
  std::vector<ChunkPtr> chunks = {NumbersFrom(0, 10), NumbersFrom(10, 10)};
  const auto reason = keeper.Keep(chunks);
  ASSERT_TRUE(reason);
  EXPECT_THAT(reason->Description(), testing::HasSubstr("/nowhere/at/all"));
  EXPECT_EQ(ToValue(chunks[1]->columns[0].At(9)), Value(std::int64_t{19}));
  std::vector<ChunkPtr> more = {NumbersFrom(20, 10)};
  EXPECT_FALSE(keeper.Keep(more));
  EXPECT_EQ(more[0]->part, nullptr);
}

TEST(RowMemory, IsAQuarterOfTheMachineButNotTooLittle) {
  const auto machine = static_cast<std::size_t>(sysconf(_SC_PHYS_PAGES)) *
                       static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  EXPECT_EQ(RowMemory::OfMachine().bytes, std::max(machine / 4, 256 * megabyte));
}

}  // namespace tessel::test
