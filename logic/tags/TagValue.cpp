#include "logic/tags/TagValue.h"

#include "logic/program/Global.h"
#include "logic/tags/ValueFormat.h"

namespace tessel {

std::string FormatTagValue(const ValueView& value, bool quoted) {
  if (IsNull(value)) return "NULL";
  const auto* flag = std::get_if<bool>(&value);
  const std::string text = flag != nullptr ? (*flag ? "1" : "0") : ToText(value);
  return quoted ? SqlQuote(text) : text;
}

std::string FormatTagText(std::string_view text, bool parenthesised, bool quoted) {
  const std::string value = quoted ? SqlQuote(text) : std::string(text);
  return parenthesised ? "(" + value + ")" : value;
}

std::string GetClipboardTag(const Clipboard& clipboard, const std::string& name, bool parenthesised,
                            bool quoted) {
  if (!name.empty()) RaiseAppError("Unsupported tag: '" + name + "'");
  const std::string text = clipboard.Text();
  if (text.empty()) RaiseAppError("The clipboard is empty.");
  return FormatTagText(text, parenthesised, quoted);
}

}  // namespace tessel
