#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/RowArrangement.h"
#include "data/rows/RowSource.h"

namespace tessel {

/// The texts of cells, one after the other, for who tests very many of them.
class CellTexts {
 public:
  /// Whether the cell has a text that passes.
  [[nodiscard]] bool Passes(const TextTest& test, const ValueView& cell);

 private:
  std::string written_;
};

/// Tells of rows whether they are on show.
class RowTest {
 public:
  /// Both outlive it.
  RowTest(const RowSource& rows, const std::vector<RowCondition>& conditions);

  [[nodiscard]] bool Passes(std::int64_t row);

 private:
  [[nodiscard]] bool Meets(const RowCondition& condition);
  [[nodiscard]] bool CellMeets(const RowCondition& condition, const ValueView& cell);

  const RowSource& rows_;
  const std::vector<RowCondition>& conditions_;
  CellTexts texts_;
  std::size_t first_ = 0;         ///< Of the fields that are looked at.
  std::vector<ValueView> cells_;  ///< Theirs, of one row.
};

}  // namespace tessel
