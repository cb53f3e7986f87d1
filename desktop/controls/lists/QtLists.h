#pragma once

#include <QComboBox>
#include <QListView>

#include "contract/desktop/controls/ListControls.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/controls/lists/CutTextDelegate.h"
#include "desktop/controls/lists/TextListModel.h"

namespace tessel {

class QtListBox final : public ControlOf<ListBox, QListView> {
 public:
  QtListBox(QListView& widget, const ControlSite& site);
  ~QtListBox() override;
  [[nodiscard]] int ListCount() const override { return model_->Count(); }
  [[nodiscard]] std::string List(int index) const override { return model_->Text(index); }
  void AddItem(std::string_view text) override;
  void Clear() override { SetLines({}, nullptr); }
  void SetLines(TextLines lines, ShownText shown) override;
  [[nodiscard]] std::string Line(int index) const override { return model_->Line(index); }
  [[nodiscard]] int RowHeight() const override;
  [[nodiscard]] int WidthFor(int rows) const override;

 protected:
  [[nodiscard]] int ReadIndex() const override { return TheWidget().currentIndex().row(); }
  void WriteIndex(int index) override;

 private:
  std::unique_ptr<TextListModel> model_;
  CutTextDelegate& delegate_;  ///< The widget's.
  int quiet_ = 0;  ///< More than 0 while the program itself selects or changes the entries.
};

class QtComboBox final : public ControlOf<ComboBox, QComboBox> {
 public:
  QtComboBox(QComboBox& widget, const ControlSite& site);
  [[nodiscard]] int ListCount() const override { return TheWidget().count(); }
  [[nodiscard]] std::string List(int index) const override;
  void AddItem(std::string_view text) override;
  void Clear() override;
  [[nodiscard]] bool Editable() const override { return TheWidget().isEditable(); }
  void SelectAllText() override;

 protected:
  [[nodiscard]] int ReadIndex() const override { return TheWidget().currentIndex(); }
  void WriteIndex(int index) override;
  [[nodiscard]] std::string ReadText() const override { return FromQt(TheWidget().currentText()); }
  void WriteText(std::string_view text) override;

 private:
  void TextEdited(const QString& text);
};

}  // namespace tessel
