// What the style draws and how large it makes things.

#include "desktop/look/theme/FlatStyle.h"

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <algorithm>
#include <cstdlib>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "desktop/look/Colors.h"
#include "desktop/look/theme/Theme.h"
#include "logic/results/StatusLine.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

constexpr QRect barRect(0, 0, 300, 24);

/// The lightest grey in the part of an inactive window's title bar where its buttons stand.
int LightestButton(const QColor& ground) {
  const FlatStyle style;
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

TEST(FlatStyleTest, TheButtonsOfAnInactiveWindowShowInTheDark) {
  EXPECT_GT(LightestButton(QColor(40, 42, 46)), 180);
}

/// A menu lies on lists of its own colour.
TEST(FlatStyleTest, AMenuHasAnEdgeAllAround) {
  QMenu menu;
  menu.addAction(QStringLiteral("Name"));
  menu.addAction(QStringLiteral("Tag"));
  menu.resize(menu.sizeHint());
  const QImage image = menu.grab().toImage();
  const QColor edge = CurrentTokens().edge;
  for (int x = 0; x < image.width(); ++x) {
    ASSERT_EQ(image.pixelColor(x, 0), edge) << x;
    ASSERT_EQ(image.pixelColor(x, image.height() - 1), edge) << x;
  }
  for (int y = 0; y < image.height(); ++y) {
    ASSERT_EQ(image.pixelColor(0, y), edge) << y;
    ASSERT_EQ(image.pixelColor(image.width() - 1, y), edge) << y;
  }
}

class StyleTest : public DesktopFixture {
 protected:
  ~StyleTest() override { SystemTheme::Force(false); }

  /// How much of the widget's outermost three pixels has the accent's colour.
  [[nodiscard]] static int AccentAtTheEdge(QWidget& widget) {
    const QImage image = widget.grab().toImage();
    const QRect inside = image.rect().adjusted(3, 3, -3, -3);
    const QColor accent = CurrentTokens().accent;
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) {
        if (inside.contains(x, y)) continue;
        const QColor pixel = image.pixelColor(x, y);
        const int distance = std::abs(pixel.red() - accent.red()) +
                             std::abs(pixel.green() - accent.green()) +
                             std::abs(pixel.blue() - accent.blue());
        if (distance < 24) ++count;
      }
    return count;
  }
  void ExpectRing(Window& window, const std::string& name, const std::string& other) {
    window.Find<Control>(other).SetFocus();
    host.Settle();
    const int without = AccentAtTheEdge(WidgetOf(window, name));
    window.Find<Control>(name).SetFocus();
    host.Settle();
    QWidget& widget = WidgetOf(window, name);
    ASSERT_TRUE(window.Find<Control>(name).HasFocus()) << name;
    EXPECT_GE(AccentAtTheEdge(widget), without + widget.width()) << name;
  }
};

TEST_F(StyleTest, WhatHasTheFocusIsRingedInTheAccent) {
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    const auto connect = ShowForm("dlgConnect");
    for (const char* name : {"lsvConnections", "txtCnStr", "cmdReassign"})
      ExpectRing(*connect, name, "txtCaption");
    const auto text = ShowForm("frmText");
    const auto frame = ShowForm("frmMDI");
    for (const char* name : {"trvBrowser", "lsvTags", "cmdAddTag"})
      ExpectRing(*frame, name, name == std::string("lsvTags") ? "trvBrowser" : "lsvTags");
    const auto records = ShowForm("frmRecords");
    auto& catalog = records->Find<ComboBox>("cboCatalog");
    catalog.AddItem("shop");
    catalog.SetVisible(true);
    auto& refresh = records->Find<Control>("cmdRequery");
    refresh.SetEnabled(true);
    ExpectRing(*records, "cboCatalog", "cmdRequery");
  }
}

TEST_F(StyleTest, ButtonsAndBoxesHaveOneHeight) {
  QPushButton button(QStringLiteral("OK"));
  QLineEdit line;
  QComboBox box;
  QComboBox typed;
  typed.setEditable(true);
  EXPECT_EQ(button.sizeHint().height(), line.sizeHint().height());
  EXPECT_EQ(button.sizeHint().height(), box.sizeHint().height());
  EXPECT_EQ(button.sizeHint().height(), typed.sizeHint().height());
  EXPECT_GE(button.sizeHint().width(), 80);
}

/// Of the button in its colours: whether its text can be read on its own ground.
double ContrastOnButton(bool isDefault, QStyle::State state) {
  QStyleOptionButton option;
  option.rect = QRect(0, 0, 90, 28);
  option.palette = QApplication::palette();
  option.state = state;
  if (isDefault) option.features = QStyleOptionButton::DefaultButton;
  QImage image(option.rect.size(), QImage::Format_RGB32);
  image.fill(CurrentTokens().window);
  QPainter painter(&image);
  QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, nullptr);
  const QColor text = option.palette.color(
      state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled,
      QPalette::ButtonText);
  return Contrast(FromQColor(text), FromQColor(image.pixelColor(45, 14)));
}

TEST_F(StyleTest, TheTextOfAButtonCanBeReadInEveryState) {
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    for (const bool isDefault : {false, true})
      for (const QStyle::State state :
           {QStyle::State(QStyle::State_Enabled), QStyle::State_Enabled | QStyle::State_MouseOver,
            QStyle::State_Enabled | QStyle::State_Sunken,
            QStyle::State_Enabled | QStyle::State_HasFocus, QStyle::State(QStyle::State_None)})
        EXPECT_GE(ContrastOnButton(isDefault, state), readableContrast)
            << (dark ? "dark " : "light ") << isDefault << ' ' << static_cast<int>(state);
  }
}

TEST_F(StyleTest, TheDefaultButtonIsSeen) {
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    QPushButton button(QStringLiteral("OK"));
    button.resize(button.sizeHint());
    const int ordinary = AccentAtTheEdge(button);
    button.setDefault(true);
    EXPECT_GE(AccentAtTheEdge(button), ordinary + button.width()) << dark;
  }
}

/// Each ground that the line has, and all that come of two combined bit by bit.
TEST_F(StyleTest, TheStatusLineCanBeReadOnEveryGround) {
  constexpr Color grounds[] = {statusColor::plain,           statusColor::records,
                               statusColor::recordsAffected, statusColor::completed,
                               statusColor::interrupted,     statusColor::errorsOccurred,
                               statusColor::failure};
  const auto frame = ShowForm("frmMDI");
  const auto window = ShowForm("frmRecords");
  auto& box = window->Find<TextBox>("txtStatus");
  StatusLine line(TheDesktop().TheClock(), box, window->Find<Button>("cmdCnErrors"));
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    for (const Color first : grounds)
      for (const Color second : grounds) {
        line.SetStatus("3 record(s).", first, {});
        line.SetStatus("Done.", second, {.append = true});
        const QPalette palette = WidgetOf(*window, "txtStatus").palette();
        const Color text = FromQColor(palette.color(QPalette::Active, QPalette::Text));
        const Color ground = FromQColor(palette.color(QPalette::Active, QPalette::Base));
        EXPECT_EQ(ground, first | second);
        EXPECT_GE(Contrast(text, ground), readableContrast) << std::hex << ground;
      }
  }
}

}  // namespace

}  // namespace tessel::test
