#include "data/providers/memory/MemoryProvider.h"

namespace tessel {

std::unique_ptr<ProviderSession>
MemoryProvider::CreateSession(const ConnectionKeys& /*keys*/) const {
  MemoryRoute route = route_();
  if (route.server->openRefused) throw Error(*route.server->openRefused);
  return std::make_unique<MemorySession>(std::move(route));
}

}  // namespace tessel
