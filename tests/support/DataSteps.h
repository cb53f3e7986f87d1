#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"

namespace tessel::test {

/// A command that was started, and the rows that a window would show of it: these can be asked for
/// through "->" and "*". Letting go of it lets go of the operation.
class StartedQuery {
 public:
  StartedQuery() = default;
  explicit StartedQuery(std::shared_ptr<QueryOperation> operation)
      : operation_(std::move(operation)) {}

  [[nodiscard]] QueryOperation& Operation() const { return *operation_; }
  /// As Recordset::State, and "executing" while it is not known whether there are rows.
  [[nodiscard]] int State() const;
  void Cancel() const { operation_->Cancel(); }
  void Reset() { operation_.reset(); }

  [[nodiscard]] std::shared_ptr<Recordset> Rows() const { return operation_->FirstRows(); }
  [[nodiscard]] Recordset* operator->() const { return Rows().get(); }
  [[nodiscard]] Recordset& operator*() const { return *Rows(); }
  operator std::shared_ptr<Recordset>() const { return Rows(); }  // NOLINT: it stands for them.

 private:
  std::shared_ptr<QueryOperation> operation_;
};

// Each waits for the end, without an event queue, and raises the failure.

void OpenNow(Connection& connection, const std::string& user = {},
             const std::string& password = {});
StartedQuery QueryNow(Connection& connection, const std::string& sql,
                      LockType lock = LockType::ReadOnly);
[[nodiscard]] std::shared_ptr<Recordset>
ReadSchema(Connection& connection, SchemaRowset schema,
           const std::vector<std::string>& restrictions = {});
void UseCatalog(Connection& connection, const std::string& name);
void Update(Recordset& recordset);
void Delete(Recordset& recordset);

}  // namespace tessel::test
