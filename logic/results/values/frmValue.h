#pragma once

#include "logic/results/values/ValueLook.h"

namespace tessel {

/// Shows a value in a modal window of its own, which can save it in a file as it is. It is closed
/// before the value goes.
void ShowValue(const Global& global, const LookedAt& looked);

}  // namespace tessel
