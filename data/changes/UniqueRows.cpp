#include "data/changes/UniqueRows.h"

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

std::vector<std::size_t> KeyFields(const std::vector<FieldInfo>& fields,
                                   const std::vector<TableKey>& keys) {
  for (const TableKey& key : keys) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < fields.size(); ++i)
      if (!fields[i].baseTable.empty() && std::ranges::count(key, fields[i].baseColumn) != 0)
        found.push_back(i);
    if (!key.empty() && found.size() == key.size()) return found;
  }
  return {};
}

}  // namespace tessel
