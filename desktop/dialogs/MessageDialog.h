#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <functional>

#include "contract/desktop/Desktop.h"
#include "desktop/services/EventLoops.h"

namespace tessel {

/// A message box. A long text scrolls; the text can be selected and is never taken for markup.
class MessageDialog final : public QDialog {
  Q_OBJECT

 public:
  MessageDialog(const Message& message, QWidget* owner);
  [[nodiscard]] MessageResult Result() const { return result_; }

 protected:
  /// The letter of a button presses it, with Alt or without; Ctrl+C copies the text.
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  [[nodiscard]] QWidget* MakeText(const Message& message);
  [[nodiscard]] QWidget* MakeIcon(MessageIcon icon);
  [[nodiscard]] QDialogButtonBox* MakeButtons(const Message& message);
  void AddHelp(QDialogButtonBox& box, std::function<void()> action);
  void Pressed(MessageResult result);

  QString text_;
  MessageResult result_;
  QDialogButtonBox* buttons_ = nullptr;  ///< Owned by the dialog.
  QPushButton* default_ = nullptr;       ///< What Enter presses at first; owned by the dialog.
};

/// Shows the box modally above `owner`.
[[nodiscard]] MessageResult ShowMessageBox(const Message& message, QWidget* owner,
                                           EventLoops& loops);

}  // namespace tessel
