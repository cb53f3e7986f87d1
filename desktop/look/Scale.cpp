#include "desktop/look/Scale.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tessel {

namespace {

/// Height of the font for which the forms are drawn, in pixels.
constexpr double ordinaryFontHeight = 16;

int Scaled(int drawn, double factor) {
  return drawn >= QWIDGETSIZE_MAX ? drawn : static_cast<int>(std::lround(drawn * factor));
}

}  // namespace

Scale::Scale()
    : factor_(std::max(1.0, QFontMetricsF(QApplication::font()).height() / ordinaryFontHeight)) {}

int Scale::Pixels(int twips) const {
  return static_cast<int>(std::lround(twips * factor_ / twipsPerPixel));
}

int Scale::Twips(int pixels) const {
  return static_cast<int>(std::lround(pixels * twipsPerPixel / factor_));
}

QRect Scale::Pixels(const Rect& twips) const {
  return {Pixels(twips.left), Pixels(twips.top), Pixels(twips.width), Pixels(twips.height)};
}

Rect Scale::Twips(const QRect& pixels) const {
  return {Twips(pixels.x()), Twips(pixels.y()), Twips(pixels.width()), Twips(pixels.height())};
}

QSize Scale::OfForm(const QSize& drawn) const {
  return {Scaled(drawn.width(), factor_), Scaled(drawn.height(), factor_)};
}

QRect Scale::OfForm(const QRect& drawn) const {
  return {Scaled(drawn.x(), factor_), Scaled(drawn.y(), factor_), Scaled(drawn.width(), factor_),
          Scaled(drawn.height(), factor_)};
}

}  // namespace tessel
