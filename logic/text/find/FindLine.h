#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "logic/text/find/ReplaceAll.h"
#include "logic/text/find/TextSearch.h"

namespace tessel {

/// Finding and replacing in the text of a window: a line above or below the text that opens when it
/// is wanted. A search is done in slices of a few milliseconds, between which the window works on,
/// and Esc or a change of the text ends it.
class FindLine {
 public:
  /// `window` has the line's controls. It and the box outlive this object.
  FindLine(Window& window, EditorBox& box);

  /// Shows the line, with the replacement where wanted and the text is not locked, and gives it the
  /// focus. What is selected is what is looked for; when it has several lines, where.
  void Open(bool replacing);
  /// Finds what the line holds; opens it when that is nothing.
  void FindNext() { Find(TextSearch::Direction::Forwards); }
  void FindPrevious() { Find(TextSearch::Direction::Backwards); }
  /// F3 and Shift+F3, and Esc in the line. True when the key was one of them.
  bool TakeKey(const KeyEvent& event);
  /// The text was changed, by whatever.
  void NoteChange();

  [[nodiscard]] bool Searching() const { return !std::holds_alternative<std::monostate>(job_); }

 private:
  /// What is to be done with the match that a search finds.
  enum class Purpose { Select, ReplaceSelected };
  struct SearchJob {
    std::unique_ptr<TextSearch> search;
    Purpose purpose = Purpose::Select;
  };
  using ReplaceJob = std::unique_ptr<ReplaceAll>;

  void WireControls();
  void ProposeSelection();
  void Find(TextSearch::Direction direction);
  void cmdReplace_Click();
  void cmdReplaceAll_Click();
  void chkFindSelection_Click();
  void txtFind_KeyDown(KeyEvent& event);
  void txtReplace_KeyDown(KeyEvent& event);
  void Leave();

  [[nodiscard]] bool HasFocus() const;
  [[nodiscard]] std::optional<SearchGround> Ground();
  [[nodiscard]] TextRange Selection() const;
  [[nodiscard]] Replacement ReplacementWanted() const;
  void RunSlice();
  [[nodiscard]] StepState StepOnce();
  [[nodiscard]] int Percent() const;
  void Finish(StepState state);
  void FinishSearch(const SearchJob& job);
  void ReplaceSelected(const TextSearch& search);
  void FinishReplacing(const ReplaceAll& replaced);
  void Stop();
  void Put(const TextRange& range, const std::string& text);

  EditorBox& box_;
  Timer& timer_;
  PictureBox& fraFind_;
  PictureBox& fraReplace_;
  TextBox& txtFind_;
  TextBox& txtReplace_;
  Button& cmdFindNext_;
  Button& cmdFindPrevious_;
  CheckBox& chkFindWords_;
  CheckBox& chkFindCase_;
  CheckBox& chkFindRegex_;
  CheckBox& chkFindSelection_;
  Button& cmdReplace_;
  Button& cmdReplaceAll_;
  Button& cmdCloseFind_;
  Label& labFound_;

  std::variant<std::monostate, SearchJob, ReplaceJob> job_;
  std::shared_ptr<const std::string> text_;  ///< A copy for the search; null: to be made.
  std::optional<TextRange> scope_;           ///< "In Selection" is ticked: where that is.
  bool replacing_ = false;                   ///< This object itself changes the text.
};

}  // namespace tessel
