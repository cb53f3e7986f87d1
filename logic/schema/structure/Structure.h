#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessel {

/// Where a database keeps something; empty parts are not told.
struct ObjectName {
  std::string catalog;
  std::string schema;
  std::string name;
  bool operator==(const ObjectName&) const = default;
};

/// What is known of a field.
struct FieldFacts {
  std::string name;
  std::string type;  ///< As the database calls it; may be empty.
  bool notNull = false;
  int keyPlace = 0;  ///< In the primary key, from 1; 0: it is no part of it.
  bool operator==(const FieldFacts&) const = default;
};

struct IndexFacts {
  std::string name;
  bool unique = false;
  std::vector<std::string> fields;  ///< An expression as its text.
  bool operator==(const IndexFacts&) const = default;
};

/// A view, or a routine with its type, "FUNCTION" or "PROCEDURE".
struct ObjectFacts {
  std::string listed;  ///< As the schema browser lists it.
  ObjectName object;
  std::string type;
  bool operator==(const ObjectFacts&) const = default;
};

/// What is known of a table.
struct TableFacts {
  std::string listed;  ///< As the schema browser lists it.
  ObjectName object;
  std::vector<FieldFacts> fields;
  std::vector<IndexFacts> indexes;

  /// Without regard to ASCII case; null when it has none of that name.
  [[nodiscard]] const FieldFacts* FindField(std::string_view name) const;
  [[nodiscard]] FieldFacts* FindField(std::string_view name);
  /// The primary key in its order.
  [[nodiscard]] std::vector<std::string> KeyFields() const;
  bool operator==(const TableFacts&) const = default;
};

/// The fields of `table` refer to those of `toTable`, one by one; both as the browser lists them.
struct ForeignKey {
  std::string name;
  std::string table;
  std::vector<std::string> fields;
  std::string toTable;
  std::vector<std::string> toFields;
  bool operator==(const ForeignKey&) const = default;
};

/// How the tables of one database are built and hang together. Tables are found by the names under
/// which the schema browser lists them, as they are written there.
class Structure {
 public:
  Structure() = default;
  Structure(Structure&&) = default;
  Structure& operator=(Structure&&) = default;

  /// The table of that name, made when it is not there. The reference stays good.
  TableFacts& Table(std::string_view listed);
  [[nodiscard]] const TableFacts* FindTable(std::string_view listed) const;
  /// The table that the database keeps there; null when none is known.
  [[nodiscard]] TableFacts* FindObject(const ObjectName& object);
  /// From now on FindObject finds the table, whose object is known.
  void NoteObject(TableFacts& table);
  /// Of the tables, in the order in which they came.
  [[nodiscard]] const std::vector<TableFacts*>& Tables() const { return order_; }

  [[nodiscard]] bool Empty() const { return order_.empty() && views.empty() && routines.empty(); }

  /// By their tables, as they were read.
  [[nodiscard]] const std::vector<ForeignKey>& ForeignKeys() const { return foreignKeys_; }
  ForeignKey& AddForeignKey(ForeignKey key);
  /// Of a table, in their order.
  [[nodiscard]] std::vector<const ForeignKey*> KeysFrom(std::string_view table) const;
  /// Those that a field of a table is part of.
  [[nodiscard]] std::vector<const ForeignKey*> KeysOf(std::string_view table,
                                                      std::string_view field) const;

  std::vector<ObjectFacts> views;
  std::vector<ObjectFacts> routines;
  std::string notRead;  ///< Why something of it could not be read; empty when all was.

 private:
  std::unordered_map<std::string, TableFacts> tables_;
  std::unordered_map<std::string, TableFacts*> objects_;
  std::vector<TableFacts*> order_;
  std::vector<ForeignKey> foreignKeys_;
  std::unordered_map<std::string, std::vector<std::size_t>> keysFrom_;  ///< By their tables.
};

/// The names with commas between them.
[[nodiscard]] std::string Listed(const std::vector<std::string>& names);

}  // namespace tessel
