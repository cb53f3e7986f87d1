#include "desktop/access/base/StatusText.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QVariant>

namespace tessel {

namespace {

constexpr const char* accessProperty = "access";
constexpr qsizetype longestSpoken = 500;

QString TextOf(const QWidget& widget) {
  if (const auto* lines = qobject_cast<const QPlainTextEdit*>(&widget)) return lines->toPlainText();
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  return {};
}

}  // namespace

bool IsStatus(const QWidget& widget) {
  return widget.property(accessProperty) == QLatin1String("status");
}

QString SpokenStatus(const QWidget& widget) {
  static const QRegularExpression stamp(QStringLiteral("^\\[[0-9:]+\\]\\s*"));
  return TextOf(widget).remove(stamp).left(longestSpoken).trimmed();
}

}  // namespace tessel
