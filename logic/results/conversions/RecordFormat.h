#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "logic/query/completion/NameQuoting.h"
#include "logic/tags/ValueFormat.h"

namespace tessel {

/// The columns that a conversion takes, both ends included; column i is field i.
struct ColumnRange {
  int first = 0;
  int last = -1;

  [[nodiscard]] bool Several() const { return last > first; }
};

/// How records are written.
struct RecordFormat {
  ValueFormat field;   ///< Its delimiters' separator stands between the fields of a record.
  PieceFormat record;  ///< Its separator stands between the records.
};

/// Writes records as text.
class RecordFormatter {
 public:
  /// `format` outlives this object.
  RecordFormatter(const RecordFormat& format, ColumnRange columns);

  /// Appends the current record of `rows` to `out`. Raises Error when there is none.
  void FormatRecord(std::string& out, const Recordset& rows);

 private:
  const RecordFormat& format_;
  std::size_t first_;
  std::vector<ValueView> values_;  ///< Of the record that was appended last.
};

/// The names of the fields in one line, as they are, or as SQL writes them when there is a
/// `quoting`.
[[nodiscard]] std::string FormatHeader(const std::vector<FieldInfo>& fields, ColumnRange columns,
                                       const PieceFormat& format,
                                       const NameQuoting* quoting = nullptr);

/// What follows the first " FROM " of a query, up to a semicolon, comma or blank; tabs and line
/// ends count as blanks. A name in quotes or brackets is taken whole, with them. Empty when there
/// is none, or no table's name: a query in parentheses, a function.
[[nodiscard]] std::string TableNameIn(std::string_view sql);

}  // namespace tessel
