#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/TreeView.h"
#include "logic/query/completion/vocab.h"
#include "logic/schema/structure/Structure.h"

namespace tessel {

/// A table's name and the names of its fields in column order.
struct TableSchema {
  std::string name;
  std::vector<std::string> fields;
  bool operator==(const TableSchema&) const = default;
};
using Schema = std::vector<TableSchema>;

/// What a node may stand for. A group holds the views or the routines of a database.
enum class NodeKind { None, Database, Table, Field, Group, View, Index, Routine };

/// What a node stands for, told by the first character of its key; None for an empty key.
[[nodiscard]] NodeKind KindOfNode(std::string_view key);

/// Keys of nodes. Names stand in them in upper case, so that a lookup by name ignores case.
[[nodiscard]] std::string DatabaseNodeKey(int windowNumber);
[[nodiscard]] std::string TableNodeKey(std::string_view databaseKey, std::string_view table);
[[nodiscard]] std::string FieldNodeKey(std::string_view tableKey, std::string_view field);
/// The number of the records window that a database node stands for; 0 when the key has none.
[[nodiscard]] int WindowNumberOf(std::string_view databaseKey);

/// The nodes of the schema browser: databases, their tables, the tables' fields, and behind these
/// what is known of the structure: the indexes of a table, views and routines. The names of tables,
/// views and fields go into the vocabulary too, in lists named by the key of their database node,
/// and leave it with the node.
class SchemaTree {
 public:
  /// Both outlive this object.
  SchemaTree(TreeView& view, Vocabulary& vocabulary) : view_(view), vocabulary_(vocabulary) {}

  [[nodiscard]] TreeView& View() const { return view_; }

  /// With a stripe in its colour, if it has one.
  void AddDatabase(const std::string& key, const std::string& text, std::optional<Color> mark = {});
  /// Gives a database's node another text.
  void NameDatabase(const std::string& key, const std::string& text) { view_.SetText(key, text); }
  /// A node that is not there is no error.
  void RemoveDatabase(const std::string& key);
  /// Discards the tables below a database node, by taking the node away and adding it again; it is
  /// collapsed then. It stays the selected one when it, or a node below it, was.
  void RefreshDatabase(const std::string& key);

  /// Adds at the end. A name that differs from one that is there only in case is left out.
  void AddTables(const std::string& databaseKey, const std::vector<std::string>& names);
  void AddFields(const std::string& tableKey, const std::vector<std::string>& names);

  /// What is known of how the tables of a database are built; it goes with what hangs on the node.
  [[nodiscard]] Structure& StructureOf(const std::string& databaseKey) {
    return structures_[databaseKey];
  }
  /// Null when nothing is known.
  [[nodiscard]] const Structure* FindStructure(const std::string& databaseKey) const;
  /// Adds the nodes of a table's indexes, and those of the views and routines, as the structure
  /// has them.
  void AddIndexes(const std::string& databaseKey, const TableFacts& table);
  void AddObjects(const std::string& databaseKey);
  /// The view or routine that a node stands for; null when it stands for none.
  [[nodiscard]] const ObjectFacts* ObjectOf(const std::string& key) const;

  /// Takes from an open connection how names of its database are written in SQL, in the tree's
  /// commands and in completion; a closed one tells nothing. It is forgotten with the node.
  void UseQuoting(const std::string& databaseKey, const Connection& connection);
  /// How names are written in SQL of the database that a node belongs to.
  [[nodiscard]] const NameQuoting& QuotingOf(const std::string& key) const {
    return vocabulary_.QuotingOf(DatabaseOf(key));
  }

  /// The database node that a node hangs on; empty for an empty key.
  [[nodiscard]] std::string DatabaseOf(std::string key) const;
  /// Everything below a database node, in the order of the tree.
  [[nodiscard]] Schema Tables(const std::string& databaseKey) const;

  /// Texts of the checked fields of a table, in the order of the tree.
  [[nodiscard]] std::vector<std::string> CheckedFields(const std::string& tableKey) const;
  /// The keys of a database's tables.
  [[nodiscard]] std::vector<std::string> TableKeys(const std::string& databaseKey) const;
  void CheckFields(const std::string& tableKey, bool checked);

 private:
  void ForgetBelow(const std::string& databaseKey);
  void AddGroup(const std::string& databaseKey, const char* text,
                const std::vector<ObjectFacts>& objects, char kind, int image);

  TreeView& view_;
  Vocabulary& vocabulary_;
  std::map<std::string, std::optional<Color>, std::less<>> marks_;  ///< Of the databases.
  std::map<std::string, Structure, std::less<>> structures_;        ///< Of the databases.
};

}  // namespace tessel
