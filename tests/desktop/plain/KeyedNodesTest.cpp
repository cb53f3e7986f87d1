// The nodes of a tree view against a plain list of them.

#include "desktop/plain/KeyedNodes.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace tessel::test {

namespace {

using Keys = std::vector<std::string>;

KeyedNode& Add(KeyedNodes& nodes, KeyedNode& parent, const std::string& key) {
  const std::vector<KeyedNode*> made = nodes.Make(parent, {{key, "text of " + key, 3}});
  KeyedNodes::Hang(parent, made);
  return *made.at(0);
}

Keys KeysOf(const KeyedNode& parent) {
  Keys keys;
  for (const KeyedNode* child : parent.children) keys.emplace_back(child->key);
  return keys;
}

TEST(KeyedNodesTest, RootNodesStandApart) {
  KeyedNodes nodes;
  for (const char* root : {"a", "b", "c"}) {
    KeyedNode& node = Add(nodes, nodes.Root(), root);
    for (int i = 0; i < 40; ++i) Add(nodes, node, root + std::to_string(i));
  }
  nodes.Remove(*nodes.Find("b"));
  EXPECT_EQ(KeysOf(nodes.Root()), (Keys{"a", "c"}));
  EXPECT_EQ(nodes.Find("b"), nullptr);
  EXPECT_EQ(nodes.Find("b7"), nullptr);
  ASSERT_NE(nodes.Find("c39"), nullptr);
  EXPECT_EQ(nodes.Find("c39")->text, "text of c39");
  EXPECT_EQ(nodes.Find("c39")->row, 39);
  EXPECT_EQ(nodes.Find("c")->row, 1);
  KeyedNode& again = Add(nodes, nodes.Root(), "b");
  Add(nodes, again, "b7");
  nodes.SetText(*nodes.Find("c39"), "other");
  nodes.Remove(*nodes.Find("a"));
  EXPECT_EQ(nodes.Find("c39")->text, "other");
  EXPECT_EQ(nodes.Find("b7")->parent, &again);
}

TEST(KeyedNodesTest, AKeyOfAnotherBranchIsTakenToo) {
  KeyedNodes nodes;
  Add(nodes, Add(nodes, nodes.Root(), "a"), "x");
  KeyedNode& b = Add(nodes, nodes.Root(), "b");
  EXPECT_TRUE(nodes.Make(b, {{"x", "X", 3}, {"a", "A", 3}}).empty());
  EXPECT_EQ(nodes.Make(b, {{"y", "Y", 3}, {"y", "Y", 3}}).size(), 1U);
}

/// Adds and removes at random; what is there, and under which parent, must agree with the list.
TEST(KeyedNodesTest, KeysAreFoundWhateverWasAddedAndRemoved) {
  KeyedNodes nodes;
  KeyedNode& top = Add(nodes, nodes.Root(), "top");
  std::map<std::string, std::string> parents;
  std::mt19937 random(7);
  for (int step = 0; step < 20'000; ++step) {
    const std::string key = "key " + std::to_string(random() % 300);
    KeyedNode* const node = nodes.Find(key);
    ASSERT_EQ(node != nullptr, parents.contains(key)) << key << " in step " << step;
    if (node == nullptr) {
      KeyedNode* const other = nodes.Find("key " + std::to_string(random() % 300));
      KeyedNode& parent = other == nullptr ? top : *other;
      parents[key] = Add(nodes, parent, key).parent->key;
    } else if (node->children.empty()) {
      nodes.Remove(*node);
      parents.erase(key);
    } else {
      ASSERT_EQ(node->parent->key, parents[key]);
      ASSERT_EQ(node->parent->children.at(static_cast<std::size_t>(node->row)), node);
    }
  }
}

}  // namespace

}  // namespace tessel::test
