#include "desktop/drawings/DrawingFiles.h"

#include <QBuffer>
#include <QPageSize>

namespace tessel {

QByteArray PngOf(const QImage& picture) {
  QByteArray content;
  QBuffer file(&content);
  file.open(QIODevice::WriteOnly);
  picture.save(&file, "PNG");
  return content;
}

void FillPage(QPdfWriter& pdf, const QSizeF& size) {
  pdf.setPageSize(QPageSize(size, QPageSize::Point));
  pdf.setPageMargins({0, 0, 0, 0});
}

}  // namespace tessel
