#include "desktop/base/Text.h"

#include <QChar>
#include <QTextDocument>
#include <algorithm>

#include "contract/text/Utf8.h"

namespace tessel {

namespace {

struct Character {
  qsizetype units;
  std::size_t bytes;
};

Character CharacterAt(QStringView text, qsizetype at) {
  const char16_t unit = text[at].unicode();
  if (unit < 0x80) return {1, 1};
  if (unit < 0x800) return {1, 2};
  const bool pair = QChar::isHighSurrogate(unit) && at + 1 < text.size() &&
                    QChar::isLowSurrogate(text[at + 1].unicode());
  return pair ? Character{2, 4} : Character{1, 3};
}

}  // namespace

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(QStringView text) { return text.toUtf8().toStdString(); }

QString AsPlainToolTip(std::string_view text) {
  const QString plain = ToQt(text);
  if (!Qt::mightBeRichText(plain)) return plain;
  return Qt::convertFromPlainText(plain, Qt::WhiteSpaceNormal);
}

QString AsWindowTitle(std::string_view text) {
  return ToQt(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

std::size_t BytesBefore(QStringView text, qsizetype units) {
  std::size_t bytes = 0;
  for (qsizetype at = 0; at < units && at < text.size();) {
    const Character next = CharacterAt(text, at);
    at += next.units;
    bytes += next.bytes;
  }
  return bytes;
}

qsizetype UnitsBefore(QStringView text, std::size_t bytes) {
  qsizetype at = 0;
  for (std::size_t passed = 0; at < text.size();) {
    const Character next = CharacterAt(text, at);
    passed += next.bytes;
    if (passed > bytes) break;
    at += next.units;
  }
  return at;
}

}  // namespace tessel
