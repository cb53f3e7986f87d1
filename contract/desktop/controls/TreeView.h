#pragma once

#include <optional>
#include <vector>

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// One node of a TreeView. `image` is 1 database, 2 table, 3 field, 4 view, 5 index, 6 routine; any
/// other number shows none.
struct TreeNode {
  std::string key;  ///< Unique in the tree, not empty. Case counts.
  std::string text;
  int image = 0;
  bool checkBox = true;  ///< Whether it shows one that the user can check.
};

/// What is told of a node beside its text; plain texts, never markup, empty for nothing.
struct NodeNote {
  std::string toolTip;  ///< Shown while the pointer rests on it; may have several lines.
  std::string detail;   ///< Behind its text, muted; one line.
};

/// A tree of nodes named by their keys. Operations on a key that is not there raise
/// Error(itemNotFound), except where said. Thousands of children are added at once without delay. A
/// new node is not checked, not expanded and not selected. Changes by code raise nothing but
/// NodeExpand. A check is one node's own: those above and below it stay as they are.
class TreeView : public Control {
 public:
  using Control::Control;

  /// Adds as the last child of `parentKey`; an empty parent key adds at the root. Returns false,
  /// and adds nothing, when the key is taken.
  virtual bool Add(std::string_view parentKey, TreeNode node) = 0;
  /// Adds several children in one step, in their order behind those that are there; those whose key
  /// is taken are left out.
  virtual void AddChildren(std::string_view parentKey, std::vector<TreeNode> nodes) = 0;
  /// With everything below it; their keys are free again. A key that is not there is no error. When
  /// the selected node goes, another one may be selected or none.
  virtual void Remove(std::string_view key) = 0;
  [[nodiscard]] virtual bool Exists(std::string_view key) const = 0;
  [[nodiscard]] virtual std::string Text(std::string_view key) const = 0;
  virtual void SetText(std::string_view key, std::string_view text) = 0;
  [[nodiscard]] virtual std::string
  Parent(std::string_view key) const = 0;  ///< Empty for a root node.
  /// Keys of the children in order; an empty key gives the root nodes.
  [[nodiscard]] virtual std::vector<std::string> Children(std::string_view key) const = 0;
  /// Their texts, in the same order.
  [[nodiscard]] virtual std::vector<std::string> ChildTexts(std::string_view key) const = 0;

  [[nodiscard]] virtual bool Checked(std::string_view key) const = 0;
  virtual void SetChecked(std::string_view key, bool checked) = 0;  ///< Raises nothing.
  /// Whether its children show when it does itself. Expanding raises NodeExpand unless it is so
  /// already; a node without children stays as it is, and collapsing raises nothing.
  [[nodiscard]] virtual bool Expanded(std::string_view key) const = 0;
  virtual void SetExpanded(std::string_view key, bool expanded) = 0;
  [[nodiscard]] virtual std::string SelectedKey() const = 0;  ///< Empty when none is selected.
  /// Expands the nodes above it, raising NodeExpand for them, and scrolls it into view.
  virtual void SelectNode(std::string_view key) = 0;
  /// The node at a place in twips inside the control; empty when there is none.
  [[nodiscard]] virtual std::string NodeAt(int x, int y) const = 0;
  /// A stripe in a plain colour before the node's text; nothing, as at first: none.
  virtual void SetMark(std::string_view key, std::optional<Color> mark) = 0;
  /// Where it shows, in the same measure; empty when it is out of sight or below a closed node.
  [[nodiscard]] virtual Rect NodeBounds(std::string_view key) const = 0;

  Event<const std::string&> NodeCheck;   ///< The user changed a check; the node's key.
  Event<const std::string&> NodeClick;   ///< A node became the selected one by mouse or keyboard.
  Event<const std::string&> NodeExpand;  ///< A node is about to show its children.
  /// What is to be told of a node, asked for whenever it is painted or pointed at: the handler
  /// fills in the note, and is quick. Without one nothing is told.
  Event<const std::string&, NodeNote&> NodeNoted;
  /// Of what the handler of NodeNoted tells something may have changed: the nodes are painted
  /// again.
  virtual void RefreshNotes() = 0;
};

}  // namespace tessel
