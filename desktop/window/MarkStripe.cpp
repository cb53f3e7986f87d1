#include "desktop/window/MarkStripe.h"

#include <QEvent>
#include <QPainter>

#include "desktop/look/Scale.h"

namespace tessel {

namespace {

constexpr int stripeWidth = 4;

}  // namespace

MarkStripe::MarkStripe(QWidget& window) : QWidget(&window) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  window.installEventFilter(this);
}

void MarkStripe::Show(const QColor& color) {
  color_ = color;
  Place();
  update();
}

bool MarkStripe::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize) Place();
  return false;
}

void MarkStripe::paintEvent(QPaintEvent* /*event*/) { QPainter(this).fillRect(rect(), color_); }

void MarkStripe::Place() {
  const int width = Scale().OfForm(QSize(stripeWidth, 0)).width();
  setGeometry(0, 0, width, parentWidget()->height());
}

}  // namespace tessel
