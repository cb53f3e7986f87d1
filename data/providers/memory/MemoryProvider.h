#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/providers/memory/MemorySession.h"

namespace tessel {

/// Serves every connection string, from memory.
class MemoryProvider : public Provider {
 public:
  /// `route` tells where the next session goes.
  explicit MemoryProvider(std::function<MemoryRoute()> route) : route_(std::move(route)) {}

  [[nodiscard]] std::vector<std::string> Names() const override { return {"*"}; }
  /// A MemorySession. Raises Error where the server refuses it.
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;

 private:
  std::function<MemoryRoute()> route_;
};

}  // namespace tessel
