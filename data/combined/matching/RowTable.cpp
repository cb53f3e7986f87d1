#include "data/combined/matching/RowTable.h"

#include <bit>

#include "contract/base/Error.h"

namespace tessel {

namespace {

std::size_t RoomFor(std::int64_t rows) {
  if (rows > RowTable::mostRows)
    throw Error(errorNumber::notSupported, "Tessel",
                "So many rows cannot be compared: there may be two thousand million on each side.");
  return std::bit_ceil(static_cast<std::size_t>(rows) * 3 / 2 + 2);
}

}  // namespace

RowTable::RowTable(std::int64_t rows)
    : mask_(RoomFor(rows) - 1), slots_(mask_ + 1), next_(static_cast<std::size_t>(rows)) {}

void RowTable::Push(Group group, std::uint64_t hash, Row row) {
  if (HasRows(group)) next_[row] = slots_[group].head;
  slots_[group] = {Fold(hash), row + 1};
}

void RowTable::Pop(Group group) {
  const std::uint32_t next = next_[FirstOf(group)];
  slots_[group].head = next == 0 ? usedUp : next;
}

}  // namespace tessel
