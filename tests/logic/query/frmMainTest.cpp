#include "logic/query/frmMain.h"

#include <filesystem>

#include "tests/headless/HeadlessText.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class FakeHost : public QueryHost {
 public:
  void DoSQL(bool preview) override { previews.push_back(preview); }
  void FocusFirstRecordsWindow() override { ++recordsFocused; }
  bool HandleFrameKey(int /*keyCode*/, int /*shift*/) override { return false; }
  void FocusBrowser() override { ++browserFocused; }

  std::vector<bool> previews;
  int recordsFocused = 0;
  int browserFocused = 0;
};

class frmMainTest : public test::LogicFixture {
 protected:
  frmMainTest() {
    frame->Show();
    window.Show();
  }

  void TypeText(const std::string& text) { window.Type("txtQuery", text); }
  std::string Text() { return box.Text(); }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  FakeHost host;
  Vocabulary vocabulary{global};
  frmMain main{global, host, vocabulary};
  test::HeadlessWindow& window = desktop.WindowOf("frmMain");
  RichTextBox& box = window.Find<RichTextBox>("txtQuery");
};

TEST_F(frmMainTest, StartsAsACleanUntitledDocument) {
  EXPECT_EQ(window.Caption(), "SQL [untitled]");
}

TEST_F(frmMainTest, TypingMarksTheCaptionOnceOnly) {
  TypeText("S");
  EXPECT_EQ(window.Caption(), "SQL [untitled *]");
  window.SetCaption("watched");
  TypeText("ELECT");
  EXPECT_EQ(window.Caption(), "watched");
}

TEST_F(frmMainTest, OpensAFileAsACleanDocument) {
  const std::string path = folder.Write("orders.sql", "SELECT 'é😀'\r\n");
  desktop.AnswerFile(path);
  window.Click("cmdOpen");
  EXPECT_EQ(Text(), "SELECT 'é😀'\r\n");
  EXPECT_EQ(window.Caption(), "SQL [orders.sql]");
  TypeText("x");
  EXPECT_EQ(window.Caption(), "SQL [orders.sql *]");
}

TEST_F(frmMainTest, SavesToItsFileByteForByte) {
  const std::string path = folder.Write("a.sql", "one\ntwo\r\nthree");
  desktop.AnswerFile(path);
  window.Click("cmdOpen");
  box.Select(0, 3);
  box.SetSelText("1");
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "1\ntwo\r\nthree");
  EXPECT_EQ(window.Caption(), "SQL [a.sql]");
}

TEST_F(frmMainTest, SavingAnUntitledDocumentAsksForItsName) {
  TypeText("SELECT 1");
  desktop.AnswerFile(folder.File("new.sql"));
  window.Click("cmdSave");
  EXPECT_EQ(Content("new.sql"), "SELECT 1");
  EXPECT_EQ(window.Caption(), "SQL [new.sql]");
  const auto& dialog = desktop.FileDialogs().back();
  EXPECT_TRUE(dialog.save);
  EXPECT_EQ(dialog.filter, "Query Files (*.sql, *.txt)|*.sql;*.txt|All Files (*.*)|*.*");
  EXPECT_EQ(dialog.defaultExtension, "sql");
}

TEST_F(frmMainTest, CancellingTheSaveDialogLeavesTheDocumentChanged) {
  TypeText("SELECT 1");
  desktop.CancelFile();
  window.Click("cmdSave");
  EXPECT_EQ(window.Caption(), "SQL [untitled *]");
}

TEST_F(frmMainTest, SaveAsProposesTheCurrentFileAndTakesTheNewOne) {
  desktop.AnswerFile(folder.Write("a.sql", "x"));
  window.Click("cmdOpen");
  desktop.AnswerFile(folder.File("b.sql"));
  main.cmdSaveAs_Click();
  EXPECT_EQ(desktop.FileDialogs().back().fileName, folder.File("a.sql"));
  EXPECT_EQ(Content("b.sql"), "x");
  EXPECT_EQ(window.Caption(), "SQL [b.sql]");
}

TEST_F(frmMainTest, NewAsksAboutChangedTextAndCancelKeepsIt) {
  TypeText("x");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::YesNoCancel);
    EXPECT_EQ(message.icon, MessageIcon::Exclamation);
    EXPECT_TRUE(message.help);
  });
  window.Click("cmdNew");
  EXPECT_EQ(Text(), "x");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  window.Click("cmdNew");
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(window.Caption(), "SQL [untitled]");
}

TEST_F(frmMainTest, OpeningOverChangedTextAndAnsweringCancelLeavesTextAndFile) {
  desktop.AnswerFile(folder.Write("orders.sql", "old"));
  window.Click("cmdOpen");
  TypeText("!");
  const std::string before = Text();
  desktop.ExpectMessage("Save changes to: orders.sql?", MessageResult::Cancel);
  window.Click("cmdOpen");
  EXPECT_EQ(Text(), before);
  EXPECT_EQ(Content("orders.sql"), "old");
  EXPECT_EQ(window.Caption(), "SQL [orders.sql *]");
  EXPECT_EQ(desktop.FileDialogs().size(), 1U);
}

TEST_F(frmMainTest, AnsweringYesSavesBeforeGoingOn) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  box.SetText("new");
  desktop.ExpectMessage("Save changes to: a.sql?", MessageResult::Yes);
  window.Click("cmdNew");
  EXPECT_EQ(Content("a.sql"), "new");
  EXPECT_EQ(Text(), "");
}

TEST_F(frmMainTest, AFailedSaveFromTheQuestionKeepsTheText) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  box.SetText("new");
  files.FailWrites("No space left on device");
  desktop.ExpectMessage("Save changes to: a.sql?", MessageResult::Yes);
  desktop.ExpectMessage("Error saving " + folder.File("a.sql") + ": No space left on device",
                        MessageResult::Ok);
  window.Click("cmdNew");
  EXPECT_EQ(Text(), "new");
  EXPECT_EQ(Content("a.sql"), "old");
  EXPECT_EQ(window.Caption(), "SQL [a.sql *]");
}

TEST_F(frmMainTest, SaveToFileReportsFailureWithoutAMessage) {
  EXPECT_FALSE(main.SaveToFile(folder.File("missing/a.sql")));
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_TRUE(main.SaveToFile(folder.File("a.sql")));
}

TEST_F(frmMainTest, AMissingFileOrAFolderLeavesTheTextAndSaysWhy) {
  box.SetText("keep");
  main.SetDocument("", "");
  desktop.AnswerFile(folder.File("missing.sql"));
  desktop.ExpectMessage("Error opening " + folder.File("missing.sql") +
                            ": No such file or directory",
                        MessageResult::Ok);
  window.Click("cmdOpen");
  std::filesystem::create_directory(folder.File("folder.sql"));
  desktop.AnswerFile(folder.File("folder.sql"));
  desktop.ExpectMessage("Error opening " + folder.File("folder.sql") + ": Is a directory",
                        MessageResult::Ok);
  window.Click("cmdOpen");
  EXPECT_EQ(Text(), "keep");
  EXPECT_EQ(window.Caption(), "SQL [untitled]");
}

TEST_F(frmMainTest, AFileThatIsNotUtf8IsReadAndTheUserIsTold) {
  const std::string path = folder.Write("old.sql", "SELECT 'caf\xE9'");
  desktop.AnswerFile(path);
  desktop.ExpectMessage(
      path + " is not UTF-8 text. It was read as Windows-1252; saving it will write UTF-8.",
      MessageResult::Ok);
  window.Click("cmdOpen");
  EXPECT_EQ(Text(), "SELECT 'café'");
  window.Click("cmdSave");
  EXPECT_EQ(Content("old.sql"), "SELECT 'café'");
}

TEST_F(frmMainTest, ALargeFileOpensAndSavesWhole) {
  std::string text;
  while (text.size() < 50'000'000)
    text += "SELECT 'a line of a large query file', 12345 FROM orders;\n";
  desktop.AnswerFile(folder.Write("large.sql", text));
  window.Click("cmdOpen");
  EXPECT_TRUE(Text() == text);
  EXPECT_TRUE(main.SaveToFile(folder.File("copy.sql")));
  EXPECT_TRUE(Content("copy.sql") == text);
}

TEST_F(frmMainTest, InsertTextGoesBehindTheSelectionAndBecomesTheSelection) {
  box.SetText("SELECT é FROM x");
  box.Select(0, 6);
  main.InsertText(" ALL");
  EXPECT_EQ(Text(), "SELECT ALL é FROM x");
  EXPECT_EQ(box.SelText(), " ALL");
  EXPECT_EQ(window.Caption(), "SQL [untitled *]");
}

TEST_F(frmMainTest, WordWrapSetsTheRightMargin) {
  EXPECT_EQ(box.RightMargin(), 0);
  window.Click("chkWordWrap");
  EXPECT_EQ(box.RightMargin(), 960000);
  EXPECT_EQ(window.FocusName(), "txtQuery");
  window.Click("chkWordWrap");
  EXPECT_EQ(box.RightMargin(), 0);
}

TEST_F(frmMainTest, ExecuteIsAPreviewWhileShiftIsHeld) {
  window.Click("cmdExecute");
  desktop.HoldKey(key::shift);
  window.Click("cmdExecute");
  EXPECT_EQ(host.previews, (std::vector<bool>{false, true}));
  EXPECT_EQ(window.FocusName(), "txtQuery");
}

TEST_F(frmMainTest, F6AndF7GoToTheRecordsAndTheBrowserOnlyWithoutModifiers) {
  main.FocusText();
  window.PressKey(key::f6);
  window.PressKey(key::f7);
  window.PressKey(key::f6, shiftState::ctrl);
  window.PressKey(key::f7, shiftState::shift);
  EXPECT_EQ(host.recordsFocused, 1);
  EXPECT_EQ(host.browserFocused, 1);
}

TEST_F(frmMainTest, TheControlBoxNeverClosesTheWindow) {
  TypeText("x");
  window.CloseByControlBox();
  EXPECT_TRUE(window.Loaded());
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmMainTest, ClosingTheFrameAsksOnceAndCancelKeepsIt) {
  TypeText("x");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel);
  EXPECT_FALSE(frame->Unload());
  EXPECT_TRUE(window.Loaded());
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  EXPECT_TRUE(frame->Unload());
  EXPECT_EQ(desktop.Messages().size(), 2U);
}

const std::string changedQuestion =
    "a.sql has been changed by another program since it was read here.";

TEST_F(frmMainTest, AFileThatAnotherProgramChangedIsOverwrittenOnlyWhenTheUserSaysSo) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  box.SetText("mine");
  folder.Write("a.sql", "theirs");
  desktop.ExpectMessage(changedQuestion, MessageResult::Cancel, [](const Message& message) {
    EXPECT_EQ(message.captions, (std::vector<std::string>{"&Overwrite", "&Reload", "&Cancel"}));
    EXPECT_EQ(message.defaultAnswer, MessageResult::Cancel);
    EXPECT_TRUE(message.help);
  });
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "theirs");
  EXPECT_EQ(window.Caption(), "SQL [a.sql *]");
  desktop.ExpectMessage(changedQuestion, MessageResult::Yes);
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "mine");
  EXPECT_EQ(window.Caption(), "SQL [a.sql]");
  box.SetText("again");
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "again") << "what was written here is no change of another program";
}

TEST_F(frmMainTest, AChangedFileCanBeReloaded) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  box.SetText("mine");
  folder.Write("a.sql", "theirs");
  desktop.ExpectMessage(changedQuestion, MessageResult::No);
  window.Click("cmdSave");
  EXPECT_EQ(Text(), "theirs");
  EXPECT_EQ(Content("a.sql"), "theirs");
  EXPECT_EQ(window.Caption(), "SQL [a.sql]");
}

TEST_F(frmMainTest, ReloadingInsteadOfSavingStopsWhatWouldDiscardTheText) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  box.SetText("mine");
  folder.Write("a.sql", "theirs");
  desktop.ExpectMessage("Save changes to: a.sql?", MessageResult::Yes);
  desktop.ExpectMessage(changedQuestion, MessageResult::No);
  window.Click("cmdNew");
  EXPECT_EQ(Text(), "theirs");
}

TEST_F(frmMainTest, AFileThatWasOnlyTouchedOrHoldsThisTextIsSavedWithoutAQuestion) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  folder.Write("a.sql", "old");
  box.SetText("new");
  window.Click("cmdSave");
  folder.Write("a.sql", "newer");
  box.SetText("newer");
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "newer");
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmMainTest, AFileThatVanishesLeavesTheTextUnsavedAndSaysSo) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  EXPECT_EQ(window.Caption(), "SQL [a.sql]");
  std::filesystem::remove(folder.File("a.sql"));
  desktop.AdvanceTime(2000);
  EXPECT_EQ(window.Caption(), "SQL [a.sql *]");
  EXPECT_TRUE(window.VisibleInFact("fraRecovery"));
  EXPECT_EQ(window.Find<Label>("labRecovery").Caption(),
            "a.sql is no longer there: the text in this window is not in any file.");
  desktop.AdvanceTime(2000);
  EXPECT_TRUE(std::filesystem::exists(folder.File("Tessel.recovery-1"))) << "a copy is kept";
}

/// A text that was not changed is not asked about, unless it is the last of its kind.
TEST_F(frmMainTest, AVanishedFileIsNoticedBeforeItsTextGoes) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  std::filesystem::remove(folder.File("a.sql"));
  desktop.ExpectMessage("Save changes to: a.sql?", MessageResult::Cancel);
  window.Click("cmdNew");
  EXPECT_EQ(Text(), "old");
}

TEST_F(frmMainTest, AFileThatIsGoneIsWrittenAnewOnlyAfterTelling) {
  desktop.AnswerFile(folder.Write("a.sql", "old"));
  window.Click("cmdOpen");
  std::filesystem::remove(folder.File("a.sql"));
  const std::string question = "a.sql is no longer there. Write it anew?";
  desktop.ExpectMessage(question, MessageResult::Cancel);
  window.Click("cmdSave");
  EXPECT_FALSE(std::filesystem::exists(folder.File("a.sql")));
  desktop.ExpectMessage(question, MessageResult::Ok);
  window.Click("cmdSave");
  EXPECT_EQ(Content("a.sql"), "old");
}

TEST_F(frmMainTest, InsertedTextTakesTheLineEndsOfTheDocument) {
  box.SetText("SELECT 1\nFROM x");
  box.Select(8, 0);
  main.InsertText("\r\n  , 2");
  EXPECT_EQ(Text(), "SELECT 1\n  , 2\nFROM x");
  EXPECT_EQ(box.SelText(), "\n  , 2");
  box.SetText("");
  main.InsertText("SELECT\r\n  *\r\n");
  EXPECT_EQ(Text(), "SELECT\r\n  *\r\n");
}

TEST_F(frmMainTest, ThePlaceOfTheCaretShows) {
  const Label& place = window.Find<Label>("labPlace");
  EXPECT_EQ(place.Caption(), "Ln 1, Col 1");
  TypeText("select\n  1");
  EXPECT_EQ(place.Caption(), "Ln 2, Col 4");
  box.Select(3, 0);
  EXPECT_EQ(place.Caption(), "Ln 1, Col 4");
}

TEST_F(frmMainTest, CtrlHOpensTheFindLineWithTheReplacement) {
  box.SetFocus();
  window.PressKey('H', shiftState::ctrl);
  EXPECT_EQ(window.FocusName(), "txtFind");
  EXPECT_TRUE(window.VisibleInFact("txtReplace"));
}

TEST_F(frmMainTest, TheCompletionKeepsItsKey) {
  box.SetFocus();
  window.PressKey('F', shiftState::ctrl);
  EXPECT_FALSE(window.VisibleInFact("fraFind"));
}

TEST_F(frmMainTest, ZoomIsRemembered) {
  box.SetFocus();
  window.PressKey(key::equals, shiftState::ctrl);
  auto& editor = dynamic_cast<test::HeadlessRichTextBox&>(box);
  EXPECT_EQ(editor.Zoom(), 1);
  editor.TurnWheel(2);
  EXPECT_EQ(Content("Tessel.view.txt"), "editor zoom=3\n");
  window.PressKey('0', shiftState::ctrl);
  EXPECT_EQ(editor.Zoom(), 0);
  EXPECT_EQ(Content("Tessel.view.txt"), "editor zoom=0\n");
}

TEST_F(frmMainTest, TheStatementAtTheCaretIsSelected) {
  box.SetText("select 'a;b';\nselect 2;\n");
  box.Select(4, 0);
  ASSERT_TRUE(main.SelectStatement(SqlDialect::Standard));
  EXPECT_EQ(box.SelText(), "select 'a;b'");
  ASSERT_TRUE(main.SelectStatement(SqlDialect::Standard)) << "it may run again";
  EXPECT_EQ(box.SelText(), "select 'a;b'");
  box.Select(15, 0);
  ASSERT_TRUE(main.SelectStatement(SqlDialect::Standard));
  EXPECT_EQ(box.SelText(), "select 2");
  box.Select(box.Text().size(), 0);
  EXPECT_FALSE(main.SelectStatement(SqlDialect::Standard));
}

TEST_F(frmMainTest, F4GoesToWhatFailed) {
  box.SetText("x\nselect fro t");
  box.Select(2, 12);
  main.ShowFailure({7, 10});
  EXPECT_EQ(window.Find<EditorBox>("txtQuery").MarkedError(), (TextRange{9, 12}));
  box.Select(0, 0);
  box.SetFocus();
  window.PressKey(key::f4);
  EXPECT_EQ(box.SelStart(), 9U);
  EXPECT_EQ(box.SelLength(), 0U);
  main.ForgetFailure();
  box.Select(0, 0);
  window.PressKey(key::f4);
  EXPECT_EQ(box.SelStart(), 0U);
}

}  // namespace
}  // namespace tessel
