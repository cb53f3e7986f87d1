#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include "contract/base/Geometry.h"

namespace tessel {

/// Turns twips into device-independent pixels and back. 15 twips are one pixel at the ordinary
/// font; with a taller font everything grows with it, so that texts are not cut off.
class Scale {
 public:
  /// The scale for the application's font.
  Scale();

  [[nodiscard]] double Factor() const { return factor_; }
  [[nodiscard]] int Pixels(int twips) const;
  [[nodiscard]] int Twips(int pixels) const;
  [[nodiscard]] QRect Pixels(const Rect& twips) const;
  [[nodiscard]] Rect Twips(const QRect& pixels) const;

  /// A size or place of a form file, which is drawn for the ordinary font.
  [[nodiscard]] QSize OfForm(const QSize& drawn) const;
  [[nodiscard]] QRect OfForm(const QRect& drawn) const;

 private:
  double factor_;
};

}  // namespace tessel
