#pragma once

#include <string>

#include "platform/Value.h"

namespace tessel {

/// A field's value as the text that replaces a tag: null is NULL whatever the form, a boolean 1 or
/// 0, anything else its text; the last two as an SQL string literal when `quoted`.
[[nodiscard]] std::string FormatTagValue(const ValueView& value, bool quoted);

}  // namespace tessel
