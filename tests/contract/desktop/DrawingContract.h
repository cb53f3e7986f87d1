#pragma once

#include <vector>

#include "tests/contract/desktop/ContractHost.h"

namespace tessel::test {

/// The cases of the boxes that draw.
[[nodiscard]] std::vector<ContractCase> DrawingContract();

}  // namespace tessel::test
