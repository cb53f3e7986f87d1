#pragma once

#include <QMdiSubWindow>
#include <QMenuBar>

#include "desktop/window/QtWindow.h"

namespace tessel {

class DocumentWindow;

/// The frame as its documents know it.
class DocumentFrame {
 public:
  /// Takes in a document; it is released before it goes.
  virtual void Adopt(DocumentWindow& document) = 0;
  virtual void Release(DocumentWindow& document) = 0;
  /// Shows the document as the active one.
  virtual void ShowDocument(DocumentWindow& document) = 0;
  virtual void ActivateDocument(DocumentWindow& document) = 0;
  /// The document's stripe has another colour.
  virtual void ShowMarkOf(const DocumentWindow& document) = 0;
  [[nodiscard]] virtual bool IsActive(const DocumentWindow& document) const = 0;
  /// Whether a key that is the shortcut of one of the frame's commands goes to the active document
  /// all the same.
  [[nodiscard]] virtual bool LeavesToDocument(const QKeyEvent& event) const = 0;
  /// Unloads the frame and its documents because the session ends.
  virtual void EndWithSession() = 0;
  /// Unloads the frame as when the user closes it; false when that was refused.
  virtual bool CloseAsByUser() = 0;

 protected:
  ~DocumentFrame() = default;
};

/// A window inside the frame. The menus of its form, if it has any, show in the frame's menu bar
/// while it is the active document.
class DocumentWindow final : public QtWindow {
 public:
  /// Raises Error(application) when no frame is loaded.
  DocumentWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);
  ~DocumentWindow() override;

  void Activate() override;
  [[nodiscard]] bool Active() const override;
  void SetMaximized(bool maximized) override;
  void SetMark(std::optional<Color> mark) override;
  [[nodiscard]] std::optional<Color> Mark() const { return mark_; }
  [[nodiscard]] QMdiSubWindow& Sub() const { return static_cast<QMdiSubWindow&>(Outer()); }
  [[nodiscard]] QMenuBar* OwnMenus() const { return menus_; }
  [[nodiscard]] bool KeepsFromShortcuts(const QKeyEvent& event) const override;
  /// The frame is gone: from now on the document stands alone.
  void LeaveFrame();

 protected:
  void ShowOuter(QtWindow* owner) override;
  void PutAway() override;

 private:
  DocumentFrame* frame_;
  std::optional<Color> mark_;
  QMenuBar* menus_;  ///< Null when the form has none.
};

}  // namespace tessel
