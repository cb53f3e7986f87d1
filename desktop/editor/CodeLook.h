#pragma once

#include <Qsci/qsciscintilla.h>

#include <QColor>
#include <QFont>

namespace tessel {

/// What an editor of code shows beside its text: the numbers of the lines, the line with the caret,
/// brackets that belong together, and the mark of an error. The editor outlives it.
class CodeLook {
 public:
  explicit CodeLook(QsciScintilla& editor);

  /// Code is numbered and has a current line and brackets; plain text has only the mark.
  void SetCode(bool isCode);
  /// Takes colours for the ground and the text of the editor, and the font of its line numbers.
  void Show(const QColor& ground, const QColor& text, const QFont& font);
  /// The number of lines or the size of the font may be another one.
  void FitNumbers();
  /// The caret or the text is another one.
  void ShowBrackets();

  /// Marks bytes [begin, end) of what is shown, in place of what was marked before.
  void Mark(std::size_t begin, std::size_t end);
  void ClearMark();

 private:
  [[nodiscard]] bool IsCodeAt(long position) const;
  [[nodiscard]] long BracketAtCaret() const;
  [[nodiscard]] long PartnerOf(long bracket, char sign) const;

  QsciScintilla& editor_;
  bool isCode_ = false;
  int mark_;  ///< The number of its indicator.
};

}  // namespace tessel
