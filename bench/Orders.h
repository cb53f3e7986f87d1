#pragma once

#include <memory>

#include "contract/data/Connection.h"

namespace tessel::bench {

/// The rows of `orders`, all of them, from a connection that is open.
[[nodiscard]] std::shared_ptr<Recordset> ReadOrders(Connection& connection);
/// A connection to the file with so many orders.
[[nodiscard]] std::shared_ptr<Connection> OpenOrders(DataAccess& data, std::int64_t rows);

}  // namespace tessel::bench
