#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel::odbc {

/// A table as a query names it: of "a.b.c" c is the name, and what stands before it, as far as it
/// is there, schema and catalog.
struct PlainTable {
  std::string catalog;
  std::string schema;
  std::string name;
};

/// The table of a query that does nothing but name columns of it, or "*": `select a, t.b from t`,
/// with WHERE, GROUP BY, ORDER BY and LIMIT behind it, but with no alias, expression or other
/// statement in it. Of a query that is more than that it may say nothing too.
[[nodiscard]] std::optional<PlainTable> PlainTableOf(std::string_view sql);

/// True when that table has the name `table`.
[[nodiscard]] bool NamesPlainColumns(std::string_view sql, std::string_view table);

}  // namespace tessel::odbc
