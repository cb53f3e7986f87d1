#include "desktop/window/frame/FrameMenus.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>

namespace tessel {

namespace {

constexpr const char* placeOfGuests = "menuWindow";

QString NameOf(const QAction& title) {
  return title.menu() == nullptr ? QString() : title.menu()->objectName();
}

QAction* FindTitle(const QList<QAction*>& titles, const QString& name) {
  for (QAction* title : titles)
    if (NameOf(*title) == name) return title;
  return nullptr;
}

/// The command of that shortcut, or null.
const QAction* CommandOf(const QList<QAction*>& titles, const QKeySequence& key) {
  for (const QAction* title : titles) {
    if (title->menu() == nullptr) continue;
    for (const QAction* command : title->menu()->actions())
      if (command->shortcuts().contains(key)) return command;
  }
  return nullptr;
}

}  // namespace

FrameMenus::FrameMenus(QMenuBar& bar) : bar_(bar), own_(bar.actions()) {}

void FrameMenus::ShowWith(QMenuBar* document) {
  if (document == guest_) return;
  guest_ = document;
  bar_.clear();
  bar_.addActions(Arranged());
}

bool FrameMenus::IsKeptFromGuest(const QKeyEvent& event) const {
  const QKeySequence key(event.keyCombination());
  const QList<QAction*> guests = guest_ == nullptr ? QList<QAction*>() : guest_->actions();
  const QAction* own = CommandOf(own_, key);
  return own != nullptr && !own->property("everywhere").toBool() &&
         CommandOf(guests, key) == nullptr;
}

QList<QAction*> FrameMenus::Arranged() const {
  const QList<QAction*> guests = guest_ == nullptr ? QList<QAction*>() : guest_->actions();
  QList<QAction*> shown;
  for (QAction* own : own_) {
    if (NameOf(*own) == QLatin1String(placeOfGuests))
      for (QAction* guest : guests)
        if (FindTitle(own_, NameOf(*guest)) == nullptr) shown.append(guest);
    QAction* replacement = FindTitle(guests, NameOf(*own));
    shown.append(replacement == nullptr ? own : replacement);
  }
  return shown;
}

}  // namespace tessel
