#include "platform/data/UniqueRows.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace tessel {

const FieldInfo* OneBaseTable(const std::vector<FieldInfo>& fields) {
  const auto table = [](const FieldInfo& field) {
    return std::tie(field.baseCatalog, field.baseSchema, field.baseTable);
  };
  const FieldInfo* first = nullptr;
  std::set<std::string> columns;
  for (const FieldInfo& field : fields) {
    if (field.baseTable.empty()) continue;
    if (first == nullptr) first = &field;
    if (table(*first) != table(field) || !columns.insert(field.baseColumn).second) return nullptr;
  }
  return first;
}

bool HoldsKey(const std::vector<FieldInfo>& fields, const std::vector<TableKey>& keys) {
  const auto isShown = [&](const std::string& column) {
    return std::ranges::any_of(fields, [&](const FieldInfo& field) {
      return !field.baseTable.empty() && field.baseColumn == column;
    });
  };
  return std::ranges::any_of(
      keys, [&](const TableKey& key) { return !key.empty() && std::ranges::all_of(key, isShown); });
}

}  // namespace tessel
