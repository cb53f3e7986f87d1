#include "desktop/look/Theme.h"

#include <QApplication>
#include <QStyle>

#include "desktop/look/Colors.h"
#include "desktop/look/ReadableStyle.h"

namespace tessel {

namespace {

Shade ShadeOf(const Tokens& tokens) { return IsDark(tokens.base) ? Shade::Dark : Shade::Light; }

/// The palette that the platform theme gives; that of the toolkit's style stands for none. To be
/// seen, it must not lie under the program's.
std::optional<QPalette> PaletteOfDesktop() {
  QApplication::setPalette(QPalette());
  const QPalette palette = QApplication::palette();
  if (palette == QApplication::style()->standardPalette()) return std::nullopt;
  return palette;
}

}  // namespace

Tokens TokensFor(const std::optional<QPalette>& desktop, std::optional<Shade> said) {
  Shade wanted = said.value_or(Shade::Light);
  if (desktop) {
    const Tokens tokens = TokensOfDesktop(*desktop);
    if (!said) wanted = ShadeOf(tokens);
    if (ShadeOf(tokens) == wanted && AreReadable(tokens)) return tokens;
  }
  return wanted == Shade::Dark ? DarkTokens() : LightTokens();
}

/// A desktop with a style of its own keeps it.
SystemTheme::SystemTheme() {
  const QString style = QApplication::style()->name();
  if (style.compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0)
    QApplication::setStyle(new ReadableStyle);
  QApplication::setPalette(PaletteOf(TokensFor(PaletteOfDesktop(), std::nullopt)));
}

void SystemTheme::Force(bool dark) {
  QApplication::setPalette(PaletteOf(dark ? DarkTokens() : LightTokens()));
}

}  // namespace tessel
