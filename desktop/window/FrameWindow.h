#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <functional>
#include <vector>

#include "desktop/window/FrameMenus.h"
#include "desktop/window/QtWindow.h"
#include "desktop/window/Tiles.h"

namespace tessel {

class DocumentWindow;

/// The frame: the program's one top-level window, which holds the documents.
class FrameWindow final : public QtWindow {
 public:
  FrameWindow(std::string formName, std::unique_ptr<QWidget> form, DesktopCore& core);
  ~FrameWindow() override;

  void Activate() override;
  [[nodiscard]] bool Active() const override { return Outer().isActiveWindow(); }
  void Arrange(Tiling tiling) override { tiles_.Arrange(tiling); }
  [[nodiscard]] bool KeepsFromShortcuts(const QKeyEvent& event) const override;

  /// Takes in a document; it is released before it goes.
  void Adopt(DocumentWindow& document);
  void Release(DocumentWindow& document);
  /// Shows the document as the active one.
  void ShowDocument(DocumentWindow& document);
  void ActivateDocument(DocumentWindow& document);
  [[nodiscard]] bool IsActive(const DocumentWindow& document) const;

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
  std::vector<DocumentWindow*> documents_;
  DocumentWindow* active_ = nullptr;  ///< The one that was told last that it is active.
};

}  // namespace tessel
