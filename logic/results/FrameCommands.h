#pragma once

namespace tessel {

class RecordsHost;
class Window;

/// Gives the Window and Help commands in the menus of a document window to the frame. Both outlive
/// the window's events.
void WireFrameCommands(Window& window, RecordsHost& host);

}  // namespace tessel
