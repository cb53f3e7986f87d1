#include "platform/data/mariadb/MariaProvider.h"

#include "platform/data/mariadb/MariaSession.h"

namespace tessel {

std::unique_ptr<ProviderSession> MariaProvider::CreateSession(const ConnectionKeys& keys) const {
  return std::make_unique<MariaSession>(keys);
}

}  // namespace tessel
