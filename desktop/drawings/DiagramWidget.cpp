#include "desktop/drawings/DiagramWidget.h"

#include <QBuffer>
#include <QEvent>
#include <QPainter>
#include <QPdfWriter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "desktop/drawings/DrawingFiles.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int smallest = 10;
constexpr int largest = 400;
constexpr int wheelStep = 10;
constexpr double fileScale = 2;
constexpr qint64 mostPixels = 64'000'000;      ///< Of a picture in a file.
constexpr qint64 mostKeptPixels = 16'000'000;  ///< Of the picture that is kept between paintings.

/// The colours that a drawing is made in, and those of the theme that stand for them. Texts have
/// none of their own: they take that of the whole.
QByteArray InTheme(QByteArray svg, const Tokens& tokens) {
  const auto name = [](const QColor& color) { return color.name().toUtf8(); };
  svg.replace("\"#5c6672\"", '"' + name(tokens.muted) + '"');
  svg.replace("\"#d6e6fb\"", '"' + name(tokens.selection) + '"');
  svg.replace("\"white\"", '"' + name(tokens.base) + '"');
  svg.replace("stroke=\"black\"", "stroke=\"" + name(tokens.muted) + '"');
  const qsizetype root = svg.indexOf("<svg ");
  if (root >= 0) svg.insert(root + 5, "fill=\"" + name(tokens.text) + "\" ");
  return svg;
}

}  // namespace

/// Where the drawing stands.
class DiagramWidget::Canvas final : public QWidget {
 public:
  explicit Canvas(DiagramWidget& owner) : QWidget(&owner), owner_(owner) {}

  void Forget() {
    kept_ = QPixmap();
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), CurrentTokens().base);
    if (!owner_.shown_.isValid()) return;
    const QSize pixels = size() * devicePixelRatioF();
    if (static_cast<qint64>(pixels.width()) * pixels.height() > mostKeptPixels)
      return owner_.shown_.render(&painter, rect());
    if (kept_.size() != pixels) Keep(pixels);
    painter.drawPixmap(rect(), kept_);
  }

 private:
  void Keep(const QSize& pixels) {
    kept_ = QPixmap(pixels);
    kept_.fill(CurrentTokens().base);
    QPainter painter(&kept_);
    painter.setRenderHint(QPainter::Antialiasing);
    owner_.shown_.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
  }

  DiagramWidget& owner_;
  QPixmap kept_;
};

DiagramWidget::DiagramWidget(QWidget* parent) : QScrollArea(parent), canvas_(new Canvas(*this)) {
  setWidget(canvas_);
  setAlignment(Qt::AlignCenter);
  setFocusPolicy(Qt::StrongFocus);
  canvas_->resize(0, 0);
}

bool DiagramWidget::SetSvg(const QByteArray& svg) {
  svg_ = svg;
  const bool valid = paper_.load(svg_);
  LoadShown();
  Place();
  return valid;
}

void DiagramWidget::LoadShown() {
  if (!svg_.isEmpty()) shown_.load(InTheme(svg_, CurrentTokens()));
  canvas_->Forget();
}

double DiagramWidget::Factor() const {
  if (zoom_ != 0) return zoom_ / 100.0;
  const QSizeF own = paper_.defaultSize();
  const QSizeF room = maximumViewportSize();
  if (own.isEmpty()) return 1;
  return std::clamp(std::min(room.width() / own.width(), room.height() / own.height()),
                    smallest / 100.0, 1.0);
}

int DiagramWidget::Zoom() const { return static_cast<int>(std::lround(Factor() * 100)); }

void DiagramWidget::SetZoom(int percent) {
  const QPointF middle(
      (horizontalScrollBar()->value() + viewport()->width() / 2.0) / std::max(1, canvas_->width()),
      (verticalScrollBar()->value() + viewport()->height() / 2.0) / std::max(1, canvas_->height()));
  zoom_ = percent == 0 ? 0 : std::clamp(percent, smallest, largest);
  Place();
  horizontalScrollBar()->setValue(
      static_cast<int>(middle.x() * canvas_->width() - viewport()->width() / 2.0));
  verticalScrollBar()->setValue(
      static_cast<int>(middle.y() * canvas_->height() - viewport()->height() / 2.0));
}

void DiagramWidget::Place() {
  const QSizeF own = paper_.isValid() ? QSizeF(paper_.defaultSize()) : QSizeF(0, 0);
  canvas_->resize((own * Factor()).toSize());
}

// --- files ---------------------------------------------------------------------------------------

QImage DiagramWidget::Picture() {
  const QSizeF own = paper_.defaultSize();
  const double room = std::sqrt(mostPixels / std::max(1.0, own.width() * own.height()));
  QImage image((own * std::min(fileScale, room)).toSize(), QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  paper_.render(&painter);
  return image;
}

QByteArray DiagramWidget::FileContent(DrawingFormat format) {
  if (!HasDrawing()) return {};
  if (format == DrawingFormat::Svg) return svg_;
  if (format == DrawingFormat::Png) return PngOf(Picture());
  QByteArray content;
  QBuffer file(&content);
  file.open(QIODevice::WriteOnly);
  QPdfWriter pdf(&file);
  FillPage(pdf, QSizeF(paper_.defaultSize()));
  QPainter painter(&pdf);
  paper_.render(&painter);
  painter.end();
  return content;
}

// --- what the user does --------------------------------------------------------------------------

void DiagramWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) LoadShown();
  QScrollArea::changeEvent(event);
}

void DiagramWidget::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  if (zoom_ == 0) Place();
}

void DiagramWidget::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QScrollArea::wheelEvent(event);
  SetZoom(Zoom() + (event->angleDelta().y() > 0 ? wheelStep : -wheelStep));
  event->accept();
  emit zoomed();
}

}  // namespace tessel
