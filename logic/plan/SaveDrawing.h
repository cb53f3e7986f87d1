#pragma once

#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/ChartBox.h"
#include "logic/program/Help.h"

namespace tessel {

/// Asks for a file and puts the drawing there, as PNG, SVG or PDF by the ending of its name. `name`
/// is proposed, without an ending. A failure is shown, and leaves an existing file as it was.
void SaveDrawing(const Global& global, Window& window, const DrawingBox& drawing,
                 const std::string& name);

}  // namespace tessel
