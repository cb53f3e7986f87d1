#pragma once

#include <string>

namespace tessel {

class DataGrid;
class dlgAsync;

/// The values of a field of the rows that `grid` shows as SQL text: the current row's, or as a list
/// those of the selected rows (all rows when none is selected). Raises Error(application) when
/// there is nothing to take, or when the user cancels.
[[nodiscard]] std::string GridTagValue(DataGrid& grid, dlgAsync& async,
                                       const std::string& fieldName, bool asList, bool quoted);

}  // namespace tessel
