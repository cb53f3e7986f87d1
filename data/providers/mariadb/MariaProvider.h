#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel {

/// "MariaDB": servers of MariaDB and MySQL, by libmariadb itself. The keys stand at MariaTarget.
class MariaProvider : public Provider {
 public:
  [[nodiscard]] std::vector<std::string> Names() const override { return {"MariaDB"}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;
};

}  // namespace tessel
