#include "data/rows/TextCells.h"

#include <charconv>
#include <cstdint>

namespace tessel {

namespace {

template <class Number, class Append>
void AppendNumber(std::string_view text, ColumnBuilder& cells, Append append) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end) append(number);
  else cells.AppendText(text);
}

}  // namespace

void AppendIntegerText(std::string_view text, ColumnBuilder& cells) {
  AppendNumber<std::int64_t>(text, cells, [&](std::int64_t n) { cells.AppendInteger(n); });
}

void AppendUnsignedText(std::string_view text, ColumnBuilder& cells) {
  AppendNumber<std::uint64_t>(text, cells, [&](std::uint64_t n) { cells.AppendUnsigned(n); });
}

void AppendSingleText(std::string_view text, ColumnBuilder& cells) {
  AppendNumber<float>(text, cells, [&](float n) { cells.AppendSingle(n); });
}

void AppendDoubleText(std::string_view text, ColumnBuilder& cells) {
  AppendNumber<double>(text, cells, [&](double n) { cells.AppendDouble(n); });
}

std::string_view WithoutIdleFraction(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return text;
  if (text.find_first_not_of("0123456789", point + 1) != std::string_view::npos) return text;
  while (text.back() == '0') text.remove_suffix(1);
  if (text.back() == '.') text.remove_suffix(1);
  return text;
}

}  // namespace tessel
