#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel {

/// A provider of one name, whose sessions need nothing but the keys of a connection string.
template <class Session>
class NamedProvider final : public Provider {
 public:
  explicit NamedProvider(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] std::vector<std::string> Names() const override { return {name_}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override {
    return std::make_unique<Session>(keys);
  }

 private:
  std::string name_;
};

}  // namespace tessel
