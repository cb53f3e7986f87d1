#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contract/sql/SqlStatements.h"
#include "data/providers/WorkContext.h"

namespace tessel {

/// Follows the statements of a command text that the database runs as a whole, telling one after
/// another what came of each. Says through the context which one runs.
class TextWalk {
 public:
  /// Of a text of which nothing is known: it tells no places.
  TextWalk() = default;
  /// Stands on the first statement of `sql`.
  TextWalk(const std::string& sql, SqlDialect dialect, WorkContext& context);

  // `done`: what becomes of the statements up to the present one when one behind it fails.
  /// Goes on to the next statement: the present one is done, and has no columns.
  void Next(EarlierStatements done, WorkContext& context);
  /// The rows of a result of the present statement are read. Goes on, unless there may be more
  /// results of it.
  void LeaveRows(EarlierStatements done, WorkContext& context);
  /// Goes to the statement that holds the byte `position` of the text, where one does.
  void GoTo(std::size_t position, WorkContext& context);

  /// The text of the present statement; empty when it is not known which one that is. It stays good
  /// until another is begun.
  [[nodiscard]] std::string_view Text() const;

 private:
  void Tell(EarlierStatements earlier, WorkContext& context) const;

  std::string sql_;
  SqlDialect dialect_ = SqlDialect::Standard;
  std::vector<SqlStatement> statements_;
  std::size_t current_ = 0;
};

}  // namespace tessel
