#include "desktop/look/Theme.h"

#include <QApplication>
#include <QStyle>

#include "desktop/look/ReadableStyle.h"

namespace tessel {

namespace {

constexpr QRgb window = 0xFF303338;
constexpr QRgb base = 0xFF1E1F22;
constexpr QRgb alternate = 0xFF26282C;
constexpr QRgb button = 0xFF393B40;
constexpr QRgb text = 0xFFDFE1E5;
constexpr QRgb disabledText = 0xFF868A91;
constexpr QRgb highlight = 0xFF2E5FA3;
constexpr QRgb link = 0xFF7FB0FF;

}  // namespace

QPalette DarkPalette() {
  QPalette palette{QColor(text),
                   QColor(button),
                   QColor(button).lighter(140),
                   QColor(base),
                   QColor(window).darker(130),
                   QColor(text),
                   QColor(Qt::white),
                   QColor(base),
                   QColor(window)};
  palette.setColor(QPalette::AlternateBase, QColor(alternate));
  palette.setColor(QPalette::Highlight, QColor(highlight));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, QColor(button));
  palette.setColor(QPalette::ToolTipText, QColor(text));
  palette.setColor(QPalette::PlaceholderText, QColor(disabledText));
  palette.setColor(QPalette::Link, QColor(link));
  for (const auto role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
    palette.setColor(QPalette::Disabled, role, QColor(disabledText));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(button));
  return palette;
}

/// A desktop with a style of its own keeps it.
SystemTheme::SystemTheme() {
  const QString style = QApplication::style()->name();
  if (style.compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0)
    QApplication::setStyle(new ReadableStyle);
}

void SystemTheme::Force(bool dark) {
  QApplication::setPalette(dark ? DarkPalette() : QApplication::style()->standardPalette());
}

}  // namespace tessel
