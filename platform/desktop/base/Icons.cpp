#include "platform/desktop/base/Icons.h"

namespace tessel {

QIcon NamedIcon(const QString& name) {
  return QIcon::fromTheme(name, QIcon(QStringLiteral(":/icons/%1.svg").arg(name)));
}

}  // namespace tessel
