#pragma once

#include <QDialog>
#include <QDialogButtonBox>

#include "platform/Desktop.h"
#include "platform/desktop/window/EventLoops.h"

namespace tessel {

/// A message box. A long text scrolls; the text can be selected and is never taken for markup.
class MessageDialog final : public QDialog {
  Q_OBJECT

 public:
  MessageDialog(const Message& message, QWidget* owner);
  [[nodiscard]] MessageResult Result() const { return result_; }

 private:
  [[nodiscard]] QWidget* MakeText(const Message& message);
  [[nodiscard]] QWidget* MakeIcon(MessageIcon icon);
  [[nodiscard]] QDialogButtonBox* MakeButtons(const Message& message);
  void Pressed(QDialogButtonBox::StandardButton button);

  MessageResult result_;
};

/// Shows the box modally above `owner`.
[[nodiscard]] MessageResult ShowMessageBox(const Message& message, QWidget* owner,
                                           EventLoops& loops);

}  // namespace tessel
