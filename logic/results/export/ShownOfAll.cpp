#include "logic/results/export/ShownOfAll.h"

#include <algorithm>
#include <iterator>

#include "logic/results/stream/RecordBatch.h"

namespace tessel {

ShownOfAll::ShownOfAll(const std::vector<NamedRows>& parts) {
  std::int64_t merged = 0;
  for (const NamedRows& part : parts) {
    if (part.rows == nullptr) continue;
    Part own{part.rows, part.rows->Clone(LockType::ReadOnly), count_, merged};
    count_ += own.rows->RecordCount();
    merged += own.opened->RecordCount();
    if (count_ > own.firstShown) parts_.push_back(std::move(own));
    else own.opened->Close();
  }
}

ShownOfAll::~ShownOfAll() {
  for (const Part& part : parts_) part.opened->Close();
}

std::int64_t ShownOfAll::Merged(std::int64_t row) const {
  const auto next = std::ranges::upper_bound(parts_, row, {}, &Part::firstShown);
  const Part& part = *std::prev(next);
  return part.firstMerged + PositionNow(*part.opened, part.rows->BookmarkAt(row - part.firstShown));
}

}  // namespace tessel
