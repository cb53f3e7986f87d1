#pragma once

#include <QKeyEvent>
#include <QObject>

namespace tessel {

/// Whether a key types its text: not while Ctrl, Alt or Meta is held. The window system gives a
/// text with many such keys all the same, "1" with Ctrl+1 and "x" with Alt+X, and a text box would
/// put it in place of what is selected. AltGr is held to type; where it comes as Ctrl and Alt
/// together, only the characters are taken that no key gives with Ctrl.
[[nodiscard]] bool TypesText(const QKeyEvent& event);

/// On the application it keeps such texts from every widget; the keys themselves go on. A menu sees
/// its texts: letters choose its entries with Alt held too.
class HeldKeysFilter final : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessel
