#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "logic/query/completion/NameQuoting.h"
#include "logic/results/stream/RecordBatch.h"
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

/// Appends the records of a batch; the separator of records stands before all but the first record
/// of all. Any thread.
void AppendRecords(std::string& out, const RecordFormat& format, const RecordBatch& batch);

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
