#pragma once

#include <vector>

#include "logic/connections/SavedConnection.h"

namespace tessel {

/// The list to write when two programs have changed the list `base`: this one to `mine`, another
/// one to `theirs`, which the file holds now. What either added, changed or removed is in the
/// result, and what both changed is kept as each of them has it, unless only its colours differ:
/// then mine are taken. The order is mine when I moved entries, else theirs.
[[nodiscard]] std::vector<SavedConnection>
MergeConnections(const std::vector<SavedConnection>& base,
                 const std::vector<SavedConnection>& theirs,
                 const std::vector<SavedConnection>& mine);

}  // namespace tessel
