#pragma once

#include <memory>
#include <string_view>

#include "contract/data/RowArrangement.h"
#include "logic/text/find/TextPattern.h"

namespace tessel {

/// The test of cells by a text or a regular expression, by the rules of MakePattern; made for very
/// many short texts. `what` is not empty. Raises Error(application) where the expression is wrong.
[[nodiscard]] std::shared_ptr<const TextTest> MakeTextTest(std::string_view what,
                                                           const FindOptions& options);

}  // namespace tessel
