#include "desktop/access/base/NativePlace.h"

#include <QGuiApplication>
#include <QScreen>

namespace tessel {

namespace {

/// Only X11 has pixels of the window system that differ from the toolkit's and are common to all
/// programs.
double FactorOf(const QWidget& widget) {
  const bool counts = QGuiApplication::platformName() == QLatin1String("xcb");
  return counts ? widget.devicePixelRatioF() : 1.0;
}

QPoint OriginOf(const QWidget& widget) { return widget.screen()->geometry().topLeft(); }

}  // namespace

QRect ToNative(const QRect& place, const QWidget& widget) {
  const double factor = FactorOf(widget);
  if (factor == 1.0 || place.isEmpty()) return place;
  const QPoint origin = OriginOf(widget);
  return {origin + (place.topLeft() - origin) * factor, place.size() * factor};
}

QPoint FromNative(const QPoint& place, const QWidget& widget) {
  const QPoint origin = OriginOf(widget);
  return origin + (place - origin) / FactorOf(widget);
}

QRect NativePlaceOf(const QWidget& widget, const QRect& part) {
  if (!widget.isVisible() || part.isEmpty()) return {};
  return ToNative(QRect(widget.mapToGlobal(part.topLeft()), part.size()), widget);
}

}  // namespace tessel
