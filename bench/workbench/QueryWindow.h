#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "bench/workbench/Parts.h"
#include "desktop/window/QtWindow.h"
#include "logic/query/frmMain.h"

namespace tessel::bench {

class NoHost : public QueryHost {
 public:
  void DoSQL(bool /*preview*/) override {}
  void FocusFirstRecordsWindow() override {}
  void FocusBrowser() override {}
  bool HandleFrameKey(int /*keyCode*/, int /*shift*/) override { return false; }
};

/// The query window, shown and with the focus.
struct QueryWindow {
  explicit QueryWindow(Parts& parts) : main(parts.global, host, parts.vocabulary) {
    main.TheWindow().Show();
    main.FocusText();
    parts.desktop.ProcessPending();
  }
  [[nodiscard]] QWidget& Root() { return dynamic_cast<QtWindow&>(main.TheWindow()).Root(); }

  NoHost host;
  frmMain main;
};

/// Tells that a widget has been painted.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  bool painted = false;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    painted = painted || event->type() == QEvent::Paint;
    return false;
  }
};

inline void Press(QWidget& widget, int qtKey, Qt::KeyboardModifiers modifiers,
                  const QString& text = QString()) {
  QKeyEvent down(QEvent::KeyPress, qtKey, modifiers, text);
  QCoreApplication::sendEvent(&widget, &down);
}

}  // namespace tessel::bench
