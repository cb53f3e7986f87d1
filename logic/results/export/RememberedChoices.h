#pragma once

#include "logic/results/export/formats/ExportChoices.h"

namespace tessel {

class Global;

/// The choices that were made last. The database is `database`, unless another one was chosen.
[[nodiscard]] ExportChoices RememberedChoices(const Global& global, SqlDialect database);
/// Remembers them for the next time, but for the table.
void RememberChoices(const Global& global, const ExportChoices& choices);

}  // namespace tessel
