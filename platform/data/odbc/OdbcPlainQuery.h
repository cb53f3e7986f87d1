#pragma once

#include <string_view>

namespace tessel::odbc {

/// True when a query does nothing but name columns of `table`, or "*": `select a, t.b from t`, with
/// WHERE, GROUP BY, ORDER BY and LIMIT behind it, but with no alias, expression or other query in
/// it. Of a query that is more than that it may say false too.
[[nodiscard]] bool NamesPlainColumns(std::string_view sql, std::string_view table);

}  // namespace tessel::odbc
