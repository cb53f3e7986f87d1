#pragma once

namespace tessel {

// All sizes and places that cross the desktop's interface are in twips, so that the logic need not
// know the screen.

/// Twips to one device-independent pixel at the desktop's ordinary font size. A twip is 1/1440
/// inch, and such a pixel 1/96. With a larger font the same twips give more pixels, so that texts
/// fit into places that were measured for the ordinary one.
inline constexpr int twipsPerPixel = 15;

/// A place in twips from the upper left corner of the parent (of the screen for a top-level
/// window). `left` and `top` may be negative; width and height may not. All zeros stand for "no
/// place" where a function says so. Turning twips into pixels and back rounds to the nearest: a
/// place that was set is told as it was given, one that the user made may be off by some twips.
struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Rect&) const = default;
};

}  // namespace tessel
