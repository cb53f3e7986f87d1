#include "data/rows/order/SortOrder.h"

#include <algorithm>
#include <cmath>
#include <compare>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "data/rows/DecimalDigits.h"
#include "data/rows/order/NumberKey.h"

namespace tessel {

namespace {

int Sign(std::weak_ordering order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

template <class T>
int Compare(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// --- numbers -------------------------------------------------------------------------------------

int CompareDoubles(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return Compare(!std::isnan(a), !std::isnan(b));
  return Compare(a, b);
}

int CompareNumbers(const ValueView& a, const ValueView& b) {
  const auto* wholeA = std::get_if<std::int64_t>(&a);
  const auto* wholeB = std::get_if<std::int64_t>(&b);
  if (wholeA != nullptr && wholeB != nullptr) return Compare(*wholeA, *wholeB);
  const auto realA = ExactDouble(a);
  const auto realB = ExactDouble(b);
  if (realA && realB) return CompareDoubles(*realA, *realB);
  return CompareDigits(NumberDigits(a), NumberDigits(b));
}

// --- values of all kinds -------------------------------------------------------------------------

int CompareText(std::string_view a, std::string_view b) {
  if (a == b) return 0;
  return Sign(std::lexicographical_compare_three_way(
      a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return static_cast<unsigned char>(AsciiUpper(x)) <=>
               static_cast<unsigned char>(AsciiUpper(y));
      }));
}

int CompareBytes(std::span<const std::byte> a, std::span<const std::byte> b) {
  return Sign(std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end()));
}

// --- the text of a sort --------------------------------------------------------------------------

bool TakeWord(std::string_view& text, std::string_view word) {
  if (text.size() < word.size()) return false;
  if (!EqualNoCase(text.substr(text.size() - word.size()), word)) return false;
  text.remove_suffix(word.size());
  text = TrimSpaces(text);
  return true;
}

/// Cuts the part up to the next comma outside of brackets off the front of `text`.
std::string_view TakePart(std::string_view& text) {
  const std::size_t open = text.find_first_of("[,");
  std::size_t end = open;
  if (open != std::string_view::npos && text[open] == '[')
    end = text.find(',', std::min(text.find(']', open), text.size()));
  const std::string_view part = TrimSpaces(text.substr(0, end));
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  return part;
}

}  // namespace

ValueRank RankOf(const ValueView& value) {
  using enum ValueRank;
  constexpr ValueRank ranks[] = {Null,   Boolean, Number, Number, Number,
                                 Number, Number,  Moment, Text,   Binary};
  static_assert(std::size(ranks) == std::variant_size_v<ValueView>);
  return ranks[value.index()];
}

int CompareValues(const ValueView& a, const ValueView& b) {
  const ValueRank rank = RankOf(a);
  if (rank != RankOf(b)) return Compare(rank, RankOf(b));
  switch (rank) {
    case ValueRank::Boolean: return Compare(std::get<bool>(a), std::get<bool>(b));
    case ValueRank::Number: return CompareNumbers(a, b);
    case ValueRank::Text:
      return CompareText(std::get<std::string_view>(a), std::get<std::string_view>(b));
    case ValueRank::Moment:
      return Compare(std::get<MomentView>(a).text, std::get<MomentView>(b).text);
    case ValueRank::Binary:
      return CompareBytes(std::get<BinaryView>(a).bytes, std::get<BinaryView>(b).bytes);
    default: return 0;
  }
}

std::vector<SortField>
ParseSort(std::string_view text,
          const std::function<std::optional<std::size_t>(std::string_view)>& find) {
  std::vector<SortField> fields;
  text = TrimSpaces(text);
  while (!text.empty()) {
    std::string_view part = TakePart(text);
    const bool descending = TakeWord(part, " DESC");
    if (!descending) TakeWord(part, " ASC");
    const std::string_view name = WithoutBrackets(part);
    const auto field = find(name);
    if (!field)
      throw Error(errorNumber::itemNotFound, "Tessel",
                  "There is no field '" + std::string(name) + "' to sort by.");
    fields.push_back({*field, descending});
  }
  return fields;
}

void SortRows(std::vector<std::int64_t>& rows, const std::vector<SortField>& fields,
              const std::function<ValueView(std::int64_t, std::size_t)>& at) {
  if (fields.empty()) return;
  struct Key {
    ValueView first;  ///< Of the first field: most comparisons end there.
    std::int64_t row;
  };
  std::vector<Key> keys;
  keys.reserve(rows.size());
  for (const std::int64_t row : rows) keys.push_back({at(row, fields[0].field), row});
  const auto order = [&](const Key& a, const Key& b, std::size_t i) {
    if (i == 0) return CompareValues(a.first, b.first);
    return CompareValues(at(a.row, fields[i].field), at(b.row, fields[i].field));
  };
  const auto before = [&](const Key& a, const Key& b) {
    for (std::size_t i = 0; i < fields.size(); ++i)
      if (const int way = order(a, b, i)) return fields[i].descending ? way > 0 : way < 0;
    return false;
  };
  if (std::ranges::is_sorted(keys, before)) return;
  std::ranges::stable_sort(keys, before);
  std::ranges::transform(keys, rows.begin(), &Key::row);
}

}  // namespace tessel
