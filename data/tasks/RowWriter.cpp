#include "data/tasks/RowWriter.h"

#include <algorithm>
#include <optional>
#include <string>

#include "data/changes/RowOrigin.h"
#include "data/changes/RowSql.h"
#include "data/tasks/RowTransaction.h"

namespace tessel {

namespace {

/// Writes one change, within a transaction.
class ChangeWriter {
 public:
  ChangeWriter(ProviderSession& session, const WriteDialect& dialect, const RowChange& change,
               WorkContext& context)
      : session_(session),
        dialect_(dialect),
        change_(change),
        context_(context),
        sql_(change, dialect) {}

  FieldValues Write() {
    switch (change_.kind) {
      case RowChange::Kind::Update: return Update();
      case RowChange::Kind::Insert: return Insert();
      case RowChange::Kind::Delete: return Delete();
    }
    return {};
  }

 private:
  FieldValues Update() {
    CountFirst();
    const StatementResult result = Run(sql_.Update());
    RequireOne(result.rows);
    if (dialect_.returnsUpdated) return Merged(result.first);
    return ReadBack(ChangedKey());
  }

  FieldValues Insert() {
    const StatementResult result = Run(sql_.Insert());
    if (result.rows != 1)
      throw Error(errorNumber::database, "Tessel",
                  "The database did not take the record. Nothing was changed.");
    if (dialect_.returnsInserted) return Merged(result.first);
    return ReadBack(InsertedKey());
  }

  FieldValues Delete() {
    const std::optional<std::int64_t> before = CountLocked();
    if (before) RequireOne(*before);
    const std::int64_t deleted = Run(sql_.Delete()).rows;
    if (deleted != 0 || !before || CountLocked() != 0) RequireOne(deleted);
    return {};
  }

  StatementResult Run(const RowStatement& statement) {
    context_.ThrowIfStopped();
    return session_.RunStatement(statement, context_);
  }

  /// Where no key makes sure that there is but one row, and a change of more may not be undone.
  void CountFirst() {
    if (!dialect_.countsFirst || !change_.key.empty()) return;
    if (const auto count = Count(sql_.Count())) RequireOne(*count);
  }

  /// The rows that a deletion hits; from then on nobody else changes them. A server that keeps the
  /// rows of a table on others may delete them and count none. Nothing where the database's own
  /// count is right.
  std::optional<std::int64_t> CountLocked() {
    if (!dialect_.countsFirst) return std::nullopt;
    RowStatement statement = sql_.Count();
    statement.sql += " for update";
    return Count(statement);
  }

  std::optional<std::int64_t> Count(const RowStatement& statement) {
    const StatementResult result = Run(statement);
    const auto* count =
        result.first.empty() ? nullptr : std::get_if<std::int64_t>(&result.first.front());
    return count == nullptr ? std::nullopt : std::optional(*count);
  }

  static void RequireOne(std::int64_t rows) {
    if (rows == 1) return;
    throw Error(errorNumber::changeConflict, "Tessel",
                rows == 0 ? "The record was changed or deleted by somebody else since it was read. "
                            "Nothing was changed."
                          : "The record matches several rows; nothing was changed.");
  }

  // --- reading back ------------------------------------------------------------------------------

  /// The values of the key after an update; nothing without a key.
  [[nodiscard]] std::optional<std::vector<Value>> ChangedKey() const {
    if (change_.key.empty()) return std::nullopt;
    std::vector<Value> key;
    for (const std::size_t field : change_.key)
      key.push_back(change_.changes[field] ? *change_.changes[field] : *change_.originals[field]);
    return key;
  }

  /// After an insert: the values given, and the number generated for the one that was not.
  [[nodiscard]] std::optional<std::vector<Value>> InsertedKey() {
    if (change_.key.empty()) return std::nullopt;
    std::vector<Value> key;
    bool generated = false;
    for (const std::size_t field : change_.key) {
      const std::optional<Value>& given = change_.changes[field];
      if (given && !IsNull(ToView(*given))) {
        key.push_back(*given);
        continue;
      }
      if (generated || !IsNumericType(change_.fields[field].type)) return std::nullopt;
      std::optional<Value> number = GeneratedNumber(field);
      if (!number) return std::nullopt;
      key.push_back(std::move(*number));
      generated = true;
    }
    return key;
  }

  std::optional<Value> GeneratedNumber(std::size_t field) {
    if (dialect_.lastKey.empty()) return std::nullopt;
    RowStatement query;
    query.sql = dialect_.lastKey;
    query.columns = {&change_.fields[field]};
    StatementResult result = Run(query);
    if (result.first.empty()) return std::nullopt;
    return std::move(result.first.front());
  }

  /// The row may be one that the user is not shown, such as one outside of a view's condition.
  FieldValues ReadBack(const std::optional<std::vector<Value>>& key) {
    if (!key || sql_.ReadBack().empty()) return change_.changes;
    return Merged(Run(sql_.Select(*key)).first);
  }

  /// What was written, and over it what was read back.
  [[nodiscard]] FieldValues Merged(std::vector<Value> row) const {
    FieldValues values = change_.changes;
    for (std::size_t i = 0; i < std::min(row.size(), sql_.ReadBack().size()); ++i)
      values[sql_.ReadBack()[i]] = std::move(row[i]);
    return values;
  }

  ProviderSession& session_;
  const WriteDialect& dialect_;
  const RowChange& change_;
  WorkContext& context_;
  RowSql sql_;
};

}  // namespace

/// What cannot be undone is not stopped half way: it would be called cancelled, and be there.
FieldValues WriteRow(ProviderSession& session, const RowChange& change, WorkContext& context) {
  const WriteDialect* dialect = session.Writing();
  if (dialect == nullptr)
    throw Error(errorNumber::notSupported, "Tessel", "This provider cannot change records.");
  RowTransaction transaction(session, *dialect);
  if (const auto reason = WhyOtherCatalog(change.catalog, session.CurrentCatalog()))
    throw Error(*reason);
  WorkContext unstopped;
  WorkContext& stoppable = dialect->needsKey ? unstopped : context;
  FieldValues written = ChangeWriter(session, *dialect, change, stoppable).Write();
  stoppable.ThrowIfStopped();
  transaction.Keep(context);
  return written;
}

bool WriteTask::Step(ProviderSession& session) {
  written_ = WriteRow(session, change_, *this);
  Settle();
  return false;
}

}  // namespace tessel
