#pragma once

#include <QTreeView>

#include "contract/desktop/controls/TreeView.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/controls/EmptyText.h"
#include "desktop/tree/KeyedTreeModel.h"

namespace tessel {

class QtTreeView final : public ControlOf<TreeView, QTreeView> {
 public:
  QtTreeView(QTreeView& widget, const ControlSite& site);
  ~QtTreeView() override;

  bool Add(std::string_view parentKey, TreeNode node) override;
  void AddChildren(std::string_view parentKey, std::vector<TreeNode> nodes) override;
  void Remove(std::string_view key) override;
  [[nodiscard]] bool Exists(std::string_view key) const override { return model_->Exists(key); }
  [[nodiscard]] std::string Text(std::string_view key) const override { return model_->Text(key); }
  void SetText(std::string_view key, std::string_view text) override { model_->SetText(key, text); }
  [[nodiscard]] std::string Parent(std::string_view key) const override;
  [[nodiscard]] std::vector<std::string> Children(std::string_view key) const override;
  [[nodiscard]] std::vector<std::string> ChildTexts(std::string_view key) const override;
  [[nodiscard]] bool Checked(std::string_view key) const override { return model_->Checked(key); }
  void SetChecked(std::string_view key, bool checked) override { model_->SetChecked(key, checked); }
  [[nodiscard]] bool Expanded(std::string_view key) const override;
  void SetExpanded(std::string_view key, bool expanded) override;
  [[nodiscard]] std::string SelectedKey() const override;
  void SelectNode(std::string_view key) override;
  void SetMark(std::string_view key, std::optional<Color> mark) override {
    model_->SetMark(key, mark);
  }
  [[nodiscard]] std::string NodeAt(int x, int y) const override;
  [[nodiscard]] Rect NodeBounds(std::string_view key) const override;
  void RefreshNotes() override { TheWidget().viewport()->update(); }

 private:
  [[nodiscard]] QString EmptyTextNow() const;
  [[nodiscard]] QRect RoomBelow() const;
  void SelectionChanged();

  std::unique_ptr<KeyedTreeModel> model_;
  QPointer<EmptyText> emptyText_;  ///< Null when the form has no such text.
  int quiet_ = 0;                  ///< More than 0 while the program itself selects or removes.
};

}  // namespace tessel
