#include "logic/results/FrameCommands.h"

#include "contract/base/Zoom.h"
#include "contract/desktop/controls/DataGrid.h"
#include "logic/results/RecordsHost.h"

namespace tessel {

void WireFrameCommands(Window& window, RecordsHost& host) {
  const auto forward = [&](const char* item, void (RecordsHost::*command)()) {
    window.Menu(item).Click = [&host, command] { (host.*command)(); };
  };
  forward("mnuNewInstance", &RecordsHost::mnuNewInstance_Click);
  forward("mnuWindowSidebar", &RecordsHost::mnuWindowSidebar_Click);
  forward("mnuWindowTileHoriz", &RecordsHost::mnuWindowTileHoriz_Click);
  forward("mnuWindowTileVert", &RecordsHost::mnuWindowTileVert_Click);
  forward("mnuWindowTabs", &RecordsHost::mnuWindowTabs_Click);
  forward("mnuWindowMaximize", &RecordsHost::mnuWindowMaximize_Click);
  forward("mnuHelpContents", &RecordsHost::mnuHelpContents_Click);
  forward("mnuHelpIndex", &RecordsHost::mnuHelpIndex_Click);
  forward("mnuHelpShortcuts", &RecordsHost::mnuHelpShortcuts_Click);
  forward("mnuHelpAbout", &RecordsHost::mnuHelpAbout_Click);
  host.WireWindowMenu(window);
  window.Menu("menuWindow").Click = [&window, &host] {
    window.Menu("mnuWindowSidebar").SetChecked(host.SidebarShown());
    host.ListWindowsIn(window);
  };
}

void WireZoomReset(Window& window, DataGrid& grid) {
  window.Menu("mnuZoomReset").Click = [&grid] { grid.SetZoom(ordinaryZoom); };
}

}  // namespace tessel
