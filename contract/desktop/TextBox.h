#pragma once

#include <cstddef>

#include "contract/desktop/Control.h"

namespace tessel {

/// What text boxes of both kinds share. Positions and lengths are byte offsets into the UTF-8 text;
/// one that falls inside a character is taken back to its start. Change follows every change of the
/// text, by the user or by code.
class TextControl : public Control {
 public:
  using Control::Control;

  [[nodiscard]] std::string Text() const { return ReadText(); }
  /// Replaces the whole text; the caret goes to its start.
  void SetText(std::string_view text) {
    if (ReadText() == text) return;
    WriteText(text);
    Raise(Change);
  }

  [[nodiscard]] virtual std::size_t SelStart() const = 0;
  [[nodiscard]] virtual std::size_t SelLength() const = 0;
  /// Selects; beyond the end is taken as the end. The caret stands at the end of the selection.
  virtual void Select(std::size_t start, std::size_t length) = 0;
  [[nodiscard]] virtual std::string SelText() const = 0;
  /// Replaces the selection (inserts at the caret when it is empty). The caret stands behind the
  /// new text and nothing is selected.
  void SetSelText(std::string_view text) {
    if (text.empty() && SelLength() == 0) return;
    WriteSelText(text);
    Raise(Change);
  }

  /// A locked text can be read, selected and copied, not edited by the user.
  [[nodiscard]] virtual bool Locked() const = 0;
  virtual void SetLocked(bool locked) = 0;

  Event<> Change;

 protected:
  [[nodiscard]] virtual std::string ReadText() const = 0;
  virtual void WriteText(std::string_view text) = 0;
  virtual void WriteSelText(std::string_view text) = 0;
};

/// A text box of one or several lines.
class TextBox : public TextControl {
 public:
  using TextControl::TextControl;
  /// Lines as shown, wrapped ones counted; at least 1.
  [[nodiscard]] virtual int LineCount() const = 0;
};

/// A large editor for SQL and other texts. The text may hold any character, NUL included, and line
/// ends of either kind, and comes back byte for byte.
class RichTextBox : public TextControl {
 public:
  using TextControl::TextControl;

  /// Twips after which lines wrap: 0 wraps at the window's edge, a very large number in effect
  /// never.
  [[nodiscard]] virtual int RightMargin() const = 0;
  virtual void SetRightMargin(int twips) = 0;
  /// Where the caret stands, in twips inside the control; the height is that of its line.
  [[nodiscard]] virtual Rect CaretBounds() const = 0;
};

}  // namespace tessel
