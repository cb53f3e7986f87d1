#include "desktop/look/Icons.h"

namespace tessel {

namespace {

/// A drawing is tinted in a selected row, a picture given for it is not.
constexpr int pixmapSides[] = {16, 24, 32, 48};

}  // namespace

QIcon NamedIcon(const QString& name) {
  return QIcon::fromTheme(name, QIcon(QStringLiteral(":/icons/%1.svg").arg(name)));
}

QIcon PlainIcon(const QString& name) {
  const QIcon drawn(QStringLiteral(":/icons/%1.svg").arg(name));
  QIcon icon;
  for (const int side : pixmapSides) {
    const QPixmap pixmap = drawn.pixmap(QSize(side, side), 1.0);
    icon.addPixmap(pixmap, QIcon::Normal);
    icon.addPixmap(pixmap, QIcon::Selected);
  }
  return icon;
}

}  // namespace tessel
