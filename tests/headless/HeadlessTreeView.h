#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/TreeView.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

/// Every node in sight is 240 twips high and as wide as the control.
class HeadlessTreeView final : public Headless<TreeView> {
 public:
  using Headless::Headless;

  bool Add(std::string_view parentKey, TreeNode node) override;
  void AddChildren(std::string_view parentKey, std::vector<TreeNode> nodes) override;
  void Remove(std::string_view key) override;
  [[nodiscard]] bool Exists(std::string_view key) const override;
  [[nodiscard]] std::string Text(std::string_view key) const override;
  void SetText(std::string_view key, std::string_view text) override;
  [[nodiscard]] std::string Parent(std::string_view key) const override;
  [[nodiscard]] std::vector<std::string> Children(std::string_view key) const override;
  [[nodiscard]] std::vector<std::string> ChildTexts(std::string_view key) const override;

  [[nodiscard]] bool Checked(std::string_view key) const override;
  void SetChecked(std::string_view key, bool checked) override;
  [[nodiscard]] bool Expanded(std::string_view key) const override;
  /// A node without children has nothing to show and stays as it is.
  void SetExpanded(std::string_view key, bool expanded) override;
  [[nodiscard]] std::string SelectedKey() const override { return selected_; }
  void SelectNode(std::string_view key) override;
  void SetMark(std::string_view key, std::optional<Color> mark) override { At(key).mark = mark; }
  [[nodiscard]] std::string NodeAt(int x, int y) const override;
  [[nodiscard]] Rect NodeBounds(std::string_view key) const override;

  /// The nodes at the root are in sight: they are asked for, as when they are painted.
  void RefreshNotes() override {
    ++refreshed_;
    for (const std::string& key : Children("")) static_cast<void>(NoteOf(key));
  }
  /// What is told of a node now.
  [[nodiscard]] NodeNote NoteOf(const std::string& key) const {
    NodeNote note;
    Raise(NodeNoted, key, note);
    return note;
  }
  /// How often the nodes were to be painted again.
  [[nodiscard]] int Refreshed() const { return refreshed_; }

  [[nodiscard]] int Image(std::string_view key) const { return At(key).image; }
  [[nodiscard]] std::optional<Color> Mark(std::string_view key) const { return At(key).mark; }

  // --- what a user does --------------------------------------------------------------------------
  void ClickNode(const std::string& key);
  void ClickCheck(const std::string& key);
  bool TakeKey(int keyCode, int shift) override;

 private:
  struct Node {
    std::string text;
    int image = 0;
    std::string parent;
    std::vector<std::string> children;
    bool checked = false;
    bool expanded = false;
    bool checkBox = true;
    std::optional<Color> mark = {};
  };

  [[nodiscard]] const Node& At(std::string_view key) const;
  [[nodiscard]] Node& At(std::string_view key);
  [[nodiscard]] std::vector<std::string>& ChildList(std::string_view key);
  void RemoveBelow(const std::string& key);
  void AppendInSight(const std::vector<std::string>& keys, std::vector<std::string>& out) const;
  /// Keys of the nodes whose parents are all expanded, from the top.
  [[nodiscard]] std::vector<std::string> InSight() const;
  void ExpandParents(std::string_view key);
  bool MoveSelection(int keyCode);

  std::map<std::string, Node, std::less<>> nodes_;
  std::vector<std::string> roots_;
  std::string selected_;
  int refreshed_ = 0;
};

}  // namespace tessel::test
