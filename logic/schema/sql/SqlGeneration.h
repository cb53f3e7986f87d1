#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logic/query/completion/NameQuoting.h"

namespace tessel {

// The SQL texts of the schema browser's commands. Names are given as the browser lists them and
// are written as `quoting` says; lines end with CR LF. `fields` are the checked fields of the
// table, in the order of the tree.

/// The fields, each followed by `suffix`, with `separator` between them; empty without fields.
[[nodiscard]] std::string CheckedFieldList(const std::vector<std::string>& fields,
                                           std::string_view separator, std::string_view suffix = {},
                                           const NameQuoting& quoting = {});

[[nodiscard]] std::string TableSelectText(const std::string& table,
                                          const std::vector<std::string>& fields,
                                          const NameQuoting& quoting = {});
[[nodiscard]] std::string TableCountText(const std::string& table,
                                         const std::vector<std::string>& fields,
                                         const NameQuoting& quoting = {});
[[nodiscard]] std::string TableInsertText(const std::string& table,
                                          const std::vector<std::string>& fields,
                                          const NameQuoting& quoting = {});
/// The values are left to be typed behind each " = "; so they are in the next two.
[[nodiscard]] std::string TableUpdateText(const std::string& table,
                                          const std::vector<std::string>& fields,
                                          const NameQuoting& quoting = {});
[[nodiscard]] std::string TableDeleteText(const std::string& table,
                                          const std::vector<std::string>& fields,
                                          const NameQuoting& quoting = {});
/// Ends without a line break.
[[nodiscard]] std::string TableWhereText(const std::vector<std::string>& fields,
                                         const NameQuoting& quoting = {});

[[nodiscard]] std::string FieldMinMaxText(const std::string& table, const std::string& field,
                                          const NameQuoting& quoting = {});
/// The query for all values that a field has; without a line break.
[[nodiscard]] std::string DistinctValuesText(const std::string& table, const std::string& field,
                                             const NameQuoting& quoting = {});

}  // namespace tessel
