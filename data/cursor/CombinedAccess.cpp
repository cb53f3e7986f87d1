#include "data/cursor/CombinedAccess.h"

#include <utility>

#include "data/cursor/ResultComparison.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/cursor/rows/FixedRecordset.h"
#include "data/rows/RowSink.h"

namespace tessel {

namespace {

NamedPart PartOf(const NamedRows& named) {
  if (named.rows == nullptr) return {named.name, std::make_shared<NoRows>()};
  const auto* cursor = dynamic_cast<const RowCursor*>(named.rows.get());
  if (cursor == nullptr)
    throw Error(errorNumber::notSupported, "Tessel",
                "The rows of '" + named.name + "' are not of this program's making.");
  return {named.name, cursor->RowsForGood()};
}

}  // namespace

std::shared_ptr<Recordset>
CombinedAccess::MakeRecordset(std::vector<FieldInfo> fields,
                              const std::vector<std::vector<Value>>& rows) {
  RowSink sink(fields.size());
  for (const std::vector<Value>& row : rows) {
    for (std::size_t i = 0; i < fields.size(); ++i)
      sink.Column(i).Append(i < row.size() ? row[i] : Value());
    sink.EndRow();
  }
  sink.CloseChunk();
  return ClientRecordset::Of(std::move(fields), sink.TakeChunks());
}

std::shared_ptr<Recordset> CombinedAccess::MergeRows(const std::vector<NamedRows>& parts) {
  std::vector<NamedPart> named;
  for (const NamedRows& part : parts) named.push_back(PartOf(part));
  return std::make_shared<FixedRecordset>(std::make_shared<MergedRows>(std::move(named)));
}

std::unique_ptr<RowComparison> CombinedAccess::CompareRows(CompareRequest request) {
  std::vector<NamedPart> parts{PartOf(request.a), PartOf(request.b)};
  return std::make_unique<ResultComparison>(
      std::move(parts), request.keys,
      ValueSameness{.booleansAreNumbers = request.booleansAreNumbers});
}

}  // namespace tessel
