#include <cstring>
#include <ctime>
#include <fstream>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include "data/cursor/rows/ClientRecordset.h"
#include "data/rows/RowMemory.h"
#include "logic/results/conversions/Conversions.h"
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

/// The time that this thread has worked, in seconds.
double ThreadSeconds() {
  timespec worked{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
  return static_cast<double>(worked.tv_sec) + static_cast<double>(worked.tv_nsec) / 1e9;
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
    return ConnectAgain();
  }
  /// One more connection of the same program.
  [[nodiscard]] std::shared_ptr<Connection> ConnectAgain() {
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
  /// The rows are those of manyRows, or the first of them.
  static void ExpectNumbered(const Recordset& recordset, std::int64_t count = rows) {
    ASSERT_EQ(recordset.RecordCount(), count);
    for (std::int64_t row = 0; row < count; ++row)
      ASSERT_EQ(ToValue(recordset.ValueAt(row, 0)), Value(row + 1));
    const auto last = std::to_string(count * 104729 % 1000003);
    ASSERT_EQ(ToText(recordset.ValueAt(count - 1, 2)), "row " + last);
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
    ExpectNumbered(*recordset, recordset->RecordCount());
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

// --- several results -----------------------------------------------------------------------------

TEST_F(BeyondMemory, TheRowsOfTenConnectionsTakeTheMemoryOfOne) {
  constexpr std::size_t budget = 8 * megabyte;
  std::vector<std::shared_ptr<Connection>> connections = {ConnectWith(budget, SpillFolder())};
  while (connections.size() < 10) connections.push_back(ConnectAgain());
  std::vector<std::shared_ptr<Recordset>> results;
  for (const auto& connection : connections) results.push_back(Read(*connection));
  std::size_t held = 0;
  for (const auto& result : results) held += HeldBytes(*result);
  EXPECT_LE(held, budget);
  EXPECT_EQ(HeldBytes(*results.front()), 0U) << "The oldest rows go first.";
  EXPECT_GT(HeldBytes(*results.back()), budget / 2) << "The newest rows stay.";
  for (const auto& result : results) ExpectNumbered(*result);
}

TEST_F(BeyondMemory, AClosedResultGivesItsMemoryBack) {
  const auto connection = ConnectWith(20 * megabyte, SpillFolder());
  auto first = Read(*connection);
  const std::size_t size = HeldBytes(*first);
  ASSERT_GT(size, 4 * megabyte);
  for (int i = 0; i < 5; ++i) Read(*connection)->Close();
  EXPECT_EQ(HeldBytes(*first), size);
  const auto clone = first->Clone(LockType::ReadOnly);
  first.reset();
  const auto second = Read(*connection);
  const auto third = Read(*connection);
  EXPECT_LT(HeldBytes(*clone), size) << "A clone keeps the rows.";
  EXPECT_GT(std::min(HeldBytes(*second), HeldBytes(*third)), 4 * megabyte);
  ExpectNumbered(*clone);
}

TEST_F(BeyondMemory, AViewStaysGoodWhileItsRowsGoToTheFile) {
  const auto connection = ConnectWith(10 * megabyte, SpillFolder());
  const auto older = Read(*connection);
  ASSERT_GT(HeldBytes(*older), 4 * megabyte);
  const auto clone = older->Clone(LockType::ReadOnly);
  const auto view = std::get<std::string_view>(clone->ValueAt(10, 2));
  const std::string text(view);
  const auto newer = Read(*connection);
  const auto newest = Read(*connection);
  EXPECT_EQ(HeldBytes(*older), 0U);
  EXPECT_EQ(view, text);
  EXPECT_EQ(std::get<std::string_view>(older->ValueAt(10, 2)).data(), view.data());
  clone->SetSort("n DESC");
  EXPECT_EQ(ToValue(clone->ValueAt(0, 0)), Value(rows));
  ExpectNumbered(*older);
}

TEST_F(BeyondMemory, RowsAreChangedBeforeAndAfterTheyGoToTheFile) {
  const auto connection = ConnectWith(10 * megabyte, SpillFolder());
  (void)QueryNow(*connection, "create table t (n integer primary key, name text)");
  (void)QueryNow(*connection,
                 "insert into t with recursive c(n) as (select 1 union all select n + 1"
                 " from c where n < 150000) select n, 'a name of some length ' || n"
                 " from c");
  const auto changed = QueryNow(*connection, "select * from t", LockType::Optimistic);
  ASSERT_GT(HeldBytes(*changed), 4 * megabyte);
  const auto clone = changed->Clone(LockType::ReadOnly);
  changed->MoveTo(5);
  changed->SetFieldValue(1, std::string("written before"));
  Update(*changed);
  changed->MoveTo(7);
  changed->SetFieldValue(1, std::string("begun before"));
  const auto other = ConnectAgain();
  const auto newer = Read(*other);
  const auto newest = Read(*other);
  ASSERT_EQ(HeldBytes(*changed), 0U);
  EXPECT_EQ(ToText(clone->ValueAt(6, 1)), "begun before");
  Update(*changed);
  changed->MoveTo(9);
  changed->SetFieldValue(1, std::string("written after"));
  Update(*changed);
  EXPECT_EQ(ToText(clone->ValueAt(4, 1)), "written before");
  EXPECT_EQ(ToText(clone->ValueAt(8, 1)), "written after");
  EXPECT_EQ(ToText(clone->ValueAt(9, 1)), "a name of some length 10");
  EXPECT_EQ(ToText(QueryNow(*connection, "select name from t where n = 7")->ValueAt(0, 0)),
            "begun before");
}

/// The older rows are read here, and spilled there, at the same time.
TEST_F(BeyondMemory, RowsAreReadWhileSeveralWorkersMoveThem) {
  std::vector<std::shared_ptr<Connection>> connections = {
      ConnectWith(12 * megabyte, SpillFolder())};
  while (connections.size() < 4) connections.push_back(ConnectAgain());
  const auto older = Read(*connections.front());
  ASSERT_GT(HeldBytes(*older), 4 * megabyte);
  EventLog log;
  std::vector<StartedQuery> queries;
  for (const auto& connection : connections) {
    queries.emplace_back(connection->StartQuery(manyRows, LockType::ReadOnly));
    log.Watch(queries.back().Operation());
  }
  const int count = static_cast<int>(queries.size());
  EXPECT_TRUE(queue_.PumpUntil([&] {
    ExpectNumbered(*older);
    return log.Ends() >= count;
  }));
  EXPECT_FALSE(log.LastError());
  EXPECT_EQ(HeldBytes(*older), 0U);
  for (const auto& query : queries) ExpectNumbered(*query);
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

/// The rows of the older result can go nowhere: the newer one is told so, and both stay whole.
TEST_F(BeyondMemory, OlderRowsStayInMemoryWhereTheyCanGoNowhere) {
  const auto connection = ConnectWith(10 * megabyte, "/nowhere/at/all");
  const auto older = Read(*connection);
  const std::size_t size = HeldBytes(*older);
  ASSERT_GT(size, 4 * megabyte);
  ExpectEndsFull(*ConnectAgain());
  EXPECT_EQ(HeldBytes(*older), size);
  ExpectNumbered(*older);
  ExpectNumbered(*Read(*connection, "select 1 as n, 2, 'row 104729'"), 1);
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

TEST(ChunkKeeper, KeepsTheNewestInMemoryAndNoMore) {
  ChunkKeeper keeper(std::make_shared<RowBudget>(RowMemory{20'000, SpillFolder()}));
  std::vector<ChunkPtr> chunks = {NumbersFrom(0, 1000), NumbersFrom(1000, 1000),
                                  NumbersFrom(2000, 1000)};
  EXPECT_FALSE(keeper.Keep(chunks));
  ASSERT_TRUE(chunks[0]->InFile());
  EXPECT_FALSE(chunks[1]->InFile());
  EXPECT_FALSE(chunks[2]->InFile());
  EXPECT_EQ(chunks[0]->HeldBytes(), 0U);
  EXPECT_EQ(ToValue(chunks[0]->columns[0].At(999)), Value(std::int64_t{999}));
  chunks[0]->pages->LetGo();
  EXPECT_EQ(ToValue(chunks[0]->columns[0].At(0)), Value(std::int64_t{0}));
  chunks[2]->pages->LetGo();
  EXPECT_EQ(ToValue(chunks[2]->columns[0].At(0)), Value(std::int64_t{2000}));
}

TEST(ChunkKeeper, TellsOnceThatThereIsNoRoomAndKeepsTheRows) {
  ChunkKeeper keeper(std::make_shared<RowBudget>(RowMemory{1, "/nowhere/at/all"}));
  std::vector<ChunkPtr> chunks = {NumbersFrom(0, 10), NumbersFrom(10, 10)};
  const auto reason = keeper.Keep(chunks);
  ASSERT_TRUE(reason);
  EXPECT_THAT(reason->Description(), testing::HasSubstr("/nowhere/at/all"));
  EXPECT_EQ(ToValue(chunks[1]->columns[0].At(9)), Value(std::int64_t{19}));
  std::vector<ChunkPtr> more = {NumbersFrom(20, 10)};
  EXPECT_FALSE(keeper.Keep(more));
  EXPECT_FALSE(more[0]->InFile());
}

TEST(ChunkKeeper, KeepsEveryCellOfEveryForm) {
  const Bytes bytes(3, std::byte{7});
  const std::vector<Value> cells = {Value(),
                                    Value(true),
                                    Value(std::int64_t{-1}),
                                    Value(1.5),
                                    Value(std::string("text")),
                                    Value(bytes),
                                    Value(Decimal{"1.10"})};
  RowSink sink(cells.size() + 1);
  for (std::size_t row = 0; row < cells.size(); ++row) {
    for (std::size_t i = 0; i < cells.size(); ++i) sink.Column(i).Append(cells[i]);
    sink.Column(cells.size()).Append(cells[row]);
    sink.EndRow();
  }
  sink.CloseChunk();
  std::vector<ChunkPtr> chunks = sink.TakeChunks();
  ChunkKeeper keeper(std::make_shared<RowBudget>(RowMemory{1, SpillFolder()}));
  ASSERT_FALSE(keeper.Keep(chunks));
  ASSERT_TRUE(chunks[0]->InFile());
  for (std::size_t row = 0; row < cells.size(); ++row) {
    for (std::size_t i = 0; i < cells.size(); ++i)
      EXPECT_EQ(ToValue(chunks[0]->columns[i].At(row)), cells[i]);
    EXPECT_EQ(ToValue(chunks[0]->columns[cells.size()].At(row)), cells[row]);
  }
}

TEST(RowBudget, CountsWhatIsInMemoryUntilItGoes) {
  const auto budget = std::make_shared<RowBudget>(RowMemory{1'000'000, SpillFolder()});
  for (int round = 0; round < 5000; ++round) {
    ChunkKeeper keeper(budget);
    std::vector<ChunkPtr> chunks = {NumbersFrom(0, 10)};
    ASSERT_FALSE(keeper.Keep(chunks));
    ASSERT_EQ(budget->HeldBytes(), chunks[0]->HeldBytes());
  }
  EXPECT_EQ(budget->HeldBytes(), 0U);
}

/// Whether memory stands at that place, of whatever owner.
bool IsMapped(const std::byte* page) {
  unsigned char state = 0;
  return mincore(const_cast<std::byte*>(page), 1, &state) == 0;
}

TEST(RowBudget, GivesLargePagesBackWithoutHoldingTheThreadThatLetsGo) {
  constexpr std::size_t size = 512 * megabyte;
  auto budget = std::make_shared<RowBudget>(RowMemory{2 * size, SpillFolder()});
  std::shared_ptr<ChunkPages> pages = budget->NewPages(size, budget->NewFile());
  const std::byte* place = pages->Data();
  std::memset(pages->Data(), 1, size);
  const double before = ThreadSeconds();
  pages.reset();
  EXPECT_LT(ThreadSeconds() - before, 0.005);
  EXPECT_EQ(budget->HeldBytes(), 0U);
  budget.reset();
  EXPECT_FALSE(IsMapped(place));
}

TEST(RowBudget, PagesThatOutliveItAreGivenBackAsWell) {
  constexpr std::size_t size = megabyte;
  auto budget = std::make_shared<RowBudget>(RowMemory{size, SpillFolder()});
  std::shared_ptr<ChunkPages> pages = budget->NewPages(size, budget->NewFile());
  const std::byte* place = pages->Data();
  budget.reset();
  EXPECT_TRUE(IsMapped(place));
  pages.reset();
  EXPECT_FALSE(IsMapped(place));
}

TEST(RowBudget, TriesAgainForTheNextResult) {
  const TemporaryFolder folder;
  const auto budget = std::make_shared<RowBudget>(RowMemory{10'000, folder.Path() / "later"});
  std::vector<ChunkPtr> older = {NumbersFrom(0, 1000)};
  EXPECT_FALSE(ChunkKeeper(budget).Keep(older));
  std::vector<ChunkPtr> first = {NumbersFrom(0, 1000)};
  EXPECT_TRUE(ChunkKeeper(budget).Keep(first));
  EXPECT_FALSE(older[0]->InFile());
  std::filesystem::create_directory(folder.Path() / "later");
  std::vector<ChunkPtr> second = {NumbersFrom(0, 1000)};
  EXPECT_FALSE(ChunkKeeper(budget).Keep(second));
  EXPECT_TRUE(older[0]->InFile());
  EXPECT_TRUE(first[0]->InFile());
  EXPECT_FALSE(second[0]->InFile());
}

TEST(RowMemory, IsAQuarterOfTheMachineButNotTooLittle) {
  const auto machine = static_cast<std::size_t>(sysconf(_SC_PHYS_PAGES)) *
                       static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  EXPECT_EQ(RowMemory::OfMachine().bytes, std::max(machine / 4, 256 * megabyte));
}

}  // namespace tessel::test
