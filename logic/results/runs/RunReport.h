#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contract/text/TextRange.h"
#include "logic/tags/TagScanner.h"

namespace tessel {

/// How a run of SQL on one connection ended.
enum class RunState {
  Done,
  Failed,
  Cancelled,
  Skipped,  ///< It was not begun: the user had ended the run before its turn.
};

/// What the last run of SQL in a records window came to. Numbers are -1 where there is none to
/// tell.
struct RunReport {
  RunState state = RunState::Skipped;
  std::int64_t rows = -1;             ///< On show; with a failure those that came before it.
  std::int64_t recordsAffected = -1;  ///< Of statements without columns.
  std::int64_t firstRow = -1;         ///< Milliseconds from the start to the first columns.
  std::int64_t elapsed = -1;          ///< Milliseconds from the start to the end.
  std::string error = {};             ///< What failed, in the words of the database.
  /// Where it failed, in the SQL as the user gave it; nothing where that is not known for sure.
  std::optional<TextRange> failedPlace = {};
};

/// SQL that is ready to run in a records window: its tags are filled in, and the user has seen it
/// where he asked for that.
struct PreparedQuery {
  std::string sql;
  std::string taggedSQL;  ///< As the user gave it.
  bool confirmFirst = false;
  int historyPosition = -1;  ///< Of the entry that it becomes again; -1: a new one.
  int tagKind = 0;           ///< What its tags were filled from.
  std::vector<FilledTag> tags = {};
  bool edited = false;  ///< The user changed it where he was shown it.
};

}  // namespace tessel
