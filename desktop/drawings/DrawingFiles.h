#pragma once

#include <QByteArray>
#include <QImage>
#include <QPdfWriter>

namespace tessel {

/// The bytes of a PNG file.
[[nodiscard]] QByteArray PngOf(const QImage& picture);

/// Makes a drawing of that size, in points, fill the page.
void FillPage(QPdfWriter& pdf, const QSizeF& size);

}  // namespace tessel
