#pragma once

#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <optional>

#include "contract/desktop/Window.h"
#include "desktop/window/frame/DocumentTabs.h"

namespace tessel {

/// Tiles the windows of an area that are shown and not minimised: horizontally as rows one below
/// another, vertically as columns side by side. Minimised ones stay, and room is left for them at
/// the bottom. With tabs the first one has a tile and all others share another. Once tiled they
/// follow the area's size, until one stands elsewhere than it was put.
class Tiles final : public QObject {
 public:
  /// The area outlives it.
  explicit Tiles(QMdiArea& area);

  void Arrange(Tiling tiling);
  [[nodiscard]] bool Tabbed() const { return tabbed_; }
  /// It counts from the next Arrange on.
  void SetTabbed(bool tabbed) { tabbed_ = tabbed; }
  [[nodiscard]] DocumentTabs& Tabs() { return tabs_; }
  /// Whether the windows are to be tiled again when one more is shown or one goes.
  [[nodiscard]] bool Keeps() const { return tiling_.has_value() && Stand(); }
  /// Tiles again as last tiled.
  void Renew() { Arrange(*tiling_); }
  /// Puts a document that floats, and is about to be shown, over most of the area; further ones a
  /// little lower. One that does not is left as it is.
  void Float(QMdiSubWindow& window) const;
  /// From now on the window is tiled with the others.
  void Add(QMdiSubWindow& window);
  void Remove(QMdiSubWindow& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool Stand() const;
  void PutTiles(const QList<QMdiSubWindow*>& tiles, const QRect& room);
  void PutOnStack(const QList<QMdiSubWindow*>& stack, const QRect& room);
  void Follow();

  QMdiArea& area_;
  DocumentTabs& tabs_;
  bool tabbed_ = false;
  std::optional<Tiling> tiling_;               ///< None before the first time.
  QSize room_;                                 ///< Of the area when it was tiled last.
  QHash<const QMdiSubWindow*, QRect> places_;  ///< Where they were put then.
  bool placing_ = false;
};

}  // namespace tessel
