#pragma once

namespace tessel {

/// Twips to one device-independent pixel at the desktop's ordinary font size.
inline constexpr int twipsPerPixel = 15;

/// A place in twips from the upper left corner of the parent (of the screen for a top-level
/// window).
struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Rect&) const = default;
};

}  // namespace tessel
