#include "data/combined/matching/RowMatching.h"

#include <algorithm>
#include <utility>

#include "data/combined/matching/RowHashes.h"

namespace tessel {

namespace {

/// What one step does at most, so that it takes a few milliseconds.
constexpr std::int64_t cellsAtOnce = 32768;
constexpr std::size_t bytesAtOnce = std::size_t{4} << 20U;
constexpr std::int64_t rowsAtOnce = 65536;  // Where no cell is looked at.
/// Each row may be the first to touch a page of a table.
constexpr std::int64_t lookedAtOnce = 1024;

std::int64_t RowsOfCells(std::size_t columns) {
  return std::clamp<std::int64_t>(cellsAtOnce / static_cast<std::int64_t>(columns), 1,
                                  lookedAtOnce);
}

/// How many rows from `first` on may be looked at in one step.
std::int64_t SliceFrom(const FixedRows& rows, std::int64_t first, std::int64_t most) {
  std::int64_t count = most;
  while (count > 1 && LongBytes(rows, first, first + count) > bytesAtOnce) count /= 2;
  return count;
}

/// The same of rows before `end`.
std::int64_t SliceBefore(const FixedRows& rows, std::int64_t end, std::int64_t most) {
  std::int64_t count = most;
  while (count > 1 && LongBytes(rows, end - count, end) > bytesAtOnce) count /= 2;
  return count;
}

std::vector<std::size_t> ColumnsOf(const std::vector<ColumnPair>& pairs,
                                   std::size_t ColumnPair::*side) {
  std::vector<std::size_t> columns;
  std::ranges::transform(pairs, std::back_inserter(columns), side);
  return columns;
}

std::vector<ColumnPair> Without(const std::vector<ColumnPair>& pairs,
                                const std::vector<ColumnPair>& keys) {
  std::vector<ColumnPair> others;
  std::ranges::copy_if(pairs, std::back_inserter(others), [&](const ColumnPair& pair) {
    return std::ranges::find(keys, pair.a, &ColumnPair::a) == keys.end();
  });
  return others;
}

}  // namespace

RowMatching::Tables::Tables(std::int64_t rowsOfA, std::int64_t rowsOfB)
    : byKey(rowsOfA),
      byColumns(rowsOfA),
      onlyInB(rowsOfB),
      partner(static_cast<std::size_t>(rowsOfA)),
      isOneOfSeveral(static_cast<std::size_t>(rowsOfA)),
      isVisited(byKey.Groups()),
      isVisitedAgain(byKey.Groups()),
      hasPartner(static_cast<std::size_t>(rowsOfB)) {}

RowMatching::RowMatching(std::vector<NamedPart> parts, MatchedColumns columns, ValueSameness values)
    : a_{parts[0].rows, {}, ColumnsOf(columns.pairs, &ColumnPair::a)},
      b_{parts[1].rows, {}, ColumnsOf(columns.pairs, &ColumnPair::b)},
      columns_(std::move(columns)),
      byKey_(!columns_.keys.empty()),
      values_(values),
      sameness_(*a_.rows, *b_.rows, values) {
  if (!byKey_) columns_.keys = columns_.pairs;
  a_.keys = ColumnsOf(columns_.keys, &ColumnPair::a);
  b_.keys = ColumnsOf(columns_.keys, &ColumnPair::b);
  others_ = Without(columns_.pairs, columns_.keys);
  differing_ = std::make_shared<DifferingRows>(std::move(parts));
  const std::int64_t rowsOfA = a_.rows->Count();
  const std::int64_t rowsOfB = b_.rows->Count();
  tables_.emplace(rowsOfA, rowsOfB);
  phases_ = {{rowsOfA, &RowMatching::TakeIn},   {rowsOfA, &RowMatching::TakeInSeveral},
             {rowsOfB, &RowMatching::LookUp},   {rowsOfB, &RowMatching::Settle},
             {rowsOfA, &RowMatching::CollectA}, {rowsOfB, &RowMatching::CollectB},
             {1, &RowMatching::Finish}};
  for (const Phase& phase : phases_) total_ += phase.rows;
}

void RowMatching::Step(std::int64_t rows) {
  while (phase_ < phases_.size() && doneOfPhase_ == phases_[phase_].rows) {
    ++phase_;
    doneOfPhase_ = 0;
  }
  if (phase_ == phases_.size()) return;
  const Phase& phase = phases_[phase_];
  const std::int64_t most = std::min(rows, phase.rows - doneOfPhase_);
  const std::int64_t did = (this->*phase.work)(doneOfPhase_, most);
  doneOfPhase_ += did;
  done_ += did;
}

bool RowMatching::Side::Same(const ValueSameness& values, const std::vector<std::size_t>& of,
                             std::int64_t x, std::int64_t y) const {
  return std::ranges::all_of(of, [&](std::size_t column) {
    return values.Same(rows->At(x, column), rows->At(y, column));
  });
}

// --- the rows of A -------------------------------------------------------------------------------

/// From the last row on, so that the first of a key stands before the others.
std::int64_t RowMatching::TakeIn(std::int64_t done, std::int64_t most) {
  const std::int64_t end = a_.rows->Count() - done;
  const std::int64_t count =
      SliceBefore(*a_.rows, end, std::min(most, RowsOfCells(a_.keys.size())));
  hashes_.resize(static_cast<std::size_t>(count));
  HashRows(*a_.rows, a_.keys, values_, end - count, hashes_);
  RowTable& table = tables_->byKey;
  for (const std::uint64_t hash : hashes_) table.Prefetch(hash);
  for (std::int64_t i = count - 1; i >= 0; --i) {
    const auto row = static_cast<Row>(end - count + i);
    const std::uint64_t hash = hashes_[static_cast<std::size_t>(i)];
    const Group group =
        table.Find(hash, [&](Row other) { return a_.Same(values_, a_.keys, row, other); });
    if (byKey_ && table.HasRows(group)) {
      if (!table.HasSeveral(group)) ++counts_.keysNotUnique;
      tables_->isOneOfSeveral[row] = tables_->isOneOfSeveral[table.FirstOf(group)] = true;
      tables_->anySeveral = true;
    }
    table.Push(group, hash, row);
  }
  return count;
}

std::int64_t RowMatching::TakeInSeveral(std::int64_t done, std::int64_t most) {
  if (!tables_->anySeveral) return most;
  const std::int64_t end = a_.rows->Count() - done;
  const std::int64_t count =
      SliceBefore(*a_.rows, end, std::min(most, RowsOfCells(a_.columns.size())));
  for (std::int64_t i = end - 1; i >= end - count; --i) {
    const auto row = static_cast<Row>(i);
    if (!tables_->isOneOfSeveral[row]) continue;
    std::uint64_t hash = 0;
    HashRows(*a_.rows, a_.columns, values_, row, {&hash, 1});
    const Group group = tables_->byColumns.Find(
        hash, [&](Row other) { return a_.Same(values_, a_.columns, row, other); });
    tables_->byColumns.Push(group, hash, row);
  }
  return count;
}

// --- the rows of B -------------------------------------------------------------------------------

std::int64_t RowMatching::LookUp(std::int64_t done, std::int64_t most) {
  const std::int64_t count =
      SliceFrom(*b_.rows, done, std::min(most, RowsOfCells(b_.columns.size())));
  LookAtAll(done, static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    const auto row = static_cast<Row>(done + i);
    const Looked& looked = looked_[static_cast<std::size_t>(i)];
    if (byKey_) FindByKey(row, looked);
    else FindWhole(row, looked);
  }
  return count;
}

/// Compares each of these rows with the first row of A whose hash fits: column by column, and in
/// the order of A, for the cells of A may be far from each other.
void RowMatching::LookAtAll(std::int64_t first, std::size_t count) {
  const RowTable& table = tables_->byKey;
  hashes_.resize(count);
  HashRows(*b_.rows, b_.keys, values_, first, hashes_);
  for (const std::uint64_t hash : hashes_) table.Prefetch(hash);
  looked_.clear();
  pairs_.clear();
  for (std::size_t i = 0; i < count; ++i) {
    const Group group = table.Find(hashes_[i], [](Row) { return true; });
    looked_.push_back({hashes_[i], group});
    if (table.HasRows(group))
      pairs_.push_back({table.FirstOf(group), first + static_cast<std::int64_t>(i)});
  }
  if (!std::ranges::is_sorted(pairs_, {}, &RowPair::a)) std::ranges::sort(pairs_, {}, &RowPair::a);
  otherKey_.assign(pairs_.size(), 0);
  sameness_.Compare(pairs_, columns_.keys, otherKey_);
  differ_.assign(pairs_.size(), 0);
  sameness_.Compare(pairs_, others_, differ_);
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    Looked& looked = looked_[static_cast<std::size_t>(pairs_[i].b - first)];
    looked.otherKey = otherKey_[i] != 0;
    looked.differs = differ_[i] != 0;
  }
}

/// All rows of a group are the same, so that any will do.
void RowMatching::FindWhole(Row row, const Looked& looked) {
  RowTable& table = tables_->byKey;
  Group group = looked.group;
  if (looked.otherKey)
    group = table.Find(looked.hash, [&](Row a) {
      return sameness_.Same({a, row}, columns_.pairs);
    });
  if (!table.HasRows(group)) return;
  MatchEqual(table.FirstOf(group), row);
  table.Pop(group);
}

void RowMatching::FindByKey(Row row, Looked looked) {
  const RowTable& table = tables_->byKey;
  if (looked.otherKey) {
    looked.group = table.Find(looked.hash, [&](Row a) {
      return sameness_.Same({a, row}, columns_.keys);
    });
    looked.differs =
        table.HasRows(looked.group) && !sameness_.Same({table.FirstOf(looked.group), row}, others_);
  }
  if (!table.HasRows(looked.group)) return NoteOnlyInB(row, looked.hash);
  if (table.HasSeveral(looked.group)) return FindAmongSeveral(row, looked.group);
  NoteVisit(looked.group);
  const Row a = table.FirstOf(looked.group);
  if (!looked.differs && tables_->partner[a] == 0) MatchEqual(a, row);
  else tables_->waiting.push_back({looked.group, row});
}

void RowMatching::FindAmongSeveral(Row row, Group group) {
  std::uint64_t hash = 0;
  HashRows(*b_.rows, b_.columns, values_, row, {&hash, 1});
  RowTable& table = tables_->byColumns;
  const Group same = table.Find(hash, [&](Row a) {
    return sameness_.Same({a, row}, columns_.pairs);
  });
  if (!table.HasRows(same)) {
    tables_->waiting.push_back({group, row});
    return;
  }
  MatchEqual(table.FirstOf(same), row);
  table.Pop(same);
}

/// A key that one row of A has may be that of several rows of B.
void RowMatching::NoteVisit(Group group) {
  if (!tables_->isVisited[group]) {
    tables_->isVisited[group] = true;
  } else if (!tables_->isVisitedAgain[group]) {
    tables_->isVisitedAgain[group] = true;
    ++counts_.keysNotUnique;
  }
}

void RowMatching::NoteOnlyInB(Row row, std::uint64_t hash) {
  RowTable& table = tables_->onlyInB;
  const Group group =
      table.Find(hash, [&](Row other) { return b_.Same(values_, b_.keys, row, other); });
  if (table.HasRows(group) && !table.HasSeveral(group)) ++counts_.keysNotUnique;
  table.Push(group, hash, row);
}

void RowMatching::MatchEqual(Row a, Row b) {
  tables_->partner[a] = equal;
  tables_->hasPartner[b] = true;
  ++counts_.equal;
}

// --- what is left --------------------------------------------------------------------------------

std::int64_t RowMatching::Settle(std::int64_t done, std::int64_t most) {
  RowTable& table = tables_->byKey;
  const auto waiting = static_cast<std::int64_t>(tables_->waiting.size());
  const std::int64_t count = std::min(most, rowsAtOnce);
  for (std::int64_t i = done; i < std::min(done + count, waiting); ++i) {
    const auto [group, row] = tables_->waiting[static_cast<std::size_t>(i)];
    while (table.HasRows(group) && tables_->partner[table.FirstOf(group)] != 0) table.Pop(group);
    if (!table.HasRows(group)) continue;
    tables_->partner[table.FirstOf(group)] = row + 1;
    tables_->hasPartner[row] = true;
  }
  return count;
}

std::int64_t RowMatching::CollectA(std::int64_t done, std::int64_t most) {
  std::int64_t cells = cellsAtOnce;
  const std::int64_t end = done + std::min(most, rowsAtOnce);
  std::int64_t row = done;
  for (; row < end && cells > 0; ++row) {
    const auto a = static_cast<Row>(row);
    const Row partner = tables_->partner[a];
    if (partner == equal) continue;
    if (partner == 0) {
      ++counts_.onlyInA;
      differing_->AddOnly(0, a);
      continue;
    }
    std::vector<std::uint32_t> fields = sameness_.Differing({a, partner - 1}, columns_.pairs);
    for (std::uint32_t& field : fields) field = columns_.fields[field];
    differing_->AddChanged(a, partner - 1, std::move(fields));
    ++counts_.changed;
    cells -= static_cast<std::int64_t>(columns_.pairs.size());
  }
  return row - done;
}

std::int64_t RowMatching::CollectB(std::int64_t done, std::int64_t most) {
  const std::int64_t count = std::min(most, rowsAtOnce);
  for (std::int64_t row = done; row < done + count; ++row) {
    if (tables_->hasPartner[static_cast<std::size_t>(row)]) continue;
    ++counts_.onlyInB;
    differing_->AddOnly(1, static_cast<Row>(row));
  }
  return count;
}

std::int64_t RowMatching::Finish(std::int64_t /*done*/, std::int64_t /*most*/) {
  tables_.reset();
  return 1;
}

}  // namespace tessel
