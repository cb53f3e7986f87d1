#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/TreeView.h"

namespace tessel {

/// A node of a tree. With its texts and its list of children it lies in the memory of the branch it
/// belongs to and is never destroyed by itself: the branch gives all of it back at once.
struct KeyedNode {
  explicit KeyedNode(std::pmr::memory_resource* memory) : children(memory) {}

  std::string_view key;
  std::string_view text;
  KeyedNode* parent = nullptr;
  std::pmr::vector<KeyedNode*> children;
  int row = 0;  ///< Place among its siblings, from 0.
  int image = 0;
  bool checkBox = true;
  bool checked = false;
};

/// Finds nodes by their keys: a table with at least half of its places free.
class KeyIndex {
 public:
  [[nodiscard]] KeyedNode* Find(std::string_view key, std::size_t hash) const;
  /// The key is not there yet.
  void Add(KeyedNode& node, std::size_t hash);
  /// The key is there.
  void Remove(std::string_view key);

 private:
  struct Place {
    std::size_t hash = 0;
    KeyedNode* node = nullptr;  ///< Null: the place is free.
  };

  [[nodiscard]] std::size_t PlaceOf(std::string_view key, std::size_t hash) const;
  [[nodiscard]] std::size_t Next(std::size_t place) const { return (place + 1) & Mask(); }
  [[nodiscard]] std::size_t Mask() const { return places_.size() - 1; }
  void Put(const Place& added);
  void Grow();

  std::vector<Place> places_;
  std::size_t used_ = 0;
};

/// Nodes named by their keys, for a tree of few root nodes and hundreds of thousands below them.
/// Each root node heads a branch with memory and an index of its own: removing it takes no longer
/// when much hangs on it. The memory of a node below is given back with its branch.
class KeyedNodes {
 public:
  /// The node that the root nodes hang on; its key is empty.
  [[nodiscard]] KeyedNode& Root() { return root_; }
  /// Null when there is none.
  [[nodiscard]] KeyedNode* Find(std::string_view key) const;

  /// Makes nodes of those whose key is free, in their order, to be hung on `parent`. They can be
  /// found, but are no children until Hang is called.
  [[nodiscard]] std::vector<KeyedNode*> Make(KeyedNode& parent, const std::vector<TreeNode>& nodes);
  /// Hangs on `parent`, at its end, what was made for it last.
  static void Hang(KeyedNode& parent, const std::vector<KeyedNode*>& made);
  void SetText(KeyedNode& node, std::string_view text);
  /// With everything below; not for the Root.
  void Remove(KeyedNode& node);

 private:
  struct Branch {
    std::pmr::monotonic_buffer_resource memory;
    KeyIndex index;
  };

  /// A node to be made.
  struct Wanted {
    const TreeNode* node;
    std::size_t hash;
  };

  [[nodiscard]] KeyedNode* Find(std::string_view key, std::size_t hash) const;
  [[nodiscard]] std::vector<Wanted> FreeKeys(const std::vector<TreeNode>& nodes) const;
  [[nodiscard]] Branch& BranchFor(const KeyedNode& parent);
  [[nodiscard]] Branch& BranchOf(const KeyedNode& node) const;
  static void Forget(Branch& branch, const KeyedNode& node);

  KeyedNode root_{std::pmr::get_default_resource()};
  std::vector<std::unique_ptr<Branch>> branches_;  ///< In the order of the root nodes.
};

}  // namespace tessel
