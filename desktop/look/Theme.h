#pragma once

#include <optional>

#include "desktop/look/Tokens.h"

namespace tessel {

/// What a desktop says of its ground.
enum class Shade : unsigned char { Light, Dark };

/// The colours for a desktop with this palette, if it has one of its own, that says this of its
/// ground, if it says anything. Its palette goes first where it can be read and is as light or dark
/// as the desktop says; the program's own colours stand in for it.
[[nodiscard]] Tokens TokensFor(const std::optional<QPalette>& desktop, std::optional<Shade> said);

/// Keeps the application's palette in line with the desktop's colours.
class SystemTheme {
 public:
  SystemTheme();

  /// Shows the program dark or light whatever the desktop says; for screenshots and tests.
  static void Force(bool dark);
};

}  // namespace tessel
