#include "desktop/plain/LineWrapping.h"

#include <array>
#include <cstdint>
#include <unordered_map>

#include "contract/text/Utf8.h"
#include "desktop/plain/LineBreaks.h"

namespace tessel {

namespace {

constexpr unsigned char asciiEnd = 0x80;

std::size_t LengthSaidBy(unsigned char lead) {
  if (lead >= 0xF0 && lead < 0xF8) return 4;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xC0 && lead < 0xE0 ? 2 : 1;
}

/// The character at a place, or one byte that is none.
std::string_view CharacterAt(std::string_view text, std::size_t place) {
  const std::string_view character =
      text.substr(place, LengthSaidBy(static_cast<unsigned char>(text[place])));
  for (const char byte : character.substr(1))
    if (!ContinuesCharacter(byte)) return character.substr(0, 1);
  return character;
}

/// The widths that have been asked for.
class Widths {
 public:
  explicit Widths(const CharacterWidth& widthOf) : widthOf_(widthOf) {
    for (unsigned char c = 0; c < asciiEnd; ++c) {
      const auto byte = static_cast<char>(c);
      ascii_[c] = widthOf({&byte, 1});
    }
  }
  [[nodiscard]] double Of(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    return lead < asciiEnd ? ascii_[lead] : OfOther(character);
  }

 private:
  double OfOther(std::string_view character) {
    std::uint32_t key = 0;
    for (const char byte : character) key = key << 8U | static_cast<unsigned char>(byte);
    const auto [found, isNew] = others_.try_emplace(key, 0);
    if (isNew) found->second = widthOf_(character);
    return found->second;
  }

  const CharacterWidth& widthOf_;
  std::array<double, asciiEnd> ascii_{};
  std::unordered_map<std::uint32_t, double> others_;
};

/// Goes through a text once, character by character.
class Wrapper {
 public:
  Wrapper(double width, const CharacterWidth& widthOf) : width_(width), widths_(widthOf) {}

  std::vector<std::size_t> Places(std::string_view text) {
    for (std::size_t place = 0; place < text.size();) {
      const std::string_view character = CharacterAt(text, place);
      if (character.front() == '\n' || character.front() == '\r') Start(place + 1);
      else Put(place, character);
      place += character.size();
    }
    return std::move(places_);
  }

 private:
  void Start(std::size_t place) {
    start_ = behindBlank_ = place;
    used_ = usedToBlank_ = 0;
  }

  void Put(std::size_t place, std::string_view character) {
    const double own = widths_.Of(character);
    const bool blank = character.front() == ' ';
    while (place > start_ && !Fits(place, blank ? 0 : own)) BreakBefore(place);
    used_ += own;
    if (!blank) return;
    behindBlank_ = place + 1;
    usedToBlank_ = used_;
  }

  [[nodiscard]] bool Fits(std::size_t place, double more) const {
    return used_ + more <= width_ && place - start_ < LineBreaks::pieceLength;
  }

  void BreakBefore(std::size_t place) {
    if (behindBlank_ > start_) {
      used_ -= usedToBlank_;
      start_ = behindBlank_;
    } else {
      used_ = 0;
      start_ = place;
    }
    behindBlank_ = start_;
    usedToBlank_ = 0;
    places_.push_back(start_);
  }

  double width_;
  Widths widths_;
  std::vector<std::size_t> places_;
  std::size_t start_ = 0;        ///< Of the piece.
  std::size_t behindBlank_ = 0;  ///< Place behind its last blank; its start when it has none.
  double used_ = 0;              ///< Width of the piece so far.
  double usedToBlank_ = 0;       ///< Width of what lies before behindBlank_.
};

}  // namespace

std::vector<std::size_t> WrappedPlaces(std::string_view text, double width,
                                       const CharacterWidth& widthOf) {
  return Wrapper(width, widthOf).Places(text);
}

}  // namespace tessel
