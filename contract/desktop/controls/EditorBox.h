#pragma once

#include <optional>
#include <string>
#include <vector>

#include "contract/desktop/controls/TextBox.h"
#include "contract/text/TextRange.h"

namespace tessel {

/// What a text is coloured and numbered as. Plain has no colours and no numbers.
enum class TextSyntax { Plain, Sql, Json, Xml };

/// The editor with what a person who types in it for hours expects of it. Every rich-text box is
/// one. It undoes what was typed and what SetSelText did, not what SetText did. Where the form says
/// that the text is SQL, Enter begins a line with the blanks of the one that it is typed in
/// (BlanksOfNewLine); the lines are numbered, the current one is tinted, and brackets that belong
/// together are shown.
class EditorBox : public RichTextBox {
 public:
  using RichTextBox::RichTextBox;

  /// Zoom of the text: steps of a point from the desktop's own size, which is 0.
  static constexpr int smallestZoom = -6;
  static constexpr int largestZoom = 30;

  /// Where the caret stands, as a person counts it. Wrapped lines do not count by themselves.
  [[nodiscard]] virtual TextSpot CaretSpot() const = 0;

  /// Colours the text as that, in place of what the form says. The text, what is selected and what
  /// can be undone stay. Raises nothing.
  virtual void SetSyntax(TextSyntax syntax) = 0;
  [[nodiscard]] virtual TextSyntax Syntax() const = 0;

  // --- undoing -----------------------------------------------------------------------------------
  /// Whether there is a change to take back, and one to make again; a locked text may have both,
  /// and keeps them.
  [[nodiscard]] virtual bool CanUndo() const = 0;
  [[nodiscard]] virtual bool CanRedo() const = 0;
  /// Takes the last change back, selects what was selected before it where the back end knows, and
  /// raises Change; nothing happens when there is none, or the text is locked.
  void Undo() {
    if (!Locked() && CanUndo()) Step(&EditorBox::WriteUndo);
  }
  /// Makes the change again that was undone last.
  void Redo() {
    if (!Locked() && CanRedo()) Step(&EditorBox::WriteRedo);
  }

  // --- the mark of an error ----------------------------------------------------------------------
  /// Underlines the range with a wave, in place of the one marked before. The mark goes with its
  /// text; the next change that touches it takes it away, and so does SetText.
  /// The range lies in the text. Raises nothing, and moves neither caret nor what is in sight.
  virtual void MarkError(const TextRange& range) = 0;
  /// Takes the mark away, if there is one.
  virtual void ClearError() = 0;
  /// The range that is marked now, where its text stands by now.
  [[nodiscard]] virtual std::optional<TextRange> MarkedError() const = 0;

  // --- its size ----------------------------------------------------------------------------------
  /// In steps from the desktop's own size.
  [[nodiscard]] virtual int Zoom() const = 0;
  /// Brought to between the smallest and the largest. Raises nothing.
  virtual void SetZoom(int steps) = 0;
  /// The user zoomed with the wheel of the mouse and Ctrl held; Zoom tells the new one already.
  Event<> Zoomed;

  /// The caret or the selection stands elsewhere, by the user or by code, or the text has changed.
  /// It is told soon afterwards, once for several such changes.
  Event<> CaretMoved;

  /// The user dropped files on the box, or on another part of its top-level window that takes none:
  /// their full paths. Told only where there is a handler; text that is dropped on the box is
  /// inserted by itself, and Change tells it.
  Event<const std::vector<std::string>&> FilesDropped;

 protected:
  // For a back end: these raise nothing.
  virtual void WriteUndo() = 0;
  virtual void WriteRedo() = 0;

 private:
  void Step(void (EditorBox::*step)()) {
    (this->*step)();
    Raise(Change);
  }
};

}  // namespace tessel
