#pragma once

#include <qcustomplot.h>

namespace tessel {

/// Points of a chart. Many are drawn as dots into one picture: by themselves each takes the time of
/// a line.
class PointCloud final : public QCPGraph {
 public:
  /// `isDense`: the points are dots. The chart owns it.
  PointCloud(QCPAxis* xAxis, QCPAxis* yAxis, const QColor& color, bool isDense);

 protected:
  void drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& scatters,
                       const QCPScatterStyle& style) const override;

 private:
  [[nodiscard]] QImage DotsOn(const QRect& area, double scale,
                              const QVector<QPointF>& scatters) const;

  QColor color_;
  bool isDense_;
};

}  // namespace tessel
