#pragma once

#include <QTextBrowser>

namespace tessel {

/// Shows a page of the help book in the colours of the program, and again when these change.
class HelpPage final : public QTextBrowser {
  Q_OBJECT

 public:
  explicit HelpPage(QWidget* parent = nullptr) : QTextBrowser(parent) {}
  /// The book's style sheet names colours for viewers of other makers: the program's own stand in
  /// for them here.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowAnew();
};

}  // namespace tessel
