#include "desktop/plain/LineBreaks.h"

#include <algorithm>

#include "contract/text/Utf8.h"

namespace tessel {

namespace {

/// What is no UTF-8 is cut anywhere.
std::size_t BetweenCharacters(std::string_view text, std::size_t place) {
  constexpr std::size_t mostContinuing = 3;
  const std::size_t start = CharacterStart(text, place);
  return place - start > mostContinuing ? place : start;
}

/// Behind the last blank of the second half of the piece that begins at `start`, else at its end.
std::size_t EndOfPiece(std::string_view text, std::size_t start) {
  const std::size_t end = BetweenCharacters(text, start + LineBreaks::pieceLength);
  const std::size_t half = LineBreaks::pieceLength / 2;
  const std::size_t blank = text.substr(start + half, end - start - half).rfind(' ');
  return blank == std::string_view::npos ? end : start + half + blank + 1;
}

}  // namespace

LineBreaks::LineBreaks(std::string_view text) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    BreakLine(text, start, end);
    start = end + 1;
  }
}

void LineBreaks::BreakLine(std::string_view text, std::size_t start, std::size_t end) {
  if (end - start <= longestLine) return;
  while (end - start > pieceLength) {
    start = EndOfPiece(text, start);
    places_.push_back(start);
  }
}

std::size_t LineBreaks::Shown(std::size_t place) const {
  const auto behind = std::ranges::upper_bound(places_, place);
  return place + static_cast<std::size_t>(behind - places_.begin());
}

/// The break number i, counted from 0, is shown at its place and i more.
std::size_t LineBreaks::InText(std::size_t place) const {
  std::size_t low = 0;
  std::size_t high = places_.size();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (places_[middle] + middle < place) low = middle + 1;
    else high = middle;
  }
  return place - low;
}

}  // namespace tessel
