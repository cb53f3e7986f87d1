#pragma once

#include <string>

namespace tessel::test {

// Of a text as between the parentheses of `create table`, for tables whose rows are spread.

/// The name of the first column, with its quotes.
[[nodiscard]] std::string FirstColumn(const std::string& columns);
/// The columns without what makes them a key.
[[nodiscard]] std::string WithoutKeys(std::string columns);
/// `sql` as a literal.
[[nodiscard]] std::string Literal(const std::string& sql);

}  // namespace tessel::test
