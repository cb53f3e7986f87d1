#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel {

/// "PostgreSQL": servers, by libpq itself. The keys stand at PostgresTarget.
class PostgresProvider : public Provider {
 public:
  [[nodiscard]] std::vector<std::string> Names() const override { return {"PostgreSQL"}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;
};

}  // namespace tessel
