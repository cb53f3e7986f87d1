#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contract/data/CombinedRows.h"

namespace tessel::test {

/// Takes the steps of a comparison until it has ended; fails the test when they lead nowhere.
void StepToEnd(RowComparison& comparison, std::int64_t rows = 1000);

/// Names of the fields.
[[nodiscard]] std::vector<std::string> NamesOf(const Recordset& recordset);
/// A line for each row in the present order: texts of the cells, null as "NULL", joined by "|".
[[nodiscard]] std::vector<std::string> LinesOf(const Recordset& recordset);
/// The counts in the order of CompareCounts.
[[nodiscard]] std::vector<std::int64_t> CountsOf(const RowComparison& comparison);
/// A text for each row: for each cell that is changed the last character of the field's name, else
/// "-".
[[nodiscard]] std::vector<std::string> MarksOf(const RowComparison& comparison);

}  // namespace tessel::test
