#pragma once

#include <optional>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"
#include "data/rows/RowSink.h"

namespace tessel {

/// Whether a rowset tells how tables are built and hang together: keys, indexes, routines,
/// definitions. Those are read apart from the lists of tables and columns.
[[nodiscard]] bool TellsStructure(SchemaRowset kind);
/// Raises Error(notSupported): `provider` has no such rowset.
[[noreturn]] void RaiseNoRowset(const std::string& provider);

/// A schema rowset that is asked for; `restrictions` as of Connection::StartSchema.
struct SchemaRequest {
  SchemaRowset schema = SchemaRowset::Tables;
  std::vector<std::string> restrictions;
};

/// A text that the database may leave out (null).
using OptionalText = std::optional<std::string>;

/// One row of SchemaRowset::Tables.
struct SchemaTable {
  OptionalText catalog;
  OptionalText schema;
  std::string name;
  std::string type;  ///< "TABLE", "VIEW", "SYSTEM TABLE" or the database's own.
  OptionalText description;
  bool needsSchema = false;  ///< SQL finds it only with its schema, or else its catalog, in front.
};

/// One row of SchemaRowset::Columns.
struct SchemaColumn {
  OptionalText catalog;
  OptionalText schema;
  std::string table;
  std::string name;
  std::int64_t ordinal = 0;  ///< From 1.
  bool nullable = true;
  DataType type = DataType::VarWChar;
  std::string typeName;
  bool needsSchema = false;  ///< As of its table.
};

/// One row of SchemaRowset::PrimaryKeys.
struct SchemaKeyColumn {
  OptionalText catalog;
  OptionalText schema;
  std::string table;
  std::string column;
  std::int64_t ordinal = 0;  ///< From 1.
};

/// One row of SchemaRowset::ForeignKeys: `column` refers to `toColumn`.
struct SchemaForeignColumn {
  OptionalText catalog;
  OptionalText schema;
  std::string table;
  std::string column;
  OptionalText toCatalog;
  OptionalText toSchema;
  std::string toTable;
  OptionalText toColumn;
  std::int64_t ordinal = 0;  ///< From 1.
  std::string key;
};

/// One row of SchemaRowset::Indexes.
struct SchemaIndexColumn {
  OptionalText catalog;
  OptionalText schema;
  std::string table;
  std::string index;
  bool unique = false;
  std::int64_t ordinal = 0;  ///< From 1.
  OptionalText column;
};

/// One row of SchemaRowset::Procedures.
struct SchemaRoutine {
  OptionalText catalog;
  OptionalText schema;
  std::string name;
  std::string type;  ///< "FUNCTION" or "PROCEDURE".
};

/// Collects the rows of one schema rowset and leaves out those that the restrictions exclude.
class SchemaRows {
 public:
  /// `restrictions` as of Connection::StartSchema.
  SchemaRows(SchemaRowset kind, std::vector<std::string> restrictions);

  [[nodiscard]] SchemaRowset Kind() const { return kind_; }
  /// The fields of the rowset.
  [[nodiscard]] const std::vector<FieldInfo>& Fields() const { return fields_; }
  /// The restriction at `index` in the order given at SchemaRowset; empty: none.
  [[nodiscard]] const std::string& Restriction(std::size_t index) const;

  void AddCatalog(const std::string& name, const OptionalText& description);
  void AddTable(const SchemaTable& table);
  void AddColumn(const SchemaColumn& column);
  void AddKeyColumn(const SchemaKeyColumn& column);
  void AddForeignColumn(const SchemaForeignColumn& column);
  void AddIndexColumn(const SchemaIndexColumn& column);
  void AddRoutine(const SchemaRoutine& routine);
  /// The object's name is that of the restrictions.
  void AddDefinition(const std::string& definition);

  [[nodiscard]] RowSink& Sink() { return sink_; }

 private:
  [[nodiscard]] bool Allows(std::size_t index, const OptionalText& value) const;
  void Put(std::size_t field, const OptionalText& value);

  SchemaRowset kind_;
  std::vector<std::string> restrictions_;
  std::vector<FieldInfo> fields_;
  RowSink sink_;
};

}  // namespace tessel
