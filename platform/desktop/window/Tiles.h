#pragma once

#include <QMdiArea>

#include "platform/Window.h"

namespace tessel {

/// Tiles the windows of the area that are shown and not minimised: horizontally as rows one below
/// another, vertically as columns side by side. Minimised ones stay, and room is left for them at
/// the bottom.
void Tile(QMdiArea& area, Tiling tiling);

}  // namespace tessel
