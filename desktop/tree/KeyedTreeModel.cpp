#include "desktop/tree/KeyedTreeModel.h"

#include <QGuiApplication>
#include <algorithm>

#include "contract/base/Error.h"
#include "desktop/base/Text.h"
#include "desktop/look/Colors.h"
#include "desktop/look/Icons.h"

namespace tessel {

namespace {

std::vector<std::string> OfChildren(const KeyedNode& parent, std::string_view KeyedNode::*text) {
  std::vector<std::string> texts;
  texts.reserve(parent.children.size());
  for (const KeyedNode* child : parent.children) texts.emplace_back(child->*text);
  return texts;
}

/// What stands behind the others, such as the indexes of a table, is not counted with them.
int CountedChildren(const KeyedNode& node) {
  if (node.children.empty()) return 0;
  const int image = node.children.front()->image;
  return static_cast<int>(std::ranges::count(node.children, image, &KeyedNode::image));
}

}  // namespace

KeyedTreeModel::KeyedTreeModel(QObject* parent)
    : QAbstractItemModel(parent),
      icons_{QIcon(),
             NamedIcon("tessel-database"),
             NamedIcon("tessel-table"),
             NamedIcon("tessel-field"),
             NamedIcon("tessel-view"),
             NamedIcon("tessel-index"),
             NamedIcon("tessel-routine")} {}

int KeyedTreeModel::Append(std::string_view parentKey, const std::vector<TreeNode>& nodes) {
  KeyedNode& parent = At(parentKey);
  const std::vector<KeyedNode*> made = nodes_.Make(parent, nodes);
  if (made.empty()) return 0;
  const auto count = static_cast<int>(made.size());
  beginInsertRows(IndexOf(parent), made.front()->row, made.back()->row);
  KeyedNodes::Hang(parent, made);
  endInsertRows();
  return count;
}

void KeyedTreeModel::Remove(std::string_view key) {
  KeyedNode* node = nodes_.Find(key);
  if (node == nullptr) return;
  if (const auto mark = marks_.find(key); mark != marks_.end()) marks_.erase(mark);
  beginRemoveRows(IndexOf(*node->parent), node->row, node->row);
  nodes_.Remove(*node);
  endRemoveRows();
}

std::string KeyedTreeModel::Text(std::string_view key) const { return std::string(At(key).text); }

void KeyedTreeModel::SetText(std::string_view key, std::string_view text) {
  KeyedNode& node = At(key);
  nodes_.SetText(node, text);
  const QModelIndex index = IndexOf(node);
  emit dataChanged(index, index, {Qt::DisplayRole});
}

std::string KeyedTreeModel::Parent(std::string_view key) const {
  const KeyedNode* parent = At(key).parent;
  return parent == nullptr ? std::string() : std::string(parent->key);
}

std::vector<std::string> KeyedTreeModel::Children(std::string_view key) const {
  return OfChildren(At(key), &KeyedNode::key);
}

std::vector<std::string> KeyedTreeModel::ChildTexts(std::string_view key) const {
  return OfChildren(At(key), &KeyedNode::text);
}

bool KeyedTreeModel::Checked(std::string_view key) const { return At(key).checked; }

void KeyedTreeModel::SetChecked(std::string_view key, bool checked) {
  KeyedNode& node = At(key);
  if (node.checked == checked) return;
  node.checked = checked;
  const QModelIndex index = IndexOf(node);
  emit dataChanged(index, index, {Qt::CheckStateRole});
}

void KeyedTreeModel::SetMark(std::string_view key, std::optional<Color> mark) {
  const QModelIndex index = IndexOf(key);
  if (mark) marks_[std::string(key)] = *mark;
  else if (const auto found = marks_.find(key); found != marks_.end()) marks_.erase(found);
  emit dataChanged(index, index, {markRole});
}

QVariant KeyedTreeModel::MarkOf(const KeyedNode& node) const {
  const auto found = marks_.find(node.key);
  return found == marks_.end() ? QVariant()
                               : QVariant(ToQColor(found->second, QGuiApplication::palette()));
}

NodeNote KeyedTreeModel::NoteOf(const KeyedNode& node) const {
  NodeNote note;
  if (noted) noted(std::string(node.key), note);
  return note;
}

/// Below the name, which may be cut where it stands in the tree.
QVariant KeyedTreeModel::ToolTipOf(const KeyedNode& node) const {
  const std::string text = NoteOf(node).toolTip;
  if (text.empty()) return {};
  return AsPlainToolTip(std::string(node.text) + "\n" + text);
}

QModelIndex KeyedTreeModel::IndexOf(std::string_view key) const { return IndexOf(At(key)); }

std::string KeyedTreeModel::KeyOf(const QModelIndex& index) const {
  return std::string(NodeOf(index).key);
}

QModelIndex KeyedTreeModel::index(int row, int column, const QModelIndex& parent) const {
  const KeyedNode& holder = NodeOf(parent);
  if (column != 0 || row < 0 || row >= static_cast<int>(holder.children.size())) return {};
  return createIndex(row, 0, holder.children[static_cast<std::size_t>(row)]);
}

QModelIndex KeyedTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(*NodeOf(index).parent) : QModelIndex();
}

int KeyedTreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(NodeOf(parent).children.size());
}

int KeyedTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant KeyedTreeModel::data(const QModelIndex& index, int role) const {
  const KeyedNode& node = NodeOf(index);
  switch (role) {
    case Qt::DisplayRole: return ToQt(node.text);
    case Qt::CheckStateRole:
      if (!node.checkBox) return {};
      return node.checked ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
      return icons_[node.image >= 1 && node.image < static_cast<int>(icons_.size())
                        ? static_cast<std::size_t>(node.image)
                        : 0];
    case Qt::ToolTipRole: return ToolTipOf(node);
    case countRole: return CountedChildren(node);
    case detailRole: return ToQt(NoteOf(node).detail);
    case markRole: return MarkOf(node);
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

KeyedNode& KeyedTreeModel::At(std::string_view key) const {
  if (key.empty()) return nodes_.Root();
  if (KeyedNode* node = nodes_.Find(key)) return *node;
  throw Error(errorNumber::itemNotFound, "Tessel",
              "The tree has no node '" + std::string(key) + "'.");
}

KeyedNode& KeyedTreeModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<KeyedNode*>(index.internalPointer()) : nodes_.Root();
}

QModelIndex KeyedTreeModel::IndexOf(KeyedNode& node) const {
  return &node == &nodes_.Root() ? QModelIndex() : createIndex(node.row, 0, &node);
}

}  // namespace tessel
