#include "logic/results/conversions/GridTagValue.h"

#include <memory>
#include <vector>

#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"
#include "logic/tags/TagValue.h"

namespace tessel {

namespace {

/// Works on a clone, so that the grid's position is not moved.
std::string ListOfValues(const DataGrid& grid, dlgAsync& async, std::size_t field, bool quoted) {
  const std::shared_ptr<Recordset> clone = grid.DataSource()->Clone(LockType::ReadOnly);
  const std::string separator = ", ";
  std::string list;
  const auto append = [&] {
    if (!async.Yield()) RaiseAppError("Cancelled.");
    list += separator + FormatTagValue(clone->FieldValue(field), quoted);
  };
  const std::vector<Bookmark> selected = grid.SelBookmarks();
  for (const Bookmark bookmark : selected) {
    clone->MoveTo(bookmark);
    append();
  }
  if (selected.empty())
    for (clone->MoveFirst(); !clone->Eof(); clone->MoveNext()) append();
  clone->Close();
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
