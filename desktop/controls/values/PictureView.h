#pragma once

#include <QAbstractScrollArea>
#include <QImage>

class QPainter;

namespace tessel {

/// The widget of an image box: a picture in the middle, or a text in its place, and bars where it
/// is larger than the room there is.
class PictureView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  /// A picture whose own size is `size`, which may be larger than the image.
  void ShowPicture(const QImage& image, const QSize& size);
  /// A text in place of it; empty shows nothing.
  void ShowText(const QString& text);

  /// In percent of the picture's own size; ImageBox::fitZoom fits it into the room.
  [[nodiscard]] int Zoom() const { return zoom_; }
  void SetZoom(int percent);
  /// The next size up or down; from the one that fits the first such step goes on from there.
  void StepZoom(int steps);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] QSize ShownSize() const;
  [[nodiscard]] QRect Place() const;
  void FitBars();
  void PaintPicture(QPainter& painter, const QRect& part);
  bool ZoomByKey(const QKeyEvent& event);

  QImage image_;
  QImage fitting_;  ///< The image in the size that it was last shown in; made when it is painted.
  QSize size_;
  QString text_;
  int zoom_;
  int wheel_ = 0;  ///< Turned since the last step.
};

}  // namespace tessel
