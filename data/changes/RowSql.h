#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "data/changes/RowChange.h"
#include "data/changes/RowStatement.h"

namespace tessel {

/// A name as it stands in a statement. Raises Error(notSupported) for one that would have to be
/// quoted where that cannot be done.
[[nodiscard]] std::string QuotedName(std::string_view name, const WriteDialect& dialect);
/// The name of the table that a field comes from, with all that the dialect puts before it.
[[nodiscard]] std::string BaseTableName(const FieldInfo& field, const WriteDialect& dialect);

/// Makes the statements of one change in the words of one database. What they refer to is the
/// change: it must outlive them.
class RowSql {
 public:
  RowSql(const RowChange& change, const WriteDialect& dialect);

  /// With RETURNING where the database knows it.
  [[nodiscard]] RowStatement Update() const;
  [[nodiscard]] RowStatement Insert() const;
  [[nodiscard]] RowStatement Delete() const;
  /// How many rows the change would hit.
  [[nodiscard]] RowStatement Count() const;
  /// The columns to read back of the row with the values `key` of the key fields.
  [[nodiscard]] RowStatement Select(const std::vector<Value>& key) const;

  /// The fields that are read back, in the order of the columns of a result.
  [[nodiscard]] const std::vector<std::size_t>& ReadBack() const { return readBack_; }

 private:
  [[nodiscard]] const FieldInfo& Field(std::size_t index) const { return change_.fields[index]; }
  [[nodiscard]] std::string Column(std::size_t field) const;
  [[nodiscard]] std::string Table() const;
  [[nodiscard]] std::string Parameter(RowStatement& statement, std::size_t field,
                                      const Value& value) const;
  [[nodiscard]] std::string_view PatternOf(const FieldInfo& field) const;
  void AddComparison(RowStatement& statement, std::size_t field, const Value& value,
                     bool byKey) const;
  [[nodiscard]] bool IsCompared(std::size_t field) const;
  void AddWhere(RowStatement& statement) const;
  void AddColumns(RowStatement& statement) const;
  void AddReturning(RowStatement& statement) const;
  [[nodiscard]] bool IsReadBack(std::size_t field) const;

  const RowChange& change_;
  const WriteDialect& dialect_;
  std::vector<std::size_t> readBack_;
};

}  // namespace tessel
