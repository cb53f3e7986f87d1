#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"
#include "data/rows/order/TextKeys.h"

namespace tessel {

/// The keys of one field to sort by: of each row bytes that compare as the values do, made once so
/// that comparing takes little. Null, booleans, numbers by value, texts, moments and bytes stand in
/// this order, as CompareValues has them; texts in that of `texts` where one is given. Of a very
/// long value only the beginning is in the key.
class KeyColumn {
 public:
  /// `texts` lives as long as keys are made.
  KeyColumn(bool descending, TextKeys* texts) : descending_(descending), texts_(texts) {}

  /// So many keys will be made.
  void ExpectRows(std::size_t rows);
  /// Appends the key of the next row. False: the keys of numbers made so far are of another form
  /// than this one needs; the column was emptied, and all have to be made anew.
  [[nodiscard]] bool Add(const ValueView& value);
  [[nodiscard]] std::size_t Count() const { return ranks_.size(); }
  [[nodiscard]] bool Descending() const { return descending_; }
  /// Whether keys that are equal may be those of different values.
  [[nodiscard]] bool HasCutKeys() const { return hasCutKeys_; }

  /// The kind of a value and the beginning of its key, as far as keys of the kind differ: where
  /// these two compare, so do the values. Only when all keys are made.
  struct Head {
    std::uint64_t bytes = 0;
    std::uint32_t rank = 0;
  };
  [[nodiscard]] Head HeadOf(std::size_t row) const;
  /// Less than, equal to or greater than 0 as the keys of two rows compare, which have equal heads.
  [[nodiscard]] int CompareBehindHead(std::size_t a, std::size_t b) const;
  /// The same of any two rows.
  [[nodiscard]] int Compare(std::size_t a, std::size_t b) const;

 private:
  /// How numbers are written: as whole ones, as floating ones, or digit by digit, whatever they
  /// are.
  enum class NumberForm { Whole, Real, Digits };
  static constexpr std::size_t ranks = 6;

  [[nodiscard]] bool AddNumber(const ValueView& value);
  void AddText(std::string_view text);
  void AddBytes(std::string_view bytes);
  void AddFixed(std::uint64_t bits);
  [[nodiscard]] bool BeginAnew(NumberForm form);
  void NoteEnd(std::uint8_t rank);
  void MakeRoom();
  [[nodiscard]] std::string_view KeyOf(std::size_t row) const {
    const std::size_t start = row == 0 ? 0 : ends_[row - 1];
    return std::string_view(bytes_).substr(start, ends_[row] - start);
  }

  /// What the keys of one rank have in common.
  struct Common {
    bool any = false;
    std::size_t firstRow = 0;
    std::size_t start = 0;    ///< So many bytes at the beginning are the same in all.
    std::size_t longest = 0;  ///< The longest key.
    std::size_t shortest = 0;
  };

  bool descending_;
  TextKeys* texts_;
  NumberForm form_ = NumberForm::Whole;
  bool hasCutKeys_ = false;
  std::size_t expected_ = 0;  ///< Keys that will be made.
  std::vector<std::uint8_t> ranks_;
  std::vector<std::size_t> ends_;
  std::string bytes_;
  std::array<Common, ranks> common_;
};

}  // namespace tessel
