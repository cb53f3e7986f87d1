#include "logic/app/Sidebar.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr int closeButtonFromRight = 315;
constexpr int frameNarrower = 300;
constexpr int valueColumnNarrower = 1020;
constexpr int nameColumnWidth = 960;  ///< A little less: the list has a border.
constexpr int usableHeightLess = 480;
constexpr int framesTop = 60;
constexpr int betweenFrames = 240;
constexpr int frameLeft = 120;
constexpr int headingHeight = 375;
constexpr int betweenButtons = 30;
constexpr int splitterZone = 90;
constexpr int minimumWidth = 1800;
constexpr int roomForDocuments = 3000;
constexpr int widthStep = 600;

void Place(Control& control, int left, int top, int width, int height) {
  control.SetBounds({left, top, std::max(width, 0), std::max(height, 0)});
}

}  // namespace

Sidebar::Sidebar(Window& frame)
    : frame_(frame),
      box_(frame.Find<PictureBox>("box")),
      cmdCloseBox_(frame.Find<Button>("cmdCloseBox")),
      fraBrowser_(frame.Find<PictureBox>("fraBrowser")),
      trvBrowser_(frame.Find<TreeView>("trvBrowser")),
      fraTags_(frame.Find<PictureBox>("fraTags")),
      lsvTags_(frame.Find<ListView>("lsvTags")),
      cmdAddTag_(frame.Find<Button>("cmdAddTag")),
      cmdRemoveTag_(frame.Find<Button>("cmdRemoveTag")) {
  cmdCloseBox_.Click = [this] { Show(false); };
  cmdCloseBox_.SetVisible(true);  // It lies over the edge of a panel: that brings it in front.
  box_.Resize = [this] { box_Resize(); };
  box_.MouseMove = [this](const MouseEvent& event) { box_MouseMove(event); };
  box_.MouseDown = [this](const MouseEvent& event) {
    dragging_ = event.button == MouseButton::Left && IsAtEdge(event);
  };
  box_Resize();
}

void Sidebar::box_Resize() {
  const Rect box = box_.Bounds();
  Rect close = cmdCloseBox_.Bounds();
  close.left = box.width - closeButtonFromRight;
  cmdCloseBox_.SetBounds(close);
  const int width = box.width - frameNarrower;
  const int usable = std::max(box.height - usableHeightLess, 0);
  const int tagsHeight = usable * 30 / 100;
  PlaceTags(width, framesTop, tagsHeight);
  PlaceBrowser(width, framesTop + tagsHeight + betweenFrames, usable - tagsHeight);
  if (onPlaced) onPlaced();
}

/// Its buttons stand in the row of its heading, before the one that closes the sidebar.
void Sidebar::PlaceTags(int width, int top, int height) {
  Place(fraTags_, frameLeft, top, width, height);
  int right = cmdCloseBox_.Bounds().left - frameLeft - betweenButtons;
  for (Button* button : {&cmdRemoveTag_, &cmdAddTag_}) {
    Rect bounds = button->Bounds();
    bounds.left = right - bounds.width;
    button->SetBounds(bounds);
    right = bounds.left;
  }
  Place(lsvTags_, 0, headingHeight, width, height - headingHeight);
  lsvTags_.SetColumnWidth(0, nameColumnWidth);
  lsvTags_.SetColumnWidth(1, width - valueColumnNarrower);
}

void Sidebar::PlaceBrowser(int width, int top, int height) {
  Place(fraBrowser_, frameLeft, top, width, height);
  Place(trvBrowser_, 0, headingHeight, width, height - headingHeight);
}

bool Sidebar::IsAtEdge(const MouseEvent& event) const {
  return event.x >= box_.Bounds().width - splitterZone;
}

/// Over the right edge the pointer shows that it can be moved; dragging it moves it.
void Sidebar::box_MouseMove(const MouseEvent& event) {
  const bool isSplitter = dragging_ || IsAtEdge(event);
  box_.SetMousePointer(isSplitter ? MousePointer::SizeWestEast : MousePointer::Default);
  dragging_ = dragging_ && event.button == MouseButton::Left;
  if (!dragging_) return;
  SetWidth(event.x);
}

void Sidebar::SetWidth(int width) {
  const Rect box = box_.Bounds();
  const int most = std::max(frame_.ScaleWidth() - roomForDocuments, minimumWidth);
  box_.SetBounds({box.left, box.top, std::clamp(width, minimumWidth, most), box.height});
}

void Sidebar::Widen(bool wider) {
  Show(true);
  SetWidth(box_.Bounds().width + (wider ? widthStep : -widthStep));
}

bool Sidebar::HandleKey(int keyCode, int shift) {
  if (keyCode != key::f8 || (shift & ~shiftState::ctrl) != shiftState::shift) return false;
  Widen(shift == shiftState::shift);
  return true;
}

bool Sidebar::HasFocus() const {
  return trvBrowser_.HasFocus() || lsvTags_.HasFocus() || cmdAddTag_.HasFocus() ||
         cmdRemoveTag_.HasFocus() || cmdCloseBox_.HasFocus();
}

}  // namespace tessel
