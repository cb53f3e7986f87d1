// Single controls and services beyond the contract: colours, large trees and lists, processes.

#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolTip>
#include <QTreeView>
#include <QTreeWidget>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "contract/desktop/controls/TreeView.h"
#include "desktop/base/Text.h"
#include "desktop/look/Colors.h"
#include "desktop/look/Scale.h"
#include "desktop/look/Tokens.h"
#include "desktop/look/theme/Theme.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class ColorTest : public DesktopFixture {
 protected:
  ~ColorTest() override { SystemTheme::Force(false); }
};

TEST_F(ColorTest, ColoursAreTurnedBothWays) {
  const QPalette palette = PaletteOf(DarkTokens());
  EXPECT_EQ(ToQColor(0x302010, palette), QColor(0x10, 0x20, 0x30));
  EXPECT_EQ(FromQColor(QColor(0x10, 0x20, 0x30)), 0x302010U);
  EXPECT_EQ(ToQColor(color::windowBackground, palette), palette.color(QPalette::Base));
  EXPECT_EQ(ToQColor(color::windowText, palette), palette.color(QPalette::Text));
  EXPECT_EQ(ToQColor(color::buttonFace, palette), palette.color(QPalette::Button));
}

TEST_F(ColorTest, SystemColoursFollowTheTheme) {
  const auto window = ShowForm("dlgConnect");
  auto& sample = window->Find<Label>("labColor");
  sample.SetBackColor(color::windowBackground);
  QWidget& widget = WidgetOf(*window, "labColor");
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    host.Settle();
    const QImage picture = widget.grab().toImage();
    EXPECT_EQ(picture.pixelColor(4, picture.height() / 2),
              QApplication::palette().color(QPalette::Base));
  }
}

/// As a connection's colours come: often only one of the two is the user's own.
TEST_F(ColorTest, TextCanBeReadWhereOneOfTheTwoColoursIsTheUsers) {
  const auto own = [](Color back, Color fore) {
    const QPalette palette = QApplication::palette();
    const Color ground = FromQColor(ToQColor(back, palette));
    return Contrast(FromQColor(TextColor(fore, back, palette)), ground);
  };
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    for (const Color chosen : {0x000000U, 0xFFFFFFU, 0x400000U, 0x00FFFFU, 0x808080U, 0xC0FFC0U}) {
      EXPECT_GE(own(chosen, color::windowText), readableContrast) << std::hex << chosen << dark;
      EXPECT_GE(own(color::windowBackground, chosen), readableContrast)
          << std::hex << chosen << dark;
    }
    const QPalette palette = QApplication::palette();
    EXPECT_EQ(TextColor(0x808080, 0x888888, palette), QColor(0x80, 0x80, 0x80)) << "his own two";
    EXPECT_EQ(TextColor(color::windowText, color::windowBackground, palette),
              palette.color(QPalette::Text));
  }
}

TEST_F(ColorTest, AnOwnTextThatCannotBeReadIsChangedByAsLittleAsThatNeeds) {
  constexpr Color darkRed = 0x0000C0;
  SystemTheme::Force(false);
  EXPECT_EQ(TextColor(darkRed, color::windowBackground, QApplication::palette()),
            QColor(0xC0, 0, 0));
  SystemTheme::Force(true);
  const QPalette palette = QApplication::palette();
  const QColor shown = TextColor(darkRed, color::windowBackground, palette);
  EXPECT_EQ(shown.hue(), QColor(Qt::red).hue());
  EXPECT_GT(shown.saturation(), 100);
  EXPECT_LT(Contrast(FromQColor(shown), FromQColor(palette.color(QPalette::Base))),
            readableContrast + 1);
}

TEST_F(ColorTest, TheGridTheListAndTheLabelsChooseTheirTextByTheirGround) {
  const auto frame = ShowForm("frmMDI");
  const auto records = ShowForm("frmRecords");
  for (const char* name : {"DataGrid", "lblTimer", "cboCatalog"}) {
    auto& control = records->Find<Control>(name);
    control.SetBackColor(0x400000);
    control.SetForeColor(color::windowText);
    const QPalette palette = WidgetOf(*records, name).palette();
    EXPECT_EQ(palette.color(QPalette::Active, QPalette::Text), QColor(Qt::white)) << name;
  }
  const auto connections = ShowForm("dlgConnect");
  auto& list = connections->Find<ListView>("lsvConnections");
  list.Insert(0, {"", "pale", {"x"}, "", 0, 0xF0F0F0});
  const QColor shown =
      WidgetAs<QTreeWidget>(*connections, "lsvConnections").topLevelItem(0)->foreground(0).color();
  EXPECT_GE(Contrast(FromQColor(shown), 0xFFFFFF), readableContrast) << "grey in place of pale";
}

TEST_F(ColorTest, ADisabledFieldMayBeGrey) {
  const auto window = ShowForm("dlgCnSQLSrv");
  auto& box = window->Find<TextBox>("txtUsername");
  box.SetEnabled(false);
  box.SetBackColor(color::buttonFace);
  host.Settle();
  EXPECT_EQ(WidgetOf(*window, "txtUsername").palette().color(QPalette::Base),
            QApplication::palette().color(QPalette::Button));
  box.SetBackColor(color::windowBackground);
  EXPECT_EQ(WidgetOf(*window, "txtUsername").palette().color(QPalette::Active, QPalette::Base),
            QApplication::palette().color(QPalette::Active, QPalette::Base));
}

TEST_F(ColorTest, TheStatusLineIsWhiteOnItsColour) {
  const auto frame = ShowForm("frmMDI");
  const auto window = ShowForm("frmRecords");
  auto& status = window->Find<TextBox>("txtStatus");
  EXPECT_EQ(status.ForeColor(), 0xFFFFFFU);
  status.SetText("[15:09:26]  3 record(s).");
  status.SetBackColor(0xBF0000);
  host.Settle();
  const QImage picture = WidgetOf(*window, "txtStatus").grab().toImage();
  EXPECT_EQ(picture.pixelColor(picture.width() - 4, 4), QColor(0x00, 0x00, 0xBF));
  bool white = false;
  for (int x = 0; x < picture.width(); ++x)
    for (int y = 0; y < picture.height(); ++y)
      white = white || picture.pixelColor(x, y) == QColor(Qt::white);
  EXPECT_TRUE(white);
}

TEST_F(ColorTest, OneLineFitsTheStatusLine) {
  const auto frame = ShowForm("frmMDI");
  const auto window = ShowForm("frmRecords");
  auto& status = window->Find<TextBox>("txtStatus");
  Rect bounds = status.Bounds();
  bounds.height = 330;
  status.SetBounds(bounds);
  status.SetText("[15:09:26]  3 record(s).");
  host.Settle();
  auto& edit = WidgetAs<QPlainTextEdit>(*window, "txtStatus");
  EXPECT_EQ(status.LineCount(), 1);
  EXPECT_FALSE(edit.verticalScrollBar()->isVisible());
  EXPECT_GE(edit.viewport()->height(), edit.fontMetrics().lineSpacing());
}

TEST_F(ColorTest, OnDarkTheEdgeOfAFieldIsSeenWithTheFocusAndWithout) {
  SystemTheme::Force(true);
  const auto frame = ShowForm("frmMDI");
  const int window = QApplication::palette().color(QPalette::Window).lightness();
  const auto edge = [&](const char* name) {
    host.Settle();
    const QImage picture = WidgetOf(*frame, name).grab().toImage();
    return picture.pixelColor(0, picture.height() / 2);
  };
  for (const char* name : {"trvBrowser", "lsvTags"}) {
    frame->Find<Control>(name == std::string("lsvTags") ? "trvBrowser" : "lsvTags").SetFocus();
    const QColor without = edge(name);
    frame->Find<Control>(name).SetFocus();
    const QColor with = edge(name);
    ASSERT_TRUE(WidgetOf(*frame, name).hasFocus()) << name;
    EXPECT_GT(without.lightness(), window + 40) << name;
    EXPECT_GT(with.lightness(), window + 40) << name;
    EXPECT_NE(with, without) << name;
  }
}

class LargeControlTest : public DesktopFixture {};

TEST_F(LargeControlTest, ATreeTakesManyNodesAtOnce) {
  const auto frame = ShowForm("frmMDI");
  auto& tree = frame->Find<TreeView>("trvBrowser");
  tree.Add("", {"d1", "database", 1});
  std::vector<TreeNode> tables;
  for (int table = 0; table < 10'000; ++table)
    tables.push_back({"t" + std::to_string(table), "table " + std::to_string(table), 2});
  tree.AddChildren("d1", tables);
  for (int table = 0; table < 10'000; ++table) {
    std::vector<TreeNode> fields;
    for (int field = 0; field < 20; ++field)
      fields.push_back({"f" + std::to_string(table) + "." + std::to_string(field), "field", 3});
    tree.AddChildren("t" + std::to_string(table), std::move(fields));
  }
  tree.SetExpanded("d1", true);
  host.Settle();
  EXPECT_EQ(tree.Children("t9999").size(), 20U);
  tree.Remove("d1");
  EXPECT_FALSE(tree.Exists("f9999.19"));
}

TEST_F(LargeControlTest, AListTakesManyEntriesAtOnce) {
  const auto frame = ShowForm("frmMDI");
  const auto query = ShowForm("frmMain");
  auto& list = query->Find<ListBox>("lstOptions");
  int clicks = 0;
  list.Click = [&] { ++clicks; };
  list.SetBounds({150, 900, 3000, 1500});
  list.SetVisible(true);
  std::vector<std::string> items;
  for (int item = 0; item < 300'000; ++item) items.push_back("entry " + std::to_string(item));
  int shown = 0;
  list.SetLines(TextLines(items), [&](std::string_view line) {
    ++shown;
    return "shown " + std::string(line);
  });
  list.SetListIndex(299'999);
  host.Settle();
  EXPECT_EQ(list.ListCount(), 300'000);
  EXPECT_LT(shown, 1000) << "only what is looked at is made";
  EXPECT_EQ(list.List(299'999), "shown entry 299999");
  EXPECT_EQ(list.Line(299'999), "entry 299999");
  EXPECT_EQ(clicks, 1);
}

TEST_F(LargeControlTest, NodesAreFoundWhereTheyShow) {
  const auto frame = ShowForm("frmMDI");
  auto& tree = frame->Find<TreeView>("trvBrowser");
  tree.Add("", {"d1", "one", 1});
  tree.Add("", {"d2", "two", 1});
  host.Settle();
  const Rect second = tree.NodeBounds("d2");
  EXPECT_EQ(tree.NodeAt(second.left + second.width / 2, second.top + second.height / 2), "d2");
  EXPECT_EQ(tree.NodeAt(30, 100'000), "");
}

class TreeTest : public DesktopFixture {};

TEST_F(TreeTest, ANameThatIsCutIsShownWholeInAToolTip) {
  const auto frame = ShowForm("frmMDI");
  auto& tree = frame->Find<TreeView>("trvBrowser");
  const std::string name = "customer_" + std::string(200, 'x') + "<b>_archive";
  tree.Add("", {"d1", "shop", 1});
  tree.Add("d1", {"t1", name, 2});
  tree.SetExpanded("d1", true);
  host.Settle();
  auto& widget = WidgetAs<QTreeView>(*frame, "trvBrowser");
  EXPECT_EQ(widget.textElideMode(), Qt::ElideMiddle);
  const auto tipAt = [&](const std::string& key) {
    const QPoint place = Scale().Pixels(tree.NodeBounds(key)).center();
    const QPoint inside(widget.viewport()->mapFrom(&widget, place));
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, inside, widget.viewport()->mapToGlobal(inside));
    QCoreApplication::sendEvent(widget.viewport(), &event);
    return QToolTip::text();
  };
  EXPECT_EQ(tipAt("t1"), AsPlainToolTip(name));
  EXPECT_NE(tipAt("d1"), QStringLiteral("shop"));
  EXPECT_FALSE(widget.horizontalScrollBar()->isVisible());
}

class ServiceTest : public DesktopFixture {};

TEST_F(ServiceTest, AMissingProgramIsReported) {
  try {
    TheDesktop().StartProcess("/nowhere/program");
    FAIL() << "It was started.";
  } catch (const Error& error) {
    EXPECT_NE(error.Description().find("No such file"), std::string::npos) << error.Description();
  }
}

TEST_F(ServiceTest, AProgramIsStarted) { EXPECT_NO_THROW(TheDesktop().StartProcess("/bin/true")); }

TEST_F(ServiceTest, TheTimeIsTheLocales) {
  const std::string time = TheDesktop().TheClock().LongTime();
  EXPECT_EQ(std::ranges::count(time, ':'), 2) << time;
  EXPECT_EQ(time.find("UTC"), std::string::npos) << time;
}

class MenuTest : public DesktopFixture {};

TEST_F(MenuTest, AMenuThatItsFormDisablesOpensOnceItIsEnabled) {
  const auto frame = TheDesktop().MakeWindow("frmMDI");
  const auto window = TheDesktop().MakeWindow("frmRecords");
  const auto* menu = AsQt(*window).Root().findChild<QMenu*>("menuRecords");
  ASSERT_NE(menu, nullptr);
  EXPECT_FALSE(menu->isEnabled());
  window->Menu("menuRecords").SetEnabled(true);
  EXPECT_TRUE(menu->isEnabled());
  EXPECT_TRUE(menu->menuAction()->isEnabled());
  window->Menu("menuRecords").SetEnabled(false);
  EXPECT_FALSE(menu->isEnabled());
}

TEST(TextTest, OffsetsCountBytesAndUnits) {
  const QString text = QStringLiteral("aé😀z");
  EXPECT_EQ(BytesBefore(text, 0), 0U);
  EXPECT_EQ(BytesBefore(text, 2), 3U);
  EXPECT_EQ(BytesBefore(text, 4), 7U);
  EXPECT_EQ(BytesBefore(text, 99), 8U);
  EXPECT_EQ(UnitsBefore(text, 3), 2);
  EXPECT_EQ(UnitsBefore(text, 5), 2) << "inside the emoji";
  EXPECT_EQ(UnitsBefore(text, 7), 4);
  EXPECT_EQ(UnitsBefore(text, 99), 5);
}

TEST(ScaleTest, TwipsAreFifteenToAPixel) {
  const Scale scale;
  ASSERT_GE(scale.Factor(), 1.0);
  EXPECT_EQ(scale.Pixels(1500), static_cast<int>(100 * scale.Factor() + 0.5));
  EXPECT_NEAR(scale.Twips(scale.Pixels(9600)), 9600, 15);
}

}  // namespace

}  // namespace tessel::test
