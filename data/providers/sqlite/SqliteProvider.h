#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel {

/// "SQLite": database files, by libsqlite3 itself. The keys stand at SqliteSession.
class SqliteProvider : public Provider {
 public:
  [[nodiscard]] std::vector<std::string> Names() const override { return {"SQLite"}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;
};

}  // namespace tessel
