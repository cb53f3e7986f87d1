#pragma once

#include <QScrollArea>
#include <QSvgRenderer>

#include "contract/desktop/controls/ChartBox.h"

namespace tessel {

/// Shows a drawing that is given as SVG, at any zoom, in colours of the theme: those of the paper
/// that it was made for are replaced on the screen.
class DiagramWidget final : public QScrollArea {
  Q_OBJECT

 public:
  explicit DiagramWidget(QWidget* parent = nullptr);

  /// False when it cannot be shown.
  bool SetSvg(const QByteArray& svg);
  void SetZoom(int percent);
  [[nodiscard]] int Zoom() const;
  [[nodiscard]] bool HasDrawing() const { return paper_.isValid(); }
  /// Empty when it cannot be made.
  [[nodiscard]] QByteArray FileContent(DrawingFormat format);
  [[nodiscard]] QImage Picture();

 signals:
  void zoomed();

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  class Canvas;

  void LoadShown();
  void Place();
  [[nodiscard]] double Factor() const;

  QByteArray svg_;
  QSvgRenderer paper_;  ///< As it was given.
  QSvgRenderer shown_;  ///< In the colours of the theme.
  Canvas* canvas_;
  int zoom_ = 0;  ///< 0: fitted.
};

}  // namespace tessel
