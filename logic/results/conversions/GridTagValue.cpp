#include "logic/results/conversions/GridTagValue.h"

#include <memory>
#include <vector>

#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"
#include "logic/tags/TagValue.h"

namespace tessel {

namespace {

/// Of the selected rows, in the order in which they were, else of all on show. The grid's position
/// is not moved.
std::string ListOfValues(const DataGrid& grid, dlgAsync& async, std::size_t field, bool quoted) {
  const std::shared_ptr<Recordset> rows = grid.DataSource();
  const std::string separator = ", ";
  std::string list;
  const auto append = [&](std::int64_t position) {
    if (!async.Yield()) RaiseAppError("Cancelled.");
    list += separator + FormatTagValue(rows->ValueAt(position, field), quoted);
  };
  const std::vector<Bookmark> selected = grid.SelBookmarks();
  for (const Bookmark bookmark : selected)
    if (const auto position = rows->PositionOf(bookmark)) append(*position);
  if (selected.empty())
    for (std::int64_t position = 0; position < rows->RecordCount(); ++position) append(position);
  return "(" + list.substr(separator.size()) + ")";
}

}  // namespace

std::string GridTagValue(DataGrid& grid, dlgAsync& async, const std::string& fieldName, bool asList,
                         bool quoted) {
  if (!grid.Visible() || grid.DataSource() == nullptr) RaiseAppError("No records available.");
  const std::shared_ptr<Recordset> rows = grid.DataSource();
  const auto field = rows->FindField(fieldName);
  if (!field) RaiseAppError("Field '" + fieldName + "' not available.");
  if (rows->RecordCount() == 0) RaiseAppError("No data available.");
  if (asList) return ListOfValues(grid, async, *field, quoted);
  if (grid.OnNewRow() || rows->Bof() || rows->Eof()) RaiseAppError("Select an existing record.");
  return FormatTagValue(rows->FieldValue(*field), quoted);
}

}  // namespace tessel
