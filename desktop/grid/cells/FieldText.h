#pragma once

#include <string>

#include "contract/data/Recordset.h"

namespace tessel {

/// What a person may want to know of a column in one line: "varchar(40), key, from orders.id".
[[nodiscard]] std::string DescriptionOf(const FieldInfo& field);

}  // namespace tessel
