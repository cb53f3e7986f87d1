#pragma once

#include <cstdint>
#include <string>

#include "contract/base/Error.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// A message of the server as the program reports it: severity and text in the first line, then a
/// line each for detail, hint, the function it happened in, and the place in the command `sql`.
/// `number` is one of errorNumber.
[[nodiscard]] ErrorInfo ToErrorInfo(const PqMessage& message, std::int32_t number,
                                    const std::string& sql);

}  // namespace tessel
