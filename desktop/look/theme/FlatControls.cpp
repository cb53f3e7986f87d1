#include "desktop/look/theme/FlatControls.h"

#include <algorithm>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"
#include "desktop/look/theme/FlatDrawing.h"

namespace tessel {

namespace {

constexpr int sliderMargin = 3;
constexpr double sliderStrength = 0.35;
constexpr double heldSliderStrength = 0.55;
constexpr int underline = 2;

void FillRound(QPainter& painter, const QRectF& rect, const QColor& color) {
  const double radius = std::min(rect.width(), rect.height()) / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(rect, radius, radius);
  painter.restore();
}

/// The middle of a bar: it is drawn thinner than its place is high.
QRect Thin(const QRect& rect) {
  const int height = rect.height() / 2;
  return {rect.x(), rect.y() + (rect.height() - height) / 2, rect.width(), height};
}

bool IsHorizontal(const QStyleOption& option) {
  return option.state.testFlag(QStyle::State_Horizontal);
}

/// The part of a bar that is done, from its beginning.
QRect DonePart(const QStyleOptionProgressBar& bar) {
  const qint64 range = qint64{bar.maximum} - bar.minimum;
  if (range <= 0) return {};
  const double part = static_cast<double>(bar.progress - bar.minimum) / static_cast<double>(range);
  QRect done = bar.rect;
  done.setWidth(static_cast<int>(bar.rect.width() * std::clamp(part, 0.0, 1.0)));
  if (bar.direction == Qt::RightToLeft) done.moveRight(bar.rect.right());
  return done;
}

/// Nobody knows how long it takes: a piece of the bar that goes from one end to the other.
QRect MovingPart(const QStyleOptionProgressBar& bar) {
  constexpr int steps = 40;
  const int width = bar.rect.width() / 4;
  const int step = std::max(bar.progress, 0) % steps;
  QRect piece = bar.rect;
  piece.setWidth(width);
  piece.translate((bar.rect.width() - width) * step / (steps - 1), 0);
  return piece;
}

/// Where the slider begins within the groove, and how long it is.
std::pair<int, int> SliderPlace(const QStyleOptionSlider& bar, int groove, int shortest) {
  const qint64 range = qint64{bar.maximum} - bar.minimum;
  if (range <= 0) return {0, groove};
  const auto natural = static_cast<int>(qint64{bar.pageStep} * groove / (range + bar.pageStep));
  const int length = std::clamp(natural, std::min(shortest, groove), groove);
  return {QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                          groove - length, bar.upsideDown),
          length};
}

}  // namespace

void DrawComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRect& arrow) {
  const Tokens& tokens = CurrentTokens();
  const bool enabled = box.state.testFlag(QStyle::State_Enabled);
  DrawBox(painter, box.rect, FieldLook(box));
  const QColor text = box.palette.color(QPalette::Text);
  DrawChevron(painter, arrow, Qt::DownArrow, enabled ? text : tokens.muted);
}

void DrawHeaderSection(QPainter& painter, const QStyleOptionHeader& section) {
  const Tokens& tokens = CurrentTokens();
  const QRect& rect = section.rect;
  painter.fillRect(rect, section.palette.brush(QPalette::Window));
  painter.fillRect(rect.right(), rect.top(), 1, rect.height(), tokens.line);
  painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, tokens.line);
}

void DrawTab(QPainter& painter, const QStyleOptionTab& tab) {
  const Tokens& tokens = CurrentTokens();
  const bool chosen = tab.state.testFlag(QStyle::State_Selected);
  const bool hovered = tab.state.testFlag(QStyle::State_MouseOver);
  if (hovered && !chosen) painter.fillRect(tab.rect, Blend(tokens.window, tokens.text, 0.05));
  if (!chosen) return;
  QRect line = tab.rect;
  line.setTop(line.bottom() - underline + 1);
  painter.fillRect(line, tokens.accent);
}

void DrawProgressGroove(QPainter& painter, const QRect& rect) {
  FillRound(painter, Thin(rect), CurrentTokens().line);
}

void DrawProgress(QPainter& painter, const QStyleOptionProgressBar& bar) {
  const QRect part = bar.maximum > bar.minimum ? DonePart(bar) : MovingPart(bar);
  if (!part.isEmpty()) FillRound(painter, Thin(part), CurrentTokens().accent);
}

void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar, const QRect& slider) {
  const Tokens& tokens = CurrentTokens();
  painter.fillRect(bar.rect, tokens.window);
  if (bar.maximum <= bar.minimum) return;
  const bool held = (bar.activeSubControls & QStyle::SC_ScrollBarSlider) != 0U;
  const QColor color =
      Blend(tokens.window, tokens.text, held ? heldSliderStrength : sliderStrength);
  const QRect thumb = IsHorizontal(bar) ? slider.adjusted(1, sliderMargin, -1, -sliderMargin)
                                        : slider.adjusted(sliderMargin, 1, -sliderMargin, -1);
  FillRound(painter, thumb, color);
}

QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part, int shortestSlider) {
  const bool across = IsHorizontal(bar);
  const int groove = across ? bar.rect.width() : bar.rect.height();
  const auto [start, length] = SliderPlace(bar, groove, shortestSlider);
  const auto piece = [&](int from, int size) {
    return across ? QRect(bar.rect.x() + from, bar.rect.y(), size, bar.rect.height())
                  : QRect(bar.rect.x(), bar.rect.y() + from, bar.rect.width(), size);
  };
  switch (part) {
    case QStyle::SC_ScrollBarGroove: return bar.rect;
    case QStyle::SC_ScrollBarSlider: return piece(start, length);
    case QStyle::SC_ScrollBarSubPage: return piece(0, start);
    case QStyle::SC_ScrollBarAddPage: return piece(start + length, groove - start - length);
    default: return {};
  }
}

}  // namespace tessel
