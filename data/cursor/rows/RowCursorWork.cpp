#include "data/cursor/rows/RowCursorWork.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

/// Rows looked through between two looks at the clock.
constexpr std::int64_t rowsAtOnce = 64;

}  // namespace

// --- arranging -----------------------------------------------------------------------------------

ArrangeWork::ArrangeWork(const std::shared_ptr<WorkedRows>& cursor, RowArrangement wanted)
    : cursor_(cursor),
      rows_(cursor->Rows()),
      wanted_(std::move(wanted)),
      version_(cursor->OrderVersion()),
      arranger_(std::make_unique<RowArranger>(*rows_, wanted_)) {}

/// The last unit is to put the rows in their places.
std::int64_t ArrangeWork::Total() const { return arranger_->Total() + 1; }

std::int64_t ArrangeWork::Done() const { return ended_ ? Total() : arranger_->Done(); }

/// Its rows have gone: the recordset was closed.
bool ArrangeWork::IsOfNoUse(const WorkedRows* cursor) const {
  return cursor == nullptr || cursor->Rows() != rows_;
}

void ArrangeWork::Step() {
  if (ended_) return;
  const std::shared_ptr<WorkedRows> cursor = cursor_.lock();
  if (IsOfNoUse(cursor.get())) {
    ended_ = true;
    return;
  }
  if (std::exchange(version_, cursor->OrderVersion()) != cursor->OrderVersion())
    arranger_ = std::make_unique<RowArranger>(*rows_, wanted_);
  if (!arranger_->HasEnded()) return arranger_->Work();
  ended_ = true;
  cursor->RequireNothingPending();
  cursor->Arrange(wanted_, arranger_->TakeRows());
}

// --- looking for cells ---------------------------------------------------------------------------

SearchWork::SearchWork(const std::shared_ptr<const WorkedRows>& cursor, CellSearch search)
    : cursor_(cursor),
      search_(std::move(search)),
      version_(cursor->OrderVersion()),
      count_(cursor->RecordCount()),
      total_(std::max<std::int64_t>(count_, 1)),
      done_(count_ == 0 ? 1 : 0),
      first_(search_.field.value_or(0)),
      cells_(search_.field ? 1 : cursor->Rows()->fields.size()) {
  search_.from = std::clamp<std::int64_t>(search_.from, 0, std::max<std::int64_t>(count_ - 1, 0));
}

void SearchWork::Step() {
  if (done_ == total_) return;
  const std::shared_ptr<const WorkedRows> cursor = cursor_.lock();
  if (cursor == nullptr || cursor->OrderVersion() != version_) {
    done_ = total_;
    return;
  }
  const auto until = std::chrono::steady_clock::now() + workSlice;
  while (done_ < total_ && std::chrono::steady_clock::now() < until) {
    const std::int64_t end = std::min(done_ + rowsAtOnce, total_);
    for (; done_ < end; ++done_) LookThrough(*cursor, (search_.from + done_) % count_);
  }
}

void SearchWork::LookThrough(const WorkedRows& cursor, std::int64_t position) {
  cursor.ReadFieldsAt(position, first_, cells_);
  for (std::size_t i = 0; i < cells_.size(); ++i)
    if (texts_.Passes(*search_.test, cells_[i])) search_.found(position, first_ + i);
}

}  // namespace tessel
