#pragma once

class QObject;

namespace tessel {

/// An editor widget as the assistive tools' side of it knows it.
class TextHolder {
 public:
  /// Whether the text is too long to be told.
  [[nodiscard]] virtual bool HoldsLongText() const = 0;

 protected:
  ~TextHolder() = default;
};

/// From now on a widget that is a TextHolder of a long text tells assistive tools its name and
/// state, but not its text: the component counts all characters before the caret at each of its
/// moves, whether anybody listens or not, which takes a second for 100 MB. May be called again.
void InstallLongTextAccess();

/// To be called when the text of an editor was replaced.
void RenewTextAccess(QObject& editor, const TextHolder& text);

}  // namespace tessel
