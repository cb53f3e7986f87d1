#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/sql/ColumnTypes.h"
#include "contract/sql/SqlDialect.h"
#include "logic/program/dlgAsync.h"
#include "logic/query/completion/NameQuoting.h"

namespace tessel {

/// A column of a table that is there.
struct TableColumn {
  std::string name;
  DataType type = DataType::VarWChar;
  std::string typeName;  ///< The server's own.
};

/// A column of a table that is to be made.
struct NewColumn {
  std::string name;
  ColumnType type;
};

/// The type by which values for a column of `type` are read. SQLite keeps 64 bits in every column
/// of whole numbers, whatever a driver says.
[[nodiscard]] DataType ImportedType(SqlDialect dialect, DataType type);

/// Whether a column of `type` forgets parts of a moment without a word, as PostgreSQL does.
/// `typeName`: the server's own of a table that is there.
[[nodiscard]] bool ForgetsOfMoments(SqlDialect dialect, DataType type, std::string_view typeName);

/// The statement that makes a table, whose name is given as SQL has it.
[[nodiscard]] std::string CreateTableText(SqlDialect dialect, const NameQuoting& quoting,
                                          const std::string& tableInSql,
                                          const std::vector<NewColumn>& columns);

/// The tables of a connection, as rows are imported into them.
class ImportTarget {
 public:
  /// `async` outlives it; under it the database is asked.
  ImportTarget(std::shared_ptr<Connection> connection, dlgAsync& async);

  /// Reads the names of the tables; false when the user cancelled.
  bool ReadTables();
  /// As the schema browser lists them.
  [[nodiscard]] const std::vector<std::string>& Tables() const { return listed_; }
  /// The table of that name, without regard to case, as it is listed.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) const;
  /// The columns of a listed table; nothing when the user cancelled.
  [[nodiscard]] std::vector<TableColumn> ReadColumns(const std::string& listed);

  [[nodiscard]] const std::shared_ptr<Connection>& TheConnection() const { return connection_; }
  [[nodiscard]] SqlDialect Dialect() const { return dialect_; }
  /// A listed table in SQL, and one whose name was typed.
  [[nodiscard]] std::string InSql(const std::string& listed) const {
    return quoting_.Table(listed);
  }
  [[nodiscard]] std::string TypedInSql(const std::string& typed) const {
    return quoting_.Written(typed);
  }
  /// The statement that makes a table.
  [[nodiscard]] std::string CreateTable(const std::string& tableInSql,
                                        const std::vector<NewColumn>& columns) const {
    return CreateTableText(dialect_, quoting_, tableInSql, columns);
  }

 private:
  struct Place {
    std::string catalog;
    std::string schema;
    std::string name;
  };

  void TakeTables(const Recordset& rows);

  std::shared_ptr<Connection> connection_;
  dlgAsync& async_;
  NameQuoting quoting_;
  SqlDialect dialect_;
  std::vector<std::string> listed_;
  std::vector<Place> places_;  ///< Of the listed ones.
};

}  // namespace tessel
