// Completion in the query window: real keys, the list at the caret, its size and its speed.

#include <QElapsedTimer>
#include <QHelpEvent>
#include <QListView>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <iostream>

#include "desktop/base/Text.h"
#include "desktop/controls/lists/CutTextDelegate.h"
#include "desktop/editor/SqlEditor.h"
#include "desktop/look/Scale.h"
#include "logic/query/completion/CompletionList.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/support/MemoryData.h"
#include "tests/support/TemporaryFolder.h"

#include "system/PosixFiles.h"

namespace tessel::test {
namespace {

constexpr int ctrl = shiftState::ctrl;

class CompletionTest : public DesktopFixture {
 protected:
  CompletionTest() {
    vocabulary.LoadVocabulary();
    Vocabulary::ListNamed(vocabulary.Tables(), "d1") = {"orders", "items", "order_lines"};
    Vocabulary::ListNamed(vocabulary.Fields(), "d1") = {"customer_order_id", "cost_of_ink", "date"};
    vocabulary.GlobalWords() = {"group by", "order by", "glue"};
    FillWindow();
  }

  void FillWindow() {
    AsQt(*frame).Outer().resize(900, 600);
    AsQt(*query).Outer().showMaximized();
    box.SetFocus();
    host.Settle();
  }
  void Typed(const std::string& text) {
    box.SetText(text);
    box.Select(text.size(), 0);
    box.SetFocus();
    host.Settle();
  }
  void Press(int keyCode, int shift = shiftState::none) { host.PressKey(*query, keyCode, shift); }
  [[nodiscard]] bool ListShows() { return List().isVisible(); }
  [[nodiscard]] QListView& List() { return WidgetAs<QListView>(*query, "lstOptions"); }
  [[nodiscard]] SqlEditor& Editor() { return WidgetAs<SqlEditor>(*query, "txtQuery"); }
  [[nodiscard]] std::vector<std::string> Entries() {
    std::vector<std::string> entries;
    for (int i = 0; i < list.ListCount(); ++i) entries.push_back(list.List(i));
    return entries;
  }
  void ExpectClosed(const std::string& text) {
    EXPECT_FALSE(ListShows());
    EXPECT_EQ(box.Text(), text);
    EXPECT_TRUE(box.HasFocus());
  }
  /// Where the caret is drawn, in the editor.
  [[nodiscard]] QRect Caret() { return Scale().Pixels(box.CaretBounds()); }

  TemporaryFolder folder;
  MemoryData data{TheDesktop().Events()};
  PosixFiles files;
  Global global{
      Platform{TheDesktop(), data, files, folder.Path().string(), folder.File("Tessel"), "1", {}}};
  Vocabulary vocabulary{global};
  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> query = ShowForm("frmMain");
  RichTextBox& box = query->Find<RichTextBox>("txtQuery");
  ListBox& list = query->Find<ListBox>("lstOptions");
  CompletionList completion{*query, vocabulary};
};

TEST_F(CompletionTest, EveryCompletionKeyReachesItsSection) {
  for (const auto& [keyCode, first] : {std::pair{int{'T'}, "orders"},
                                       {int{'F'}, "customer_order_id"},
                                       {key::fullStop, "group by"}}) {
    Typed("SELECT ");
    Press(keyCode, ctrl);
    ASSERT_TRUE(ListShows()) << first;
    EXPECT_TRUE(list.HasFocus());
    EXPECT_EQ(list.List(0), first);
    EXPECT_EQ(list.ListIndex(), 0);
    Press(key::escape);
    ExpectClosed("SELECT ");
  }
}

TEST_F(CompletionTest, ModifiersChooseTheMode) {
  Typed("coi");
  Press('F', ctrl | shiftState::alt);
  EXPECT_EQ(Entries(), (std::vector<std::string>{"COI: customer_order_id", "COI: cost_of_ink"}));
  Press(key::down);
  Press(key::enter);
  ExpectClosed("cost_of_ink");
  Vocabulary::ListNamed(vocabulary.Fields(), "d2") = {"CityOfIndex", "CostOfIce"};
  Typed("coi");
  Press('F', ctrl | shiftState::shift);
  EXPECT_EQ(Entries(), (std::vector<std::string>{"COI: CityOfIndex", "COI: CostOfIce"}));
  Press(key::escape);
  Press('F', ctrl | shiftState::shift | shiftState::alt);
  EXPECT_EQ(list.ListCount(), 4);
  Press(key::escape);
  vocabulary.GlobalWords() = {"word_one", "word_other"};
  Typed("wo");
  Press(key::fullStop, ctrl | shiftState::alt);
  EXPECT_EQ(list.ListCount(), 2);
}

/// As a keyboard reports them whose Shift gives the key another character.
TEST_F(CompletionTest, ShiftedCharactersOfAKeyAreTheKey) {
  vocabulary.GlobalWords() = {"OneTwo", "OneTree"};
  Typed("ot");
  PressQtKey(Qt::Key_Greater, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(list.ListCount(), 2);
  Press(key::escape);
  Typed("");
  PressQtKey(Qt::Key_QuoteDbl, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(box.Text(), "''");
  Typed("");
  PressQtKey(Qt::Key_AsciiCircum, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(box.Text(), "<%^%>");
}

TEST_F(CompletionTest, QuotesAndTagsGoIntoTheText) {
  Typed("a O'Hara");
  box.Select(2, 6);
  Press(key::apostrophe, ctrl);
  EXPECT_EQ(box.Text(), "a 'O''Hara'");
  TypeText("x");
  EXPECT_EQ(box.Text(), "a 'O''Harax'");
  Typed("IN ");
  Press('6', ctrl);
  EXPECT_EQ(box.Text(), "IN <%^%>");
}

TEST_F(CompletionTest, ASingleMatchIsTakenWithoutTheList) {
  Typed("FROM it");
  bool shown = false;
  list.GotFocus = [&] { shown = true; };
  Press('T', ctrl);
  ExpectClosed("FROM items");
  EXPECT_FALSE(shown);
  Press('Z', ctrl);
  EXPECT_EQ(box.Text(), "FROM it") << "one step to undo";
}

TEST_F(CompletionTest, TypingNarrowsAndBackspaceWidens) {
  Typed("FROM ");
  Press('T', ctrl);
  EXPECT_EQ(list.ListCount(), 3);
  TypeText("order");
  EXPECT_EQ(box.Text(), "FROM order");
  EXPECT_EQ(list.ListCount(), 2);
  TypeText("_");
  EXPECT_EQ(list.ListCount(), 1);
  EXPECT_TRUE(ListShows());
  for (int i = 0; i < 6; ++i) Press(key::back);
  EXPECT_EQ(box.Text(), "FROM ");
  EXPECT_EQ(list.ListCount(), 3);
  TypeText("i");
  Press(key::tab);
  ExpectClosed("FROM items");
}

TEST_F(CompletionTest, TypingOnBehindTheWordClosesTheList) {
  Typed("");
  Press('T', ctrl);
  TypeText("orders");
  TypeText(" ");
  ExpectClosed("orders ");
  TypeText("x");
  EXPECT_EQ(box.Text(), "orders x");
}

TEST_F(CompletionTest, ArrowAndPageKeysMove) {
  WordList& words = Vocabulary::ListNamed(vocabulary.Tables(), "d1");
  words.clear();
  for (int i = 0; i < 100; ++i) words.push_back("t" + std::to_string(i));
  Typed("");
  Press('T', ctrl);
  Press(key::down);
  Press(key::down);
  Press(key::up);
  EXPECT_EQ(list.ListIndex(), 1);
  Press(key::pageDown);
  EXPECT_EQ(list.ListIndex(), 8);
  Press(key::pageUp);
  Press(key::end);
  EXPECT_EQ(list.ListIndex(), 99);
  EXPECT_TRUE(List().viewport()->rect().contains(List().visualRect(List().currentIndex())))
      << "the selected entry is in sight";
  Press(key::enter);
  ExpectClosed("t99");
}

TEST_F(CompletionTest, AClickSelectsAndADoubleClickTakes) {
  Typed("x ");
  Press('T', ctrl);
  host.SelectEntry(*query, "lstOptions", 2);
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_TRUE(ListShows());
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, Qt::NoModifier,
                     List().visualRect(List().currentIndex()).center());
  host.Settle();
  ExpectClosed("x order_lines");
}

TEST_F(CompletionTest, AClickIntoTheTextHidesTheList) {
  Typed("one two ");
  Press('T', ctrl);
  QTest::mouseClick(Editor().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 200));
  host.Settle();
  EXPECT_FALSE(ListShows());
  EXPECT_TRUE(box.HasFocus());
  EXPECT_EQ(box.Text(), "one two ");
}

TEST_F(CompletionTest, EveryEntryOfAShortListIsInSight) {
  Typed("");
  Press('T', ctrl);
  const QRect inside = List().viewport()->rect();
  for (int row = 0; row < 3; ++row) {
    const QRect entry = List().visualRect(List().model()->index(row, 0));
    EXPECT_TRUE(inside.contains(entry)) << row;
  }
  const int rest = inside.height() - List().visualRect(List().model()->index(2, 0)).bottom();
  EXPECT_LT(rest, List().sizeHintForRow(0)) << "and no room for one more";
}

TEST_F(CompletionTest, SevenEntriesOfALongListAreInSight) {
  WordList& words = Vocabulary::ListNamed(vocabulary.Tables(), "d1");
  for (int i = 0; i < 50; ++i) words.push_back("t" + std::to_string(i));
  Typed("");
  Press('T', ctrl);
  const auto shows = [&](int row) {
    return List().viewport()->rect().contains(List().visualRect(List().model()->index(row, 0)));
  };
  EXPECT_TRUE(shows(6));
  EXPECT_FALSE(shows(7));
}

TEST_F(CompletionTest, TheListIsAsWideAsItsLongestEntry) {
  WordList& words = Vocabulary::ListNamed(vocabulary.Tables(), "d1");
  words = {"a", std::string(50, 'W'), "b"};
  Typed("");
  Press('T', ctrl);
  const QModelIndex longest = List().model()->index(1, 0);
  const auto& delegate = dynamic_cast<CutTextDelegate&>(*List().itemDelegate());
  const int whole = delegate.WholeWidth(longest);
  EXPECT_GE(whole, List().fontMetrics().horizontalAdvance(QString(50, u'W')));
  EXPECT_GE(List().visualRect(longest).width(), whole) << "nothing is cut";
  EXPECT_NEAR(List().width(), whole + 2 * List().frameWidth(), 2);
  EXPECT_FALSE(List().horizontalScrollBar()->isVisible());
  Press(key::escape);
  for (int i = 0; i < 20; ++i) words.push_back("c");
  for (int i = 0; i < 20; ++i) words.push_back("c" + std::to_string(i));
  Press('T', ctrl);
  EXPECT_TRUE(List().verticalScrollBar()->isVisible());
  EXPECT_GE(List().visualRect(List().model()->index(1, 0)).width(), whole);
}

TEST_F(CompletionTest, AnEntryThatIsCutIsShownWholeInAToolTip) {
  const std::string name = std::string(400, 'x') + "<b>end";
  Vocabulary::ListNamed(vocabulary.Tables(), "d1") = {"a", name};
  Typed("");
  Press('T', ctrl);
  EXPECT_TRUE(Editor().geometry().contains(List().geometry()));
  const auto tipAt = [this](int row) {
    QToolTip::hideText();
    const QPoint place = List().visualRect(List().model()->index(row, 0)).center();
    QHelpEvent event(QEvent::ToolTip, place, List().viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(List().viewport(), &event);
    return QToolTip::text();
  };
  EXPECT_EQ(tipAt(1), AsPlainToolTip(name));
  EXPECT_FALSE(List().horizontalScrollBar()->isVisible());
  EXPECT_EQ(List().visualRect(List().model()->index(1, 0)).width(), List().viewport()->width());
  EXPECT_NE(tipAt(0), QStringLiteral("a"));
}

TEST_F(CompletionTest, TheListStandsBelowTheCaretsLine) {
  Typed("SELECT a,\n  b ");
  Press('T', ctrl);
  const QRect editor = Editor().geometry();
  EXPECT_NEAR(List().geometry().left(), editor.left() + Caret().left(), 1);
  EXPECT_NEAR(List().geometry().top(), editor.top() + Caret().bottom() + 1, 1);
}

TEST_F(CompletionTest, AtTheEdgesTheListMovesUpAndLeft) {
  Typed(std::string(500, '\n') + std::string(60, 'x') + " ");
  WidgetAs<SqlEditor>(*query, "txtQuery").ensureCursorVisible();
  host.Settle();
  Press('T', ctrl);
  const QRect editor = Editor().geometry();
  EXPECT_TRUE(editor.contains(List().geometry()));
  EXPECT_NEAR(List().geometry().bottom() + 1, editor.top() + Caret().top(), 1);
  Press(key::escape);
  query->Find<RichTextBox>("txtQuery").SetRightMargin(960000);
  Typed(std::string(400, 'x') + " ");
  Editor().ensureCursorVisible();
  host.Settle();
  Press('T', ctrl);
  EXPECT_TRUE(editor.contains(List().geometry()));
  EXPECT_NEAR(List().geometry().right(), editor.right(), 1);
}

TEST_F(CompletionTest, TwoHundredThousandWordsOpenAndScrollToTheirEnd) {
  WordList& words = Vocabulary::ListNamed(vocabulary.Tables(), "d1");
  words.clear();
  for (int i = 0; i < 200'000; ++i) words.push_back("customer_table_" + std::to_string(i));
  Typed("");
  QElapsedTimer timer;
  timer.start();
  Press('T', ctrl);
  std::cout << "200,000 words shown in " << timer.elapsed() << " ms (unoptimised build)\n";
  EXPECT_EQ(list.ListCount(), 200'000);
  Press(key::end);
  EXPECT_EQ(list.ListIndex(), 199'999);
  EXPECT_TRUE(List().viewport()->rect().contains(List().visualRect(List().currentIndex())));
  TypeText("customer_table_19999");
  EXPECT_EQ(list.ListCount(), 11);
  Press(key::enter);
  ExpectClosed("customer_table_19999");
}

}  // namespace
}  // namespace tessel::test
