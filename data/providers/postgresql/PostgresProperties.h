#pragma once

#include "contract/base/Properties.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// What a session tells of itself and its server, without asking the server.
[[nodiscard]] Properties ReadPostgresProperties(const PqConnection& connection);

/// Makes the server write dates and floating numbers in the forms that are read here, where its
/// settings or its age make it write others. Raises Error.
void UseFixedForms(PqConnection& connection);

}  // namespace tessel
