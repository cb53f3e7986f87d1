#pragma once

// The sizes in which rows are shown, so that the keys and the wheel go through the same steps in
// every grid. A grid shows its cells and heads in them; a text box has steps of its own, a point of
// its letters each (EditorBox), for letters are chosen by their size and rows by how many fit.
// Buttons, menus and the rest follow the font of the desktop and know of no such size. Sizes are
// whole numbers of percent. The functions keep nothing: they may be called on any thread.

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace tessel {

/// How large something is shown, in percent of its ordinary size; what a control has at first, and
/// what a command that resets it gives it again.
inline constexpr int ordinaryZoom = 100;

/// The sizes that Ctrl+plus, Ctrl+minus and the wheel with Ctrl go through, in percent, from the
/// smallest to the largest. The ordinary one is among them. The steps are small near it and grow
/// with the distance, as a reader would choose them.
inline constexpr int zoomSteps[] = {50, 60, 70, 80, 90, 100, 110, 125, 150, 175, 200, 250, 300};

/// The size so many steps larger, or smaller where `steps` is negative; it stays among those there
/// are, and is `percent` for no step. `percent` may be any: of one that is none of the sizes the
/// next one in that direction is the first step.
[[nodiscard]] constexpr int NextZoom(int percent, int steps) {
  const int* at = std::lower_bound(std::begin(zoomSteps), std::end(zoomSteps), percent);
  if (steps > 0 && (at == std::end(zoomSteps) || *at != percent)) --steps;
  const auto last = static_cast<int>(std::size(zoomSteps)) - 1;
  const auto index = static_cast<int>(at - std::begin(zoomSteps)) + steps;
  return zoomSteps[std::clamp(index, 0, last)];
}

/// The nearest of the sizes that there are, which is what a control takes when another one is asked
/// of it: never smaller than the smallest nor larger than the largest. Of two that are as near it
/// is the ordinary one, or else the smaller.
[[nodiscard]] inline int NearestZoom(int percent) {
  int nearest = ordinaryZoom;
  for (const int step : zoomSteps)
    if (std::abs(step - percent) < std::abs(nearest - percent)) nearest = step;
  return nearest;
}

}  // namespace tessel
