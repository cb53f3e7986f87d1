#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/TreeView.h"
#include "desktop/plain/KeyedNodes.h"

namespace tessel {

/// Roles of a node beyond those of the toolkit: the colour of its stripe, how many children it has
/// of the kind of the first one, and what stands behind its text.
inline constexpr int markRole = Qt::UserRole + 1;
inline constexpr int countRole = Qt::UserRole + 2;
inline constexpr int detailRole = Qt::UserRole + 3;

/// The nodes of a tree view, found by their keys. Adding and finding a node takes no longer in a
/// large tree.
class KeyedTreeModel final : public QAbstractItemModel {
 public:
  explicit KeyedTreeModel(QObject* parent);

  /// Adds those whose key is free as the last children; an empty parent key is the root. Returns
  /// how many.
  int Append(std::string_view parentKey, const std::vector<TreeNode>& nodes);
  void Remove(std::string_view key);
  [[nodiscard]] bool Exists(std::string_view key) const { return nodes_.Find(key) != nullptr; }
  [[nodiscard]] std::string Text(std::string_view key) const;
  void SetText(std::string_view key, std::string_view text);
  [[nodiscard]] std::string Parent(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> Children(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> ChildTexts(std::string_view key) const;
  [[nodiscard]] bool Checked(std::string_view key) const;
  void SetChecked(std::string_view key, bool checked);

  /// A node's stripe; a node that goes takes it along.
  void SetMark(std::string_view key, std::optional<Color> mark);

  /// Raises Error(itemNotFound) for a key that is not there; the empty key is the (invalid) index
  /// of the root.
  [[nodiscard]] QModelIndex IndexOf(std::string_view key) const;
  [[nodiscard]] std::string KeyOf(const QModelIndex& index) const;  ///< Empty for the root.

  /// Called with the key when the user has changed a check.
  std::function<void(const std::string&)> checkChanged;
  /// Asked for what is to be told of a node.
  std::function<void(const std::string&, NodeNote&)> noted;

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  [[nodiscard]] KeyedNode& At(std::string_view key) const;
  [[nodiscard]] KeyedNode& NodeOf(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex IndexOf(KeyedNode& node) const;
  [[nodiscard]] QVariant MarkOf(const KeyedNode& node) const;
  [[nodiscard]] NodeNote NoteOf(const KeyedNode& node) const;
  [[nodiscard]] QVariant ToolTipOf(const KeyedNode& node) const;

  mutable KeyedNodes nodes_;  ///< The model interface hands out nodes from constant functions.
  std::map<std::string, Color, std::less<>> marks_;  ///< By the keys of the nodes.
  std::array<QIcon, 7> icons_;
};

}  // namespace tessel
