// The frame: whose keys and menus are in force, how documents are tiled and closed.

#include <QCoreApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollBar>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "contract/desktop/controls/TreeView.h"
#include "desktop/base/Text.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class FrameTest : public DesktopFixture {
 protected:
  FrameTest() {
    frame->SetBounds({0, 0, 15000, 10500});
    frame->Menu("mnuDBExecute").Click = [this] { ++executed; };
    frame->Menu("mnuFileSave").Click = [this] { ++saved; };
    records->KeyDown = [this](KeyEvent& event) { previewed.push_back(event.keyCode); };
    host.Settle();
  }

  [[nodiscard]] std::vector<std::string> TitlesShown() {
    std::vector<std::string> titles;
    for (const QAction* title : Main().menuBar()->actions())
      if (title->isVisible()) titles.push_back(FromQt(title->text()));
    return titles;
  }
  [[nodiscard]] QMainWindow& Main() { return dynamic_cast<QMainWindow&>(AsQt(*frame).Root()); }
  [[nodiscard]] QRect PlaceOf(Window& window) { return AsQt(window).Outer().geometry(); }
  /// Where documents may stand when none needs to be scrolled to.
  [[nodiscard]] QRect Room() {
    return {QPoint(), Main().findChild<QMdiArea*>()->maximumViewportSize()};
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> query = ShowForm("frmMain");
  std::unique_ptr<Window> records = ShowForm("frmRecords");
  int executed = 0;
  int saved = 0;
  std::vector<int> previewed;
};

TEST_F(FrameTest, ARecordsWindowHasTheKeysOfTheFrame) {
  records->Activate();
  records->Find<Control>("txtStatus").SetFocus();
  PressKeyCode(key::f5);
  PressKeyCode('S', shiftState::ctrl);
  EXPECT_EQ(executed, 0);
  EXPECT_EQ(saved, 0);
  EXPECT_EQ(previewed, (std::vector{key::f5, int{'S'}}));
}

TEST_F(FrameTest, TheQueryWindowLeavesThemToTheFrame) {
  query->Activate();
  query->Find<Control>("txtQuery").SetFocus();
  PressKeyCode(key::f5);
  PressKeyCode('S', shiftState::ctrl);
  EXPECT_EQ(executed, 1);
  EXPECT_EQ(saved, 1);
}

TEST_F(FrameTest, TheSidebarHasNoFrameKeysWhileARecordsWindowIsActive) {
  records->Activate();
  frame->Find<Control>("trvBrowser").SetFocus();
  PressKeyCode(key::f5);
  EXPECT_EQ(executed, 0);
  query->Activate();
  frame->Find<Control>("trvBrowser").SetFocus();
  PressKeyCode(key::f5);
  EXPECT_EQ(executed, 1);
}

TEST_F(FrameTest, ARecordsWindowsOwnShortcutWorks) {
  int toggled = 0;
  records->Menu("mnuWindowSidebar").Click = [&] { ++toggled; };
  frame->Menu("mnuWindowSidebar").Click = [&] { toggled += 100; };
  records->Activate();
  records->Find<Control>("txtStatus").SetFocus();
  PressKeyCode(key::f8);
  EXPECT_EQ(toggled, 1);
  query->Activate();
  PressKeyCode(key::f8);
  EXPECT_EQ(toggled, 101);
}

TEST_F(FrameTest, MenusFollowTheActiveDocument) {
  records->Activate();
  EXPECT_EQ(TitlesShown(), (std::vector<std::string>{"&File", "&Database", "&Edit", "&Records",
                                                     "&Query", "&Connection", "&Window", "&Help"}));
  int fromRecords = 0;
  records->Menu("mnuWindowTileHoriz").Click = [&] { ++fromRecords; };
  host.ChooseMenu(*records, "mnuWindowTileHoriz");
  EXPECT_EQ(fromRecords, 1);
  query->Activate();
  EXPECT_EQ(TitlesShown(),
            (std::vector<std::string>{"&File", "&Database", "&Edit", "&Window", "&Help"}));
  records->Activate();
  records->Unload();
  host.Settle();
  EXPECT_EQ(TitlesShown().size(), 5U);
}

TEST_F(FrameTest, TilesAreRowsOrColumns) {
  const auto third = ShowForm("frmRecords");
  frame->Arrange(Tiling::Horizontal);
  host.Settle();
  const QRect room = Room();
  int top = 0;
  for (Window* window : {query.get(), records.get(), third.get()}) {
    EXPECT_EQ(PlaceOf(*window).left(), 0);
    EXPECT_EQ(PlaceOf(*window).width(), room.width());
    EXPECT_EQ(PlaceOf(*window).top(), top);
    top = PlaceOf(*window).bottom() + 1;
  }
  EXPECT_EQ(top, room.height());
  frame->Arrange(Tiling::Vertical);
  host.Settle();
  int left = 0;
  for (Window* window : {query.get(), records.get(), third.get()}) {
    EXPECT_EQ(PlaceOf(*window).top(), 0);
    EXPECT_EQ(PlaceOf(*window).height(), room.height());
    EXPECT_EQ(PlaceOf(*window).left(), left);
    left = PlaceOf(*window).right() + 1;
  }
  EXPECT_EQ(left, room.width());
}

/// More windows than there is height for: the bar that scrolls to the last one covers none of them.
TEST_F(FrameTest, TilesThatHaveToScrollStandBesideTheBar) {
  std::vector<std::unique_ptr<Window>> more;
  for (int n = 0; n < 12; ++n) more.push_back(ShowForm("frmRecords"));
  for (const auto& window : more) AsQt(*window).Outer().setMinimumHeight(120);
  frame->Arrange(Tiling::Horizontal);
  host.Settle();
  const auto& area = *Main().findChild<QMdiArea*>();
  ASSERT_TRUE(area.verticalScrollBar()->isVisible());
  EXPECT_FALSE(area.horizontalScrollBar()->isVisible());
  EXPECT_EQ(PlaceOf(*query).width(), area.viewport()->width());
  EXPECT_EQ(PlaceOf(*more.back()).width(), area.viewport()->width());
}

TEST_F(FrameTest, AMinimizedWindowIsNotTiled) {
  AsQt(*query).Outer().showMinimized();
  host.Settle();
  ASSERT_TRUE(query->Minimized());
  frame->Arrange(Tiling::Horizontal);
  host.Settle();
  EXPECT_TRUE(query->Minimized());
  EXPECT_LT(PlaceOf(*records).bottom(), Room().height() - 10)
      << "room is left for the minimised one";
}

/// Rows that together fill the place for documents.
TEST_F(FrameTest, TiledWindowsFollowTheFrameAndTheSidebar) {
  frame->Arrange(Tiling::Horizontal);
  const auto fill = [this] {
    host.Settle();
    return PlaceOf(*query).topLeft() == QPoint() &&
           PlaceOf(*query).bottom() + 1 == PlaceOf(*records).top() &&
           PlaceOf(*records).bottomRight() == Room().bottomRight() &&
           PlaceOf(*query).width() == Room().width();
  };
  ASSERT_TRUE(fill());
  const QRect before = Room();
  Main().resize(Main().size() + QSize(120, 90));
  EXPECT_TRUE(fill());
  EXPECT_GT(Room().height(), before.height());
  auto& box = frame->Find<PictureBox>("box");
  box.SetVisible(false);
  EXPECT_TRUE(fill()) << "the sidebar is hidden";
  box.SetVisible(true);
  EXPECT_TRUE(fill());
  Rect wider = box.Bounds();
  wider.width += 1500;
  box.SetBounds(wider);
  EXPECT_TRUE(fill()) << "its edge was moved";
  frame->Arrange(Tiling::Vertical);
  records->Unload();
  host.Settle();
  EXPECT_EQ(PlaceOf(*query), Room());
}

/// By its title bar, as a user does.
TEST_F(FrameTest, AWindowDraggedByTheUserIsLeftAlone) {
  frame->Arrange(Tiling::Horizontal);
  host.Settle();
  QWidget& title = AsQt(*records).Outer();
  const QRect tile = title.geometry();
  const QPoint grip(title.width() / 2, 8);
  const QPoint screen = title.mapToGlobal(grip);
  const auto send = [&](QEvent::Type type, Qt::MouseButtons held, const QPoint& by) {
    const bool moves = type == QEvent::MouseMove;
    QMouseEvent event(type, title.mapFromGlobal(screen + by), screen + by,
                      moves ? Qt::NoButton : Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&title, &event);
  };
  send(QEvent::MouseMove, Qt::NoButton, {});
  send(QEvent::MouseButtonPress, Qt::LeftButton, {});
  send(QEvent::MouseMove, Qt::LeftButton, {40, -10});
  send(QEvent::MouseMove, Qt::LeftButton, {40, -20});
  send(QEvent::MouseButtonRelease, Qt::NoButton, {40, -20});
  host.Settle();
  const QRect dragged = PlaceOf(*records);
  ASSERT_NE(dragged, tile);
  Main().resize(Main().size() + QSize(120, 90));
  const auto third = ShowForm("frmRecords");
  EXPECT_EQ(PlaceOf(*records), dragged);
}

TEST_F(FrameTest, AWindowRestoredToItsTileFollowsAgain) {
  frame->Arrange(Tiling::Horizontal);
  host.Settle();
  query->Activate();
  AsQt(*query).Outer().showMaximized();
  host.Settle();
  Main().resize(Main().size() + QSize(120, 90));
  host.Settle();
  EXPECT_TRUE(query->Maximized());
  AsQt(*query).Outer().showNormal();
  host.Settle();
  EXPECT_EQ(PlaceOf(*records).bottomRight(), Room().bottomRight());
  EXPECT_EQ(PlaceOf(*query).width(), Room().width());
  AsQt(*query).Outer().showMinimized();
  host.Settle();
  const QRect place = PlaceOf(*records);
  Main().resize(Main().size() + QSize(120, 90));
  host.Settle();
  EXPECT_TRUE(query->Minimized());
  EXPECT_EQ(PlaceOf(*records), place);
}

TEST_F(FrameTest, ACloseWaitsUntilAModalWindowIsOver) {
  std::vector<std::string> order;
  frame->Unloaded = [&] { order.emplace_back("closed"); };
  const auto dialog = TheDesktop().MakeWindow("dlgText");
  host.OnModal("dlgText", [&](Window& modal) {
    AsQt(*frame).Outer().close();
    TheDesktop().ProcessPending();
    order.emplace_back(frame->Loaded() ? "open" : "gone");
    modal.Hide();
  });
  dialog->ShowModal(frame.get());
  order.emplace_back("returned");
  host.Settle();
  EXPECT_EQ(order, (std::vector<std::string>{"open", "returned", "closed"}));
}

TEST_F(FrameTest, ADisabledFrameTakesNoKeysAndIsNotClosed) {
  query->Activate();
  query->Find<Control>("txtQuery").SetFocus();
  frame->SetEnabled(false);
  PressKeyCode(key::f5);
  PressKeyCode('A');
  EXPECT_EQ(executed, 0);
  EXPECT_EQ(query->Find<RichTextBox>("txtQuery").Text(), "");
  frame->SetEnabled(true);
  PressKeyCode(key::f5);
  EXPECT_EQ(executed, 1);
  EXPECT_TRUE(query->Find<Control>("txtQuery").HasFocus()) << "the focus was kept";
}

TEST_F(FrameTest, DocumentsOutliveTheFrame) {
  auto& tree = query->Find<Control>("txtQuery");
  frame.reset();
  host.Settle();
  EXPECT_EQ(tree.Name(), "txtQuery");
  EXPECT_TRUE(tree.Visible());
  query->Activate();
  EXPECT_FALSE(query->Active());
  query.reset();
  records.reset();
  host.Settle();
}

TEST_F(FrameTest, ADocumentNeedsAFrame) {
  records.reset();
  query.reset();
  frame.reset();
  EXPECT_THROW(static_cast<void>(TheDesktop().MakeWindow("frmMain")), Error);
}

TEST_F(FrameTest, TheSidebarKeepsTheWidthItIsGiven) {
  auto& box = frame->Find<PictureBox>("box");
  int resized = 0;
  box.Resize = [&] { ++resized; };
  Rect bounds = box.Bounds();
  bounds.width = 4500;
  box.SetBounds(bounds);
  host.Settle();
  EXPECT_EQ(box.Bounds().width, 4500);
  EXPECT_EQ(resized, 1);
  EXPECT_EQ(Main().findChild<QMdiArea*>()->x(), WidgetOf(*frame, "box").width());
}

TEST_F(FrameTest, TitlesShowEveryCharacter) {
  records->SetCaption("shop [*] a&b <i>");
  EXPECT_EQ(records->Caption(), "shop [*] a&b <i>");
  EXPECT_EQ(FromQt(AsQt(*records).Root().windowTitle()), "shop [*][*] a&b <i>")
      << "the toolkit's own form";
}

}  // namespace

}  // namespace tessel::test
