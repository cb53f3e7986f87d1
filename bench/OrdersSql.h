#pragma once

#include <cstdint>
#include <string>

namespace tessel::bench {

/// The statements that make the table `orders` on a server, with the columns that OrdersFile has.
[[nodiscard]] std::string PostgresOrders(std::int64_t rows);
[[nodiscard]] std::string MariaOrders(std::int64_t rows);

}  // namespace tessel::bench
