#include "data/rows/arranged/RowTest.h"

#include <algorithm>

#include "data/rows/order/SortOrder.h"

namespace tessel {

namespace {

bool Holds(Comparison comparison, int way) {
  switch (comparison) {
    case Comparison::Equal: return way == 0;
    case Comparison::NotEqual: return way != 0;
    case Comparison::Less: return way < 0;
    case Comparison::AtMost: return way <= 0;
    case Comparison::More: return way > 0;
    default: return way >= 0;
  }
}

bool IsEquality(Comparison comparison) {
  return comparison == Comparison::Equal || comparison == Comparison::NotEqual;
}

}  // namespace

bool CellTexts::Passes(const TextTest& test, const ValueView& cell) {
  if (const auto* text = std::get_if<std::string_view>(&cell)) return test.Holds(*text);
  if (const auto* moment = std::get_if<MomentView>(&cell)) return test.Holds(moment->text);
  if (const auto* decimal = std::get_if<DecimalView>(&cell)) return test.Holds(decimal->digits);
  if (IsNull(cell) || std::holds_alternative<BinaryView>(cell)) return false;
  written_.clear();
  AppendText(cell, written_);
  return test.Holds(written_);
}

RowTest::RowTest(const RowSource& rows, const std::vector<RowCondition>& conditions)
    : rows_(rows), conditions_(conditions) {
  std::size_t end = 0;
  first_ = rows.fields.size();
  for (const RowCondition& condition : conditions) {
    first_ = std::min(first_, condition.field.value_or(0));
    end = std::max(end, condition.field ? *condition.field + 1 : rows.fields.size());
  }
  cells_.resize(end > first_ ? end - first_ : 0);
}

bool RowTest::Passes(std::int64_t row) {
  rows_.Read(row, first_, cells_);
  return std::ranges::all_of(conditions_,
                             [this](const RowCondition& condition) { return Meets(condition); });
}

bool RowTest::Meets(const RowCondition& condition) {
  if (condition.field) return CellMeets(condition, cells_[*condition.field - first_]);
  return std::ranges::any_of(cells_,
                             [&](const ValueView& cell) { return CellMeets(condition, cell); });
}

bool RowTest::CellMeets(const RowCondition& condition, const ValueView& cell) {
  if (condition.test) return texts_.Passes(*condition.test, cell);
  const ValueView wanted = ToView(condition.value);
  if (RankOf(cell) != RankOf(wanted)) return condition.comparison == Comparison::NotEqual;
  if (IsNull(cell) && !IsEquality(condition.comparison)) return false;
  return Holds(condition.comparison, CompareValues(cell, wanted));
}

}  // namespace tessel
