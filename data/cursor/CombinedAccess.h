#pragma once

#include <memory>
#include <vector>

#include "contract/data/Connection.h"

namespace tessel {

/// What a door to databases does without a database: recordsets of rows that are there already.
/// UI thread.
class CombinedAccess : public DataAccess {
 public:
  [[nodiscard]] std::shared_ptr<Recordset>
  MakeRecordset(std::vector<FieldInfo> fields,
                const std::vector<std::vector<Value>>& rows) override;
  [[nodiscard]] std::shared_ptr<Recordset> MergeRows(const std::vector<NamedRows>& parts) override;
  [[nodiscard]] std::unique_ptr<RowComparison> CompareRows(CompareRequest request) override;
};

}  // namespace tessel
