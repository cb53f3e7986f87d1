// The store behind the schema browser's tree, made for hundreds of thousands of nodes: a hash index
// of its own in the first section, and branches with memory of their own in the second, so that
// adding, finding and removing take no longer than they must.

#include "desktop/plain/KeyedNodes.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tessel {

namespace {

constexpr std::size_t fewestPlaces = 16;  ///< Of an index; a power of two, as all its sizes.

std::size_t HashOf(std::string_view key) { return std::hash<std::string_view>{}(key); }

std::string_view Keep(std::string_view text, std::pmr::memory_resource& memory) {
  if (text.empty()) return {};
  auto* const copy = static_cast<char*>(memory.allocate(text.size(), 1));
  std::ranges::copy(text, copy);
  return {copy, text.size()};
}

KeyedNode& MakeNode(const TreeNode& from, KeyedNode& parent, std::pmr::memory_resource& memory) {
  KeyedNode& node = *std::pmr::polymorphic_allocator<>(&memory).new_object<KeyedNode>(&memory);
  node.key = Keep(from.key, memory);
  node.text = Keep(from.text, memory);
  node.parent = &parent;
  node.image = from.image;
  node.checkBox = from.checkBox;
  return node;
}

}  // namespace

// --- the index -----------------------------------------------------------------------------------

/// The place of the key, or the free one where it belongs.
std::size_t KeyIndex::PlaceOf(std::string_view key, std::size_t hash) const {
  std::size_t place = hash & Mask();
  while (places_[place].node != nullptr &&
         (places_[place].hash != hash || places_[place].node->key != key))
    place = Next(place);
  return place;
}

KeyedNode* KeyIndex::Find(std::string_view key, std::size_t hash) const {
  return places_.empty() ? nullptr : places_[PlaceOf(key, hash)].node;
}

void KeyIndex::Add(KeyedNode& node, std::size_t hash) {
  if ((used_ + 1) * 2 > places_.size()) Grow();
  Put({hash, &node});
  ++used_;
}

void KeyIndex::Put(const Place& added) {
  std::size_t place = added.hash & Mask();
  while (places_[place].node != nullptr) place = Next(place);
  places_[place] = added;
}

void KeyIndex::Grow() {
  const std::vector<Place> old =
      std::exchange(places_, std::vector<Place>(std::max(places_.size() * 2, fewestPlaces)));
  for (const Place& place : old)
    if (place.node != nullptr) Put(place);
}

/// What stands behind moves up, so that no search ends at the gap.
void KeyIndex::Remove(std::string_view key) {
  std::size_t gap = PlaceOf(key, HashOf(key));
  for (std::size_t at = Next(gap); places_[at].node != nullptr; at = Next(at)) {
    const std::size_t wanted = places_[at].hash & Mask();
    if (((at - wanted) & Mask()) < ((at - gap) & Mask())) continue;
    places_[gap] = places_[at];
    gap = at;
  }
  places_[gap] = {};
  --used_;
}

// --- the nodes -----------------------------------------------------------------------------------

KeyedNode* KeyedNodes::Find(std::string_view key) const { return Find(key, HashOf(key)); }

KeyedNode* KeyedNodes::Find(std::string_view key, std::size_t hash) const {
  for (const auto& branch : branches_)
    if (KeyedNode* node = branch->index.Find(key, hash)) return node;
  return nullptr;
}

std::vector<KeyedNode*> KeyedNodes::Make(KeyedNode& parent, const std::vector<TreeNode>& nodes) {
  std::vector<KeyedNode*> made;
  made.reserve(nodes.size());
  for (const Wanted& wanted : FreeKeys(nodes)) {
    if (Find(wanted.node->key, wanted.hash) != nullptr) continue;
    Branch& branch = BranchFor(parent);
    KeyedNode& fresh = MakeNode(*wanted.node, parent, branch.memory);
    branch.index.Add(fresh, wanted.hash);
    fresh.row = static_cast<int>(parent.children.size() + made.size());
    made.push_back(&fresh);
  }
  return made;
}

/// Those whose key no node has yet; one key may still be there twice. A step of its own: the
/// processor waits for several places of the index at a time.
std::vector<KeyedNodes::Wanted> KeyedNodes::FreeKeys(const std::vector<TreeNode>& nodes) const {
  std::vector<Wanted> wanted;
  wanted.reserve(nodes.size());
  for (const TreeNode& node : nodes) wanted.push_back({&node, HashOf(node.key)});
  std::erase_if(wanted,
                [&](const Wanted& each) { return Find(each.node->key, each.hash) != nullptr; });
  return wanted;
}

void KeyedNodes::Hang(KeyedNode& parent, const std::vector<KeyedNode*>& made) {
  parent.children.insert(parent.children.end(), made.begin(), made.end());
}

void KeyedNodes::SetText(KeyedNode& node, std::string_view text) {
  node.text = Keep(text, BranchOf(node).memory);
}

void KeyedNodes::Remove(KeyedNode& node) {
  KeyedNode& parent = *node.parent;
  const auto row = static_cast<std::size_t>(node.row);
  if (&parent != &root_) Forget(BranchOf(node), node);
  else branches_.erase(branches_.begin() + node.row);
  parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(row));
  for (std::size_t at = row; at < parent.children.size(); ++at)
    parent.children[at]->row = static_cast<int>(at);
}

/// The branch of a new child: a new one for a root node.
KeyedNodes::Branch& KeyedNodes::BranchFor(const KeyedNode& parent) {
  if (&parent != &root_) return BranchOf(parent);
  return *branches_.emplace_back(std::make_unique<Branch>());
}

KeyedNodes::Branch& KeyedNodes::BranchOf(const KeyedNode& node) const {
  const KeyedNode* top = &node;
  while (top->parent != &root_) top = top->parent;
  return *branches_[static_cast<std::size_t>(top->row)];
}

void KeyedNodes::Forget(Branch& branch, const KeyedNode& node) {
  for (const KeyedNode* child : node.children) Forget(branch, *child);
  branch.index.Remove(node.key);
}

}  // namespace tessel
