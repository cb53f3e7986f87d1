#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/sql/SqlStatements.h"

namespace tessel {

/// What came of each statement of a text that was run as one command, for a person. It keeps the
/// operation, and with it all rows. A long text is divided when that is first needed. UI thread.
class StatementList {
 public:
  /// `operation` has ended; it ran `sql` on `connection`, whose database takes it apart.
  StatementList(std::string sql, const Connection& connection,
                std::shared_ptr<const QueryOperation> operation);

  /// Whether the text has several statements, or its one gave several results: else there is
  /// nothing to list.
  [[nodiscard]] bool HasSeveral() const;

  /// Where a text of several was left, and what became of the statements before; empty when it ran
  /// to its end.
  [[nodiscard]] std::string StopText() const;

  /// A row for each result and for each statement without one, in the order of the text: number,
  /// line, SQL, state, records, records affected, messages.
  [[nodiscard]] std::shared_ptr<Recordset> Rows(DataAccess& data) const;
  /// "5 statements: 3 done, 1 failed, 1 not run".
  [[nodiscard]] std::string Status() const;
  /// The rows that a row of Rows tells of; null: it tells of none.
  [[nodiscard]] std::shared_ptr<Recordset> RowsOf(Bookmark row) const;

 private:
  /// A row of the list.
  struct Item {
    std::int64_t number = 0;                ///< Of the statement; 0: not known.
    const CommandResult* result = nullptr;  ///< Of the operation.
    std::string_view state;
    std::int64_t line = 0;  ///< Of the statement.
  };

  [[nodiscard]] const std::vector<SqlStatement>& Statements() const;
  [[nodiscard]] const std::vector<Item>& Items() const;
  [[nodiscard]] std::vector<Item> ListItems() const;
  [[nodiscard]] std::string_view StateOf(std::int64_t number, bool hasResult) const;
  [[nodiscard]] std::string_view StateOfStopped() const;
  [[nodiscard]] std::vector<Value> RowOf(const Item& item) const;
  [[nodiscard]] std::string_view TextOf(std::int64_t number) const;
  [[nodiscard]] std::string WhatStopped() const;
  [[nodiscard]] std::string WhatBecameOfOthers() const;

  std::string sql_;
  SqlDialect dialect_;
  std::shared_ptr<const QueryOperation> operation_;
  mutable std::optional<std::vector<SqlStatement>> statements_;  ///< Once they were needed.
  mutable std::optional<std::vector<Item>> items_;               ///< The same.
};

}  // namespace tessel
