#include "desktop/controls/QtMenuItem.h"

#include <QMenu>

#include "desktop/base/Text.h"

namespace tessel {

namespace {

std::string NameOf(const QAction& action) {
  return FromQt(action.menu() != nullptr ? action.menu()->objectName() : action.objectName());
}

}  // namespace

QtMenuItem::QtMenuItem(QAction& action, FailureSink& failures)
    : MenuItem(NameOf(action), failures), action_(&action), caption_(FromQt(action.text())) {
  if (const QMenu* menu = action.menu())
    QObject::connect(menu, &QMenu::aboutToShow, &connections_, [this] { RaiseClick(); });
  else
    QObject::connect(&action, &QAction::triggered, &connections_,
                     [this](bool checked) { Chosen(checked); });
}

void QtMenuItem::SetCaption(std::string_view caption) {
  caption_ = caption;
  action_->setText(ToQt(caption));
}

/// A menu whose form disables it is itself disabled, not only its title: it would not open.
void QtMenuItem::SetEnabled(bool enabled) {
  if (QMenu* menu = action_->menu()) menu->setEnabled(enabled);
  action_->setEnabled(enabled);
}

/// The toolkit flips a checkable command by itself; here only the handler sets the mark.
void QtMenuItem::Chosen(bool checked) {
  if (action_->isCheckable()) action_->setChecked(!checked);
  RaiseClick();
}

}  // namespace tessel
