#pragma once

#include <QComboBox>
#include <QListWidget>

#include "platform/ListControls.h"
#include "platform/desktop/controls/ControlOf.h"

namespace tessel {

class QtListBox final : public ControlOf<ListBox, QListWidget> {
 public:
  QtListBox(QListWidget& widget, const ControlSite& site);
  [[nodiscard]] int ListCount() const override { return TheWidget().count(); }
  [[nodiscard]] std::string List(int index) const override;
  void AddItem(std::string_view text) override;
  void RemoveItem(int index) override;
  void Clear() override;
  void SetItems(std::vector<std::string> items) override;

 protected:
  [[nodiscard]] int ReadIndex() const override { return TheWidget().currentRow(); }
  void WriteIndex(int index) override;
};

class QtComboBox final : public ControlOf<ComboBox, QComboBox> {
 public:
  QtComboBox(QComboBox& widget, const ControlSite& site);
  [[nodiscard]] int ListCount() const override { return TheWidget().count(); }
  [[nodiscard]] std::string List(int index) const override;
  void AddItem(std::string_view text) override;
  void RemoveItem(int index) override;
  void Clear() override;
  void SetItems(std::vector<std::string> items) override;
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
