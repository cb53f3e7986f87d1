#include "desktop/window/frame/Tiles.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScrollBar>
#include <algorithm>

#include "desktop/window/frame/DocumentStyle.h"

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

/// A document may stand in front of the tiles, as its form says.
bool Floats(const QMdiSubWindow& window) {
  return window.widget() != nullptr && window.widget()->property("floats").toBool();
}

/// The windows that take part, in the order in which they were made.
QList<QMdiSubWindow*> TilesOf(const QMdiArea& area) {
  QList<QMdiSubWindow*> tiles;
  for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder))
    if (!window->isHidden() && !window->isMinimized() && !window->isShaded() && !Floats(*window))
      tiles.append(window);
  return tiles;
}

int HeightOfMinimized(const QMdiArea& area) {
  int height = 0;
  for (const QMdiSubWindow* window : area.subWindowList())
    if (!window->isHidden() && (window->isMinimized() || window->isShaded()))
      height = std::max(height, window->height());
  return height;
}

/// What is left of a room beside the bars that its tiles ask for: a window has a least size, and
/// where that is more than its part, the area scrolls.
QRect BesideBars(const QRect& room, const QList<QMdiSubWindow*>& tiles, const QMdiArea& area) {
  QRect taken;
  for (const QMdiSubWindow* window : tiles) taken |= window->geometry();
  QRect left = room;
  if (taken.bottom() > room.bottom())
    left.setWidth(left.width() - area.verticalScrollBar()->sizeHint().width());
  if (taken.right() > room.right())
    left.setHeight(left.height() - area.horizontalScrollBar()->sizeHint().height());
  return left;
}

/// Whether a document shows its title; on a stack the tabs stand for it.
void ShowTitle(QMdiSubWindow& window, bool shown) {
  if (window.property(DocumentStyle::untitledProperty).toBool() != shown) return;
  window.setProperty(DocumentStyle::untitledProperty, !shown);
  QEvent changed(QEvent::StyleChange);
  QCoreApplication::sendEvent(&window, &changed);
  window.update();
}

}  // namespace

Tiles::Tiles(QMdiArea& area) : area_(area), tabs_(*new DocumentTabs(area)) {
  area.installEventFilter(this);
}

void Tiles::Arrange(Tiling tiling) {
  tiling_ = tiling;
  room_ = area_.maximumViewportSize();  // Once tiled, nothing needs to scroll.
  placing_ = true;
  const QRect room(QPoint(), room_ - QSize(0, HeightOfMinimized(area_)));
  const QList<QMdiSubWindow*> tiles = TilesOf(area_);
  for (QMdiSubWindow* window : area_.subWindowList())
    if (window->isMaximized()) window->showNormal();
  PutTiles(tiles, room);
  const QRect left = BesideBars(room, tiles, area_);
  if (left != room) PutTiles(tiles, left);
  places_.clear();
  for (const QMdiSubWindow* window : tiles) places_.insert(window, window->geometry());
  placing_ = false;
}

void Tiles::PutTiles(const QList<QMdiSubWindow*>& tiles, const QRect& room) {
  const bool stacks = tabbed_ && tiles.size() > 2;
  const int count = stacks ? 2 : static_cast<int>(tiles.size());
  for (int n = 0; n < (stacks ? 1 : count); ++n) {
    ShowTitle(*tiles[n], true);
    tiles[n]->setGeometry(Part(room, n, count, *tiling_));
  }
  if (stacks) PutOnStack(tiles.mid(1), Part(room, 1, count, *tiling_));
  else tabs_.Clear();
}

void Tiles::PutOnStack(const QList<QMdiSubWindow*>& stack, const QRect& room) {
  QRect tabs = room;
  tabs.setHeight(0);
  tabs_.ShowFor(stack, tabs);
  tabs.setHeight(tabs_.sizeHint().height());
  tabs_.setGeometry(tabs);
  for (QMdiSubWindow* window : stack) {
    ShowTitle(*window, false);
    window->setGeometry(room.adjusted(0, tabs.height(), 0, 0));
  }
}

void Tiles::Float(QMdiSubWindow& window) const {
  if (!Floats(window)) return;
  constexpr int step = 24;
  int others = 0;
  for (const QMdiSubWindow* other : area_.subWindowList())
    if (other != &window && !other->isHidden() && Floats(*other)) ++others;
  const QSize room = area_.maximumViewportSize();
  const QPoint corner(room.width() / 10 + step * others, room.height() / 10 + step * others);
  window.setGeometry(QRect(corner, room * 8 / 10));
}

void Tiles::Add(QMdiSubWindow& window) { window.installEventFilter(this); }

void Tiles::Remove(QMdiSubWindow& window) {
  window.removeEventFilter(this);
  places_.remove(&window);
  tabs_.Forget(window);
}

/// The area tells of its new size before it has changed anything inside. A window that is restored
/// may stand where it was put, while the area has changed its size meanwhile.
bool Tiles::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowTitleChange && watched != &area_)
    tabs_.Rename(static_cast<QMdiSubWindow&>(*watched));
  const QEvent::Type type = watched == &area_ ? QEvent::Resize : QEvent::WindowStateChange;
  if (event->type() == type && !placing_)
    QMetaObject::invokeMethod(
        this, [this] { Follow(); },
        watched == &area_ ? Qt::DirectConnection : Qt::QueuedConnection);
  return false;
}

/// A window that is shown, but was not yet when they were tiled, makes no difference, unless it
/// hides the others.
bool Tiles::Stand() const {
  return std::ranges::all_of(area_.subWindowList(), [this](const QMdiSubWindow* window) {
    if (window->isHidden()) return true;
    const auto place = places_.constFind(window);
    if (place == places_.cend()) return !window->isMaximized();
    return window->geometry() == *place && !window->isMaximized() && !window->isMinimized() &&
           !window->isShaded();
  });
}

void Tiles::Follow() {
  if (!placing_ && Keeps() && area_.maximumViewportSize() != room_) Renew();
}

}  // namespace tessel
