#include "logic/query/completion/CompletionList.h"

#include <gmock/gmock.h>

#include "logic/query/frmMain.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

using testing::ElementsAre;

constexpr int ctrl = shiftState::ctrl;
constexpr int rowHeight = 195;
constexpr int listMargin = 60;

class NoHost : public QueryHost {
 public:
  void DoSQL(bool /*preview*/) override {}
  void FocusFirstRecordsWindow() override {}
  bool HandleFrameKey(int /*keyCode*/, int /*shift*/) override { return false; }
  void FocusBrowser() override {}
};

class CompletionListTest : public test::LogicFixture {
 protected:
  CompletionListTest() {
    frame->Show();
    window.Show();
    vocabulary.LoadVocabulary();
    Vocabulary::ListNamed(vocabulary.Tables(), "d1") = {"orders", "Items", "order_lines", "orders"};
    Vocabulary::ListNamed(vocabulary.Fields(), "d1") = {"customer_order_id", "CityOfIndex", "date"};
    vocabulary.GlobalWords() = {"order by", "group by"};
    Vocabulary::ListNamed(vocabulary.Custom(), "fd1.T.F") = {"Oslo", "Graz"};
    window.ResizeControl("txtQuery", 12000, 6000);
    box.SetFocus();
  }

  /// Types a text and puts the caret behind it.
  void Typed(const std::string& text) {
    box.SetText(text);
    box.Select(text.size(), 0);
  }
  void Press(int keyCode, int shift = ctrl) { window.PressKey(keyCode, shift); }
  void PressPlain(int keyCode) { window.PressKey(keyCode); }
  [[nodiscard]] bool ListShows() const { return window.VisibleInFact("lstOptions"); }
  [[nodiscard]] std::vector<std::string> Entries() const {
    std::vector<std::string> entries;
    for (int i = 0; i < list.ListCount(); ++i) entries.push_back(list.List(i));
    return entries;
  }
  [[nodiscard]] std::string Selected() const { return list.List(list.ListIndex()); }
  void ExpectClosed(const std::string& text) {
    EXPECT_FALSE(ListShows());
    EXPECT_EQ(box.Text(), text);
    EXPECT_EQ(window.FocusName(), "txtQuery");
  }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  NoHost host;
  Vocabulary vocabulary{global};
  frmMain main{global, host, vocabulary};
  test::HeadlessWindow& window = desktop.WindowOf("frmMain");
  RichTextBox& box = window.Find<RichTextBox>("txtQuery");
  ListBox& list = window.Find<ListBox>("lstOptions");
};

// --- keys in the text ----------------------------------------------------------------------------

TEST_F(CompletionListTest, CtrlTWithNothingTypedListsEveryTableNameOnce) {
  Typed("SELECT ");
  Press('T');
  EXPECT_TRUE(ListShows());
  EXPECT_EQ(window.FocusName(), "lstOptions");
  EXPECT_THAT(Entries(), ElementsAre("orders", "Items", "order_lines"));
  EXPECT_EQ(Selected(), "orders");
  EXPECT_EQ(box.Text(), "SELECT ");
}

TEST_F(CompletionListTest, EachKeyHasItsSection) {
  Press('F');
  EXPECT_THAT(Entries(), ElementsAre("customer_order_id", "CityOfIndex", "date"));
  PressPlain(key::escape);
  Press(key::fullStop);
  EXPECT_THAT(Entries(), ElementsAre("order by", "group by", "Oslo", "Graz"));
}

TEST_F(CompletionListTest, AltCtrlFListsByTheInitialsOfItsWords) {
  Vocabulary::ListNamed(vocabulary.Fields(), "d2") = {"cost_of_ink"};
  Typed("coi");
  Press('F', ctrl | shiftState::alt);
  EXPECT_THAT(Entries(), ElementsAre("COI: customer_order_id", "COI: cost_of_ink"));
  PressPlain(key::escape);
  Press('F');
  ExpectClosed("coi");
}

TEST_F(CompletionListTest, ShiftCountsCapitalsAndBothModifiersDoBoth) {
  Vocabulary::ListNamed(vocabulary.Fields(), "d2") = {"CostOfInk", "cost_OfInk"};
  Typed("coi");
  Press('F', ctrl | shiftState::shift);
  EXPECT_THAT(Entries(), ElementsAre("COI: CityOfIndex", "COI: CostOfInk", "COI: cost_OfInk"));
  PressPlain(key::escape);
  Press('F', ctrl | shiftState::shift | shiftState::alt);
  EXPECT_THAT(Entries(), ElementsAre("COI: customer_order_id", "COI: CityOfIndex", "COI: CostOfInk",
                                     "COI: cost_OfInk"));
}

TEST_F(CompletionListTest, ASingleMatchIsInsertedWithoutTheListEverShowing) {
  bool shown = false;
  list.GotFocus = [&] { shown = true; };
  Typed("SELECT it");
  Press('T');
  ExpectClosed("SELECT Items");
  EXPECT_FALSE(shown);
  EXPECT_EQ(box.SelStart(), 12U);
  EXPECT_EQ(box.SelLength(), 0U);
}

TEST_F(CompletionListTest, ASingleMatchByInitialsInsertsTheWordOnly) {
  Typed("coi");
  Press('F', ctrl | shiftState::alt);
  ExpectClosed("customer_order_id");
}

TEST_F(CompletionListTest, WithoutAMatchNothingHappens) {
  Typed("xyz");
  Press('T');
  ExpectClosed("xyz");
  vocabulary.Tables().clear();
  Typed("");
  Press('T');
  ExpectClosed("");
}

TEST_F(CompletionListTest, TheSelectedTextIsTheTypedWordAndIsReplaced) {
  Typed("a it b");
  box.Select(2, 2);
  Press('T');
  ExpectClosed("a Items b");
}

TEST_F(CompletionListTest, OnlyWhatStandsBeforeTheCaretIsTyped) {
  Typed("ordxyz");
  box.Select(3, 0);
  Press('T');
  EXPECT_THAT(Entries(), ElementsAre("orders", "order_lines"));
  PressPlain(key::enter);
  ExpectClosed("ordersxyz");
  EXPECT_EQ(box.SelStart(), 6U);
}

TEST_F(CompletionListTest, WithoutCtrlTheKeysType) {
  PressPlain('T');
  PressPlain('F');
  PressPlain(key::fullStop);
  PressPlain(key::apostrophe);
  PressPlain('6');
  EXPECT_EQ(box.Text(), "tf.'6");
  EXPECT_FALSE(ListShows());
}

TEST_F(CompletionListTest, CtrlApostropheQuotesTheSelection) {
  Typed("name = O'Hara");
  box.Select(7, 6);
  Press(key::apostrophe);
  EXPECT_EQ(box.Text(), "name = 'O''Hara'");
  EXPECT_EQ(box.SelStart(), 15U) << "before the closing quote";
  EXPECT_EQ(box.SelLength(), 0U);
}

TEST_F(CompletionListTest, CtrlApostropheWithoutASelectionStandsBetweenTwoQuotes) {
  Typed("a");
  Press(key::apostrophe);
  EXPECT_EQ(box.Text(), "a''");
  EXPECT_EQ(box.SelStart(), 2U);
  Press(key::apostrophe, ctrl | shiftState::shift);
  EXPECT_EQ(box.Text(), "a''''") << "where the key needs Shift";
}

TEST_F(CompletionListTest, Ctrl6InsertsTheTagOfTheClipboard) {
  Typed("IN (x)");
  box.Select(4, 1);
  Press('6');
  EXPECT_EQ(box.Text(), "IN (<%^%>)");
  EXPECT_EQ(box.SelStart(), 9U);
}

// --- the list at the caret -----------------------------------------------------------------------

TEST_F(CompletionListTest, TheListFitsItsEntriesUpToSevenRows) {
  Press('T');
  EXPECT_EQ(list.Bounds().height, 3 * rowHeight + listMargin);
  PressPlain(key::escape);
  for (int i = 0; i < 20; ++i) vocabulary.GlobalWords().push_back("word " + std::to_string(i));
  Press(key::fullStop);
  EXPECT_EQ(list.Bounds().height, 7 * rowHeight + listMargin);
}

TEST_F(CompletionListTest, TheListIsAsWideAsItsLongestEntryAndNoWiderThanTheText) {
  Press('T');
  EXPECT_EQ(list.Bounds().width, list.WidthFor(7));
  PressPlain(key::escape);
  vocabulary.GlobalWords() = {std::string(50, 'x'), "y"};
  Press(key::fullStop);
  EXPECT_EQ(list.Bounds().width, 50 * 120);
  PressPlain(key::escape);
  vocabulary.GlobalWords().push_back(std::string(500, 'x'));
  Press(key::fullStop);
  EXPECT_EQ(list.Bounds().width, box.Bounds().width);
}

TEST_F(CompletionListTest, TheListStandsJustBelowTheLineOfTheCaret) {
  Typed("a\nbc ");
  Press('T');
  const Rect text = box.Bounds();
  EXPECT_EQ(list.Bounds().left, text.left + 3 * 120);
  EXPECT_EQ(list.Bounds().top, text.top + 2 * 240);
}

TEST_F(CompletionListTest, AtTheBottomTheListStandsAboveTheLine) {
  Typed(std::string(23, '\n'));
  Press('T');
  const Rect text = box.Bounds();
  const int caretTop = text.top + 23 * 240;
  EXPECT_EQ(list.Bounds().top + list.Bounds().height, caretTop);
  PressPlain(key::escape);
  Typed(std::string(20, '\n'));
  Press('T');
  EXPECT_EQ(list.Bounds().top, text.top + 21 * 240) << "here it still fits below";
}

TEST_F(CompletionListTest, AtTheRightEdgeTheListMovesLeft) {
  Typed(std::string(99, ' '));
  Press('T');
  const Rect text = box.Bounds();
  EXPECT_EQ(list.Bounds().left + list.Bounds().width, text.left + text.width);
}

TEST_F(CompletionListTest, TheListNeverLeavesTheTextAtTheTopOrLeft) {
  window.ResizeControl("txtQuery", 900, 500);
  Typed("\n\n");
  Press('T');
  EXPECT_EQ(list.Bounds().left, box.Bounds().left);
  EXPECT_EQ(list.Bounds().top, box.Bounds().top);
}

// --- keys in the list ----------------------------------------------------------------------------

TEST_F(CompletionListTest, TypingNarrowsTheList) {
  Press('T');
  PressPlain('O');
  EXPECT_THAT(Entries(), ElementsAre("orders", "order_lines"));
  for (const char letter : std::string("RDER")) PressPlain(letter);
  window.PressKey(key::hyphen, shiftState::shift);
  EXPECT_THAT(Entries(), ElementsAre("order_lines"));
  EXPECT_TRUE(ListShows()) << "a single match is left for the user to take";
  EXPECT_EQ(box.Text(), "order_");
  EXPECT_EQ(list.Bounds().height, rowHeight + listMargin);
  PressPlain(key::enter);
  ExpectClosed("order_lines");
}

TEST_F(CompletionListTest, TypingThatMatchesNothingClosesTheListAndStays) {
  Press('T');
  PressPlain('Q');
  ExpectClosed("q");
}

TEST_F(CompletionListTest, ACharacterThatIsPartOfNoWordEndsTheChoice) {
  Press('T');
  PressPlain(key::space);
  ExpectClosed(" ");
}

TEST_F(CompletionListTest, BackspaceWidensTheListUntilNothingIsTyped) {
  Typed("SELECT ord");
  Press('T');
  EXPECT_EQ(list.ListCount(), 2);
  for (int i = 0; i < 3; ++i) PressPlain(key::back);
  EXPECT_EQ(box.Text(), "SELECT ");
  EXPECT_EQ(list.ListCount(), 3);
  EXPECT_TRUE(ListShows());
  PressPlain(key::back);
  ExpectClosed("SELECT ");
}

TEST_F(CompletionListTest, NarrowingKeepsTheModeOfTheKey) {
  Vocabulary::ListNamed(vocabulary.Fields(), "d2") = {"cost_of_ink"};
  Typed("co");
  Press('F', ctrl | shiftState::alt);
  PressPlain('I');
  EXPECT_THAT(Entries(), ElementsAre("COI: customer_order_id", "COI: cost_of_ink"));
  PressPlain(key::down);
  PressPlain(key::tab);
  ExpectClosed("cost_of_ink");
}

TEST_F(CompletionListTest, EnterTabAndADoubleClickAccept) {
  for (const int accept : {key::enter, key::tab, 0}) {
    Typed("x = ord");
    Press('T');
    PressPlain(key::down);
    EXPECT_EQ(Selected(), "order_lines");
    if (accept == 0) window.DoubleClick("lstOptions");
    else PressPlain(accept);
    ExpectClosed("x = order_lines");
    EXPECT_EQ(box.SelStart(), 15U);
  }
}

TEST_F(CompletionListTest, EscapeAndLeftAndRightCloseAndChangeNothing) {
  for (const int closing : {key::escape, key::left, key::right}) {
    Typed("ord");
    Press('T');
    EXPECT_TRUE(ListShows());
    PressPlain(closing);
    ExpectClosed("ord");
  }
}

TEST_F(CompletionListTest, ArrowsAndPageKeysMoveTheSelectionWithinTheList) {
  WordList& words = Vocabulary::ListNamed(vocabulary.Tables(), "d1");
  words.clear();
  for (int i = 0; i < 20; ++i) words.push_back("t" + std::to_string(i));
  Press('T');
  PressPlain(key::up);
  EXPECT_EQ(Selected(), "t0");
  PressPlain(key::down);
  EXPECT_EQ(Selected(), "t1");
  PressPlain(key::pageDown);
  EXPECT_EQ(Selected(), "t8");
  PressPlain(key::end);
  EXPECT_EQ(Selected(), "t19");
  PressPlain(key::pageDown);
  EXPECT_EQ(Selected(), "t19");
  PressPlain(key::pageUp);
  EXPECT_EQ(Selected(), "t12");
  PressPlain(key::home);
  EXPECT_EQ(Selected(), "t0");
  EXPECT_EQ(box.Text(), "");
}

TEST_F(CompletionListTest, AnotherCompletionKeyGoesOnWithItsOwnSection) {
  Press('T');
  Press('F');
  EXPECT_THAT(Entries(), ElementsAre("customer_order_id", "CityOfIndex", "date"));
  EXPECT_TRUE(ListShows());
}

TEST_F(CompletionListTest, LeavingTheListHidesIt) {
  Press('T');
  box.SetFocus();
  EXPECT_FALSE(ListShows());
}

TEST_F(CompletionListTest, CaseAndSpacesOfTheWordAreKept) {
  Typed("grou");
  Press(key::fullStop);
  ExpectClosed("group by");
}

TEST_F(CompletionListTest, NamesAreInsertedAsTheirOwnDatabaseNeedsThemAndListedPlain) {
  Properties told;
  told.Set("Bracket Identifiers", std::int64_t{0});
  told.Set("Schema By Rowsets", std::int64_t{1});
  Vocabulary::ListNamed(vocabulary.Tables(), "d1") = {"Order Details"};
  Vocabulary::ListNamed(vocabulary.Tables(), "d2") = {"OrderId", "archive.OrderId"};
  Vocabulary::ListNamed(vocabulary.Fields(), "d2") = {"user"};
  vocabulary.SetQuoting("d2", NameQuoting(told));
  Typed("ord");
  Press('T');
  EXPECT_THAT(Entries(), ElementsAre("Order Details", "OrderId"));
  PressPlain(key::enter);
  ExpectClosed("[Order Details]");
  Typed("orderi");
  Press('T');
  ExpectClosed("\"OrderId\"");
  Typed("arch");
  Press('T');
  ExpectClosed("archive.\"OrderId\"");
  Typed("us");
  Press('F');
  ExpectClosed("\"user\"");
}

TEST_F(CompletionListTest, WordsThatAreNoNamesAreInsertedAsTheyAre) {
  Typed("group");
  Press(key::fullStop);
  ExpectClosed("group by");
}

}  // namespace
}  // namespace tessel
