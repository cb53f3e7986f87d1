#pragma once

#include <QIcon>
#include <QString>

namespace tessel {

/// The desktop theme's icon of that name, else the program's own.
[[nodiscard]] QIcon NamedIcon(const QString& name);
/// The program's own icon, which keeps its colours in a selected row.
[[nodiscard]] QIcon PlainIcon(const QString& name);

}  // namespace tessel
