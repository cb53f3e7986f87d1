#pragma once

#include <QColor>
#include <QPalette>

namespace tessel {

/// The colours of a grid. Its ground and text may be those of a connection; the others are made to
/// stand on them.
struct GridColors {
  QColor base;
  QColor alternate;   ///< Every second row.
  QColor currentRow;  ///< The row of the current record.
  QColor marked;      ///< A cell that stands out.
  QColor line;        ///< Between rows and columns.
  QColor text;
  QColor muted;  ///< Null.
  QColor ring;   ///< Around the current cell.
};

/// Those of a grid with this palette, in which Base and Text are its own.
[[nodiscard]] GridColors GridColorsOf(const QPalette& palette);

}  // namespace tessel
