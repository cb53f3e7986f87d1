// Measurements of merged and compared rows, each in a process of its own. Prints lines of a
// figure's name and its value. usage: compare_combined merge <results> <rows of each>
//        compare_combined differences|join <rows> same|mixed

#include <malloc.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "bench/compare/Cases.h"
#include "bench/compare/Say.h"
#include "data/cursor/CombinedAccess.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/rows/RowSink.h"

namespace tessel::bench {

namespace {

/// Rows need no database.
class NoDatabase final : public CombinedAccess {
 public:
  [[nodiscard]] std::shared_ptr<Connection> CreateConnection() override { return nullptr; }
  [[nodiscard]] std::vector<std::string> ProviderNames() const override { return {}; }
  [[nodiscard]] std::vector<std::string> OdbcDrivers() const override { return {}; }
  [[nodiscard]] std::vector<std::string> OdbcDataSources() const override { return {}; }
};

/// The kinds of the columns, of which the first is the key.
constexpr CellKind kinds[] = {
    CellKind::Integer, CellKind::Text,    CellKind::Text,    CellKind::Double, CellKind::Decimal,
    CellKind::Moment,  CellKind::Boolean, CellKind::Integer, CellKind::Text,   CellKind::Integer};
constexpr std::size_t columns = std::size(kinds);

/// One row in a hundred has another amount if `edited`.
void AppendRow(RowSink& sink, std::int64_t id, bool edited) {
  const std::string number = std::to_string(id);
  const std::int64_t other = edited && id % 100 == 42 ? 1 : 0;
  sink.Column(0).AppendInteger(id);
  sink.Column(1).AppendText("customer " + std::to_string(id % 5003));
  sink.Column(2).AppendText("city " + std::to_string(id % 97));
  sink.Column(3).AppendDouble(static_cast<double>(id % 100003 + other) / 8);
  sink.Column(4).AppendDecimal(number + ".50");
  sink.Column(5).AppendMoment("2024-05-01 10:" + std::to_string(10 + id % 50) + ":00");
  sink.Column(6).AppendBoolean(id % 3 == 0);
  if (id % 7 == 0) sink.Column(7).AppendNull();
  else sink.Column(7).AppendInteger(id % 1009);
  sink.Column(8).AppendText("a note on row " + number);
  sink.Column(9).AppendInteger(id * 31);
  sink.EndRow();
}

std::vector<std::int64_t> Ids(std::int64_t rows, bool mixed) {
  std::vector<std::int64_t> ids(static_cast<std::size_t>(rows));
  std::iota(ids.begin(), ids.end(), 1);
  if (mixed) std::ranges::shuffle(ids, std::mt19937_64(7));
  return ids;
}

std::shared_ptr<ClientRecordset> MakeRows(std::int64_t rows, bool mixed, bool edited) {
  RowSink sink(columns);
  for (const std::int64_t id : Ids(rows, mixed)) AppendRow(sink, id, edited);
  sink.CloseChunk();
  std::vector<FieldInfo> fields(columns);
  for (std::size_t i = 0; i < columns; ++i) fields[i].name = "column " + std::to_string(i);
  return ClientRecordset::Of(std::move(fields), sink.TakeChunks());
}

double HeldNow() {
  malloc_trim(0);
  return PresentBytes();
}

// --- ours ----------------------------------------------------------------------------------------

void Merge(Arguments arguments) {
  const std::int64_t count = std::stoll(arguments[0]);
  const std::int64_t rows = std::stoll(arguments[1]);
  std::vector<NamedRows> parts;
  for (std::int64_t i = 0; i < count; ++i)
    parts.push_back({"connection " + std::to_string(i), MakeRows(rows, false, false)});
  NoDatabase data;
  const double before = HeldNow();
  const Stopwatch watch;
  const auto merged = data.MergeRows(parts);
  for (std::int64_t row = 0; row < 50; ++row)
    for (std::size_t field = 0; field <= columns; ++field) (void)merged->ValueAt(row, field);
  Say("seconds", watch.Seconds());
  const auto each = static_cast<double>(merged->RecordCount());
  Say("row", (HeldNow() - before) / each);
  const Stopwatch sorting;
  merged->SetSort("column 1, Connection DESC");
  Say("sort", sorting.Seconds());
  (void)merged->PositionOf(1);
  Say("sorted-row", (HeldNow() - before) / each);
  Say("peak-row", (PeakBytes() - before) / each);
}

void Differences(Arguments arguments) {
  const std::int64_t rows = std::stoll(arguments[0]);
  const auto a = MakeRows(rows, false, false);
  const auto b = MakeRows(rows, arguments[1] == "mixed", true);
  NoDatabase data;
  const double before = HeldNow();
  double longest = 0;
  const Stopwatch watch;
  const auto comparison = data.CompareRows({.a = {"A", a}, .b = {"B", b}, .keys = {"column 0"}});
  longest = watch.Seconds();
  while (comparison->Done() < comparison->Total()) {
    const Stopwatch step;
    comparison->Step(comparison->Total());
    longest = std::max(longest, step.Seconds());
  }
  Say("seconds", watch.Seconds());
  Say("longest", longest);
  Say("peak-row", (PeakBytes() - before) / static_cast<double>(2 * rows));
  Say("changed", comparison->Counts().changed);
  Say("equal", comparison->Counts().equal);
}

// --- the bare join -------------------------------------------------------------------------------

/// A hash table of whole numbers, each with the row that has it.
class Keys {
 public:
  explicit Keys(std::size_t rows) : slots_(std::bit_ceil(rows * 3 / 2)) {}

  void Add(std::int64_t key, std::uint32_t row) { slots_[Find(key)] = {key, row + 1}; }
  [[nodiscard]] std::uint32_t RowOf(std::int64_t key) const { return slots_[Find(key)].row; }

 private:
  struct Slot {
    std::int64_t key = 0;
    std::uint32_t row = 0;  ///< From 1.
  };
  [[nodiscard]] std::size_t Find(std::int64_t key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = static_cast<std::size_t>(key) * 0x9E3779B97F4A7C15U >> 20U & mask;
    while (slots_[at].row != 0 && slots_[at].key != key) at = (at + 1) & mask;
    return at;
  }

  std::vector<Slot> slots_;
};

template <class T>
bool SameNumber(const ColumnChunk& a, std::size_t rowA, const ColumnChunk& b, std::size_t rowB) {
  return a.cells.At<T>(rowA) == b.cells.At<T>(rowB);
}

bool SameBytes(const ColumnChunk& a, std::size_t rowA, const ColumnChunk& b, std::size_t rowB) {
  const ArenaSlice x = a.SliceAt(rowA);
  const ArenaSlice y = b.SliceAt(rowB);
  return x.size == y.size &&
         std::memcmp(a.arena.Data() + x.offset, b.arena.Data() + y.offset, x.size) == 0;
}

bool SameCell(CellKind kind, const ColumnChunk& a, std::size_t rowA, const ColumnChunk& b,
              std::size_t rowB) {
  if (a.IsNullAt(rowA) || b.IsNullAt(rowB)) return a.IsNullAt(rowA) == b.IsNullAt(rowB);
  switch (kind) {
    case CellKind::Integer: return SameNumber<std::int64_t>(a, rowA, b, rowB);
    case CellKind::Double: return SameNumber<double>(a, rowA, b, rowB);
    case CellKind::Boolean: return SameNumber<std::uint8_t>(a, rowA, b, rowB);
    default: return SameBytes(a, rowA, b, rowB);
  }
}

bool SameRow(const RowStore::Spot& a, const RowStore::Spot& b) {
  for (std::size_t i = 1; i < columns; ++i)
    if (!SameCell(kinds[i], a.chunk->columns[i], a.row, b.chunk->columns[i], b.row)) return false;
  return true;
}

/// Only counts what is equal and what is changed.
void Join(Arguments arguments) {
  const std::int64_t rows = std::stoll(arguments[0]);
  const auto recordsetA = MakeRows(rows, false, false);
  const auto recordsetB = MakeRows(rows, arguments[1] == "mixed", true);
  const RowStore& a = recordsetA->Store();
  const RowStore& b = recordsetB->Store();
  std::int64_t counts[2] = {};
  const Stopwatch watch;
  Keys keys(static_cast<std::size_t>(a.Rows()));
  std::uint32_t row = 0;
  for (const ChunkPtr& chunk : a.Chunks())
    for (std::size_t i = 0; i < chunk->rows; ++i)
      keys.Add(chunk->columns[0].cells.At<std::int64_t>(i), row++);
  for (const ChunkPtr& chunk : b.Chunks())
    for (std::size_t i = 0; i < chunk->rows; ++i)
      if (const auto found = keys.RowOf(chunk->columns[0].cells.At<std::int64_t>(i)))
        ++counts[SameRow(a.SpotOf(found - 1), {chunk.get(), i}) ? 1 : 0];
  Say("seconds", watch.Seconds());
  Say("changed", counts[0]);
  Say("equal", counts[1]);
}

}  // namespace

}  // namespace tessel::bench

int main(int argc, char* argv[]) {
  using namespace tessel::bench;
  return RunCase({{"merge", {2, Merge}}, {"differences", {2, Differences}}, {"join", {2, Join}}},
                 argc, argv);
}
