#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace tessel {

/// Keeps the user's input away from a window and what it holds while the window is disabled. The
/// window keeps its looks and its focus, so a long operation may switch this on and off many times
/// a second.
class InputBlock final : public QObject {
 public:
  explicit InputBlock(QWidget& window) : window_(&window) {}

  [[nodiscard]] bool IsOn() const { return on_; }
  void Set(bool on);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool Concerns(QObject* watched) const;

  QPointer<QWidget> window_;
  bool on_ = false;
};

}  // namespace tessel
