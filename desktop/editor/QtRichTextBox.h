#pragma once

#include <optional>

#include "contract/desktop/controls/EditorBox.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/editor/SqlEditor.h"

namespace tessel {

class QtRichTextBox final : public ControlOf<EditorBox, SqlEditor> {
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
  [[nodiscard]] TextSpot CaretSpot() const override { return TheWidget().CaretSpot(); }
  void SetSyntax(TextSyntax syntax) override;
  [[nodiscard]] TextSyntax Syntax() const override;
  [[nodiscard]] bool CanUndo() const override { return TheWidget().CanUndo(); }
  [[nodiscard]] bool CanRedo() const override { return TheWidget().CanRedo(); }
  void MarkError(const TextRange& range) override { TheWidget().MarkError(range); }
  void ClearError() override { TheWidget().ClearError(); }
  [[nodiscard]] std::optional<TextRange> MarkedError() const override {
    return TheWidget().MarkedError();
  }
  [[nodiscard]] int Zoom() const override { return TheWidget().Zoom(); }
  void SetZoom(int steps) override;

 protected:
  [[nodiscard]] std::string ReadText() const override { return TheWidget().Bytes(); }
  void WriteText(std::string_view text) override { TheWidget().SetBytes(text); }
  void WriteSelText(std::string_view text) override { TheWidget().ReplaceSelection(text); }
  void WriteUndo() override { TheWidget().UndoStep(); }
  void WriteRedo() override { TheWidget().RedoStep(); }

 private:
  void ShowColors();

  int rightMargin_ = 0;
};

}  // namespace tessel
