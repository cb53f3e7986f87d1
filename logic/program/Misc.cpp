#include "logic/program/Misc.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <utility>

#include "contract/base/Ascii.h"
#include "contract/base/NumberText.h"

namespace tessel {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

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

struct Character {
  utf8proc_int32_t code = -1;  ///< -1 for a byte that is no UTF-8.
  std::string_view bytes;
};

bool IsAscii(utf8proc_int32_t code) { return code >= 0 && code < 0x80; }

Character DecodeFirst(std::string_view text) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &code);
  if (length <= 0) return {-1, text.substr(0, 1)};
  return {code, text.substr(0, static_cast<std::size_t>(length))};
}

/// Takes the first character off a text that has one.
Character TakeFirst(std::string_view& text) {
  const auto byte = static_cast<unsigned char>(text.front());
  const Character first = IsAscii(byte) ? Character{byte, text.substr(0, 1)} : DecodeFirst(text);
  text.remove_prefix(first.bytes.size());
  return first;
}

/// A character in upper case.
class UpperCharacter {
 public:
  explicit UpperCharacter(const Character& character) {
    if (IsAscii(character.code)) {
      bytes_[0] = AsciiUpper(static_cast<char>(character.code));
    } else if (character.code < 0) {
      bytes_[0] = character.bytes.front();
    } else {
      auto* const start = reinterpret_cast<utf8proc_uint8_t*>(bytes_.data());
      size_ =
          static_cast<std::size_t>(utf8proc_encode_char(utf8proc_toupper(character.code), start));
    }
  }
  [[nodiscard]] std::string_view Bytes() const { return {bytes_.data(), size_}; }

 private:
  std::array<char, 4> bytes_;
  std::size_t size_ = 1;
};

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
bool EndsWord(char c) { return c == '_' || static_cast<unsigned char>(c) <= ' '; }

/// Calls `take` with each initial of a name, until that returns false.
template <class Take>
void ForEachInitial(std::string_view name, bool keepCapitals, bool splitWords, Take take) {
  while (!name.empty()) {
    const Character character = TakeFirst(name);
    if (!take(UpperCharacter(character).Bytes())) return;
    char before = character.bytes.front();
    while (!name.empty() && !(splitWords && EndsWord(before)) &&
           !(keepCapitals && IsCapital(name.front()))) {
      before = name.front();
      name.remove_prefix(1);
    }
  }
}

}  // namespace

std::string SqlQuote(std::string_view text) {
  std::string quoted = "'";
  AppendDoubled(quoted, text, "'");
  return quoted += "'";
}

std::string QuoteIdentifier(std::string_view name) {
  const bool startsWithDigit = !name.empty() && name.front() >= '0' && name.front() <= '9';
  if (!startsWithDigit && name.find(' ') == std::string_view::npos) return std::string(name);
  return "[" + std::string(name) + "]";
}

bool IsIdentifierChar(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '#' || c == '@' || c == '$';
}

std::string_view FirstCharacter(std::string_view text) { return DecodeFirst(text).bytes; }

std::string UpperCase(std::string_view text) {
  if (std::ranges::all_of(text, [](unsigned char c) { return IsAscii(c); }))
    return AsciiUpper(text);
  std::string result;
  while (!text.empty()) result += UpperCharacter(TakeFirst(text)).Bytes();
  return result;
}

std::string MakeInitials(std::string_view name, bool keepCapitals, bool splitWords) {
  std::string initials;
  ForEachInitial(name, keepCapitals, splitWords, [&](std::string_view initial) {
    initials += initial;
    return true;
  });
  return initials;
}

bool InitialsBeginWith(std::string_view name, std::string_view wanted, bool keepCapitals,
                       bool splitWords) {
  std::size_t equal = 0;
  ForEachInitial(name, keepCapitals, splitWords, [&](std::string_view initial) {
    for (const char byte : initial) {
      if (equal == wanted.size() || byte != wanted[equal]) return false;
      ++equal;
    }
    return equal < wanted.size();
  });
  return equal == wanted.size();
}

std::string ByteToHex(unsigned char byte) { return {hexDigits[byte >> 4U], hexDigits[byte & 15U]}; }

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

std::string PlainCaption(std::string_view text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

ConnectionPairs ParseConnectionString(std::string_view connectionString) {
  ConnectionPairs pairs;
  while (!connectionString.empty()) {
    const std::size_t end = connectionString.find(';');
    const std::string_view piece = connectionString.substr(0, end);
    connectionString.remove_prefix(end == std::string_view::npos ? connectionString.size()
                                                                 : end + 1);
    const std::size_t equals = piece.find('=');
    const std::string_view key = TrimSpaces(piece.substr(0, equals));
    if (key.empty()) continue;
    const std::string_view value = equals == std::string_view::npos ? "" : piece.substr(equals + 1);
    pairs.emplace(UpperCase(key), value);
  }
  return pairs;
}

std::string GetConnectionStringValue(const ConnectionPairs& pairs,
                                     std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names)
    if (const auto found = pairs.find(UpperCase(name)); found != pairs.end()) return found->second;
  return {};
}

void AppendConnectionStringPair(std::string& connectionString, std::string_view key,
                                std::string_view value) {
  if (value.empty()) return;
  if (!connectionString.empty()) connectionString += ';';
  connectionString.append(key).append("=").append(value);
}

void CutAtFirst(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.find(delimiter); at != std::string::npos) text.resize(at);
}

void KeepAfterLast(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.rfind(delimiter); at != std::string::npos) text.erase(0, at + 1);
}

bool FileExists(const Files& files, const std::string& path) { return files.Exists(path); }

bool IsKeyDown(const Desktop& desktop, int keyCode) { return desktop.IsKeyDown(keyCode); }

Color EditableBackColor(bool locked) {
  return locked ? color::buttonFace : color::windowBackground;
}

void PrepareFileDialog(FileDialog& dialog, const Files& files) {
  const bool hasFolder = dialog.fileName.find(pathSeparator) != std::string::npos;
  dialog.initialFolder = hasFolder ? std::string() : files.CurrentFolder();
}

bool ShowOpenFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir) {
  PrepareFileDialog(dialog, files);
  dialog.flags = fileDialogFlag::fileMustExist | fileDialogFlag::hideReadOnly;
  if (!allowChangeDir) dialog.flags |= fileDialogFlag::noChangeDir;
  return dialog.ShowOpen();
}

bool ShowSaveFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir) {
  PrepareFileDialog(dialog, files);
  dialog.flags = fileDialogFlag::noReadOnlyReturn | fileDialogFlag::pathMustExist |
                 fileDialogFlag::hideReadOnly | fileDialogFlag::overwritePrompt;
  if (!allowChangeDir) dialog.flags |= fileDialogFlag::noChangeDir;
  return dialog.ShowSave();
}

}  // namespace tessel
