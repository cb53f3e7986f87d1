#pragma once

#include <optional>

#include "contract/data/Operation.h"
#include "logic/results/runs/RunReport.h"

namespace tessel {

/// What the database complains of in a query that was left before its end: the word at the place it
/// tells, or else the statement; in the SQL as the user gave it. Nothing when it ran to its end or
/// was cancelled, when the user changed the SQL before it ran, or when neither is known.
[[nodiscard]] std::optional<TextRange> FailedPlace(const PreparedQuery& query,
                                                   const QueryOperation& operation);

}  // namespace tessel
