#pragma once

#include <string>
#include <string_view>

#include "logic/schema/structure/Structure.h"

namespace tessel {

// What is told of the structure in words. The texts of a detail are short and of one line, those of
// a tool tip may have several; all are empty where nothing is known.

[[nodiscard]] std::string FieldDetail(const Structure& structure, std::string_view table,
                                      std::string_view field);
[[nodiscard]] std::string FieldToolTip(const Structure& structure, std::string_view table,
                                       std::string_view field);
[[nodiscard]] std::string TableToolTip(const Structure& structure, std::string_view table);
[[nodiscard]] std::string IndexDetail(const IndexFacts& index);
[[nodiscard]] std::string IndexToolTip(const IndexFacts& index);

/// "orders.customer_id = customers.id": the fields that a key makes equal, with AND between them.
[[nodiscard]] std::string KeyCondition(const ForeignKey& key);

}  // namespace tessel
