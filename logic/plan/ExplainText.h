#pragma once

#include <string>
#include <string_view>

#include "contract/sql/SqlDialect.h"

namespace tessel {

/// What is told of a statement whose plan is wanted.
struct ExplainedStatement {
  std::string sql;      ///< The one statement.
  bool writes = false;  ///< When it runs it changes something, as far as its words tell.
};

/// The one statement of `sql` that can be explained. Raises Error(application), whose text is for
/// the user, when there is none, or several, or the database has no plans that are known here.
[[nodiscard]] ExplainedStatement StatementToExplain(std::string_view sql, SqlDialect dialect);

/// Whether the database can run the statement and tell what came of it.
[[nodiscard]] bool CanMeasure(SqlDialect dialect);
/// The command that asks for the plan; `measured` runs the statement.
[[nodiscard]] std::string ExplainCommand(const std::string& statement, SqlDialect dialect,
                                         bool measured);

}  // namespace tessel
