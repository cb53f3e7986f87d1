#include "data/providers/text/QuotedPlace.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

namespace tessel {

namespace {

struct Quotation {
  std::string_view text;
  std::int64_t line = 0;  ///< From 1.
};

/// What the description quotes, which may hold quotes itself.
std::optional<Quotation> QuotationIn(std::string_view description) {
  constexpr std::string_view before = " near '";
  constexpr std::string_view behind = "' at line ";
  const std::size_t begin = description.find(before);
  const std::size_t end = description.rfind(behind);
  if (begin == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
  const std::size_t from = begin + before.size();
  if (end < from) return std::nullopt;
  const std::string_view number = description.substr(end + behind.size());
  Quotation quotation{description.substr(from, end - from)};
  std::from_chars(number.data(), number.data() + number.size(), quotation.line);
  return quotation;
}

/// Where the statement goes on as the quotation does, as far as both reach.
std::vector<std::size_t> PlacesOf(std::string_view quoted, std::string_view statement) {
  std::vector<std::size_t> places;
  for (std::size_t at = statement.find(quoted.front()); at != std::string_view::npos;
       at = statement.find(quoted.front(), at + 1)) {
    const std::string_view rest = statement.substr(at);
    if (rest.starts_with(quoted) || quoted.starts_with(rest)) places.push_back(at);
  }
  return places;
}

}  // namespace

std::optional<std::size_t> QuotedPlace(std::string_view description, std::string_view statement) {
  const std::optional<Quotation> quotation = QuotationIn(description);
  if (!quotation || statement.empty()) return std::nullopt;
  if (quotation->text.empty()) return statement.size();
  std::vector<std::size_t> places = PlacesOf(quotation->text, statement);
  if (places.size() > 1)
    std::erase_if(places, [&](std::size_t place) {
      return std::ranges::count(statement.substr(0, place), '\n') + 1 != quotation->line;
    });
  if (places.size() != 1) return std::nullopt;
  return places.front();
}

}  // namespace tessel
