#pragma once

#include <functional>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TreeView.h"

namespace tessel {

/// The sidebar of the frame: where its panels stand, its close button, and its right edge as a
/// splitter.
class Sidebar {
 public:
  explicit Sidebar(Window& frame);

  [[nodiscard]] bool Shown() const { return box_.Visible(); }
  void Show(bool shown) { box_.SetVisible(shown); }
  void Toggle() { Show(!Shown()); }
  /// One step wider or narrower, within what the splitter allows; shows it when it is hidden.
  void Widen(bool wider);
  /// Shift+F8 widens, with Ctrl too it narrows. False for any other key.
  bool HandleKey(int keyCode, int shift);
  /// Whether one of its lists or buttons has the keyboard; not the box in which a value is typed.
  [[nodiscard]] bool HasFocus() const;

  /// Called when the panels have been placed anew.
  std::function<void()> onPlaced;

 private:
  void box_Resize();
  void PlaceTags(int width, int top, int height);
  void PlaceBrowser(int width, int top, int height);
  [[nodiscard]] bool IsAtEdge(const MouseEvent& event) const;
  void box_MouseMove(const MouseEvent& event);
  void SetWidth(int width);

  Window& frame_;
  PictureBox& box_;
  Button& cmdCloseBox_;
  PictureBox& fraBrowser_;
  TreeView& trvBrowser_;
  PictureBox& fraTags_;
  ListView& lsvTags_;
  Button& cmdAddTag_;
  Button& cmdRemoveTag_;
  bool dragging_ = false;  ///< The left button went down on the edge.
};

}  // namespace tessel
