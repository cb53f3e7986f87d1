#include "data/providers/sqlite/SqliteProvider.h"

#include "data/providers/sqlite/SqliteSession.h"

namespace tessel {

std::unique_ptr<ProviderSession> SqliteProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<SqliteSession>(keys);
}

}  // namespace tessel
