#pragma once

#include <string>

#include "logic/program/Global.h"

namespace tessel {

class SqlTarget;

/// How ShowText shows a text.
struct TextViewOptions {
  int helpContext = 0;
  /// File types offered before the window's own; may be empty. A name typed without an ending gets
  /// that of the first one.
  std::string filter;
  int width = 9600;   ///< Twips.
  int height = 6300;  ///< Twips.
  bool editable = false;
  bool wordWrap = false;
  std::string title = {};  ///< Of the window: what it shows. Empty: the window's own.
  /// JSON and XML are coloured, and shown indented where the user has not chosen otherwise. What
  /// comes back, and what is saved and copied as a whole, is the text as it was unless the user
  /// changed it.
  bool structured = false;
};

/// Shows a text in a modal window with buttons to save it, copy it or put it into the query window;
/// an editable one can also be opened from a file and confirmed. True when the user confirmed:
/// `text` is then what the window held.
bool ShowText(const Global& global, SqlTarget& sqlWindow, std::string& text,
              const TextViewOptions& options);

/// Shows a text to be read only, in the same window. The text is let go once the window has it:
/// meant for long ones.
void ViewText(const Global& global, SqlTarget& sqlWindow, std::string text,
              const TextViewOptions& options);

}  // namespace tessel
