#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contract/data/Connection.h"
#include "logic/program/dlgAsync.h"
#include "logic/query/completion/NameQuoting.h"
#include "logic/schema/structure/Structure.h"

namespace tessel {

/// Reads how the tables of a database are built: first what the rows of its fields tell, which are
/// read anyway, then keys, indexes, views and routines, each by a rowset of its own. A database
/// that does not tell these leaves the structure as far as it came; no message is shown.
class StructureReading {
 public:
  /// All outlive this object.
  StructureReading(dlgAsync& async, Connection& connection, const NameQuoting& quoting,
                   Structure& structure)
      : async_(async), connection_(connection), quoting_(quoting), structure_(structure) {}

  /// Takes what rows of SchemaRowset::Columns tell; `listed` is the name of the table in that row.
  void BeginFields(const Recordset& rows);
  void TakeField(const Recordset& rows, std::int64_t row, std::string_view listed);

  /// Reads the rest. False when the user cancelled.
  bool ReadRest();

 private:
  /// Places of fields in the rowset of columns.
  struct ColumnFields {
    std::size_t catalog = 0;
    std::size_t schema = 0;
    std::size_t table = 0;
    std::size_t column = 0;
    std::size_t nullable = 0;
    std::size_t type = 0;
  };
  using Take = void (StructureReading::*)(const Recordset& rows, std::int64_t row);

  bool Read(SchemaRowset kind, Take take);
  void TakeView(const Recordset& rows, std::int64_t row);
  void TakePrimaryKey(const Recordset& rows, std::int64_t row);
  void TakeForeignKey(const Recordset& rows, std::int64_t row);
  void TakeIndex(const Recordset& rows, std::int64_t row);
  void TakeRoutine(const Recordset& rows, std::int64_t row);
  [[nodiscard]] std::string ListedName(const ObjectName& object, bool needsSchema) const;

  dlgAsync& async_;
  Connection& connection_;
  const NameQuoting& quoting_;
  Structure& structure_;
  ColumnFields at_;
  TableFacts* table_ = nullptr;  ///< That of the row before.
  ForeignKey* key_ = nullptr;    ///< That of the row before.
};

}  // namespace tessel
