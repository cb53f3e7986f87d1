#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "logic/import/ImportFeed.h"
#include "logic/import/ImportTarget.h"
#include "logic/import/guessing/ImportScan.h"

namespace tessel {

/// A kind of values that a new column may be given, and what a person calls it.
struct ImportType {
  DataType type;
  const char* name;
};
[[nodiscard]] std::span<const ImportType> ImportTypes();
/// What a person calls a type; that of text for one that is not among them.
[[nodiscard]] std::string NameOfType(const ColumnType& type);

/// Which column of a source goes to which column of a table.
class ImportMapping {
 public:
  struct Column {
    std::string source;
    std::string target;    ///< Empty: it is left out.
    ColumnType type;       ///< Of the target.
    std::string typeName;  ///< For a person.
    std::string first;     ///< Its first value.
  };

  /// For a table that is to be made: its columns are those of the source.
  [[nodiscard]] static ImportMapping ToNew(const ImportScan& scan);
  /// For a table that is there. Columns find each other by their names, without regard to case, or
  /// where `byPlace` by their places.
  [[nodiscard]] static ImportMapping ToTable(const ImportScan& scan,
                                             std::vector<TableColumn> columns, bool byPlace);

  [[nodiscard]] const std::vector<Column>& Columns() const { return columns_; }
  [[nodiscard]] const std::vector<TableColumn>& TableColumns() const { return table_; }
  [[nodiscard]] bool IsNew() const { return isNew_; }

  /// Another target for a column of the source; empty: it is left out.
  void SetTarget(std::size_t source, const std::string& target);
  /// Of a new table.
  void SetType(std::size_t source, DataType type);

  /// What keeps rows from being loaded so, as a sentence; empty: nothing.
  [[nodiscard]] std::string Problem() const;
  [[nodiscard]] std::vector<ImportColumn> Loaded() const;
  [[nodiscard]] std::vector<NewColumn> Made() const;

 private:
  void AddSource(const ImportScan& scan, std::size_t number);

  std::vector<Column> columns_;
  std::vector<TableColumn> table_;
  bool isNew_ = true;
};

}  // namespace tessel
