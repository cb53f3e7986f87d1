#pragma once

#include <QWidget>
#include <functional>

#include "desktop/help/HelpBook.h"

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

namespace tessel {

/// The window in which the help book is read: contents, index and search at the left, the page at
/// the right. It may be used while a message box or dialog waits.
class HelpWindow final : public QWidget {
  Q_OBJECT

 public:
  HelpWindow();

  /// Shows the window at the start page, with the contents.
  void ShowContents();
  /// Shows the window with the index.
  void ShowIndex();
  /// Shows the window at a page of the book.
  void ShowPage(const QString& page);

  [[nodiscard]] const HelpBook& Book() const { return book_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using Lookup = std::function<std::vector<HelpTopic>(const QString& typed)>;

  [[nodiscard]] QWidget* MakeButtons();
  [[nodiscard]] QWidget* MakeContents();
  [[nodiscard]] QWidget* MakeList(QLineEdit*& line, const QString& hint, const Lookup& lookup);
  void Open(const QString& page);
  void ComeUp();
  void PutAbove(QWidget* owner);

  HelpBook book_;
  QTabWidget* tabs_ = nullptr;
  QLineEdit* indexLine_ = nullptr;
  QLineEdit* searchLine_ = nullptr;
  QTextBrowser* browser_ = nullptr;
};

}  // namespace tessel
