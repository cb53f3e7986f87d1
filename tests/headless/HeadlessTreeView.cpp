#include "tests/headless/HeadlessTreeView.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

constexpr int nodeHeight = 240;

}  // namespace

bool HeadlessTreeView::Add(std::string_view parentKey, TreeNode node) {
  std::vector<std::string>& siblings = ChildList(parentKey);
  if (Exists(node.key)) return false;
  siblings.push_back(node.key);
  nodes_[node.key] = {std::move(node.text), node.image, std::string(parentKey), {}, false, false,
                      node.checkBox};
  return true;
}

void HeadlessTreeView::AddChildren(std::string_view parentKey, std::vector<TreeNode> nodes) {
  static_cast<void>(ChildList(parentKey));
  for (TreeNode& node : nodes) Add(parentKey, std::move(node));
}

void HeadlessTreeView::Remove(std::string_view key) {
  if (!Exists(key)) return;
  const std::string doomed(key);
  std::erase(ChildList(At(key).parent), doomed);
  RemoveBelow(doomed);
  if (!Exists(selected_)) selected_.clear();
}

bool HeadlessTreeView::Exists(std::string_view key) const { return nodes_.contains(key); }

std::string HeadlessTreeView::Text(std::string_view key) const { return At(key).text; }

void HeadlessTreeView::SetText(std::string_view key, std::string_view text) { At(key).text = text; }

std::string HeadlessTreeView::Parent(std::string_view key) const { return At(key).parent; }

std::vector<std::string> HeadlessTreeView::Children(std::string_view key) const {
  return key.empty() ? roots_ : At(key).children;
}

std::vector<std::string> HeadlessTreeView::ChildTexts(std::string_view key) const {
  std::vector<std::string> texts;
  for (const std::string& child : Children(key)) texts.push_back(At(child).text);
  return texts;
}

bool HeadlessTreeView::Checked(std::string_view key) const { return At(key).checked; }

void HeadlessTreeView::SetChecked(std::string_view key, bool checked) { At(key).checked = checked; }

bool HeadlessTreeView::Expanded(std::string_view key) const { return At(key).expanded; }

void HeadlessTreeView::SetExpanded(std::string_view key, bool expanded) {
  Node& node = At(key);
  if (node.expanded == expanded || node.children.empty()) return;
  node.expanded = expanded;
  if (expanded) Raise(NodeExpand, std::string(key));
}

void HeadlessTreeView::SelectNode(std::string_view key) {
  static_cast<void>(At(key));
  ExpandParents(key);
  selected_ = key;
}

std::string HeadlessTreeView::NodeAt(int x, int y) const {
  const std::vector<std::string> shown = InSight();
  const auto line = static_cast<std::size_t>(y / nodeHeight);
  const bool inside = x >= 0 && x < bounds_.width && y >= 0 && line < shown.size();
  return inside ? shown[line] : "";
}

Rect HeadlessTreeView::NodeBounds(std::string_view key) const {
  static_cast<void>(At(key));
  const std::vector<std::string> shown = InSight();
  const auto found = std::ranges::find(shown, key);
  if (found == shown.end()) return {};
  return {0, static_cast<int>(found - shown.begin()) * nodeHeight, bounds_.width, nodeHeight};
}

void HeadlessTreeView::ClickNode(const std::string& key) {
  static_cast<void>(At(key));
  if (key == selected_) return;
  selected_ = key;
  Raise(NodeClick, key);
}

void HeadlessTreeView::ClickCheck(const std::string& key) {
  Node& node = At(key);
  if (!node.checkBox) StopTest("The node '" + key + "' has no check box.");
  node.checked = !node.checked;
  Raise(NodeCheck, key);
}

bool HeadlessTreeView::TakeKey(int keyCode, int shift) {
  if (shift != shiftState::none || nodes_.empty()) return false;
  if (keyCode == key::space && !selected_.empty()) {
    if (!At(selected_).checkBox) return false;
    ClickCheck(std::string(selected_));
    return true;
  }
  if (!selected_.empty() && (keyCode == key::left || keyCode == key::right)) {
    SetExpanded(std::string(selected_), keyCode == key::right);
    return true;
  }
  return MoveSelection(keyCode);
}

bool HeadlessTreeView::MoveSelection(int keyCode) {
  const std::vector<std::string> shown = InSight();
  const auto last = static_cast<std::ptrdiff_t>(shown.size()) - 1;
  const auto at = std::ranges::find(shown, selected_);
  const std::ptrdiff_t place = at == shown.end() ? -1 : at - shown.begin();
  std::ptrdiff_t next = 0;
  if (keyCode == key::up) next = std::max<std::ptrdiff_t>(0, place - 1);
  else if (keyCode == key::down) next = std::min(last, place + 1);
  else if (keyCode == key::end) next = last;
  else if (keyCode != key::home) return false;
  ClickNode(shown[static_cast<std::size_t>(next)]);
  return true;
}

const HeadlessTreeView::Node& HeadlessTreeView::At(std::string_view key) const {
  const auto found = nodes_.find(key);
  if (found == nodes_.end())
    throw Error(errorNumber::itemNotFound, "Tessel",
                Name() + " has no node '" + std::string(key) + "'.");
  return found->second;
}

HeadlessTreeView::Node& HeadlessTreeView::At(std::string_view key) {
  return const_cast<Node&>(std::as_const(*this).At(key));
}

std::vector<std::string>& HeadlessTreeView::ChildList(std::string_view key) {
  return key.empty() ? roots_ : At(key).children;
}

void HeadlessTreeView::RemoveBelow(const std::string& key) {
  const std::vector<std::string> children = At(key).children;
  for (const std::string& child : children) RemoveBelow(child);
  nodes_.erase(key);
}

void HeadlessTreeView::AppendInSight(const std::vector<std::string>& keys,
                                     std::vector<std::string>& out) const {
  for (const std::string& key : keys) {
    out.push_back(key);
    if (At(key).expanded) AppendInSight(At(key).children, out);
  }
}

std::vector<std::string> HeadlessTreeView::InSight() const {
  std::vector<std::string> keys;
  AppendInSight(roots_, keys);
  return keys;
}

void HeadlessTreeView::ExpandParents(std::string_view key) {
  const std::string parent = At(key).parent;
  if (parent.empty()) return;
  ExpandParents(parent);
  SetExpanded(parent, true);
}

}  // namespace tessel::test
