#pragma once

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>

namespace tessel {

/// A row of tabs for documents that lie upon each other, one for each; that of the active document,
/// or the one that was it last, is the current tab.
class DocumentTabs final : public QTabBar {
  Q_OBJECT

 public:
  /// A child of the area's ground.
  explicit DocumentTabs(QMdiArea& area);

  /// Shows a tab for each of the documents, at `place`.
  void ShowFor(const QList<QMdiSubWindow*>& documents, const QRect& place);
  /// Shows no tabs.
  void Clear();
  /// One whose tab shows goes.
  void Forget(const QMdiSubWindow& document);
  /// Takes in what a document is called and marked with now.
  void Rename(const QMdiSubWindow& document);

 private:
  void ShowCurrent(const QMdiSubWindow* active);
  [[nodiscard]] static QIcon MarkOf(const QMdiSubWindow& document);

  QMdiArea& area_;
  QList<QMdiSubWindow*> documents_;  ///< In the order of the tabs.
};

}  // namespace tessel
