#include "desktop/look/Colors.h"

#include <cmath>

namespace tessel {

namespace {

constexpr Color systemNumber = 0xFF;
constexpr int middleGray = 128;

/// The classic numbers of the system's colours.
QPalette::ColorRole RoleOf(Color color) {
  switch (color & systemNumber) {
    case 5: return QPalette::Base;
    case 8: return QPalette::Text;
    case 13: return QPalette::Highlight;
    case 14: return QPalette::HighlightedText;
    case 16: return QPalette::Mid;
    case 18: return QPalette::ButtonText;
    case 23: return QPalette::ToolTipText;
    case 24: return QPalette::ToolTipBase;
    default: return QPalette::Button;
  }
}

/// The colour that can be read on the ground and is nearest to the one wanted, on the way from it
/// to the plain one of a text.
QColor Readable(const QColor& wanted, Color ground, const QColor& plain) {
  constexpr double step = 0.05;
  for (double part = 0; part < 1; part += step) {
    const QColor color = Blend(wanted, plain, part);
    if (Contrast(FromQColor(color), ground) >= readableContrast) return color;
  }
  return plain;
}

}  // namespace

QColor ToQColor(Color color, const QPalette& palette) {
  if (IsSystemColor(color)) return palette.color(RoleOf(color));
  return {static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
          static_cast<int>(color >> 16 & 0xFF)};
}

Color FromQColor(const QColor& color) {
  return static_cast<Color>(color.red()) | static_cast<Color>(color.green()) << 8 |
         static_cast<Color>(color.blue()) << 16;
}

QColor TextColor(Color text, Color ground, const QPalette& palette) {
  const QColor wanted = ToQColor(text, palette);
  if (IsSystemColor(text) == IsSystemColor(ground)) return wanted;
  const Color shown = FromQColor(ToQColor(ground, palette));
  const QColor plain = ToQColor(TextOn(shown), palette);
  return IsSystemColor(text) ? plain : Readable(wanted, shown, plain);
}

QColor ReadableOn(const QColor& ground, const QColor& color, const QColor& text) {
  const bool readable = Contrast(FromQColor(color), FromQColor(ground)) >= readableContrast;
  return readable ? color : text;
}

QColor Blend(const QColor& from, const QColor& to, double part) {
  const auto mixed = [part](int a, int b) {
    return static_cast<int>(std::lround(a + (b - a) * part));
  };
  return {mixed(from.red(), to.red()), mixed(from.green(), to.green()),
          mixed(from.blue(), to.blue())};
}

bool IsDark(const QColor& ground) { return qGray(ground.rgb()) < middleGray; }

}  // namespace tessel
