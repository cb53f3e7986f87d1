#include "schema/TagValue.h"

#include "query/Misc.h"

namespace tessel {

std::string FormatTagValue(const ValueView& value, bool quoted) {
  if (IsNull(value)) return "NULL";
  const auto* flag = std::get_if<bool>(&value);
  const std::string text = flag != nullptr ? (*flag ? "1" : "0") : ToText(value);
  return quoted ? SqlQuote(text) : text;
}

}  // namespace tessel
