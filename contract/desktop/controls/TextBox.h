#pragma once

#include <cstddef>

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// What text boxes of both kinds share. Positions and lengths are byte offsets into the UTF-8 text;
/// one that falls inside a character is taken back to its start. Change follows every change of the
/// text, by the user or by code.
class TextControl : public Control {
 public:
  using Control::Control;

  /// The whole text, UTF-8; empty when there is none.
  [[nodiscard]] std::string Text() const { return ReadText(); }
  /// Replaces the whole text; the caret goes to its start. Change follows before this returns. With
  /// the text that is there nothing happens, and the caret stays.
  void SetText(std::string_view text) {
    if (ReadText() == text) return;
    WriteText(text);
    Raise(Change);
  }

  /// Where the selection begins; the place of the caret when nothing is selected.
  [[nodiscard]] virtual std::size_t SelStart() const = 0;
  /// Bytes that are selected; 0 when nothing is, and the caret stands at SelStart then.
  [[nodiscard]] virtual std::size_t SelLength() const = 0;
  /// Selects; beyond the end is taken as the end. The caret stands at the end of the selection.
  /// Raises nothing.
  virtual void Select(std::size_t start, std::size_t length) = 0;
  /// The bytes of Text from SelStart on, SelLength of them; empty when nothing is selected.
  /// Line ends are as in Text.
  [[nodiscard]] virtual std::string SelText() const = 0;
  /// Replaces the selection (inserts at the caret when it is empty). The caret stands behind the
  /// new text and nothing is selected.
  void SetSelText(std::string_view text) {
    if (text.empty() && SelLength() == 0) return;
    WriteSelText(text);
    Raise(Change);
  }

  /// A locked text can be read, selected and copied, not edited by the user. Code can change it,
  /// and Change follows then too.
  [[nodiscard]] virtual bool Locked() const = 0;
  virtual void SetLocked(bool locked) = 0;

  /// The text is the new one already. Typing raises it for every character, and pasting,
  /// undoing and erasing raise it too. A handler may change the text again; Change then comes
  /// inside this one.
  Event<> Change;

 protected:
  // For a back end: the raw changes raise nothing. WriteText puts the caret to the start, and
  // WriteSelText behind the new text.
  [[nodiscard]] virtual std::string ReadText() const = 0;
  virtual void WriteText(std::string_view text) = 0;
  virtual void WriteSelText(std::string_view text) = 0;
};

/// A text box of one or several lines, as the form says. One of several lines may give a line end
/// back as "\n" whichever it was; what is no character of UTF-8 comes back as U+FFFD.
class TextBox : public TextControl {
 public:
  using TextControl::TextControl;
  /// Lines as shown, wrapped ones counted; at least 1. It depends on the width of the box. A box of
  /// one line always has 1.
  [[nodiscard]] virtual int LineCount() const = 0;
};

/// A large editor for SQL and other texts. The text may hold any character, NUL included, and line
/// ends of either kind, and comes back byte for byte.
class RichTextBox : public TextControl {
 public:
  using TextControl::TextControl;

  /// Twips after which lines wrap: 0 wraps at the window's edge, a very large number in effect
  /// never. Wrapping changes only what is shown, neither the text nor the offsets.
  [[nodiscard]] virtual int RightMargin() const = 0;
  virtual void SetRightMargin(int twips) = 0;
  /// Where the caret stands, in twips inside the control; the height is that of its line. It
  /// may lie outside of the control when the caret is scrolled out of sight.
  [[nodiscard]] virtual Rect CaretBounds() const = 0;
};

}  // namespace tessel
