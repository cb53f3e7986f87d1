#include "data/providers/postgresql/PostgresProvider.h"

#include "data/providers/postgresql/PostgresSession.h"

namespace tessel {

std::unique_ptr<ProviderSession> PostgresProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<PostgresSession>(keys);
}

}  // namespace tessel
