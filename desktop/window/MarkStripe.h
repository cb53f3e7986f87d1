#pragma once

#include <QColor>
#include <QWidget>

namespace tessel {

/// A stripe of one colour along the left edge of a window.
class MarkStripe final : public QWidget {
  Q_OBJECT

 public:
  explicit MarkStripe(QWidget& window);
  void Show(const QColor& color);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Place();

  QColor color_;
};

}  // namespace tessel
