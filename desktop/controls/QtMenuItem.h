#pragma once

#include <QAction>
#include <QObject>
#include <QPointer>

#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

/// A menu command, or a menu's title.
class QtMenuItem final : public MenuItem {
 public:
  QtMenuItem(QAction& action, FailureSink& failures);
  [[nodiscard]] std::string Caption() const override { return caption_; }
  void SetCaption(std::string_view caption) override;
  [[nodiscard]] bool Checked() const override { return action_->isChecked(); }
  void SetChecked(bool checked) override { action_->setChecked(checked); }
  [[nodiscard]] bool Enabled() const override { return action_->isEnabled(); }
  void SetEnabled(bool enabled) override;
  [[nodiscard]] bool Visible() const override { return action_->isVisible(); }
  void SetVisible(bool visible) override { action_->setVisible(visible); }
  [[nodiscard]] QAction& Action() const { return *action_; }

 private:
  void Chosen(bool checked);

  QPointer<QAction> action_;
  std::string caption_;
  QObject connections_;  ///< Their context: they end with this object.
};

}  // namespace tessel
