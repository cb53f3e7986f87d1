#include "desktop/services/KeyboardReturn.h"

#include <QGuiApplication>
#include <QWindow>

namespace tessel {

KeyboardReturn::KeyboardReturn() {
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
                   &KeyboardReturn::ReturnFrom);
}

/// A window is not told that it became active while the active one still belongs to it.
void KeyboardReturn::ReturnFrom(QWindow* active) {
  if (active == nullptr || active->isVisible()) return;
  QWindow* below = active->transientParent();
  if (below == nullptr || !below->isVisible()) return;
  active->setTransientParent(nullptr);
  below->requestActivate();
}

}  // namespace tessel
