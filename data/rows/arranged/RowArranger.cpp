#include "data/rows/arranged/RowArranger.h"

#include <algorithm>
#include <utility>

#include "data/rows/order/SortOrder.h"

namespace tessel {

namespace {

/// What is done between two looks at the clock.
constexpr std::int64_t rowsAtOnce = 256;
constexpr std::int64_t gatheredAtOnce = 16384;

bool WantsLanguage(const RowSource& rows, const RowArrangement& wanted) {
  return wanted.textOrder == TextOrder::Desktop && !wanted.sort.empty() && rows.Count() > 0;
}

}  // namespace

RowArranger::RowArranger(const RowSource& rows, const RowArrangement& wanted)
    : rows_(rows),
      wanted_(wanted),
      test_(rows, wanted.conditions),
      next_(0),
      numbers_(rows.NextNumber()) {
  arranged_.rows.reserve(static_cast<std::size_t>(rows.Count()));
  if (!wanted.sort.empty()) arranged_.positions.reserve(static_cast<std::size_t>(numbers_));
  if (WantsLanguage(rows, wanted)) texts_.emplace();
  if (texts_ && !texts_->HasLanguage()) texts_.reset();
}

/// While rows are tested all of them are expected to be sorted.
std::int64_t RowArranger::Total() const {
  if (phase_ == Phase::Ended) return std::max<std::int64_t>(done_, 1);
  const auto fields = static_cast<std::int64_t>(wanted_.sort.size());
  const std::int64_t toSort = phase_ == Phase::Test ? rows_.Count() : ShownCount();
  const std::int64_t sorting = sorting_ ? sorting_->Total() : fields > 0 ? toSort * 8 : 0;
  return numbers_ + fields * toSort + sorting + (fields > 0 ? toSort : 0) + 1;
}

void RowArranger::Work() {
  const auto until = std::chrono::steady_clock::now() + workSlice;
  while (phase_ != Phase::Ended && std::chrono::steady_clock::now() < until) DoSome();
}

void RowArranger::DoSome() {
  switch (phase_) {
    case Phase::Test: return TestSome();
    case Phase::Keys: return MakeSomeKeys();
    case Phase::Gather: return GatherSome();
    case Phase::Sort: {
      const std::int64_t before = sorting_->Done();
      sorting_->Step();
      done_ += sorting_->Done() - before;
      if (sorting_->Done() == sorting_->Total()) Enter(Phase::Gather);
      return;
    }
    case Phase::Release: return ReleaseSome();
    case Phase::Ended: return;
  }
}

void RowArranger::Enter(Phase phase) {
  phase_ = phase;
  next_ = 0;
}

void RowArranger::TestSome() {
  const std::int64_t end = std::min(next_ + rowsAtOnce, numbers_);
  for (std::int64_t row = next_; row < end; ++row) {
    if (!rows_.Contains(row)) continue;
    if (wanted_.conditions.empty() || test_.Passes(row)) arranged_.rows.push_back(row);
    else ++arranged_.hidden;
  }
  done_ += end - next_;
  next_ = end;
  if (!wanted_.sort.empty()) arranged_.positions.resize(static_cast<std::size_t>(end), hiddenRow);
  if (next_ < numbers_) return;
  if (wanted_.sort.empty()) return Enter(Phase::Ended);
  Enter(Phase::Keys);
  EndKeysOfField();
}

/// Goes on with the next field, or to the sorting.
void RowArranger::EndKeysOfField() {
  next_ = 0;
  if (keys_.size() == wanted_.sort.size()) {
    const auto whole = [this](std::size_t column, std::size_t a, std::size_t b) {
      const std::size_t field = wanted_.sort[column].field;
      return CompareValues(rows_.At(arranged_.rows[a], field), rows_.At(arranged_.rows[b], field));
    };
    sorting_.emplace(keys_, arranged_.rows.size(), whole);
    return Enter(Phase::Sort);
  }
  keys_.reserve(wanted_.sort.size());
  keys_.emplace_back(wanted_.sort[keys_.size()].descending, texts_ ? &*texts_ : nullptr);
  keys_.back().ExpectRows(arranged_.rows.size());
}

void RowArranger::MakeSomeKeys() {
  const std::size_t field = wanted_.sort[keys_.size() - 1].field;
  const std::int64_t end = std::min(next_ + rowsAtOnce, ShownCount());
  for (std::int64_t place = next_; place < end; ++place) {
    if (keys_.back().Add(rows_.At(arranged_.rows[static_cast<std::size_t>(place)], field)))
      continue;
    done_ -= next_;
    next_ = 0;
    return;
  }
  done_ += end - next_;
  next_ = end;
  if (next_ == ShownCount()) EndKeysOfField();
}

void RowArranger::GatherSome() {
  if (next_ == 0) sorted_.reserve(arranged_.rows.size());
  const std::int64_t end = std::min(next_ + gatheredAtOnce, ShownCount());
  for (; next_ < end; ++next_) {
    const std::int64_t row = arranged_.rows[sorting_->RowAt(static_cast<std::size_t>(next_))];
    arranged_.positions[static_cast<std::size_t>(row)] = static_cast<std::int32_t>(next_);
    sorted_.push_back(row);
  }
  if (next_ < ShownCount()) return;
  std::swap(arranged_.rows, sorted_);
  done_ += ShownCount();
  Enter(Phase::Release);
}

/// What sorting took goes bit by bit: to give much memory back takes time.
void RowArranger::ReleaseSome() {
  if (sorting_) return sorting_.reset();
  if (!keys_.empty()) return keys_.pop_back();
  sorted_ = {};
  Enter(Phase::Ended);
}

}  // namespace tessel
