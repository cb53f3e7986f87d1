#pragma once

#include <cstdlib>

#include "desktop/QtDesktop.h"

namespace tessel::bench {

/// The one desktop of the process, off the screen where the environment names no other.
[[nodiscard]] inline QtDesktop& TheDesktop() {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int argc = 1;
  static char name[] = "Tessel";
  static char* argv[] = {name, nullptr};
  static auto* desktop = new QtDesktop(argc, argv);
  return *desktop;
}

}  // namespace tessel::bench
