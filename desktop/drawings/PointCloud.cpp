#include "desktop/drawings/PointCloud.h"

#include <algorithm>
#include <cmath>

namespace tessel {

namespace {

constexpr double discSize = 5;

}  // namespace

PointCloud::PointCloud(QCPAxis* xAxis, QCPAxis* yAxis, const QColor& color, bool isDense)
    : QCPGraph(xAxis, yAxis), color_(color), isDense_(isDense) {
  setAdaptiveSampling(false);
  setLineStyle(lsNone);
  setScatterStyle(QCPScatterStyle(isDense ? QCPScatterStyle::ssDot : QCPScatterStyle::ssDisc, color,
                                  isDense ? 1 : discSize));
}

void PointCloud::drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& scatters,
                                 const QCPScatterStyle& style) const {
  if (!isDense_) return QCPGraph::drawScatterPlot(painter, scatters, style);
  const QRect area = clipRect();
  const double scale = std::max(1.0, painter->deviceTransform().m11());
  painter->drawImage(QRectF(area), DotsOn(area, scale, scatters));
}

/// A dot is one pixel of the screen, whatever its scale.
QImage PointCloud::DotsOn(const QRect& area, double scale, const QVector<QPointF>& scatters) const {
  QImage image(QSizeF(area.width() * scale, area.height() * scale).toSize(),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const QRgb dot = qPremultiply(color_.rgba());
  for (const QPointF& point : scatters) {
    const auto x = static_cast<int>(std::floor((point.x() - area.x()) * scale));
    const auto y = static_cast<int>(std::floor((point.y() - area.y()) * scale));
    if (image.valid(x, y)) reinterpret_cast<QRgb*>(image.scanLine(y))[x] = dot;
  }
  return image;
}

}  // namespace tessel
