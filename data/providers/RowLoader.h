#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "contract/data/Recordset.h"
#include "data/changes/RowStatement.h"
#include "data/providers/WorkContext.h"

namespace tessel {

/// Takes rows into one table, in the way that is fastest for its database. A provider makes it; the
/// session and the request outlive it. Worker thread.
///
/// When it is destroyed before its end what it was given may be there or not: whoever uses it
/// undoes the transaction. A row that the database refuses is told by WorkContext::RefuseRow.
class RowLoader {
 public:
  RowLoader() = default;
  RowLoader(const RowLoader&) = delete;
  RowLoader& operator=(const RowLoader&) = delete;
  virtual ~RowLoader() = default;

  /// Hands rows on. The database may have a say on them only later, at the latest at the end.
  virtual void Add(const LoadBatch& rows, WorkContext& context) = 0;
  /// All rows are in the table when it returns. Called once, last.
  virtual void End(WorkContext& context) = 0;
};

/// The beginning of an INSERT into the table of a request, "insert into t (a, b) values ".
[[nodiscard]] std::string InsertBeginning(const LoadRequest& request, const WriteDialect& dialect);
/// `count` question marks in parentheses.
[[nodiscard]] std::string QuestionMarks(std::size_t count);

/// Loads rows one by one.
class StatementLoader final : public RowLoader {
 public:
  /// Runs one statement with its parameters.
  using Runner = std::function<void(const RowStatement&, WorkContext&)>;

  StatementLoader(const LoadRequest& request, const WriteDialect& dialect, Runner run);

  void Add(const LoadBatch& rows, WorkContext& context) override;
  void End(WorkContext& /*context*/) override {}

 private:
  Runner run_;
  std::vector<FieldInfo> fields_;
  RowStatement statement_;
  std::int64_t rows_ = 0;  ///< So far.
};

}  // namespace tessel
