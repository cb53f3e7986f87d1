#pragma once

#include <QIcon>
#include <QString>

namespace tessel {

/// The desktop theme's icon of that name, else the program's own.
[[nodiscard]] QIcon NamedIcon(const QString& name);

}  // namespace tessel
