#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "contract/desktop/Window.h"

class QKeyEvent;
class QMouseEvent;

namespace tessel {

struct DesktopCore;

/// What a window does with keys that no handler took.
class KeyTaker {
 public:
  /// Whether a key that is the shortcut of a menu command goes to the focus all the same.
  [[nodiscard]] virtual bool KeepsFromShortcuts(const QKeyEvent& /*event*/) const { return false; }
  /// What the window does with a key before the widget gets it: true when it was taken.
  virtual bool TakesKey(QWidget& /*widget*/, QKeyEvent& /*event*/) { return false; }
  /// What it does with a key that the widget left alone: true when it was taken.
  virtual bool TakesUnusedKey(QKeyEvent& /*event*/) { return false; }

 protected:
  ~KeyTaker() = default;
};

/// Sees the events of a window's widgets before they do and raises the events of the window and its
/// controls: keys first as the window's key preview, then at the control; the mouse at the control.
/// A key that a handler takes reaches no widget.
class InputRouter final : public QObject {
 public:
  /// `taker` and `root`, its form, are those of the window.
  InputRouter(Window& window, KeyTaker& taker, QWidget& root, DesktopCore& core);
  /// From now on the widget's events concern the control.
  void Add(QWidget& widget, Control& control);
  /// A window of the frame has the keyboard itself where nothing in its form can have it, or a
  /// press found nothing that takes it. Its keys are those of the form. Tells whether the event was
  /// taken.
  [[nodiscard]] bool TakeFromOuter(QEvent& event);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool KeyDown(QWidget& widget, QKeyEvent& event);
  bool TakesHelpKey(const QKeyEvent& event);
  bool KeyUp(QWidget& widget, QKeyEvent& event);
  void Mouse(QWidget& widget, const QMouseEvent& event);
  [[nodiscard]] bool IsWhereKeysGo(const QWidget& widget) const;
  [[nodiscard]] Control* ControlAt(const QWidget& widget) const;

  Window& window_;
  KeyTaker& taker_;
  QPointer<QWidget> root_;
  DesktopCore& core_;
};

}  // namespace tessel
