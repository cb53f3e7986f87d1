#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessel {

/// One query of a records window's history.
struct HistoryEntry {
  std::string taggedSQL;         ///< As the user gave it, before its tags were filled.
  int tagKind = 0;               ///< 0: no tags; bit 0: can be re-run with its tags filled again.
  std::string sql;               ///< What was executed.
  std::int64_t recordCount = 0;  ///< Rows that it gave when it last ran.
};

/// `text` in one line for a tooltip: CR LF as two blanks, a tab as one; beyond 80 characters cut
/// and marked "...".
[[nodiscard]] std::string ShortenForTip(std::string_view text);

/// The last 32 queries of a window that gave rows, and which of them the rows on show come from.
/// Positions run from 0, the oldest.
class HistoryRing {
 public:
  static constexpr int capacity = 32;

  /// Position of the current entry; -1 while there is none.
  [[nodiscard]] int Position() const { return position_; }
  [[nodiscard]] int Count() const { return count_; }
  [[nodiscard]] bool Has(int position) const { return position >= 0 && position < count_; }
  /// The entry at a position that Has.
  [[nodiscard]] const HistoryEntry& At(int position) const { return ring_[Index(position)]; }

  /// Records a new query: behind the current entry, whose followers are dropped, unless it repeats
  /// the current entry. Raises Error(application) when the ring has dropped as many entries as it
  /// can count.
  void RecordNew(const HistoryEntry& entry);
  /// Records a re-run of the entry at `position`, which becomes the current one.
  void RecordRerun(int position, const std::string& sql, std::int64_t recordCount);

 private:
  [[nodiscard]] std::size_t Index(int position) const {
    return static_cast<std::size_t>((base_ + position) & 31);
  }
  void Append(const HistoryEntry& entry);

  std::array<HistoryEntry, capacity> ring_;
  std::int16_t base_ = 0;
  std::int16_t count_ = 0;
  std::int16_t position_ = -1;
};

}  // namespace tessel
