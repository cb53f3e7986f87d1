#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "contract/desktop/Control.h"

class QKeyEvent;
class QMouseEvent;

namespace tessel {

class QtWindow;
struct DesktopCore;

/// Sees the events of a window's widgets before they do and raises the events of the window and its
/// controls: keys first as the window's key preview, then at the control; the mouse at the control.
/// A key that a handler takes reaches no widget.
class InputRouter final : public QObject {
 public:
  InputRouter(QtWindow& window, QWidget& root, DesktopCore& core);
  /// From now on the widget's events concern the control.
  void Add(QWidget& widget, Control& control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool KeyDown(QWidget& widget, QKeyEvent& event);
  bool TakesHelpKey(const QKeyEvent& event);
  bool KeyUp(QWidget& widget, QKeyEvent& event);
  void Mouse(QWidget& widget, const QMouseEvent& event);
  [[nodiscard]] bool IsWhereKeysGo(const QWidget& widget) const;
  [[nodiscard]] Control* ControlAt(const QWidget& widget) const;

  QtWindow& window_;
  QPointer<QWidget> root_;
  DesktopCore& core_;
};

}  // namespace tessel
