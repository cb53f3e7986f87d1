#include "desktop/grid/cells/ShownText.h"

#include <algorithm>

#include "desktop/base/Text.h"

namespace tessel {

namespace {

constexpr char16_t lineEndSign = u'\u21B5';
constexpr char16_t tabSign = u'\u21E5';
constexpr char16_t ellipsis = u'\u2026';
constexpr char16_t controlPictures = u'\u2400';
constexpr char16_t deletePicture = u'\u2421';
constexpr char16_t space = u' ';
constexpr char16_t del = 0x7F;
constexpr std::size_t longestCharacter = 4;

char16_t VisibleSign(char16_t unit) {
  if (unit == u'\n' || unit == u'\r') return lineEndSign;
  if (unit == u'\t') return tabSign;
  return unit == del ? deletePicture : static_cast<char16_t>(controlPictures + unit);
}

bool IsControl(char16_t unit) { return unit < space || unit == del; }

/// The longest start of the text that is sure to hold all that is shown.
std::string_view StartOf(std::string_view text) {
  return text.substr(0, (shownCharacters + 2) * longestCharacter);
}

void Shorten(QString& line, bool more) {
  if (!more && line.size() <= shownCharacters) return;
  qsizetype end = std::min<qsizetype>(line.size(), shownCharacters);
  if (end > 0 && line[end - 1].isHighSurrogate()) --end;
  line.truncate(end);
  line.append(QChar(ellipsis));
}

}  // namespace

QString AsShown(std::string_view text) {
  QString line = ToQt(StartOf(text));
  line.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  for (QChar& unit : line)
    if (IsControl(unit.unicode())) unit = QChar(VisibleSign(unit.unicode()));
  Shorten(line, StartOf(text).size() < text.size());
  return line;
}

QString AsShown(const ValueView& value) {
  if (IsNull(value)) return QStringLiteral("NULL");
  if (const auto* text = std::get_if<std::string_view>(&value)) return AsShown(*text);
  if (const auto* binary = std::get_if<BinaryView>(&value)) {
    const auto* bytes = reinterpret_cast<const char*>(binary->bytes.data());
    return AsShown(std::string_view(bytes, binary->bytes.size()));
  }
  return AsShown(std::string_view(ToText(value)));
}

}  // namespace tessel
