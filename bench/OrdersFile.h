#pragma once

#include <cstdint>
#include <string>

namespace tessel::bench {

/// A SQLite file with the table `orders`: 10 columns (key, customer, city, amount, quantity, time
/// stamp, note with nulls, flag, code, rate), about 106 MiB for a million rows. Made when missing,
/// in the folder for temporary files, and kept for the next run.
[[nodiscard]] std::string OrdersFile(std::int64_t rows);

inline constexpr const char* ordersQuery = "select * from orders";

}  // namespace tessel::bench
