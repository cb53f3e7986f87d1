// How documents look: a thin title with the colour of the connection, tabs, what stands on the
// frame's ground and in empty panels, and the squares of the tool rows.

#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QTreeWidget>
#include <set>

#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TreeView.h"
#include "desktop/look/Tokens.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class DocumentLooksTest : public DesktopFixture {
 protected:
  DocumentLooksTest() {
    frame->SetBounds({0, 0, 15000, 10500});
    frame->Arrange(Tiling::Horizontal);
    host.Settle();
  }
  [[nodiscard]] QMdiSubWindow& Sub(Window& window) {
    return dynamic_cast<QMdiSubWindow&>(AsQt(window).Outer());
  }
  [[nodiscard]] QMdiArea& Area() { return *AsQt(*frame).Root().findChild<QMdiArea*>(); }
  [[nodiscard]] QTabBar& Tabs() {
    return *Area().findChild<QTabBar*>(QStringLiteral("qt_documentTabs"));
  }
  /// How often a colour occurs in a picture of the widget.
  static int Count(QWidget& widget, const QColor& color) {
    const QImage picture = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) count += picture.pixelColor(x, y) == color ? 1 : 0;
    return count;
  }
  /// The toolkit looks where the edges and the title of a document stand a little after it was
  /// sized.
  static void AwaitEdges() { QTest::qWait(300); }
  void MoveMouse(QWidget& widget, QEvent::Type type, const QPoint& place, Qt::MouseButtons held) {
    const bool moves = type == QEvent::MouseMove;
    QMouseEvent event(type, place, widget.mapToGlobal(place), moves ? Qt::NoButton : Qt::LeftButton,
                      held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> query = ShowForm("frmMain");
  std::unique_ptr<Window> records = ShowForm("frmRecords");
};

TEST_F(DocumentLooksTest, ATitleIsThinAndTheLineAroundHasOnePixel) {
  const QRect form = records->Loaded() ? Sub(*records).widget()->geometry() : QRect();
  const double factor = Scale().Factor();
  EXPECT_NEAR(form.top(), 26 * factor, 1.5);
  EXPECT_EQ(form.left(), 1);
  EXPECT_EQ(form.right(), Sub(*records).width() - 2);
  EXPECT_EQ(form.bottom(), Sub(*records).height() - 2);
}

TEST_F(DocumentLooksTest, TheActiveTitleStandsOnTheGroundOfItsText) {
  records->Activate();
  host.Settle();
  const auto ground = [this](Window& window) {
    QMdiSubWindow& sub = Sub(window);
    return sub.grab().toImage().pixelColor(sub.width() / 2, 4);
  };
  EXPECT_EQ(ground(*records), CurrentTokens().base);
  EXPECT_EQ(ground(*query), CurrentTokens().window);
}

TEST_F(DocumentLooksTest, TheStripeHasTheColourOfTheConnection) {
  const auto stripe = [this] { return Sub(*records).grab().toImage().pixelColor(2, 12); };
  records->Activate();
  EXPECT_EQ(stripe(), CurrentTokens().base);
  records->SetMark(0x0000C0);
  EXPECT_EQ(stripe(), QColor(0xC0, 0, 0));
  records->SetMark(std::nullopt);
  EXPECT_EQ(stripe(), CurrentTokens().base);
}

TEST_F(DocumentLooksTest, TheProgressWindowHasTheStripeAtItsLeftEdge) {
  const auto progress = TheDesktop().MakeWindow("dlgAsync");
  progress->SetMark(0x00C000);
  progress->ShowAbove(*frame);
  host.Settle();
  EXPECT_EQ(AsQt(*progress).Root().grab().toImage().pixelColor(1, 20), QColor(0, 0xC0, 0));
  progress->SetMark(std::nullopt);
  host.Settle();
  EXPECT_NE(AsQt(*progress).Root().grab().toImage().pixelColor(1, 20), QColor(0, 0xC0, 0));
}

TEST_F(DocumentLooksTest, TheButtonsOfTheTitleDoWhatTheyShow) {
  QMdiSubWindow& sub = Sub(*records);
  const int width = static_cast<int>(28 * Scale().Factor());
  const auto click = [&](int fromRight) {
    AwaitEdges();
    const QPoint place(sub.width() - 1 - fromRight * width - width / 2, 12);
    MoveMouse(sub, QEvent::MouseMove, place, {});
    QTest::mouseClick(&sub, Qt::LeftButton, {}, place);
    host.Settle();
  };
  records->Activate();
  click(1);
  EXPECT_TRUE(records->Maximized());
  records->SetMaximized(false);
  host.Settle();
  click(2);
  EXPECT_TRUE(records->Minimized());
  sub.showNormal();
  host.Settle();
  int asked = 0;
  records->QueryUnload = [&](bool& refuse, UnloadReason) {
    ++asked;
    refuse = true;
  };
  click(0);
  EXPECT_EQ(asked, 1);
  records->QueryUnload = nullptr;
}

/// The line itself is too thin to be hit.
TEST_F(DocumentLooksTest, TheMarginOfItsFormSizesADocument) {
  AwaitEdges();
  QWidget& form = *Sub(*query).widget();
  const QRect before = Sub(*query).geometry();
  const QPoint edge(form.width() / 2, form.height() - 2);
  MoveMouse(form, QEvent::MouseMove, edge, {});
  MoveMouse(form, QEvent::MouseButtonPress, edge, Qt::LeftButton);
  MoveMouse(form, QEvent::MouseMove, edge - QPoint(0, 30), Qt::LeftButton);
  MoveMouse(form, QEvent::MouseMove, edge - QPoint(0, 40), Qt::LeftButton);
  MoveMouse(form, QEvent::MouseButtonRelease, edge - QPoint(0, 40), {});
  host.Settle();
  EXPECT_EQ(Sub(*query).geometry().topLeft(), before.topLeft());
  EXPECT_LT(Sub(*query).height(), before.height() - 20);
  EXPECT_EQ(Sub(*query).width(), before.width());
}

TEST_F(DocumentLooksTest, TabsChooseAndCloseTheDocumentsBelowThem) {
  EXPECT_TRUE(Tabs().isHidden());
  frame->SetTabbed(true);
  records->SetCaption("Shop & Co");
  records->SetMark(0x0000C0);
  const auto second = ShowForm("frmRecords");
  second->SetCaption("Staff");
  host.Settle();
  ASSERT_TRUE(Tabs().isVisible());
  ASSERT_EQ(Tabs().count(), 2);
  EXPECT_EQ(Tabs().tabText(0).toStdString(), "Shop && Co");
  EXPECT_FALSE(Tabs().tabIcon(0).isNull());
  EXPECT_EQ(Tabs().tabText(1).toStdString(), "Staff");
  EXPECT_EQ(Tabs().currentIndex(), 1);
  EXPECT_EQ(Sub(*records).y(), Tabs().geometry().bottom() + 1);
  EXPECT_EQ(Sub(*records).widget()->y(), 1) << "the tab stands for the title";
  Tabs().setCurrentIndex(0);
  EXPECT_TRUE(records->Active());
  query->Activate();
  EXPECT_EQ(Tabs().currentIndex(), 0);
  int asked = 0;
  records->QueryUnload = [&](bool&, UnloadReason reason) {
    asked += reason == UnloadReason::ControlBox ? 1 : 100;
  };
  emit Tabs().tabCloseRequested(0);
  host.Settle();
  EXPECT_EQ(asked, 1);
  EXPECT_FALSE(records->Loaded());
  EXPECT_TRUE(Tabs().isHidden());
  EXPECT_GT(Sub(*second).widget()->y(), 20) << "it has its title again";
}

TEST_F(DocumentLooksTest, TheGroundSaysWhatToDo) {
  query->Unload();
  records->Unload();
  host.Settle();
  QWidget& ground = *Area().viewport();
  const QColor ink = CurrentTokens().muted;
  EXPECT_EQ(Count(ground, ink), 0);
  frame->SetGroundText("No database yet. Database > Connect... (Alt+D, C)");
  EXPECT_GT(Count(ground, ink), 20);
  frame->SetGroundText("");
  EXPECT_EQ(Count(ground, ink), 0);
}

TEST_F(DocumentLooksTest, EmptyPanelsSayWhatToDoUntilThereIsSomething) {
  auto& tree = WidgetAs<QTreeView>(*frame, "trvBrowser");
  auto& nodes = frame->Find<TreeView>("trvBrowser");
  const QColor ink = CurrentTokens().muted;
  EXPECT_GT(Count(*tree.viewport(), ink), 20) << "no connection";
  nodes.Add("", {"d1", "Shop", 1, false});
  EXPECT_GT(Count(*tree.viewport(), ink), 20) << "nothing loaded";
  nodes.Add("d1", {"t1", "orders", 2});
  host.Settle();
  tree.clearSelection();
  EXPECT_LT(Count(*tree.viewport(), ink), 20) << "the number of tables alone";
  auto& list = WidgetAs<QTreeWidget>(*frame, "lsvTags");
  EXPECT_GT(Count(*list.viewport(), ink), 20);
  frame->Find<ListView>("lsvTags").Insert(0, {"A", "A", {"1"}, "", 0});
  host.Settle();
  EXPECT_EQ(Count(*list.viewport(), ink), 0);
}

TEST_F(DocumentLooksTest, ButtonsOfToolRowsAreSquaresWithLargeIcons) {
  const double factor = Scale().Factor();
  for (Window* window : {query.get(), records.get()})
    for (const QToolButton* button : AsQt(*window).Root().findChildren<QToolButton*>()) {
      if (button->objectName().isEmpty() || button->objectName().startsWith("qt_")) continue;
      EXPECT_NEAR(button->width(), 28 * factor, 1) << button->objectName().toStdString();
      EXPECT_EQ(button->width(), button->height()) << button->objectName().toStdString();
      EXPECT_NEAR(button->iconSize().width(), 20 * factor, 1);
    }
}

}  // namespace

}  // namespace tessel::test
