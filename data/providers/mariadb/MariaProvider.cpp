#include "data/providers/mariadb/MariaProvider.h"

#include "data/providers/mariadb/MariaSession.h"

namespace tessel {

std::unique_ptr<ProviderSession> MariaProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<MariaSession>(keys);
}

}  // namespace tessel
