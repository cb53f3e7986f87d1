// Rows go into a table by one prepared statement, which looks at the values where the feed has
// them. SQLite says of each row at once whether it takes it.

#include <string>

#include "data/providers/sqlite/SqliteSession.h"

namespace tessel {

namespace {

/// The column that a message names, as in "NOT NULL constraint failed: goods.price"; empty: none.
std::string ColumnIn(const std::string& message, const std::vector<LoadColumn>& columns) {
  for (const LoadColumn& column : columns)
    if (message.ends_with("." + column.name)) return column.name;
  return {};
}

/// Whether it is the row that is to blame, and not a lock or a full disk.
bool IsOfRow(const Error& error) {
  return HasCode(error, SQLITE_CONSTRAINT) || HasCode(error, SQLITE_MISMATCH) ||
         HasCode(error, SQLITE_TOOBIG);
}

}  // namespace

class SqliteSession::Loader final : public RowLoader {
 public:
  Loader(SqliteSession& session, const LoadRequest& request)
      : session_(session),
        columns_(request.columns),
        statement_(session.database_->PrepareOne(InsertBeginning(request, *session.Writing()) +
                                                 QuestionMarks(request.columns.size()))) {}

  void Add(const LoadBatch& rows, WorkContext& context) override {
    const Cancellable scope(session_, context);
    auto cell = rows.cells.begin();
    try {
      for (std::size_t row = 0; row < rows.Rows(); ++row, ++rows_) {
        for (int parameter = 1; parameter <= static_cast<int>(columns_.size()); ++parameter)
          std::visit(SqliteBinder{statement_, parameter, true}, *cell++);
        while (statement_.Step()) continue;
        statement_.Reset();
      }
    } catch (const Error& error) {
      if (IsOfRow(error)) context.RefuseRow(rows_, ColumnIn(error.Description(), columns_));
      throw AsCancelled(error, context);
    }
  }
  void End(WorkContext& /*context*/) override {}

 private:
  SqliteSession& session_;
  const std::vector<LoadColumn>& columns_;
  SqliteStatement statement_;
  std::int64_t rows_ = 0;  ///< So far.
};

std::unique_ptr<RowLoader> SqliteSession::BeginLoad(const LoadRequest& request,
                                                    WorkContext& context) {
  const Cancellable scope(*this, context);
  try {
    return std::make_unique<Loader>(*this, request);
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
}

}  // namespace tessel
