#include "contract/base/Color.h"

#include <algorithm>
#include <cmath>

namespace tessel {

namespace {

/// The light of one part of a colour, from 0 to 1, out of the number that stands for it.
double Light(Color part) {
  const double share = (part & 0xFF) / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

/// How bright a colour looks, from 0 to 1: green counts most, blue least.
double Luminance(Color color) {
  return 0.2126 * Light(color) + 0.7152 * Light(color >> 8) + 0.0722 * Light(color >> 16);
}

}  // namespace

double Contrast(Color a, Color b) {
  const auto [dark, bright] = std::minmax({Luminance(a), Luminance(b)});
  return (bright + 0.05) / (dark + 0.05);
}

Color TextOn(Color ground) {
  const bool black = Contrast(color::black, ground) >= Contrast(color::white, ground);
  return black ? color::black : color::white;
}

}  // namespace tessel
