#pragma once

#include "platform/data/RowStatement.h"

namespace tessel {

/// The dialects of the databases that this program knows, for parameters "?".
[[nodiscard]] WriteDialect SqliteDialect();
[[nodiscard]] WriteDialect PostgresDialect();
[[nodiscard]] WriteDialect MariaDialect();

}  // namespace tessel
