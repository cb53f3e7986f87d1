#pragma once

#include <optional>
#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/view/ViewSettings.h"
#include "logic/text/indent/IndentSlices.h"

namespace tessel {

/// JSON or XML in the text window: coloured, and indented as long as the box of that is ticked,
/// which is remembered. Indenting is a look only: the text stays the one it was until the user
/// changes what he sees. A long text is indented in slices, between which the window works on; the
/// text cannot be changed meanwhile. Any other text has no such box.
class StructuredText {
 public:
  /// The window has the controls "chkIndented" and "lblStructure"; all outlive it.
  StructuredText(const Global& global, Window& window, EditorBox& box);

  /// A longer text is indented when the user asks for it only, since that takes a moment.
  static constexpr std::size_t longestUnasked = 2U << 20U;

  /// Puts a text into the box.
  void Show(const std::string& text);
  /// The text: as it was given unless the user changed it.
  [[nodiscard]] std::string Text() const;
  /// Ctrl+I, and Esc while a text is being indented; true when it was that.
  bool TakeKey(const KeyEvent& event);

 private:
  void chkIndented_Click();
  void ShowIndented();
  void EndIndenting(IndentedText indented);
  void Stop();
  void ShowAsItIs();
  void Say(const IndentedText& indented, const std::string& text);

  EditorBox& box_;
  CheckBox& chkIndented_;
  Label& lblStructure_;
  ViewSettings settings_;
  IndentSlices slices_;            ///< Of original_, while it is under way.
  std::optional<bool> wasLocked_;  ///< Whether the box was, while that is under way.
  std::string original_;           ///< What is shown indented, or will be.
  std::string shown_;              ///< As it is shown; empty: as it is.
};

}  // namespace tessel
