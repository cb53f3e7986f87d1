#pragma once

#include <string>

namespace tessel {

/// What the desktop tells the user while he looks at something else, among the notices of other
/// programs. UI thread. Nothing here waits for the desktop, and nothing raises: where the desktop
/// shows no notices, or does not answer, there are none. It belongs to the desktop that gave it.
class Notifications {
 public:
  virtual ~Notifications() = default;
  /// Whether the user has the program before him: one of its windows, a dialog or a message box
  /// among them, is the active one of the desktop.
  [[nodiscard]] virtual bool UserIsHere() const = 0;
  /// Shows a notice, from where anybody who passes may read it: nothing secret belongs there. Both
  /// texts are plain UTF-8, never markup, and may be cut where they are long. How long it stands is
  /// the desktop's to say. A click on it activates the program's window.
  virtual void Show(const std::string& title, const std::string& text) = 0;
};

}  // namespace tessel
