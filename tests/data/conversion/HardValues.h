#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "tests/support/ExportRows.h"

namespace tessel::test {

/// What a column of hard values holds; each database declares it in its own way.
enum class ValueKind { Text, Whole, Floating, Exact, Date, TimeStamp, Flag, Bytes };

/// A value that conversions get wrong easily.
struct HardValue {
  std::string name;
  ValueKind kind;
  Value value;
};

/// All of them; no two of one name.
[[nodiscard]] const std::vector<HardValue>& HardValues();
/// Those that are not among `names`.
[[nodiscard]] std::vector<HardValue> HardValuesWithout(const std::vector<std::string>& names);

/// The type of a field that holds such values.
[[nodiscard]] DataType TypeOf(ValueKind kind);
/// One row a value: its name, and itself in the column of its kind, "v0" and so on.
[[nodiscard]] ExportRows TypedRows(const std::vector<HardValue>& values);

inline void PrintTo(const HardValue& value, std::ostream* out) { *out << value.name; }

/// A recordset in memory of rows of values, with fields "c1", "c2"...
[[nodiscard]] std::shared_ptr<Recordset> RecordsetOf(const std::vector<std::vector<Value>>& rows);

/// The text of a conversion (its menu item) of all rows. The table of an INSERT is `tableName`.
[[nodiscard]] std::string Converted(Recordset& rows, const std::string& command,
                                    const std::string& tableName = {});

}  // namespace tessel::test
