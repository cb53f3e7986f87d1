#include "logic/results/RecordEditing.h"

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

class RecordEditingTest : public test::EditingFixture {
 protected:
  RecordEditingTest() { EXPECT_TRUE(Connect()); }
};

// --- the lock ------------------------------------------------------------------------------------

TEST_F(RecordEditingTest, LockedRowsCannotBeEditedByTypingOrKeys) {
  RunRows();
  EXPECT_FALSE(Grid().AllowUpdate());
  EXPECT_FALSE(Grid().AllowDelete());
  EXPECT_FALSE(Grid().AllowAddNew());
  ClickCell(0, name);
  Type("x");
  Press(key::f2);
  Press(key::f4);
  Press('0', shiftState::ctrl);
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_FALSE(Grid().ChangePending());
  EXPECT_TRUE(NoButtonShows());
  EXPECT_TRUE(desktop.Modals().empty() || desktop.Modals().back() != "frmText");
}

TEST_F(RecordEditingTest, LockingWhileEditableRowsShowLeavesThemEditableUntilTheNextQuery) {
  RunUnlocked();
  W().Click("chkLock");
  EXPECT_EQ(W().Find<CheckBox>("chkLock").ToolTip(),
            "Click to make records editable on subsequent queries (Ctrl+L)");
  EXPECT_EQ(W().FocusName(), "DataGrid");
  EXPECT_TRUE(Grid().AllowUpdate());
  ClickCell(0, name);
  Type("changed");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("changed"));
  RunRows("select again");
  EXPECT_FALSE(Grid().AllowUpdate());
  EXPECT_EQ(Grid().DataSource()->Lock(), LockType::ReadOnly);
}

TEST_F(RecordEditingTest, UnlockedRowsAreQueriedOptimisticallyAndMayBeChangedAddedAndDeleted) {
  RunUnlocked();
  EXPECT_EQ(Grid().DataSource()->Lock(), LockType::Optimistic);
  EXPECT_TRUE(Grid().AllowUpdate());
  EXPECT_TRUE(Grid().AllowDelete());
  EXPECT_TRUE(Grid().AllowAddNew());
}

// --- the warning ---------------------------------------------------------------------------------

TEST_F(RecordEditingTest, LockedRowsNeverShowTheWarningWhateverTheKeySays) {
  data.Answer("select", MemoryFields({"a"}), {{Text("x")}}).UniqueRows(false);
  ASSERT_TRUE(Run("select"));
  EXPECT_FALSE(Shows("lblWarning"));
  EXPECT_EQ(Grid().Bounds().top, 840);
}

TEST_F(RecordEditingTest, TheWarningTellsMoreWhenItIsDoubleClicked) {
  W().PressKey('L', shiftState::ctrl);
  data.Answer("select", MemoryFields({"a"}), {{Text("x")}}).UniqueRows(false);
  ASSERT_TRUE(Run("select"));
  EXPECT_TRUE(Shows("lblWarning"));
  EXPECT_EQ(Grid().Bounds().top, 960);
  desktop.ExpectMessage(warningDetails, MessageResult::Ok, [](const Message& message) {
    EXPECT_EQ(message.icon, MessageIcon::Exclamation);
    ASSERT_TRUE(message.help) << "a Help button";
    message.help();
  });
  W().DoubleClick("lblWarning");
  EXPECT_EQ(desktop.HelpRequests().back().data, 1304);
}

TEST_F(RecordEditingTest, ANewQueryAndAReconnectionHideTheButtonsAndTheWarning) {
  W().PressKey('L', shiftState::ctrl);
  data.Answer("keyless", MemoryFields({"a"}), {{Text("y")}}).UniqueRows(false);
  ASSERT_TRUE(Run("keyless"));
  Type("x");
  EXPECT_TRUE(ButtonsShow());
  EXPECT_TRUE(Shows("lblWarning"));
  data.AnswerNothing("other");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::No);
  ASSERT_TRUE(Run("other"));
  EXPECT_TRUE(NoButtonShows());
  EXPECT_FALSE(Shows("lblWarning"));
  RunUnlocked("third");
  ClickCell(0, name);
  Type("x");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::No);
  W().Click("cmdReconnect");
  EXPECT_TRUE(NoButtonShows());
}

// --- a change and its buttons --------------------------------------------------------------------

TEST_F(RecordEditingTest, TheFirstKeystrokeShowsTheButtons) {
  RunUnlocked();
  ClickCell(0, name);
  EXPECT_TRUE(NoButtonShows());
  Type("x");
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Grid().CellText(), "x") << "typing replaces what the cell held";
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None) << "nothing is in the record yet";
}

TEST_F(RecordEditingTest, AcceptWritesWhatIsBeingTyped) {
  RunUnlocked();
  ClickCell(0, name);
  Type("new name");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("new name"));
  EXPECT_TRUE(NoButtonShows());
  EXPECT_FALSE(Grid().ChangePending());
  EXPECT_EQ(W().FocusName(), "DataGrid");
  EXPECT_EQ(Grid().ShownText(0, name), "new name");
}

TEST_F(RecordEditingTest, TheAcceptButtonWritesToo) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  W().Click("cmdAccept");
  EXPECT_EQ(Stored(0, name), Text("b"));
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RecordEditingTest, RejectDropsTheCellAndTheRow) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  ClickCell(0, active);
  Press(key::space);
  EXPECT_EQ(Grid().ShownText(0, name), "b");
  EXPECT_EQ(Grid().ShownText(0, active), "False");
  Press('R', shiftState::ctrl);
  EXPECT_EQ(Grid().ShownText(0, name), "one");
  EXPECT_EQ(Grid().ShownText(0, active), "True");
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(data.Log().changes, 0);
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RecordEditingTest, RejectDropsATextThatCouldNotBeAccepted) {
  RunUnlocked();
  ClickCell(0, id);
  Type("abc");
  W().Click("cmdReject");
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_EQ(Grid().ShownText(0, id), "1");
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(RecordEditingTest, CtrlSAndCtrlRDoNothingWhileTheButtonsAreHidden) {
  RunUnlocked();
  ClickCell(0, name);
  Press('S', shiftState::ctrl);
  Press('R', shiftState::ctrl);
  EXPECT_EQ(data.Log().changes, 0);
  EXPECT_TRUE(NoButtonShows());
  Grid().DataSource()->SetFieldValue(name, Text("pending, and no button tells it"));
  Press('S', shiftState::ctrl);
  EXPECT_EQ(data.Log().changes, 0);
  Press('R', shiftState::ctrl);
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::InProgress);
}

TEST_F(RecordEditingTest, MovingWithoutAChangeHidesTheButtons) {
  RunUnlocked();
  for (const auto& [row, column] : {std::pair(0, active), std::pair(1, name)}) {
    ClickCell(0, name);
    Type("b");
    Grid().EndEdit();
    Grid().DataSource()->CancelUpdate();
    EXPECT_TRUE(ButtonsShow()) << "nobody has told the window";
    ClickCell(row, column);
    EXPECT_TRUE(NoButtonShows());
  }
}

TEST_F(RecordEditingTest, MovingInsideTheRowKeepsTheButtonsOfAChange) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  ClickCell(0, active);
  EXPECT_TRUE(ButtonsShow());
  Press(key::left);
  EXPECT_TRUE(ButtonsShow());
}

TEST_F(RecordEditingTest, EscapeTakesBackTheOnlyChangeAndHidesTheButtons) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  Press(key::escape);
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(Grid().ShownText(0, name), "one");
}

TEST_F(RecordEditingTest, EscapeTakesBackTheCellFirstAndThenTheRow) {
  RunUnlocked();
  ClickCell(0, active);
  Press(key::space);
  ClickCell(0, name);
  Type("b");
  Press(key::escape);
  EXPECT_EQ(Grid().CellText(), "one");
  EXPECT_EQ(Grid().ShownText(0, active), "False") << "the other change is still there";
  EXPECT_TRUE(ButtonsShow());
  Press(key::escape);
  EXPECT_EQ(Grid().ShownText(0, active), "True");
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(RecordEditingTest, LeavingTheCellKeepsTheRowPending) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  Press(key::tab);
  EXPECT_EQ(Grid().CurrentColumn(), active);
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::InProgress);
  EXPECT_EQ(Stored(0, name), Text("one")) << "not written yet";
}

TEST_F(RecordEditingTest, LeavingTheRowWritesIt) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  Press(key::down);
  EXPECT_EQ(Stored(0, name), Text("b"));
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 2);
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(RecordEditingTest, ATextThatIsNoValueIsShownAndKeepsTheUserInTheCell) {
  RunUnlocked();
  ClickCell(0, id);
  Type("abc");
  ExpectNotice("This is no value of the type of the field 'id'.");
  ClickCell(1, name);
  EXPECT_TRUE(Grid().EditActive());
  EXPECT_EQ(Grid().CellText(), "abc");
  EXPECT_EQ(Grid().CurrentColumn(), id);
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 1);
  ExpectNotice("This is no value of the type of the field 'id'.");
  W().Click("cmdAccept");
  EXPECT_TRUE(ButtonsShow()) << "a failed accept keeps the change";
  EXPECT_EQ(Grid().CellText(), "abc");
}

// --- failures ------------------------------------------------------------------------------------

TEST_F(RecordEditingTest, AFailedAcceptShowsTheProvidersWordsAndKeepsTheChange) {
  RunUnlocked();
  data.changeFailure = MemoryError("CHECK constraint failed: name");
  ClickCell(0, name);
  Type("b");
  ExpectNotice("CHECK constraint failed: name");
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Grid().ShownText(0, name), "b");
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::InProgress);
  data.changeFailure.reset();
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("b"));
}

TEST_F(RecordEditingTest, ARowThatCannotBeWrittenKeepsTheUserOnIt) {
  RunUnlocked();
  data.changeFailure = MemoryError("database is locked");
  ClickCell(0, name);
  Type("b");
  ExpectNotice("database is locked");
  Press(key::down);
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 1);
  EXPECT_EQ(Grid().ShownText(0, name), "b");
  EXPECT_TRUE(ButtonsShow());
}

TEST_F(RecordEditingTest, ARowThatSomebodyElseChangedIsAConflictAndStays) {
  RunUnlocked();
  table->at(0).at(name) = Text("theirs");
  ClickCell(0, name);
  Type("mine");
  ExpectNotice(
      "The record was changed or deleted by somebody else since it was read. Nothing was changed.");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("theirs"));
  EXPECT_EQ(Grid().ShownText(0, name), "mine");
  EXPECT_TRUE(ButtonsShow());
}

TEST_F(RecordEditingTest, ARowThatMatchesSeveralIsNotWritten) {
  W().PressKey('L', shiftState::ctrl);
  data.Answer("twins", {MemoryField("a"), MemoryField("b")},
              {{Text("x"), Text("y")}, {Text("x"), Text("y")}})
      .UniqueRows(false);
  ASSERT_TRUE(Run("twins"));
  ClickCell(0, 1);
  Type("z");
  ExpectNotice("The record matches several rows; nothing was changed.");
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(ButtonsShow());
}

TEST_F(RecordEditingTest, RowsThatCannotBeWrittenAreNotOfferedForEditing) {
  W().PressKey('L', shiftState::ctrl);
  data.Answer("join", {MemoryField("a")}, {{Text("x")}}).Writable(false).UniqueRows(false);
  ASSERT_TRUE(Run("join"));
  EXPECT_FALSE(Grid().AllowUpdate());
  EXPECT_FALSE(Grid().AllowDelete());
  EXPECT_FALSE(Grid().AllowAddNew());
  EXPECT_TRUE(Shows("lblWarning")) << "the warning keeps its own rule";
  Type("z");
  Press(key::f2);
  Press(key::f4);
  Press('0', shiftState::ctrl);
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_TRUE(NoButtonShows());
  EXPECT_FALSE(W().Menu("mnuBLOBLoad").Enabled());
  EXPECT_FALSE(W().Menu("mnuBLOBNull").Enabled());
}

TEST_F(RecordEditingTest, AColumnThatCannotBeWrittenIsReadOnly) {
  W().PressKey('L', shiftState::ctrl);
  std::vector<FieldInfo> fields = MemoryFields({"a", "twice"});
  fields[1].updatable = false;
  data.Answer("computed", fields, {{Text("x"), Text("xx")}});
  ASSERT_TRUE(Run("computed"));
  EXPECT_FALSE(Grid().ColumnLocked(0));
  EXPECT_TRUE(Grid().ColumnLocked(1));
  ClickCell(0, 1);
  Type("z");
  EXPECT_FALSE(Grid().EditActive());
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "xx");
    EXPECT_TRUE(w.Find<RichTextBox>("txtText").Locked());
    w.CloseByControlBox();
  });
  Press(key::f4);
}

TEST_F(RecordEditingTest, AWriteThatIsCancelledStaysPending) {
  RunUnlocked();
  data.holdChanges = true;
  ClickCell(0, name);
  Type("b");
  desktop.OnModal("dlgAsync", [](HeadlessWindow& w) {
    EXPECT_EQ(w.Find<Label>("lblMessage").Caption(), "\nSaving the record...");
    w.Click("cmdCancel");
  });
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Grid().ShownText(0, name), "b");
  EXPECT_EQ(Stored(0, name), Text("one"));
  data.holdChanges = false;
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("b"));
}

TEST_F(RecordEditingTest, AProviderWithoutThreadsWritesBlocking) {
  W().CloseByControlBox();
  data.properties.Set("Data Source Object Threading Model", std::int64_t{2});
  records = std::make_unique<frmRecords>(global, async, host);
  ASSERT_TRUE(Connect());
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("b"));
}

// --- null, empty and boolean ---------------------------------------------------------------------

TEST_F(RecordEditingTest, CtrlZeroEntersNull) {
  RunUnlocked();
  ClickCell(0, name);
  Press('0', shiftState::ctrl);
  EXPECT_EQ(Grid().ShownText(0, name), "NULL");
  EXPECT_TRUE(ButtonsShow());
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Value());
}

TEST_F(RecordEditingTest, CtrlZeroInTheMiddleOfTypingEntersNullToo) {
  RunUnlocked();
  ClickCell(0, name);
  Type("abc");
  Press('0', shiftState::ctrl);
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_EQ(Grid().ShownText(0, name), "NULL");
}

TEST_F(RecordEditingTest, AnEmptyTextIsEmptyInATextFieldAndNullInAnyOther) {
  RunUnlocked();
  ClickCell(0, name);
  Press(key::del);
  Press(key::tab);
  EXPECT_EQ(Grid().ShownText(0, name), "");
  Press(key::del);
  Press(key::tab);
  EXPECT_EQ(Grid().ShownText(0, active), "NULL");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text(""));
  EXPECT_EQ(Stored(0, active), Value());
}

TEST_F(RecordEditingTest, ANullThatIsOnlyOpenedStaysNull) {
  RunUnlocked();
  ClickCell(1, name);
  Press(key::f2);
  EXPECT_TRUE(Grid().EditActive());
  Press(key::tab);
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None);
  EXPECT_EQ(Grid().ShownText(1, name), "NULL");
}

TEST_F(RecordEditingTest, SpaceTurnsABooleanOver) {
  RunUnlocked();
  ClickCell(1, active);
  EXPECT_EQ(Grid().ShownText(1, active), "NULL");
  for (const char* shown : {"True", "False", "True"}) {
    Press(key::space);
    EXPECT_EQ(Grid().ShownText(1, active), shown);
  }
  Press('0', shiftState::ctrl);
  EXPECT_EQ(Grid().ShownText(1, active), "NULL");
  EXPECT_TRUE(ButtonsShow());
}

// --- keys of the cell ----------------------------------------------------------------------------

TEST_F(RecordEditingTest, F2PutsTheCaretAtTheEndAndCtrlASelectsTheWholeText) {
  RunUnlocked();
  ClickCell(0, name);
  Press(key::f2);
  EXPECT_EQ(G().EditorSelStart(), 3U);
  EXPECT_EQ(G().EditorSelLength(), 0U);
  Press('A', shiftState::ctrl);
  EXPECT_EQ(G().EditorSelStart(), 0U);
  EXPECT_EQ(G().EditorSelLength(), 3U);
  EXPECT_TRUE(NoButtonShows()) << "nothing was changed";
}

TEST_F(RecordEditingTest, CtrlAOnALockedCellLeavesThatCellAloneSelected) {
  RunRows();
  ClickCell(0, name);
  G().SelectColumns(0, 1);
  Press('A', shiftState::ctrl);
  EXPECT_FALSE(Grid().EditActive());
  Press('C', shiftState::ctrl);
  EXPECT_EQ(desktop.TheClipboard().Text(), "one");
}

TEST_F(RecordEditingTest, F3ShowsTheTextOfTheCellAndChangesNothing) {
  RunRows();
  ClickCell(0, name);
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    EXPECT_EQ(w.Find<TextControl>("txtText").Text(), "one");
    EXPECT_TRUE(w.Find<TextControl>("txtText").Locked());
    EXPECT_EQ(w.HelpContext(), 8602);
    EXPECT_TRUE(w.Caption().ends_with("name, row 1")) << w.Caption();
    EXPECT_EQ(w.FileDialogNamed("dlgCommon").defaultExtension, "txt");
    EXPECT_EQ(w.Bounds().width, 9600);
    EXPECT_EQ(w.Bounds().height, 6300);
    EXPECT_TRUE(w.FileDialogNamed("dlgCommon")
                    .filter.starts_with("Common Files|*.txt;*.xml;*.html;*.htm|HTML Files "
                                        "(*.html,*.htm)|*.html;*.htm|XML Files (*.xml)|*.xml|"));
    w.PressKey(key::escape);
  });
  Press(key::f3);
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(RecordEditingTest, F4WritesTheConfirmedTextIntoTheCell) {
  RunUnlocked();
  ClickCell(0, name);
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    EXPECT_EQ(w.Find<TextControl>("txtText").Text(), "one");
    EXPECT_EQ(w.HelpContext(), 8602);
    w.Find<TextControl>("txtText").SetText("line 1\r\nline 2");
    w.Click("cmdOK");
  });
  Press(key::f4);
  EXPECT_TRUE(ButtonsShow());
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("line 1\r\nline 2"));
}

TEST_F(RecordEditingTest, F4ThatIsCancelledOrChangesNothingLeavesTheCell) {
  RunUnlocked();
  ClickCell(1, name);
  desktop.OnModal("frmText", [](HeadlessWindow& w) { w.Click("cmdCancel"); });
  Press(key::f4);
  desktop.OnModal("frmText", [](HeadlessWindow& w) { w.Click("cmdOK"); });
  Press(key::f4);
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(Grid().ShownText(1, name), "NULL") << "and no empty text";
}

TEST_F(RecordEditingTest, F4WithATextThatIsNoValueShowsWhy) {
  RunUnlocked();
  ClickCell(0, id);
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    w.Find<TextControl>("txtText").SetText("abc");
    w.Click("cmdOK");
  });
  ExpectNotice("This is no value of the type of the field 'id'.");
  Press(key::f4);
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(Grid().ShownText(0, id), "1");
}

TEST_F(RecordEditingTest, F8ShowsOrHidesTheSidebarAndKeysWithShiftDoNothing) {
  RunUnlocked();
  ClickCell(0, name);
  host.commands.clear();
  Press(key::f8);
  EXPECT_EQ(host.commands, (std::vector<std::string>{"sidebar"}));
  Press(key::f2, shiftState::shift);
  Press(key::f4, shiftState::shift);
  EXPECT_FALSE(Grid().EditActive());
}

TEST_F(RecordEditingTest, TheWindowsShortcutsReachTheWindowWhileACellIsEdited) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  Press('L', shiftState::ctrl);
  EXPECT_TRUE(W().Find<CheckBox>("chkLock").Value());
  EXPECT_EQ(Grid().CellText(), "b");
}

// --- new records ---------------------------------------------------------------------------------

TEST_F(RecordEditingTest, ChangingACellOfTheNewRecordShowsNoButtons) {
  RunUnlocked();
  W().GoToNewRow("DataGrid");
  Press(key::right);
  Type("four");
  EXPECT_TRUE(NoButtonShows());
  Press(key::tab);
  EXPECT_TRUE(NoButtonShows());
  EXPECT_TRUE(Grid().OnNewRow());
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::Add);
}

TEST_F(RecordEditingTest, LeavingTheNewRecordWritesItWithItsGeneratedKey) {
  RunUnlocked();
  W().GoToNewRow("DataGrid");
  Press(key::right);
  Type("four");
  Press(key::down);
  ASSERT_EQ(table->size(), 4U);
  EXPECT_EQ(Stored(3, id), Int(4));
  EXPECT_EQ(Stored(3, name), Text("four"));
  EXPECT_EQ(Grid().ShownText(3, id), "4");
  EXPECT_TRUE(Grid().OnNewRow()) << "on the next one";
  EXPECT_EQ(Grid().ShownText(4, id), "");
}

TEST_F(RecordEditingTest, ANewRecordThatFailsKeepsTheUserOnItAndEscapeGivesItUp) {
  RunUnlocked();
  W().GoToNewRow("DataGrid");
  Type("1");
  ExpectNotice("UNIQUE constraint failed: id");
  Press(key::down);
  EXPECT_TRUE(Grid().OnNewRow());
  EXPECT_EQ(Grid().ShownText(3, id), "1");
  Press(key::escape);
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None);
  EXPECT_EQ(table->size(), 3U);
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 3);
}

TEST_F(RecordEditingTest, VisitingTheNewRowWithoutTypingAddsNothing) {
  RunUnlocked();
  W().GoToNewRow("DataGrid");
  Press(key::f2);
  Press(key::up);
  EXPECT_EQ(table->size(), 3U);
  EXPECT_FALSE(Grid().OnNewRow());
}

TEST_F(RecordEditingTest, AQueryWithoutRowsOffersTheNewRecordAtOnce) {
  W().PressKey('L', shiftState::ctrl);
  MemoryResult& answer = data.Answer("none", {MemoryField("a")}, {});
  ASSERT_TRUE(Run("none"));
  EXPECT_TRUE(Grid().OnNewRow());
  W().ClickGridCell("DataGrid", 0, 0);
  Type("first");
  Press(key::enter);
  EXPECT_EQ(answer.rows->size(), 1U);
}

// --- deleting ------------------------------------------------------------------------------------

TEST_F(RecordEditingTest, DelDeletesTheSelectedRowsAfterAsking) {
  RunUnlocked();
  W().SelectGridRows("DataGrid", {2, 0});
  desktop.ExpectMessage("Delete 2 record(s)?", MessageResult::Yes, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::YesNo);
    EXPECT_EQ(message.icon, MessageIcon::Question);
  });
  Press(key::del);
  ASSERT_EQ(table->size(), 1U);
  EXPECT_EQ(Stored(0, id), Int(2));
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 1);
  EXPECT_TRUE(Grid().SelBookmarks().empty());
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 2);
}

TEST_F(RecordEditingTest, AnsweringNoDeletesNothing) {
  RunUnlocked();
  W().SelectGridRows("DataGrid", {1});
  desktop.ExpectMessage("Delete 1 record(s)?", MessageResult::No, [](const Message& message) {
    EXPECT_EQ(message.defaultAnswer, MessageResult::No) << "Enter does no harm";
  });
  Press(key::del);
  EXPECT_EQ(table->size(), 3U);
}

TEST_F(RecordEditingTest, DeletingStopsWithTheMessageAtTheFirstFailure) {
  RunUnlocked();
  data.changeFailure = MemoryError("FOREIGN KEY constraint failed");
  data.changesBeforeFailure = 1;
  W().SelectGridRows("DataGrid", {0, 1, 2});
  desktop.ExpectMessage("Delete 3 record(s)?", MessageResult::Yes);
  ExpectNotice("FOREIGN KEY constraint failed");
  Press(key::del);
  EXPECT_EQ(table->size(), 2U);
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 2);
  EXPECT_EQ(data.Log().changes, 2) << "the third was not tried";
  EXPECT_EQ(Grid().SelBookmarks(), (std::vector<Bookmark>{2, 3}));
}

TEST_F(RecordEditingTest, DeletingAllRowsLeavesTheNewRow) {
  RunUnlocked();
  W().SelectGridRows("DataGrid", {0, 1, 2});
  desktop.ExpectMessage("Delete 3 record(s)?", MessageResult::Yes);
  Press(key::del);
  EXPECT_TRUE(table->empty());
  EXPECT_TRUE(Grid().OnNewRow());
}

TEST_F(RecordEditingTest, DelOnLockedRowsDeletesNothing) {
  RunRows();
  W().SelectGridRows("DataGrid", {0});
  Press(key::del);
  EXPECT_EQ(table->size(), 3U);
}

// --- beside it -----------------------------------------------------------------------------------

TEST_F(RecordEditingTest, AFieldTagTakesNoValueFromTheNewRow) {
  RunUnlocked();
  W().GoToNewRow("DataGrid");
  EXPECT_THROW(static_cast<void>(records->GetTagFieldValue("id", false, false)), Error);
}

TEST_F(RecordEditingTest, UnloadingTheWindowWithAPendingChangeIsSafe) {
  RunUnlocked();
  ClickCell(0, name);
  Type("b");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::No);
  W().CloseByControlBox();
  EXPECT_EQ(Stored(0, name), Text("one"));
}

}  // namespace
}  // namespace tessel
