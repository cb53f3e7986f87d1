#pragma once

#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "contract/desktop/Desktop.h"

namespace tessel {

/// A field's value as the text that replaces a tag: null is NULL whatever the form, a boolean 1 or
/// 0, anything else its text; the last two as an SQL string literal when `quoted`.
[[nodiscard]] std::string FormatTagValue(const ValueView& value, bool quoted);

/// A text in the form that a tag asks for: first as an SQL string literal, then in parentheses.
[[nodiscard]] std::string FormatTagText(std::string_view text, bool parenthesised, bool quoted);

/// What a clipboard tag stands for. Raises Error(application) when the tag has a name or the
/// clipboard no text.
[[nodiscard]] std::string GetClipboardTag(const Clipboard& clipboard, const std::string& name,
                                          bool parenthesised, bool quoted);

}  // namespace tessel
