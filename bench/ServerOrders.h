#pragma once

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "platform/data/DataAccessObjects.h"

namespace tessel::bench {

/// The table `orders` on a database server, made when it is missing: a million rows of the ten
/// columns that OrdersFile has. The server is named by an environment variable that holds a
/// connection string for the native provider.
class ServerOrders {
 public:
  static constexpr std::int64_t rows = 1'000'000;

  /// `create` makes the table.
  ServerOrders(const char* variable, std::string create);

  /// False when the variable is not set: there is nothing to measure then, as `state` is told.
  [[nodiscard]] bool IsThere(benchmark::State& state) const;
  [[nodiscard]] const std::string& ConnectionString() const { return connectionString_; }

  /// Measures a query of all rows through the data layer, from its start to its last row.
  void ReadAll(benchmark::State& state) const;
  /// Makes the table when it is missing.
  void Prepare() const;

 private:
  const char* variable_;
  std::string create_;
  std::string connectionString_;
};

inline constexpr const char* serverOrdersQuery = "select * from orders";

}  // namespace tessel::bench
