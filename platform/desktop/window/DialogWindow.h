#pragma once

#include <QDialog>

#include "platform/desktop/window/QtWindow.h"

namespace tessel {

/// A dialog: modal or modeless. The Esc key presses the button that the form marks as "cancel".
class DialogWindow final : public QtWindow {
 public:
  DialogWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);

  void ShowModal(Window* owner) override;
  void Activate() override;
  [[nodiscard]] bool Active() const override { return Outer().isActiveWindow(); }

  bool TakesKey(QWidget& widget, QKeyEvent& event) override;
  bool TakesUnusedKey(QKeyEvent& event) override;

 protected:
  void ShowOuter(QtWindow* owner) override;
  void OuterActivated() override;

 private:
  [[nodiscard]] QDialog& Dialog() const { return static_cast<QDialog&>(Outer()); }
  void PutAbove(QWidget* owner);
  void PressCancel();

  bool activationTold_ = false;  ///< Activated is about to be raised.
};

}  // namespace tessel
