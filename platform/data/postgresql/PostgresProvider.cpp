#include "platform/data/postgresql/PostgresProvider.h"

#include "platform/data/postgresql/PostgresSession.h"

namespace tessel {

std::unique_ptr<ProviderSession> PostgresProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<PostgresSession>(keys);
}

}  // namespace tessel
