#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/EditorBox.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

/// The text of a text box with its selection. Positions are byte offsets.
class TextBuffer {
 public:
  [[nodiscard]] const std::string& Text() const { return text_; }
  /// The caret goes to the start.
  void SetText(std::string_view text);
  [[nodiscard]] std::size_t Start() const { return start_; }
  [[nodiscard]] std::size_t Length() const { return length_; }
  [[nodiscard]] std::size_t Caret() const { return start_ + length_; }
  [[nodiscard]] std::string Selected() const { return text_.substr(start_, length_); }
  /// Positions inside a character go back to its start, those beyond the end to the end.
  void Select(std::size_t start, std::size_t length);
  /// The caret stands behind the new text.
  void Replace(std::string_view text);
  /// Selects the character before the caret when nothing is selected.
  void SelectBackwards();
  /// Selects the character behind the caret when nothing is selected.
  void SelectForwards();

 private:
  [[nodiscard]] std::size_t CharacterStart(std::size_t position) const;

  std::string text_;
  std::size_t start_ = 0;
  std::size_t length_ = 0;
};

/// A text box of either kind, as a user types into it.
class Typist {
 public:
  /// Types at the caret, character by character; a Change each. Nothing when the box is locked.
  virtual void TypeText(std::string_view text) = 0;

 protected:
  ~Typist() = default;
};

/// The character that a key types, or nothing.
[[nodiscard]] std::string CharacterOfKey(int keyCode, int shift);
/// The first UTF-8 character of a text that is not empty.
[[nodiscard]] std::string_view FirstCharacter(std::string_view text);

template <class Kind>
class HeadlessTextControl : public Headless<Kind>, public Typist {
 public:
  HeadlessTextControl(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                      HeadlessControl* container)
      : Headless<Kind>(widget, failures, keeper, container),
        locked_(widget.properties.Flag("readOnly", false)),
        severalLines_(widget.className != "QLineEdit"),
        tabLeaves_(!severalLines_ || widget.properties.Flag("tabChangesFocus", false)) {
    buffer_.SetText(widget.properties.Text(severalLines_ ? "plainText" : "text"));
  }

  [[nodiscard]] std::size_t SelStart() const override { return buffer_.Start(); }
  [[nodiscard]] std::size_t SelLength() const override { return buffer_.Length(); }
  void Select(std::size_t start, std::size_t length) override { buffer_.Select(start, length); }
  [[nodiscard]] std::string SelText() const override { return buffer_.Selected(); }
  [[nodiscard]] bool Locked() const override { return locked_; }
  void SetLocked(bool locked) override { locked_ = locked; }

  void TypeText(std::string_view text) override {
    while (!text.empty() && !locked_) {
      const std::string_view character = FirstCharacter(text);
      this->SetSelText(character);
      text.remove_prefix(character.size());
    }
  }

  bool TakeKey(int keyCode, int shift) override {
    if (keyCode == key::back || keyCode == key::del) return Erase(keyCode == key::back);
    std::string typed = CharacterOfKey(keyCode, shift);
    if (keyCode == key::enter && severalLines_) typed = "\n";
    if (keyCode == key::tab && !tabLeaves_) typed = "\t";
    if (typed.empty()) return false;
    TypeText(typed);
    return true;
  }

 protected:
  [[nodiscard]] std::string ReadText() const override { return buffer_.Text(); }
  void WriteText(std::string_view text) override { buffer_.SetText(text); }
  void WriteSelText(std::string_view text) override { buffer_.Replace(text); }
  [[nodiscard]] bool SeveralLines() const { return severalLines_; }
  [[nodiscard]] const TextBuffer& Buffer() const { return buffer_; }
  [[nodiscard]] TextBuffer& Buffer() { return buffer_; }

 private:
  bool Erase(bool backwards) {
    if (locked_) return true;
    if (backwards) buffer_.SelectBackwards();
    else buffer_.SelectForwards();
    this->SetSelText("");
    return true;
  }

  TextBuffer buffer_;
  bool locked_;
  bool severalLines_;
  bool tabLeaves_;
};

class HeadlessTextBox final : public HeadlessTextControl<TextBox> {
 public:
  using HeadlessTextControl::HeadlessTextControl;
  /// Every character counts as 120 twips wide.
  [[nodiscard]] int LineCount() const override;
};

class HeadlessRichTextBox final : public HeadlessTextControl<EditorBox> {
 public:
  HeadlessRichTextBox(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                      HeadlessControl* container);
  void Select(std::size_t start, std::size_t length) override;
  [[nodiscard]] int RightMargin() const override { return rightMargin_; }
  void SetRightMargin(int twips) override { rightMargin_ = twips; }
  /// Every character counts as 120 twips wide and 240 high, without wrapping.
  [[nodiscard]] Rect CaretBounds() const override;
  [[nodiscard]] TextSpot CaretSpot() const override;
  void SetSyntax(TextSyntax syntax) override { syntax_ = syntax; }
  [[nodiscard]] TextSyntax Syntax() const override { return syntax_; }
  [[nodiscard]] bool CanUndo() const override { return !undo_.empty(); }
  [[nodiscard]] bool CanRedo() const override { return !redo_.empty(); }
  void MarkError(const TextRange& range) override { error_ = range; }
  void ClearError() override { error_.reset(); }
  [[nodiscard]] std::optional<TextRange> MarkedError() const override { return error_; }
  [[nodiscard]] int Zoom() const override { return zoom_; }
  void SetZoom(int steps) override;

  void TypeText(std::string_view text) override;

  // --- what a user does --------------------------------------------------------------------------
  void DropFiles(const std::vector<std::string>& paths) { Raise(FilesDropped, paths); }
  /// With Ctrl held.
  void TurnWheel(int steps);

 protected:
  void WriteText(std::string_view text) override;
  void WriteSelText(std::string_view text) override;
  void WriteUndo() override { Exchange(undo_, redo_); }
  void WriteRedo() override { Exchange(redo_, undo_); }

 private:
  void Exchange(std::vector<TextBuffer>& from, std::vector<TextBuffer>& to);

  int rightMargin_ = 0;
  TextSyntax syntax_;
  int zoom_ = 0;
  std::optional<TextRange> error_;
  std::vector<TextBuffer> undo_;
  std::vector<TextBuffer> redo_;
};

}  // namespace tessel::test
