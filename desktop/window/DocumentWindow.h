#pragma once

#include <QMdiSubWindow>
#include <QMenuBar>

#include "desktop/window/QtWindow.h"

namespace tessel {

/// A window inside the frame. The menus of its form, if it has any, show in the frame's menu bar
/// while it is the active document.
class DocumentWindow final : public QtWindow {
 public:
  /// Raises Error(application) when no frame is loaded.
  DocumentWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);
  ~DocumentWindow() override;

  void Activate() override;
  [[nodiscard]] bool Active() const override;
  [[nodiscard]] QMdiSubWindow& Sub() const { return static_cast<QMdiSubWindow&>(Outer()); }
  [[nodiscard]] QMenuBar* OwnMenus() const { return menus_; }
  [[nodiscard]] bool KeepsFromShortcuts(const QKeyEvent& event) const override;
  /// The frame is gone: from now on the document stands alone.
  void LeaveFrame();

 protected:
  void ShowOuter(QtWindow* owner) override;
  void PutAway() override;

 private:
  FrameWindow* frame_;
  QMenuBar* menus_;  ///< Null when the form has none.
};

}  // namespace tessel
