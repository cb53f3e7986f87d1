#include "data/changes/RowStatement.h"

namespace tessel {

std::vector<Value> TakeFirstRow(RowSink& rows) {
  rows.CloseChunk();
  std::vector<Value> values;
  for (const ChunkPtr& chunk : rows.TakeChunks())
    for (const ColumnChunk& column : chunk->columns)
      if (values.size() < rows.ColumnCount()) values.push_back(ToValue(column.At(0)));
  return values;
}

}  // namespace tessel
