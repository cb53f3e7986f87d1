#pragma once

namespace tessel {

class DataGrid;
class RecordsHost;
class Window;

/// Gives the Window and Help commands in the menus of a document window to the frame. Both outlive
/// the window's events.
void WireFrameCommands(Window& window, RecordsHost& host);

/// Gives the command that shows a document's rows in their ordinary size again.
void WireZoomReset(Window& window, DataGrid& grid);

}  // namespace tessel
