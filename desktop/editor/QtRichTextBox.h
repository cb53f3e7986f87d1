#pragma once

#include "contract/desktop/controls/TextBox.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/editor/SqlEditor.h"

namespace tessel {

class QtRichTextBox final : public ControlOf<RichTextBox, SqlEditor> {
 public:
  QtRichTextBox(SqlEditor& widget, const ControlSite& site);
  [[nodiscard]] std::size_t SelStart() const override { return TheWidget().SelectionStart(); }
  [[nodiscard]] std::size_t SelLength() const override;
  void Select(std::size_t start, std::size_t length) override { TheWidget().Select(start, length); }
  [[nodiscard]] std::string SelText() const override { return TheWidget().SelectedBytes(); }
  [[nodiscard]] bool Locked() const override { return TheWidget().isReadOnly(); }
  void SetLocked(bool locked) override { TheWidget().setReadOnly(locked); }
  [[nodiscard]] int RightMargin() const override { return rightMargin_; }
  /// Any margin but 0 lets the lines run on.
  void SetRightMargin(int twips) override;
  [[nodiscard]] Rect CaretBounds() const override;

 protected:
  [[nodiscard]] std::string ReadText() const override { return TheWidget().Bytes(); }
  void WriteText(std::string_view text) override { TheWidget().SetBytes(text); }
  void WriteSelText(std::string_view text) override { TheWidget().ReplaceSelection(text); }

 private:
  void ShowColors();

  int rightMargin_ = 0;
};

}  // namespace tessel
