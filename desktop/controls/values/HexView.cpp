// The widget that paints bytes. It formats no more than it paints: what a line looks like is the
// contract's, where it stands is decided here.

#include "desktop/controls/values/HexView.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <limits>

#include "contract/base/Zoom.h"
#include "desktop/base/QtKeys.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int margin = 4;
constexpr int shortestLine = 4;
constexpr int longestLine = 16;
constexpr int betweenParts = 2;
constexpr int charactersOfByte = 3;
constexpr int wheelStep = 120;
constexpr double lineSpace = 1.15;
constexpr int percent = 100;

/// Characters from the left edge to the digits of the first byte.
int DigitsColumn(int offsetWidth) { return offsetWidth + betweenParts; }
int TextColumn(int offsetWidth, int lineLength) {
  return DigitsColumn(offsetWidth) + charactersOfByte * lineLength - 1 + betweenParts;
}

int DigitsOf(std::int64_t size) {
  int digits = 8;
  while (digits < longestLine && (size >> (4 * digits)) != 0) ++digits;
  return digits;
}

}  // namespace

HexView::HexView(QWidget* parent) : QAbstractScrollArea(parent), zoom_(ordinaryZoom) {
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setCursor(Qt::IBeamCursor);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  Measure();
}

void HexView::ShowAnew() {
  FitLines();
  viewport()->update();
}

void HexView::ShowCurrent() {
  if (user_ == nullptr) return;
  FitLines();
  const auto line = static_cast<int>(user_->CurrentByte() / lineLength_);
  QScrollBar& bar = *verticalScrollBar();
  const int page = static_cast<int>(LinesOnPage());
  if (line < bar.value()) bar.setValue(line);
  else if (line >= bar.value() + page) bar.setValue(line - page + 1);
}

void HexView::SetZoom(int percentOfFont) {
  zoom_ = NearestZoom(percentOfFont);
  Measure();
  ShowCurrent();
  viewport()->update();
}

// --- where things stand --------------------------------------------------------------------------

void HexView::Measure() {
  font_ = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font_.setKerning(false);
  const double points = font().pointSizeF();
  if (points > 0) font_.setPointSizeF(points * zoom_ / percent);
  else font_.setPixelSize(std::max(1, font().pixelSize() * zoom_ / percent));
  const QFontMetricsF metrics(font_);
  character_ = std::max(1.0, metrics.horizontalAdvance(QLatin1Char('0')));
  lineHeight_ = std::max(1, static_cast<int>(std::ceil(metrics.height() * lineSpace)));
  FitLines();
}

/// As many bytes to a line as fit, and as many lines as there are.
void HexView::FitLines() {
  const std::int64_t size = user_ == nullptr ? 0 : user_->ByteCount();
  offsetWidth_ = DigitsOf(std::max<std::int64_t>(size - 1, 0));
  lineLength_ = longestLine;
  while (lineLength_ > shortestLine &&
         Left(TextColumn(offsetWidth_, lineLength_) + lineLength_) + margin > viewport()->width())
    lineLength_ /= 2;
  const std::int64_t lines = (size + lineLength_ - 1) / lineLength_;
  const std::int64_t hidden = std::max<std::int64_t>(lines - LinesOnPage(), 0);
  verticalScrollBar()->setRange(
      0, static_cast<int>(std::min<std::int64_t>(hidden, std::numeric_limits<int>::max() / 2)));
  verticalScrollBar()->setPageStep(static_cast<int>(LinesOnPage()));
}

std::int64_t HexView::LinesOnPage() const {
  return std::max(1, (viewport()->height() - margin) / lineHeight_);
}

double HexView::Left(double column) const { return margin + column * character_; }

/// The byte at a place, in the digits or in the characters; beside a line its nearest one.
std::int64_t HexView::OffsetAt(const QPointF& place) const {
  const auto line = static_cast<std::int64_t>(std::floor((place.y() - margin) / lineHeight_)) +
                    verticalScrollBar()->value();
  const double column = (place.x() - margin) / character_;
  const double text = TextColumn(offsetWidth_, lineLength_);
  const double byte =
      column >= text - 1 ? column - text : (column - DigitsColumn(offsetWidth_)) / charactersOfByte;
  const int inLine = std::clamp(static_cast<int>(std::floor(byte)), 0, lineLength_ - 1);
  return std::max<std::int64_t>(line, 0) * lineLength_ + inLine;
}

// --- painting ------------------------------------------------------------------------------------

void HexView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), palette().color(QPalette::Base));
  if (user_ == nullptr || user_->ByteCount() == 0) return;
  painter.setFont(font_);
  const std::int64_t first = verticalScrollBar()->value();
  for (std::int64_t line = first; line <= first + LinesOnPage(); ++line) {
    const QRectF place(0, margin + static_cast<double>(line - first) * lineHeight_,
                       viewport()->width(), lineHeight_);
    PaintSelection(painter, line, place);
    PaintLine(painter, line, place);
    PaintMark(painter, line, place);
  }
}

void HexView::PaintLine(QPainter& painter, std::int64_t line, const QRectF& place) const {
  const QString text = QString::fromLatin1(user_->PaintedLine(line).c_str());
  if (text.isEmpty()) return;
  const auto part = [&](int column, int length, const QColor& color) {
    painter.setPen(color);
    painter.drawText(place.adjusted(Left(column), 0, character_, 0),
                     static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) |
                         static_cast<int>(Qt::TextSingleLine),
                     text.mid(column, length));
  };
  const int digits = DigitsColumn(offsetWidth_);
  const int characters = TextColumn(offsetWidth_, lineLength_);
  part(0, offsetWidth_, CurrentTokens().muted);
  part(digits, characters - digits, palette().color(QPalette::Text));
  part(characters, lineLength_, palette().color(QPalette::Text));
}

void HexView::PaintSelection(QPainter& painter, std::int64_t line, const QRectF& place) const {
  const std::int64_t start = line * lineLength_;
  const std::int64_t first = std::max(user_->SelectionStart(), start) - start;
  const std::int64_t end =
      std::min(user_->SelectionStart() + user_->SelectionLength(), start + lineLength_) - start;
  if (first >= end) return;
  const auto fill = [&](double column, double width) {
    painter.fillRect(QRectF(Left(column), place.top(), width * character_, place.height()),
                     CurrentTokens().selection);
  };
  const auto count = static_cast<double>(end - first);
  fill(DigitsColumn(offsetWidth_) + charactersOfByte * static_cast<double>(first),
       charactersOfByte * count - 1);
  fill(TextColumn(offsetWidth_, lineLength_) + static_cast<double>(first), count);
}

/// A ring round the current byte, in both parts, while the view has the keyboard.
void HexView::PaintMark(QPainter& painter, std::int64_t line, const QRectF& place) const {
  const std::int64_t current = user_->CurrentByte();
  if (!hasFocus() || current / lineLength_ != line) return;
  const auto inLine = static_cast<double>(current % lineLength_);
  painter.setPen(CurrentTokens().accent);
  const auto ring = [&](double column, double width) {
    painter.drawRect(
        QRectF(Left(column) - 1, place.top(), width * character_ + 1, place.height() - 1));
  };
  ring(DigitsColumn(offsetWidth_) + charactersOfByte * inLine, 2);
  ring(TextColumn(offsetWidth_, lineLength_) + inLine, 1);
}

// --- what the user does --------------------------------------------------------------------------

void HexView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  FitLines();
}

void HexView::keyPressEvent(QKeyEvent* event) {
  if (user_ == nullptr || ZoomByKey(*event)) return;
  const int shift = ShiftStateOf(event->modifiers());
  if (!user_->Moves(KeyCodeOf(event->key()), shift, LinesOnPage())) event->ignore();
}

bool HexView::ZoomByKey(const QKeyEvent& event) {
  if ((event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::ControlModifier)
    return false;
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: SetZoom(NextZoom(zoom_, 1)); return true;
    case Qt::Key_Minus: SetZoom(NextZoom(zoom_, -1)); return true;
    case Qt::Key_0: SetZoom(ordinaryZoom); return true;
    default: return false;
  }
}

void HexView::mousePressEvent(QMouseEvent* event) {
  if (user_ == nullptr || event->button() != Qt::LeftButton) return;
  user_->GoesTo(OffsetAt(event->position()), event->modifiers().testFlag(Qt::ShiftModifier));
}

void HexView::mouseMoveEvent(QMouseEvent* event) {
  if (user_ != nullptr && event->buttons().testFlag(Qt::LeftButton))
    user_->GoesTo(OffsetAt(event->position()), true);
}

void HexView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier))
    return QAbstractScrollArea::wheelEvent(event);
  wheel_ += event->angleDelta().y();
  SetZoom(NextZoom(zoom_, wheel_ / wheelStep));
  wheel_ %= wheelStep;
  event->accept();
}

void HexView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange) Measure();
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

void HexView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void HexView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace tessel
