#pragma once

#include <memory>
#include <string_view>

#include "contract/sql/SqlTokens.h"

namespace tessel {

/// Tells of one statement, as its tokens come, whether a semicolon ends it: inside of the body of a
/// stored routine, for one, it does not. It keeps counts, not a stack, so that depth costs nothing.
/// Words with a meaning are known without regard to case. No locking: one thread at a time.
class SqlBlocks {
 public:
  /// Those of a dialect, before a statement. What each knows:
  /// - PostgreSQL: BEGIN ATOMIC ... END of a routine, and parentheses.
  /// - SQLite: the body of a trigger, which ends with "; END".
  /// - MariaDB and the standard: BEGIN, IF, CASE, LOOP, REPEAT, WHILE and FOR with their ENDs, at
  ///   the top and in routines, triggers, events and packages, those of Oracle's mode too.
  /// - SQL Server: BEGIN ... END; the body of a routine or trigger goes on to the end of the text.
  [[nodiscard]] static std::unique_ptr<SqlBlocks> Of(SqlDialect dialect);

  virtual ~SqlBlocks() = default;
  SqlBlocks(const SqlBlocks&) = delete;
  SqlBlocks& operator=(const SqlBlocks&) = delete;

  /// A token of the statement: a word, a quoted part or a sign, as it is written and in its order.
  /// Delimiters, comments and marks of code are not told.
  virtual void Take(SqlTokenKind kind, std::string_view text) = 0;
  /// A semicolon comes: whether it ends the statement. If so, the next token begins another one;
  /// if not, it belongs to the statement as any other sign. A text may end at any place, and
  /// what is still open then needs no end.
  [[nodiscard]] virtual bool EndsHere() = 0;

 protected:
  SqlBlocks() = default;
};

}  // namespace tessel
