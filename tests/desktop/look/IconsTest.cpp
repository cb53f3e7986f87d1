// The program's own icons: one set, seen on both grounds, of a size that follows the font.

#include "desktop/look/Icons.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <algorithm>
#include <set>

#include "desktop/dialogs/MessageDialog.h"
#include "desktop/look/Colors.h"
#include "desktop/look/theme/Theme.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

constexpr int grid = 20;
constexpr double seen = 3;  ///< The least contrast of what is no text.

class IconsTest : public DesktopFixture {
 protected:
  ~IconsTest() override { SystemTheme::Force(false); }

  [[nodiscard]] static QStringList Names() {
    QStringList names;
    for (const QString& file : QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")}))
      names.append(file.chopped(4));
    return names;
  }
  /// How many pixels of the icon are seen on the window's ground.
  [[nodiscard]] static int SeenPixels(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
    const QColor ground = CurrentTokens().window;
    QImage image(grid, grid, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    painter.end();
    int count = 0;
    for (int y = 0; y < grid; ++y)
      for (int x = 0; x < grid; ++x) {
        const Color pixel = FromQColor(image.pixelColor(x, y));
        if (Contrast(pixel, FromQColor(ground)) >= seen) ++count;
      }
    return count;
  }
};

TEST_F(IconsTest, EveryDrawingIsSeenOnBothGrounds) {
  ASSERT_GE(Names().size(), 30);
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    for (const QString& name : Names())
      EXPECT_GE(SeenPixels(NamedIcon(name)), 16)
          << name.toStdString() << (dark ? " dark" : " light");
  }
}

TEST_F(IconsTest, EveryDrawingIsMadeByTheSameRules) {
  for (const QString& name : Names()) {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray drawing = file.readAll();
    if (name == QLatin1String("tessel")) continue;
    if (name.startsWith(QLatin1String("message-"))) {
      EXPECT_TRUE(drawing.contains("viewBox=\"0 0 40 40\"")) << name.toStdString();
      continue;
    }
    EXPECT_TRUE(drawing.contains("viewBox=\"0 0 20 20\"")) << name.toStdString();
    EXPECT_TRUE(drawing.contains("stroke-width=\"1.6\"")) << name.toStdString();
    EXPECT_TRUE(drawing.contains("currentColor")) << name.toStdString();
  }
}

TEST_F(IconsTest, WhatIsDisabledIsPale) {
  const QIcon icon = NamedIcon(QStringLiteral("document-save"));
  EXPECT_LT(SeenPixels(icon, QIcon::Disabled), SeenPixels(icon));
}

TEST_F(IconsTest, TheButtonsOfAFormFollowTheTheme) {
  const auto frame = ShowForm("frmMDI");
  const auto window = ShowForm("frmMain");
  const auto& button = WidgetAs<QToolButton>(*window, "cmdExecute");
  EXPECT_EQ(button.icon().name(), QStringLiteral("media-playback-start"));
  const auto lightest = [&] {
    const QImage image = button.icon().pixmap(grid, grid).toImage();
    int most = 0;
    for (int x = 0; x < grid; ++x)
      for (int y = 0; y < grid; ++y)
        if (image.pixelColor(x, y).alpha() > 200)
          most = std::max(most, image.pixelColor(x, y).green());
    return most;
  };
  SystemTheme::Force(false);
  const int onLight = lightest();
  SystemTheme::Force(true);
  EXPECT_GT(lightest(), onLight + 40);
}

TEST_F(IconsTest, AButtonWithWordsHasNone) {
  const auto window = ShowForm("frmText");
  const auto buttons = AsQt(*window).Outer().findChildren<QPushButton*>();
  EXPECT_GE(buttons.size(), 5);
  for (const auto* button : buttons)
    EXPECT_TRUE(button->icon().isNull()) << button->objectName().toStdString();
}

TEST_F(IconsTest, TheyGrowWithTheFont) {
  const QFont ordinary = QApplication::font();
  const QStyle& style = *QApplication::style();
  const int before = style.pixelMetric(QStyle::PM_ButtonIconSize);
  EXPECT_GE(before, 20);
  EXPECT_LE(before, 24);
  QFont large = ordinary;
  large.setPointSizeF(ordinary.pointSizeF() * 2);
  QApplication::setFont(large);
  EXPECT_GT(style.pixelMetric(QStyle::PM_ButtonIconSize), before);
  QApplication::setFont(ordinary);
}

TEST_F(IconsTest, AMessageBoxShowsTheProgramsIconAndNoneOnItsButtons) {
  Message message;
  message.text = "Remove tag 'YEAR'?";
  message.buttons = MessageButtons::YesNoCancel;
  message.help = [] {};
  std::set<QRgb> shown;
  for (const auto icon : {MessageIcon::Information, MessageIcon::Question, MessageIcon::Exclamation,
                          MessageIcon::Critical}) {
    message.icon = icon;
    MessageDialog dialog(message, nullptr);
    dialog.show();
    for (const auto* button : dialog.findChildren<QPushButton*>())
      EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
    const auto* label = dialog.findChild<IconLabel*>();
    ASSERT_NE(label, nullptr);
    const QPixmap pixmap = label->pixmap();
    EXPECT_GE(pixmap.deviceIndependentSize().width(), 40);
    SystemTheme::Force(true);
    host.Settle();
    EXPECT_NE(label->pixmap().toImage(), pixmap.toImage()) << "drawn anew for the dark";
    SystemTheme::Force(false);
  }
}

}  // namespace

}  // namespace tessel::test
