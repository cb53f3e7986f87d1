#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace tessel {

/// Where the lines of a text are broken so that they can be shown without delay. Each break is one
/// line feed of the text as shown that is not in the text itself. Places are byte offsets, `text`
/// ones without the breaks and `shown` ones with them.
class LineBreaks {
 public:
  static constexpr std::size_t longestLine = 16384;  ///< Bytes of a line that is left as it is.
  static constexpr std::size_t pieceLength = 2048;   ///< Bytes of a piece, at most.

  LineBreaks() = default;
  /// Breaks very long lines, behind a blank where there is one in the second half of a piece, else
  /// between any two characters.
  explicit LineBreaks(std::string_view text);
  /// Breaks before the given places of the text, ascending.
  explicit LineBreaks(std::vector<std::size_t> places) : places_(std::move(places)) {}

  [[nodiscard]] bool Empty() const { return places_.empty(); }
  [[nodiscard]] std::size_t Count() const { return places_.size(); }
  /// Place in the text of the byte that follows each break, ascending.
  [[nodiscard]] const std::vector<std::size_t>& Places() const { return places_; }

  /// The place as shown of a place in the text. At a break it is that of the byte behind it.
  [[nodiscard]] std::size_t Shown(std::size_t place) const;
  /// The place in the text of a place as shown.
  [[nodiscard]] std::size_t InText(std::size_t place) const;

 private:
  void BreakLine(std::string_view text, std::size_t start, std::size_t end);

  std::vector<std::size_t> places_;
};

}  // namespace tessel
