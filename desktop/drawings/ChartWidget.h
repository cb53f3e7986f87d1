#pragma once

#include <qcustomplot.h>

#include "contract/desktop/controls/ChartBox.h"

namespace tessel {

/// Draws a chart in the program's colours. The wheel, dragging and the keys look at another part of
/// the x axis.
class ChartWidget final : public QCustomPlot {
  Q_OBJECT

 public:
  explicit ChartWidget(QWidget* parent = nullptr);

  void SetPicture(ChartPicture picture);
  [[nodiscard]] bool HasPicture() const { return !picture_.x.empty(); }
  /// Pixels of the screen between the ends of the axes.
  [[nodiscard]] QSize PlotSize() const;
  /// Empty when it cannot be made.
  [[nodiscard]] QByteArray FileContent(DrawingFormat format);
  [[nodiscard]] QImage Picture();

 signals:
  /// The user wants to see this part of the x axis, or the size has changed.
  void viewWanted(double lower, double upper);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Draw();
  void Paint(bool onPaper);
  void AddLine(const QColor& color);
  void AddPoints(const QColor& color);
  void AddBars(const QColor& color);
  void SetAxis(QCPAxis& axis, const ChartAxis& told) const;
  void WantView();
  /// Draws for a file what `draw` takes, in the colours of paper.
  template <class Drawn>
  void OnPaper(Drawn draw);

  ChartPicture picture_;
  bool quiet_ = false;  ///< The program itself sets the axes.
};

}  // namespace tessel
