#include "platform/desktop/window/Tiles.h"

#include <QMdiSubWindow>
#include <algorithm>

namespace tessel {

namespace {

/// The part of `whole` for the n-th of `count` equal rows or columns.
QRect Part(const QRect& whole, int n, int count, Tiling tiling) {
  const auto at = [count](int length, int place) { return length * place / count; };
  if (tiling == Tiling::Horizontal) {
    const int top = at(whole.height(), n);
    return {whole.x(), whole.y() + top, whole.width(), at(whole.height(), n + 1) - top};
  }
  const int left = at(whole.width(), n);
  return {whole.x() + left, whole.y(), at(whole.width(), n + 1) - left, whole.height()};
}

}  // namespace

void Tile(QMdiArea& area, Tiling tiling) {
  QList<QMdiSubWindow*> tiles;
  QRect room(QPoint(), area.maximumViewportSize());  // Once tiled, nothing needs to scroll.
  int minimizedHeight = 0;
  for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder)) {
    if (window->isHidden()) continue;
    if (window->isMinimized() || window->isShaded())
      minimizedHeight = std::max(minimizedHeight, window->height());
    else tiles.append(window);
  }
  room.setHeight(room.height() - minimizedHeight);
  for (int n = 0; n < tiles.size(); ++n) {
    if (tiles[n]->isMaximized()) tiles[n]->showNormal();
    tiles[n]->setGeometry(Part(room, n, static_cast<int>(tiles.size()), tiling));
  }
}

}  // namespace tessel
