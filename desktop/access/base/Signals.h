#pragma once

#include <QAccessible>
#include <QString>

namespace tessel {

/// A reader speaks the text without moving to the object. Nothing happens where no assistive tool
/// listens.
void Announce(QAccessibleInterface& source, const QString& text);
/// Tells that a state of the object has changed of which the toolkit tells nothing; `state` is its
/// name on the bus.
void TellState(QAccessibleInterface& source, const QString& state, bool on);

}  // namespace tessel
