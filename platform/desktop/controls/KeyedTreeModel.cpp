#include "platform/desktop/controls/KeyedTreeModel.h"

#include "platform/Error.h"
#include "platform/desktop/base/Icons.h"
#include "platform/desktop/base/Text.h"

namespace tessel {

/// `row` is the node's place among its siblings.
struct KeyedTreeModel::Node {
  std::string key;
  std::string text;
  int image = 0;
  Node* parent = nullptr;
  int row = 0;
  bool checkBox = true;
  bool checked = false;
  std::vector<std::unique_ptr<Node>> children;
};

KeyedTreeModel::KeyedTreeModel(QObject* parent)
    : QAbstractItemModel(parent),
      root_(std::make_unique<Node>()),
      icons_{QIcon(), PlainIcon("tessel-database"), PlainIcon("tessel-table"),
             PlainIcon("tessel-field")} {}

KeyedTreeModel::~KeyedTreeModel() = default;

int KeyedTreeModel::Append(std::string_view parentKey, std::vector<TreeNode> nodes) {
  Node& parent = At(parentKey);
  std::vector<std::unique_ptr<Node>> added;
  const auto first = static_cast<int>(parent.children.size());
  for (TreeNode& node : nodes) {
    if (Find(node.key) != nullptr) continue;
    auto fresh = std::make_unique<Node>();
    fresh->key = std::move(node.key);
    byKey_.emplace(fresh->key, fresh.get());
    fresh->text = std::move(node.text);
    fresh->image = node.image;
    fresh->checkBox = node.checkBox;
    fresh->parent = &parent;
    fresh->row = first + static_cast<int>(added.size());
    added.push_back(std::move(fresh));
  }
  if (added.empty()) return 0;
  const auto count = static_cast<int>(added.size());
  beginInsertRows(IndexOf(parent), first, first + count - 1);
  for (auto& node : added) parent.children.push_back(std::move(node));
  endInsertRows();
  return count;
}

void KeyedTreeModel::Remove(std::string_view key) {
  Node* node = Find(key);
  if (node == nullptr) return;
  Node& parent = *node->parent;
  const int row = node->row;
  beginRemoveRows(IndexOf(parent), row, row);
  Forget(*node);
  parent.children.erase(parent.children.begin() + row);
  for (auto at = static_cast<std::size_t>(row); at < parent.children.size(); ++at)
    parent.children[at]->row = static_cast<int>(at);
  endRemoveRows();
}

std::string KeyedTreeModel::Text(std::string_view key) const { return At(key).text; }

void KeyedTreeModel::SetText(std::string_view key, std::string_view text) {
  Node& node = At(key);
  node.text = text;
  const QModelIndex index = IndexOf(node);
  emit dataChanged(index, index, {Qt::DisplayRole});
}

std::string KeyedTreeModel::Parent(std::string_view key) const { return At(key).parent->key; }

std::vector<std::string> KeyedTreeModel::Children(std::string_view key) const {
  std::vector<std::string> keys;
  for (const auto& child : At(key).children) keys.push_back(child->key);
  return keys;
}

bool KeyedTreeModel::Checked(std::string_view key) const { return At(key).checked; }

void KeyedTreeModel::SetChecked(std::string_view key, bool checked) {
  Node& node = At(key);
  if (node.checked == checked) return;
  node.checked = checked;
  const QModelIndex index = IndexOf(node);
  emit dataChanged(index, index, {Qt::CheckStateRole});
}

QModelIndex KeyedTreeModel::IndexOf(std::string_view key) const { return IndexOf(At(key)); }

std::string KeyedTreeModel::KeyOf(const QModelIndex& index) const { return NodeOf(index).key; }

QModelIndex KeyedTreeModel::index(int row, int column, const QModelIndex& parent) const {
  const Node& holder = NodeOf(parent);
  if (column != 0 || row < 0 || row >= static_cast<int>(holder.children.size())) return {};
  return createIndex(row, 0, holder.children[static_cast<std::size_t>(row)].get());
}

QModelIndex KeyedTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(*NodeOf(index).parent) : QModelIndex();
}

int KeyedTreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(NodeOf(parent).children.size());
}

int KeyedTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant KeyedTreeModel::data(const QModelIndex& index, int role) const {
  const Node& node = NodeOf(index);
  switch (role) {
    case Qt::DisplayRole: return ToQt(node.text);
    case Qt::CheckStateRole:
      if (!node.checkBox) return {};
      return node.checked ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
      return icons_[node.image >= 1 && node.image <= 3 ? static_cast<std::size_t>(node.image) : 0];
    default: return {};
  }
}

bool KeyedTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole) return false;
  const std::string key = KeyOf(index);
  SetChecked(key, value.toInt() == Qt::Checked);
  if (checkChanged) checkChanged(key);
  return true;
}

Qt::ItemFlags KeyedTreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return NodeOf(index).checkBox ? flags | Qt::ItemIsUserCheckable : flags;
}

KeyedTreeModel::Node* KeyedTreeModel::Find(std::string_view key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : found->second;
}

KeyedTreeModel::Node& KeyedTreeModel::At(std::string_view key) const {
  if (key.empty()) return *root_;
  if (Node* node = Find(key)) return *node;
  throw Error(errorNumber::itemNotFound, "Tessel",
              "The tree has no node '" + std::string(key) + "'.");
}

KeyedTreeModel::Node& KeyedTreeModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<Node*>(index.internalPointer()) : *root_;
}

QModelIndex KeyedTreeModel::IndexOf(Node& node) const {
  return &node == root_.get() ? QModelIndex() : createIndex(node.row, 0, &node);
}

void KeyedTreeModel::Forget(const Node& node) {
  for (const auto& child : node.children) Forget(*child);
  byKey_.erase(node.key);
}

}  // namespace tessel
