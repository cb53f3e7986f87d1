#include "bench/RawSheet.h"

#include <xlsxwriter.h>

namespace tessel::bench {

namespace {

void WriteCell(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t place, const ColumnChunk& column,
               std::size_t at, std::string& text) {
  if (column.IsNullAt(at)) return;
  switch (column.kind) {
    case CellKind::Boolean:
      worksheet_write_boolean(sheet, row, place, column.cells.At<std::uint8_t>(at), nullptr);
      return;
    case CellKind::Integer:
      worksheet_write_number(sheet, row, place,
                             static_cast<double>(column.cells.At<std::int64_t>(at)), nullptr);
      return;
    case CellKind::Double:
      worksheet_write_number(sheet, row, place, column.cells.At<double>(at), nullptr);
      return;
    default: break;
  }
  const ArenaSlice slice = column.SliceAt(at);
  text.assign(reinterpret_cast<const char*>(column.arena.Data()) + slice.offset, slice.size);
  worksheet_write_string(sheet, row, place, text.c_str(), nullptr);
}

}  // namespace

void RawSheet(const RowStore& store, const std::string& path) {
  lxw_workbook_options options{LXW_TRUE, nullptr, LXW_FALSE};
  lxw_workbook* book = workbook_new_opt(path.c_str(), &options);
  lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
  lxw_row_t row = 0;
  std::string text;
  for (const ChunkPtr& chunk : store.Chunks())
    for (std::size_t at = 0; at < chunk->rows; ++at, ++row)
      for (std::size_t column = 0; column < chunk->columns.size(); ++column)
        WriteCell(sheet, row, static_cast<lxw_col_t>(column), chunk->columns[column], at, text);
  workbook_close(book);
}

}  // namespace tessel::bench
