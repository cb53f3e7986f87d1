#include "desktop/controls/values/PictureView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "contract/base/Zoom.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int margin = 8;
constexpr int wheelStep = 120;
constexpr int percent = 100;
constexpr int square = 8;
constexpr int lineStep = 24;
/// Pixels above which an image is scaled in the quick way, so that painting does not wait for it.
constexpr qint64 smoothUpTo = 16'000'000;

/// Squares behind what lets the ground through.
void PaintSquares(QPainter& painter, const QRect& place) {
  painter.fillRect(place, CurrentTokens().base);
  for (int y = place.top(); y <= place.bottom(); y += square)
    for (int x = place.left() + (y / square % 2) * square; x <= place.right(); x += 2 * square)
      painter.fillRect(QRect(x, y, square, square).intersected(place), CurrentTokens().line);
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QAbstractScrollArea(parent), zoom_(ImageBox::fitZoom) {
  setFocusPolicy(Qt::StrongFocus);
  horizontalScrollBar()->setSingleStep(lineStep);
  verticalScrollBar()->setSingleStep(lineStep);
}

void PictureView::ShowPicture(const QImage& image, const QSize& size) {
  image_ = image;
  fitting_ = QImage();
  size_ = size;
  text_.clear();
  FitBars();
}

void PictureView::ShowText(const QString& text) {
  image_ = fitting_ = QImage();
  size_ = QSize();
  text_ = text;
  FitBars();
}

void PictureView::SetZoom(int percentOfSize) {
  zoom_ = percentOfSize == ImageBox::fitZoom ? percentOfSize : NearestZoom(percentOfSize);
  FitBars();
}

void PictureView::StepZoom(int steps) {
  if (steps == 0 || size_.isEmpty()) return;
  const int now =
      zoom_ != ImageBox::fitZoom ? zoom_ : ShownSize().width() * percent / size_.width();
  SetZoom(NextZoom(std::max(now, 1), steps));
}

/// In pixels of the screen, so that a picture of 100 percent is neither blurred nor enlarged.
QSize PictureView::ShownSize() const {
  const QSize own = size_ / devicePixelRatioF();
  if (zoom_ != ImageBox::fitZoom) return (own * zoom_ / percent).expandedTo({1, 1});
  const QSize room = maximumViewportSize() - QSize(2 * margin, 2 * margin);
  if (own.width() <= room.width() && own.height() <= room.height()) return own.expandedTo({1, 1});
  return own.scaled(room.expandedTo({1, 1}), Qt::KeepAspectRatio).expandedTo({1, 1});
}

/// In the middle of the room, or moved by the bars.
QRect PictureView::Place() const {
  const QSize shown = ShownSize();
  const QSize room = viewport()->size();
  const int left = shown.width() < room.width() ? (room.width() - shown.width()) / 2
                                                : -horizontalScrollBar()->value();
  const int top = shown.height() < room.height() ? (room.height() - shown.height()) / 2
                                                 : -verticalScrollBar()->value();
  return {QPoint(left, top), shown};
}

void PictureView::FitBars() {
  const QSize over = image_.isNull() ? QSize(0, 0) : ShownSize() - viewport()->size();
  horizontalScrollBar()->setRange(0, std::max(over.width(), 0));
  verticalScrollBar()->setRange(0, std::max(over.height(), 0));
  horizontalScrollBar()->setPageStep(viewport()->width());
  verticalScrollBar()->setPageStep(viewport()->height());
  viewport()->update();
}

void PictureView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), palette().color(QPalette::Base));
  if (!image_.isNull()) return PaintPicture(painter, event->rect());
  painter.setPen(CurrentTokens().muted);
  painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), text_);
}

/// A picture shown smaller than it is keeps an image of that size: scaling it takes time.
void PictureView::PaintPicture(QPainter& painter, const QRect& part) {
  const QRect place = Place();
  const QSize pixels = place.size() * devicePixelRatioF();
  if (image_.hasAlphaChannel()) PaintSquares(painter, place.intersected(part));
  if (pixels.width() >= image_.width()) {
    painter.drawImage(place, image_);
    return;
  }
  const qint64 count = static_cast<qint64>(image_.width()) * image_.height();
  if (fitting_.size() != pixels)
    fitting_ =
        image_.scaled(pixels, Qt::IgnoreAspectRatio,
                      count > smoothUpTo ? Qt::FastTransformation : Qt::SmoothTransformation);
  painter.drawImage(place, fitting_);
}

void PictureView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  FitBars();
}

void PictureView::keyPressEvent(QKeyEvent* event) {
  if (ZoomByKey(*event)) return;
  QAbstractScrollArea::keyPressEvent(event);
}

bool PictureView::ZoomByKey(const QKeyEvent& event) {
  if ((event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::ControlModifier)
    return false;
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: StepZoom(1); return true;
    case Qt::Key_Minus: StepZoom(-1); return true;
    case Qt::Key_0: SetZoom(ImageBox::fitZoom); return true;
    default: return false;
  }
}

void PictureView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier))
    return QAbstractScrollArea::wheelEvent(event);
  wheel_ += event->angleDelta().y();
  StepZoom(wheel_ / wheelStep);
  wheel_ %= wheelStep;
  event->accept();
}

void PictureView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

}  // namespace tessel
