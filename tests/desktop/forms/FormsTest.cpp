// What holds for every form: it draws, its controls have names for those who cannot see them,
// nothing is cut off.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QTabBar>
#include <QToolButton>

#include "contract/desktop/controls/Label.h"
#include "desktop/FormRegistry.h"
#include "desktop/base/Text.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/headless/FormFile.h"

namespace tessel::test {

namespace {

/// Whether the picture shows more than an empty ground.
bool ShowsSomething(const QImage& picture) {
  QSet<QRgb> colors;
  for (int y = 0; y < picture.height(); y += 2)
    for (int x = 0; x < picture.width(); x += 2) colors.insert(picture.pixel(x, y));
  return colors.size() > 4;
}

/// The letter behind the mark of a mnemonic; null when there is none.
QChar Mnemonic(const QString& text) {
  const QKeySequence key = QKeySequence::mnemonic(text);
  return key.isEmpty() ? QChar() : QChar(static_cast<char16_t>(key[0].key()));
}

/// Tool buttons show their icon only.
bool HasCaption(const QAbstractButton* button) {
  return button != nullptr && qobject_cast<const QToolButton*>(button) == nullptr;
}

QString CaptionOf(const QWidget& widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    return HasCaption(button) ? button->text() : QString();
  const auto* label = qobject_cast<const QLabel*>(&widget);
  return label != nullptr && label->buddy() != nullptr ? label->text() : QString();
}

class EveryForm : public testing::TestWithParam<std::string> {
 protected:
  EveryForm() {
    if (GetParam() != "frmMDI") frame_ = host.TheDesktop().MakeWindow("frmMDI");
    if (frame_ != nullptr) frame_->Show();
    window_ = host.TheDesktop().MakeWindow(GetParam());
    window_->Show();
    host.Settle();
  }
  ~EveryForm() override {
    window_.reset();
    frame_.reset();
  }

  [[nodiscard]] QWidget& Root() { return AsQt(*window_).Root(); }

  QtContractHost host;
  std::unique_ptr<Window> frame_;
  std::unique_ptr<Window> window_;
};

TEST_P(EveryForm, DrawsItself) { EXPECT_TRUE(ShowsSomething(Root().grab().toImage())); }

TEST_P(EveryForm, NamesItsControlsForAll) {
  for (const QWidget* widget : Root().findChildren<QWidget*>()) {
    const bool control = !widget->objectName().isEmpty() &&
                         !widget->objectName().startsWith("qt_") &&
                         widget->focusPolicy() != Qt::NoFocus &&
                         qobject_cast<const QTabBar*>(widget->parent()) == nullptr;
    if (!control) continue;
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    if (qobject_cast<const QToolButton*>(widget) == nullptr) continue;
    EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
  }
}

TEST_P(EveryForm, UsesEachMnemonicOnce) {
  QMap<QChar, QString> taken;
  for (const QWidget* widget : Root().findChildren<QWidget*>()) {
    const QChar letter = Mnemonic(CaptionOf(*widget));
    if (letter.isNull()) continue;
    EXPECT_FALSE(taken.contains(letter))
        << widget->objectName().toStdString() << " and " << taken.value(letter).toStdString();
    taken.insert(letter, widget->objectName());
  }
}

TEST_P(EveryForm, ShowsItsTextsWhole) {
  for (const QWidget* widget : Root().findChildren<QWidget*>()) {
    const auto* label = qobject_cast<const QLabel*>(widget);
    const bool text = label != nullptr ? !label->wordWrap() && !label->text().isEmpty()
                                       : HasCaption(qobject_cast<const QAbstractButton*>(widget));
    if (!text || widget->objectName().isEmpty() || !widget->isVisible()) continue;
    EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
        << widget->objectName().toStdString();
    EXPECT_GE(widget->height(), widget->fontMetrics().height())
        << widget->objectName().toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, EveryForm, testing::ValuesIn(FormFile::NamesIn(TESSEL_FORMS_DIR)),
                         [](const auto& info) { return info.param; });

/// The same with a font half as large again.
class LargeFontTest : public testing::Test {
 protected:
  LargeFontTest() : before_(QApplication::font()) {
    QFont large = before_;
    large.setPointSizeF(before_.pointSizeF() * 1.5);
    QApplication::setFont(large);
  }
  ~LargeFontTest() override { QApplication::setFont(before_); }

 private:
  QFont before_;
};

TEST_F(LargeFontTest, FormsGrowWithTheFont) {
  QtContractHost host;
  const auto frame = host.TheDesktop().MakeWindow("frmMDI");
  const auto window = host.TheDesktop().MakeWindow("frmRecords");
  frame->Show();
  window->Show();
  host.Settle();
  const QWidget& lock = WidgetOf(*window, "chkLock");
  EXPECT_GE(lock.width(), lock.minimumSizeHint().width());
  const QWidget& status = WidgetOf(*window, "txtStatus");
  EXPECT_GE(status.height(), status.fontMetrics().height());
  constexpr int twipsPerPixel = 15;
  EXPECT_NEAR(window->Find<Control>("txtStatus").Bounds().top, 420, twipsPerPixel);
}

class ShownOnly : public DesktopFixture, public testing::WithParamInterface<const char*> {};

/// Enter in a list or on a drawing must not run a statement, nor change what is shown.
TEST_P(ShownOnly, EnterOnlyCloses) {
  const auto window = ShowForm(GetParam());
  const QWidget& dialog = *WidgetOf(*window, "cmdClose").window();
  for (const QPushButton* button : dialog.findChildren<QPushButton*>())
    EXPECT_EQ(button->autoDefault(), button->objectName() == QLatin1String("cmdClose"))
        << FromQt(button->objectName());
}

INSTANTIATE_TEST_SUITE_P(Forms, ShownOnly, testing::Values("dlgPlan", "dlgChart", "dlgDiagram"),
                         [](const auto& info) { return std::string(info.param); });

class CaptionTest : public DesktopFixture {};

TEST_F(CaptionTest, WhatIsSaidOfAValueGoesOnInAnotherLine) {
  const auto frame = ShowForm("frmMDI");
  const auto window = ShowForm("frmRecords");
  window->Find<PictureBox>("fraSide").SetVisible(true);
  window->Find<PictureBox>("fraSide").SetBounds({0, 900, 4500, 4000});
  window->Find<PictureBox>("fraValue").SetVisible(true);
  auto& said = dynamic_cast<QLabel&>(WidgetOf(*window, "lblValue"));
  window->Find<Label>("lblValue")
      .SetCaption("picture: PNG picture, 7858 bytes; PNG, 64 x 64 pixels, the first of 12 frames");
  host.Settle();
  EXPECT_GE(said.height(), 2 * said.fontMetrics().height());
  EXPECT_GE(said.height(), said.heightForWidth(said.width()));
}

TEST_F(CaptionTest, TheListsOfAChartHaveRoomForNames) {
  const auto window = ShowForm("dlgChart");
  host.Settle();
  const QWidget& list = WidgetOf(*window, "cboY");
  EXPECT_GE(list.width(), list.fontMetrics().horizontalAdvance(QStringLiteral("(number of rows)")));
}

TEST(FormRegistryTest, KnowsNoOtherForms) { EXPECT_EQ(MakeForm("frmNone"), nullptr); }

}  // namespace

}  // namespace tessel::test
