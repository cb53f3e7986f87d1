#pragma once

#include <QAbstractScrollArea>
#include <QFont>
#include <cstdint>
#include <string>

class QPainter;

namespace tessel {

/// Whose bytes a HexView shows, and who decides what the user's doing means. Offsets are 0-based.
class HexUser {
 public:
  [[nodiscard]] virtual std::int64_t ByteCount() const = 0;
  /// The line as it is painted, of ASCII characters alone; empty behind the last one.
  [[nodiscard]] virtual std::string PaintedLine(std::int64_t line) const = 0;
  [[nodiscard]] virtual std::int64_t CurrentByte() const = 0;
  [[nodiscard]] virtual std::int64_t SelectionStart() const = 0;
  [[nodiscard]] virtual std::int64_t SelectionLength() const = 0;
  virtual void GoesTo(std::int64_t offset, bool extend) = 0;
  /// False: the key does not move.
  virtual bool Moves(int keyCode, int shift, std::int64_t linesOnPage) = 0;

 protected:
  ~HexUser() = default;
};

/// The widget of a hex box: lines in the desktop's fixed font, painted as they come into sight.
/// Without a user it is empty.
class HexView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit HexView(QWidget* parent = nullptr);

  /// It lives as long as the widget is used.
  void SetUser(HexUser* user) { user_ = user; }
  /// Bytes of a line: as many as the width has room for.
  [[nodiscard]] int LineLength() const { return lineLength_; }
  /// There are other bytes, or others are selected.
  void ShowAnew();
  /// Brings the current byte into sight.
  void ShowCurrent();

  /// In percent.
  [[nodiscard]] int Zoom() const { return zoom_; }
  void SetZoom(int percent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Measure();
  void FitLines();
  [[nodiscard]] std::int64_t LinesOnPage() const;
  [[nodiscard]] double Left(double column) const;
  [[nodiscard]] std::int64_t OffsetAt(const QPointF& place) const;
  void PaintLine(QPainter& painter, std::int64_t line, const QRectF& place) const;
  void PaintSelection(QPainter& painter, std::int64_t line, const QRectF& place) const;
  void PaintMark(QPainter& painter, std::int64_t line, const QRectF& place) const;
  bool ZoomByKey(const QKeyEvent& event);

  HexUser* user_ = nullptr;
  int lineLength_ = 16;
  int offsetWidth_ = 8;  ///< Digits of an offset.
  int zoom_;
  int wheel_ = 0;  ///< Turned since the last step.
  QFont font_;
  double character_ = 1;  ///< Pixels that a character is wide.
  int lineHeight_ = 1;
};

}  // namespace tessel
