#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel {

/// Takes one line for each call to ODBC. The lines hold no text of commands, messages or connection
/// strings. Called on any thread, also on several at a time.
using OdbcTrace = std::function<void(std::string_view)>;

/// Every database that has an ODBC driver.
class OdbcProvider : public Provider {
 public:
  explicit OdbcProvider(OdbcTrace trace = {});

  [[nodiscard]] std::vector<std::string> Names() const override;
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;

 private:
  std::shared_ptr<const OdbcTrace> trace_;
};

/// Names of the installed drivers and of the data sources, in the driver manager's order; empty
/// when it cannot be asked.
[[nodiscard]] std::vector<std::string> OdbcDrivers();
[[nodiscard]] std::vector<std::string> OdbcDataSources();

}  // namespace tessel
