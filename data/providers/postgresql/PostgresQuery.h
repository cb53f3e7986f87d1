#pragma once

#include <functional>
#include <string>
#include <vector>

#include "data/providers/SchemaRows.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// Runs one statement of the program's own, in which $1, $2... stand for `parameters`, and hands
/// each row to `take`. Raises Error.
void ForEachRow(PqConnection& connection, const std::string& sql,
                const std::vector<std::string>& parameters,
                const std::function<void(const PqResult&)>& take);

/// A cell as text.
[[nodiscard]] OptionalText OptionalTextAt(const PqResult& row, int column);
/// A cell as text; empty when it is null.
[[nodiscard]] std::string TextAt(const PqResult& row, int column);
[[nodiscard]] int NumberAt(const PqResult& row, int column);
[[nodiscard]] bool BooleanAt(const PqResult& row, int column);

}  // namespace tessel
