#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <type_traits>

namespace tessel {

/// Numbers of a fixed count, all 0 at first. Those never touched take no memory and no time.
template <class T>
class ZeroedArray {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  explicit ZeroedArray(std::size_t count)
      : items_(static_cast<T*>(std::calloc(count + 1, sizeof(T)))) {
    if (items_ == nullptr) throw std::bad_alloc();
  }
  [[nodiscard]] T& operator[](std::size_t index) { return items_.get()[index]; }
  [[nodiscard]] const T& operator[](std::size_t index) const { return items_.get()[index]; }

 private:
  struct Free {
    void operator()(T* items) const { std::free(items); }
  };
  std::unique_ptr<T, Free> items_;
};

/// Groups of rows that are the same in some of their columns, found by a hash of these. It knows
/// numbers only: whoever asks it says whether two rows are the same. It takes 12 to 24 bytes a row,
/// and 4 more for rows of a group of several.
class RowTable {
 public:
  using Row = std::uint32_t;
  using Group = std::uint32_t;
  /// No table takes more rows.
  static constexpr std::int64_t mostRows = 2'000'000'000;

  /// Of rows numbered from 0 to `rows` - 1.
  explicit RowTable(std::int64_t rows);

  /// Asks for a group's memory ahead of time.
  void Prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[SlotOf(Fold(hash))]); }
  /// The group whose first row `isSame` accepts; HasRows is false of it if there is none.
  template <class IsSame>
  [[nodiscard]] Group Find(std::uint64_t hash, IsSame isSame) const {
    return FindGroup(Fold(hash), isSame);
  }
  [[nodiscard]] bool HasRows(Group group) const {
    return slots_[group].head != 0 && slots_[group].head != usedUp;
  }
  [[nodiscard]] Row FirstOf(Group group) const { return slots_[group].head - 1; }
  [[nodiscard]] bool HasSeveral(Group group) const { return next_[FirstOf(group)] != 0; }
  /// Puts `row` before the others of the group that Find gave for the same hash.
  void Push(Group group, std::uint64_t hash, Row row);
  /// Takes the first row away.
  void Pop(Group group);
  /// The number of groups that there may be.
  [[nodiscard]] std::size_t Groups() const { return mask_ + 1; }

 private:
  /// `head` and `next_` are numbers of rows from 1; 0 is none.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t head = 0;
  };
  static constexpr std::uint32_t usedUp = 0xFFFFFFFF;  ///< A group whose rows were taken away.

  [[nodiscard]] static std::uint32_t Fold(std::uint64_t hash) {
    return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
  }
  [[nodiscard]] std::size_t SlotOf(std::uint32_t hash) const {
    return (hash * std::size_t{0x9E3779B1U}) & mask_;
  }
  template <class IsSame>
  [[nodiscard]] Group FindGroup(std::uint32_t hash, IsSame isSame) const {
    std::size_t slot = SlotOf(hash);
    while (slots_[slot].head != 0) {
      const auto group = static_cast<Group>(slot);
      if (slots_[slot].hash == hash && HasRows(group) && isSame(FirstOf(group))) break;
      slot = (slot + 1) & mask_;
    }
    return static_cast<Group>(slot);
  }

  std::size_t mask_;
  ZeroedArray<Slot> slots_;
  ZeroedArray<std::uint32_t> next_;
};

}  // namespace tessel
