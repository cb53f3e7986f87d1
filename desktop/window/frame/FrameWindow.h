#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <functional>
#include <vector>

#include "desktop/controls/EmptyText.h"
#include "desktop/window/frame/DocumentWindow.h"
#include "desktop/window/frame/FrameMenus.h"
#include "desktop/window/frame/Tiles.h"

namespace tessel {

/// The frame: the program's one top-level window, which holds the documents.
class FrameWindow final : public QtWindow, public DocumentFrame {
 public:
  FrameWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);
  ~FrameWindow() override;

  void Activate() override;
  [[nodiscard]] bool Active() const override { return Outer().isActiveWindow(); }
  void Arrange(Tiling tiling) override { tiles_.Arrange(tiling); }
  [[nodiscard]] bool Tabbed() const override { return tiles_.Tabbed(); }
  void SetTabbed(bool tabbed) override { tiles_.SetTabbed(tabbed); }
  void SetGroundText(std::string_view text) override;
  [[nodiscard]] bool KeepsFromShortcuts(const QKeyEvent& event) const override {
    return LeavesToDocument(event);
  }

  void Adopt(DocumentWindow& document) override;
  void Release(DocumentWindow& document) override;
  void ShowDocument(DocumentWindow& document) override;
  void ActivateDocument(DocumentWindow& document) override;
  void ShowMarkOf(const DocumentWindow& document) override;
  [[nodiscard]] bool IsActive(const DocumentWindow& document) const override;
  [[nodiscard]] bool LeavesToDocument(const QKeyEvent& event) const override;
  void EndWithSession() override { Unload(UnloadReason::Code); }
  bool CloseAsByUser() override { return Unload(UnloadReason::ControlBox); }

  /// Called when the frame has been unloaded.
  std::function<void()> unloaded;

 protected:
  [[nodiscard]] const QWidget& Inner() const override;
  [[nodiscard]] std::vector<QtWindow*> Documents() const override;
  void ShowOuter(QtWindow* owner) override;
  void PutAway() override;
  void OuterActivated() override { RaiseActivated(); }

 private:
  [[nodiscard]] QMainWindow& Main() const { return static_cast<QMainWindow&>(Outer()); }
  [[nodiscard]] DocumentWindow* ActiveDocument() const;
  void DocumentChanged();

  QMdiArea& area_;
  FrameMenus menus_;
  Tiles tiles_;
  QString groundText_;
  QPointer<EmptyText> ground_;  ///< Paints it.
  std::vector<DocumentWindow*> documents_;
  DocumentWindow* active_ = nullptr;  ///< The one that was told last that it is active.
};

}  // namespace tessel
