#pragma once

#include "contract/desktop/Window.h"
#include "logic/query/frmMain.h"

namespace tessel {

/// Wires the commands of the frame's Edit menu that work on the text of the query window. Both
/// outlive the menu.
void WireEditMenu(Window& frame, frmMain& query);

/// The menu opens: what cannot be used now is disabled.
void ShowEditMenu(Window& frame, frmMain& query);

}  // namespace tessel
