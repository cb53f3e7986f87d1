#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/providers/odbc/driver/OdbcApi.h"
#include "data/providers/odbc/driver/OdbcProfile.h"
#include "data/rows/RowSink.h"

namespace tessel::odbc {

/// A column of a result, and how its cells are read.
struct ResultField {
  FieldInfo info;
  CellForm form = CellForm::Text;
  /// The driver does not say that it cannot be written; of one that is not known to tell base
  /// columns.
  bool mayBeWritten = false;
};

/// The columns of a statement's present result.
[[nodiscard]] std::vector<ResultField> DescribeFields(const Statement& statement,
                                                      const DriverProfile& profile);

/// Reads the rows of a statement's present result, one at a time: larger blocks give wrong rows
/// with some drivers. Cells lie in buffers of moderate size; what is longer is read on its own.
/// Where a driver cannot do that with bound columns, every cell is read on its own.
class RowReader {
 public:
  /// `statement` must outlive the reader.
  RowReader(Statement& statement, const std::vector<ResultField>& fields, bool canReadBoundCells);

  /// Adds the next row. False when there are no more.
  bool ReadRow(RowSink& rows);

 private:
  struct Column {
    SQLSMALLINT cType = SQL_C_CHAR;
    CellForm form = CellForm::Text;
    std::string buffer;
    SQLLEN indicator = 0;
  };

  void Bind(std::size_t index);
  /// The cell of the present row, or nothing when it is null. Valid until the next one is read.
  std::optional<std::string_view> Cell(std::size_t index);

  Statement& statement_;
  std::vector<Column> columns_;
  bool bound_;
  std::string whole_;  ///< A cell read on its own.
};

/// A row of a catalog function or of a small query, all cells as text.
using TextRow = std::vector<std::optional<std::string>>;

/// A whole number in a cell; `fallback` when it is null or none.
[[nodiscard]] std::int64_t ToNumber(const std::optional<std::string>& text, std::int64_t fallback);

/// Hands each row of the present result, its first `columns` cells, to `take`.
void ForEachRow(Statement& statement, std::size_t columns,
                const std::function<void(const TextRow&)>& take);

}  // namespace tessel::odbc
