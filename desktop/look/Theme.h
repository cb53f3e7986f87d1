#pragma once

#include <QPalette>

namespace tessel {

/// Colours for a dark desktop.
[[nodiscard]] QPalette DarkPalette();

/// Keeps the program's colours in line with the desktop's. Where the desktop gives none, as on a
/// plain X server, these are the light ones of the toolkit.
class SystemTheme {
 public:
  SystemTheme();

  /// Shows the program dark or light whatever the desktop says; for screenshots and tests.
  static void Force(bool dark);
};

}  // namespace tessel
