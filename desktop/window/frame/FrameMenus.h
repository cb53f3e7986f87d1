#pragma once

#include <QList>
#include <QMenuBar>
#include <QPointer>

class QKeyEvent;

namespace tessel {

/// The menu bar of the frame. While a document with menus of its own is active, those of the same
/// name stand in for the frame's, and its others stand before the frame's Window menu.
class FrameMenus {
 public:
  explicit FrameMenus(QMenuBar& bar);

  /// Shows the frame's menus together with a document's; null for the frame's alone.
  void ShowWith(QMenuBar* document);
  /// Whether a document's menus are shown.
  [[nodiscard]] bool HasGuest() const { return guest_ != nullptr; }
  /// Whether the key is the shortcut of a command in one of the frame's own menus that is not
  /// marked as "everywhere", and of none in the guest's.
  [[nodiscard]] bool IsKeptFromGuest(const QKeyEvent& event) const;

 private:
  [[nodiscard]] QList<QAction*> Arranged() const;

  QMenuBar& bar_;
  QList<QAction*> own_;
  QPointer<QMenuBar> guest_;
};

}  // namespace tessel
