#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "contract/data/Recordset.h"
#include "contract/data/RowArrangement.h"
#include "logic/text/find/TextPattern.h"

namespace tessel {

/// What the text of a quick filter means for a field, or for all of them without one:
/// - "=5", "<>5", "<5", "<=5", ">5", ">=5" compare values, as that field's type has them; of all
///   fields numbers with numbers, any other value with texts;
/// - "=NULL" and "<>NULL" ask for nulls;
/// - anything else, and what stands in quotation marks, is a text to be held, by `options`.
/// Blanks around it do not count. Nothing for an empty text. Raises Error(application) where a
/// regular expression is wrong, or the value is none of the field's.
[[nodiscard]] std::optional<RowCondition> ConditionOf(std::string_view text,
                                                      std::optional<std::size_t> field,
                                                      const Recordset& rows,
                                                      const FindOptions& options);

}  // namespace tessel
