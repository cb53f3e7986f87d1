#include "desktop/look/ReadableStyle.h"

#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include <gtest/gtest.h>

namespace tessel::test {

namespace {

constexpr QRect barRect(0, 0, 300, 24);

/// The lightest grey in the part of an inactive window's title bar where its buttons stand.
int LightestButton(const QColor& ground) {
  const ReadableStyle style;
  QStyleOptionTitleBar bar;
  bar.rect = barRect;
  bar.palette = QPalette(ground);
  bar.state = QStyle::State_Enabled;
  bar.subControls = QStyle::SC_All;
  bar.titleBarFlags = Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                      Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint;
  QImage image(barRect.size(), QImage::Format_RGB32);
  image.fill(ground);
  QPainter painter(&image);
  style.drawComplexControl(QStyle::CC_TitleBar, &bar, &painter, nullptr);
  int lightest = 0;
  for (int y = 0; y < barRect.height(); ++y)
    for (int x = barRect.width() - 22; x < barRect.width() - 4; ++x)
      lightest = std::max(lightest, qGray(image.pixel(x, y)));
  return lightest;
}

TEST(ReadableStyleTest, TheButtonsOfAnInactiveWindowShowInTheDark) {
  EXPECT_GT(LightestButton(QColor(40, 42, 46)), 180);
}

}  // namespace

}  // namespace tessel::test
