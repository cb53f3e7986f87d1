// Values on their way into a text: quoted, escaped in one of several styles, or left bare by their
// kind. Every conversion of records comes through here for each of its cells, so calls and copies
// are avoided where a cell needs none.

#include "logic/tags/ValueFormat.h"

#include <utility>

#include "contract/text/NumberText.h"

namespace tessel {

namespace {

/// Appends `text` with every `part` written twice.
void AppendDoubled(std::string& out, std::string_view text, std::string_view part) {
  std::size_t from = 0;
  if (!part.empty()) {
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, from)) {
      out.append(text.substr(from, at - from)).append(part).append(part);
      from = at + part.size();
    }
  }
  out.append(text.substr(from));
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' '; }

bool IsCSpecial(char c, char /*previous*/) { return IsControl(c) || c == '\\' || c == '"'; }

void AppendCEscaped(std::string& out, char c) {
  switch (c) {
    case '\\': out += "\\\\"; return;
    case '"': out += "\\\""; return;
    case '\t': out += "\\t"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    default: out += "\\x"; out += ByteToHex(static_cast<unsigned char>(c));
  }
}

bool IsHtmlSpecial(char c, char previous) {
  return IsControl(c) || c == '&' || c == '<' || c == '>' || c == '"' ||
         (c == ' ' && previous == ' ');
}

void AppendHtmlEscaped(std::string& out, char c) {
  switch (c) {
    case '&': out += "&amp;"; return;
    case '<': out += "&lt;"; return;
    case '>': out += "&gt;"; return;
    case '"': out += "&quot;"; return;
    case '\n': out += "<br>\r\n"; return;
    case '\r': return;
    case ' ': out += "&nbsp;"; return;
    default:
      out += "&#";
      out += ByteToHex(static_cast<unsigned char>(c));
      out += ';';
  }
}

/// Appends `text`, each character that is special by `append`, what stands between them as it is.
template <class IsSpecial, class Append>
void AppendEscaped(std::string& out, std::string_view text, IsSpecial isSpecial, Append append) {
  std::size_t from = 0;
  char previous = '\0';
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (isSpecial(c, previous)) {
      out.append(text.substr(from, i - from));
      append(out, c);
      from = i + 1;
    }
    previous = c;
  }
  out.append(text.substr(from));
}

[[gnu::noinline]] void AppendEscapedAndQuoted(std::string& out, std::string_view text,
                                              const ValueFormat& format) {
  out += format.quote;
  if (format.escapeStyle.empty()) AppendDoubled(out, text, format.quote);
  else if (format.escapeStyle == "\\") AppendEscaped(out, text, IsCSpecial, AppendCEscaped);
  else if (format.escapeStyle == "&") AppendEscaped(out, text, IsHtmlSpecial, AppendHtmlEscaped);
  else AppendDoubled(out, text, format.escapeStyle);
  out += format.quote;
}

/// A text that needs neither is appended at once.
inline void AppendQuoted(std::string& out, std::string_view text, const ValueFormat& format) {
  if (format.quote.empty() && format.escapeStyle.empty()) out += text;
  else AppendEscapedAndQuoted(out, text, format);
}

void AppendHexBytes(std::string& out, BinaryView binary) {
  out += "0x";
  for (const std::byte byte : binary.bytes) {
    const auto code = std::to_integer<unsigned>(byte);
    out += hexDigits[code >> 4U];
    out += hexDigits[code & 15U];
  }
}

[[gnu::noinline]] void AppendBinary(std::string& out, BinaryView binary,
                                    const ValueFormat& format) {
  if (format.hexBinary) AppendHexBytes(out, binary);
  else AppendQuoted(out, ToText(binary), format);
}

/// Appends what is mostly nothing or a single character, which needs no call.
inline void AppendShort(std::string& out, const std::string& piece) {
  if (piece.size() == 1) out += piece.front();
  else if (!piece.empty()) out += piece;
}

/// Appends one value that is not null, by its kind.
struct ValueAppender {
  std::string& out;
  const ValueFormat& format;

  void operator()(std::monostate /*null*/) const {}
  void operator()(bool flag) const { out += flag ? '1' : '0'; }
  void operator()(std::string_view text) const { AppendQuoted(out, text, format); }
  void operator()(MomentView moment) const { AppendQuoted(out, moment.text, format); }
  void operator()(BinaryView binary) const { AppendBinary(out, binary, format); }
  void operator()(DecimalView decimal) const { out += decimal.digits; }
  template <class Number>
  void operator()(Number number) const {
    AppendNumber(number, out);
  }
};

}  // namespace

std::string SqlQuote(std::string_view text) {
  std::string quoted = "'";
  AppendDoubled(quoted, text, "'");
  return quoted += "'";
}

/// The work for every record that is converted: with as few calls inside as can be.
[[gnu::flatten]] void AppendFormattedValues(std::string& out, std::span<const ValueView> values,
                                            const ValueFormat& format) {
  const PieceFormat& around = format.delimiters;
  bool isFirst = true;
  for (const ValueView& value : values) {
    if (!std::exchange(isFirst, false)) AppendShort(out, around.separator);
    if (IsNull(value)) {
      out += format.nullText;
      continue;
    }
    AppendShort(out, around.prefix);
    std::visit(ValueAppender{out, format}, value);
    AppendShort(out, around.suffix);
  }
}

std::string FormatValue(const ValueView& value, const ValueFormat& format) {
  std::string text;
  AppendFormattedValues(text, {&value, 1}, format);
  return text;
}

}  // namespace tessel
