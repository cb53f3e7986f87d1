#pragma once

#include <QKeyEvent>
#include <QObject>

namespace tessel {

/// On the application it makes Shift+F10 the context-menu key: every widget gets that key in its
/// place, down and up, and is asked for its context menu when nobody takes the key.
class MenuKeyFilter final : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Press(QWidget& widget, const QKeyEvent& event);

  bool held_ = false;  ///< F10 went down with Shift; Shift may come up before it.
};

}  // namespace tessel
