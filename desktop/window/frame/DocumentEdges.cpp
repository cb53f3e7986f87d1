#include "desktop/window/frame/DocumentEdges.h"

#include <QCoreApplication>
#include <utility>

namespace tessel {

namespace {

/// Pixels inside the line that count as belonging to it.
constexpr int reach = 4;

}  // namespace

DocumentEdges::DocumentEdges(QMdiSubWindow& document) : QObject(&document), document_(document) {
  document.widget()->setMouseTracking(true);
  document.widget()->installEventFilter(this);
  for (QWidget* child :
       document.widget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    child->installEventFilter(this);
}

/// The kind of the event is asked first: others come still when the document is half taken down.
bool DocumentEdges::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
      if (watched != document_.widget() && over_ && !dragging_) LeaveEdge();
      return false;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
      return watched == document_.widget() && !document_.isMaximized() &&
             TakesMouse(static_cast<QMouseEvent&>(*event));
    default: return false;
  }
}

/// What begins at an edge goes on wherever the pointer goes. The first move off it is forwarded
/// too, so that the pointer looks as ever again.
bool DocumentEdges::TakesMouse(QMouseEvent& event) {
  const QPoint place = document_.mapFromGlobal(event.globalPosition().toPoint());
  const bool atEdge = OnLine(place) != place;
  if (event.type() == QEvent::MouseButtonPress) dragging_ = atEdge;
  const bool was = std::exchange(over_, atEdge);
  if (!dragging_ && !atEdge && !was) return false;
  Forward(event, dragging_ && event.type() == QEvent::MouseMove ? place : OnLine(place));
  if (event.type() == QEvent::MouseButtonRelease) dragging_ = false;
  return true;
}

/// The pointer went on to what stands in the form, which would inherit its look.
void DocumentEdges::LeaveEdge() {
  over_ = false;
  document_.unsetCursor();
}

/// The place on the line that one near it stands for; one that is not near is given back.
QPoint DocumentEdges::OnLine(const QPoint& place) const {
  const int right = document_.width() - 1;
  const int bottom = document_.height() - 1;
  QPoint moved = place;
  if (place.x() <= reach) moved.setX(0);
  else if (place.x() >= right - reach) moved.setX(right);
  if (place.y() >= bottom - reach) moved.setY(bottom);
  return moved;
}

void DocumentEdges::Forward(const QMouseEvent& event, const QPoint& place) const {
  QMouseEvent forwarded(event.type(), place, document_.mapToGlobal(place), event.button(),
                        event.buttons(), event.modifiers());
  QCoreApplication::sendEvent(&document_, &forwarded);
}

}  // namespace tessel
