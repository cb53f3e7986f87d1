#include "desktop/window/ScreenRoom.h"

#include <QScreen>

namespace tessel {

QSize Within(const QSize& workArea, const QSize& wanted) {
  return wanted.boundedTo({workArea.width() * 9 / 10, workArea.height() * 9 / 10});
}

QSize WithinScreenOf(const QWidget& window, const QSize& wanted) {
  const QScreen* screen = window.screen();
  return screen == nullptr ? wanted : Within(screen->availableSize(), wanted);
}

}  // namespace tessel
