#pragma once

#include <QDialog>
#include <QTimer>

#include "desktop/window/QtWindow.h"

namespace tessel {

/// A dialog: modal or modeless. The Esc key presses the button that the form marks as "cancel".
class DialogWindow final : public QtWindow {
 public:
  DialogWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);

  /// A form of the kind "tool" shows only when it has not been hidden again within a moment.
  void ShowModal(Window* owner) override;
  void ShowAboveSoon(Window& owner) override;
  void Hide() override;
  [[nodiscard]] bool Visible() const override { return soon_.isActive() || QtWindow::Visible(); }
  void Activate() override;
  [[nodiscard]] bool Active() const override { return Outer().isActiveWindow(); }

  bool TakesKey(QWidget& widget, QKeyEvent& event) override;
  bool TakesUnusedKey(QKeyEvent& event) override;

 protected:
  void ShowOuter(QtWindow* owner) override;
  void OuterActivated() override;
  void PutAway() override;
  [[nodiscard]] QSize Fitting(const QSize& wanted) const override;

 private:
  [[nodiscard]] QDialog& Dialog() const { return static_cast<QDialog&>(Outer()); }
  [[nodiscard]] bool IsTool() const;
  void PutAbove(QWidget* owner);
  void PressCancel();

  QTimer soon_;                  ///< Runs until the window comes up.
  bool activationTold_ = false;  ///< Activated is about to be raised.
};

}  // namespace tessel
