#include <algorithm>
#include <filesystem>

#include "logic/query/frmMain.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class NoHost : public QueryHost {
 public:
  void DoSQL(bool /*preview*/) override {}
  void FocusFirstRecordsWindow() override {}
  bool HandleFrameKey(int /*keyCode*/, int /*shift*/) override { return false; }
  void FocusBrowser() override {}
};

class RecoveryTest : public test::LogicFixture {
 protected:
  /// One run of the program, as far as its query window goes. Destroying it is what a crash is: no
  /// handler runs, and the system gives its locks back.
  struct Run {
    explicit Run(RecoveryTest& test)
        : frame(test.desktop.MakeWindow("frmMDI")),
          vocabulary(test.global),
          main(test.global, host, vocabulary),
          window(test.desktop.WindowOf("frmMain")),
          box(window.Find<RichTextBox>("txtQuery")) {
      frame->Show();
      window.Show();
    }
    std::string Line() {
      return window.VisibleInFact("fraRecovery") ? window.Find<Label>("labRecovery").Caption() : "";
    }

    std::unique_ptr<Window> frame;
    NoHost host;
    Vocabulary vocabulary;
    frmMain main;
    test::HeadlessWindow& window;
    RichTextBox& box;
  };

  /// Leaves a copy of a text behind.
  void Crash(const std::string& text, const std::string& path = "") {
    Run run(*this);
    if (!path.empty()) {
      desktop.AnswerFile(path);
      run.window.Click("cmdOpen");
    }
    run.box.SetText(text);
    desktop.AdvanceTime(2000);
  }
  std::string Copy(int number) const {
    return folder.File("Tessel.recovery-" + std::to_string(number));
  }
  std::optional<UnsavedText> Kept(int number) {
    if (!files.FileExists(Copy(number))) return std::nullopt;
    return UnpackUnsaved(files.ReadWhole(Copy(number)));
  }
  std::ptrdiff_t FilesInFolder() const {
    const std::filesystem::directory_iterator all(folder.Path());
    return std::distance(begin(all), end(all));
  }
};

TEST(RecoveryCopyTest, WhatIsPackedUnpacksAlike) {
  const UnsavedText unsaved{std::string("SELECT 'é'\r\n\0x\n", 16),
                            3,
                            {"/a b/c\nd.sql", "12-34", TextEncoding::Utf8WithMark}};
  const auto back = UnpackUnsaved(PackUnsaved(unsaved));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->text, unsaved.text);
  EXPECT_EQ(back->caret, 3U);
  EXPECT_EQ(back->origin.path, unsaved.origin.path);
  EXPECT_EQ(back->origin.stamp, "12-34");
  EXPECT_EQ(back->origin.encoding, TextEncoding::Utf8WithMark);
}

TEST(RecoveryCopyTest, NoPartOfACopyIsTakenForAWholeOne) {
  const std::string whole = PackUnsaved({"SELECT 1\n", 2, {"/a.sql", "1-2", TextEncoding::Utf8}});
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(UnpackUnsaved(whole.substr(0, length))) << length;
  EXPECT_FALSE(UnpackUnsaved(whole + "x"));
  EXPECT_FALSE(UnpackUnsaved("Tessel recovery 1 1 1 99999999999999999999 0 -\nx"));
}

TEST_F(RecoveryTest, UnsavedTextIsCopiedWithinTwoSecondsForItsOwnerOnly) {
  Run run(*this);
  run.window.Type("txtQuery", "SELECT 1");
  desktop.AdvanceTime(1500);
  const auto kept = Kept(1);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->text, "SELECT 1");
  EXPECT_EQ(kept->caret, 8U);
  EXPECT_EQ(std::filesystem::status(Copy(1)).permissions() & std::filesystem::perms::all,
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  const int writes = files.WriteCount();
  desktop.AdvanceTime(60000);
  EXPECT_EQ(files.WriteCount(), writes) << "what has not changed is not written again";
}

TEST_F(RecoveryTest, SavingRemovesTheCopy) {
  Run run(*this);
  run.window.Type("txtQuery", "SELECT 1");
  desktop.AdvanceTime(2000);
  desktop.AnswerFile(folder.File("a.sql"));
  run.window.Click("cmdSave");
  EXPECT_FALSE(Kept(1));
  desktop.AdvanceTime(60000);
  EXPECT_FALSE(Kept(1));
}

TEST_F(RecoveryTest, DiscardingTheTextOnPurposeRemovesTheCopy) {
  Run run(*this);
  run.window.Type("txtQuery", "SELECT 1");
  desktop.AdvanceTime(2000);
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
  run.window.Click("cmdNew");
  desktop.AdvanceTime(2000);
  EXPECT_FALSE(Kept(1));
}

TEST_F(RecoveryTest, AnOrdinaryEndLeavesNothingBehind) {
  {
    Run run(*this);
    run.window.Type("txtQuery", "SELECT 1");
    desktop.AdvanceTime(2000);
    desktop.ExpectMessage("Save changes to SQL?", MessageResult::No);
    EXPECT_TRUE(run.frame->Unload());
  }
  EXPECT_EQ(FilesInFolder(), 0);
}

TEST_F(RecoveryTest, AnEndThatTheUserCancelsKeepsTheCopy) {
  Run run(*this);
  run.window.Type("txtQuery", "SELECT 1");
  desktop.AdvanceTime(2000);
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel);
  EXPECT_FALSE(run.frame->Unload());
  EXPECT_TRUE(Kept(1));
}

TEST_F(RecoveryTest, AfterACrashTheTextIsOfferedAndTakenBackWithItsCaretAndFile) {
  const std::string path = folder.Write("orders.sql", "old");
  {
    Run crashed(*this);
    desktop.AnswerFile(path);
    crashed.window.Click("cmdOpen");
    crashed.box.SetText("SELECT é FROM orders");
    crashed.box.Select(7, 2);
    desktop.AdvanceTime(2000);
  }
  Run run(*this);
  EXPECT_EQ(run.Line(),
            "Unsaved SQL was kept from an earlier run. orders.sql: SELECT é FROM orders");
  run.window.Click("cmdTakeBack");
  EXPECT_EQ(run.box.Text(), "SELECT é FROM orders");
  EXPECT_EQ(run.box.SelStart(), 9U);
  EXPECT_EQ(run.window.Caption(), "SQL [orders.sql *]");
  EXPECT_EQ(run.window.FocusName(), "txtQuery");
  EXPECT_EQ(run.Line(), "");
  EXPECT_FALSE(Kept(1));
  ASSERT_TRUE(Kept(2)) << "what was taken back is still unsaved";
  run.window.Click("cmdSave");
  EXPECT_EQ(Content("orders.sql"), "SELECT é FROM orders");
  EXPECT_FALSE(Kept(2));
}

TEST_F(RecoveryTest, AFileThatChangedAfterTheCrashIsNotOverwrittenSilently) {
  const std::string path = folder.Write("orders.sql", "old");
  Crash("mine", path);
  folder.Write("orders.sql", "theirs");
  Run run(*this);
  run.window.Click("cmdTakeBack");
  desktop.ExpectMessage("orders.sql has been changed by another program since it was read here.",
                        MessageResult::Cancel);
  run.window.Click("cmdSave");
  EXPECT_EQ(Content("orders.sql"), "theirs");
}

TEST_F(RecoveryTest, TheCopyOfARunningProgramIsNotOffered) {
  Run first(*this);
  first.window.Type("txtQuery", "first");
  desktop.AdvanceTime(2000);
  Run second(*this);
  EXPECT_EQ(second.Line(), "");
  second.window.Type("txtQuery", "second");
  desktop.AdvanceTime(2000);
  EXPECT_EQ(Kept(1)->text, "first");
  EXPECT_EQ(Kept(2)->text, "second");
}

TEST_F(RecoveryTest, SeveralCopiesAreAllOfferedOneAfterTheOther) {
  {
    Run first(*this);
    Run second(*this);
    first.box.SetText("first");
    second.box.SetText("second");
    desktop.AdvanceTime(2000);
  }
  Run run(*this);
  EXPECT_EQ(run.Line(), "Unsaved SQL was kept from an earlier run, and 1 more. untitled: first");
  run.window.Click("cmdTakeBack");
  EXPECT_EQ(run.Line(), "Unsaved SQL was kept from an earlier run. untitled: second");
  desktop.ExpectMessage("Save changes to SQL?", MessageResult::Cancel);
  run.window.Click("cmdTakeBack");
  EXPECT_EQ(run.box.Text(), "first");
  EXPECT_TRUE(Kept(2)) << "the user kept the text that is there, so the copy waits";
}

TEST_F(RecoveryTest, TheOfferStaysUntilItIsAnsweredAndNoKeyInTheEditorReachesIt) {
  Crash("keep me");
  Run run(*this);
  run.main.FocusText();
  for (const int key : {static_cast<int>(key::escape), static_cast<int>(key::enter),
                        static_cast<int>(key::del), static_cast<int>(key::space)})
    run.window.PressKey(key);
  EXPECT_NE(run.Line(), "");
  EXPECT_EQ(Kept(1)->text, "keep me");
}

TEST_F(RecoveryTest, DiscardAsksFirstAndItsEnterKeepsTheCopy) {
  Crash("keep me");
  const std::string question =
      "Discard the unsaved SQL of an earlier run?\r\n\r\nuntitled: keep me";
  Run run(*this);
  desktop.ExpectMessage(question, MessageResult::No, [this](const Message& message) {
    EXPECT_EQ(message.defaultAnswer, MessageResult::No);
    EXPECT_EQ(message.captions, (std::vector<std::string>{"&Discard", "&Keep"}));
    EXPECT_TRUE(Kept(1)) << "the file is there until the answer";
  });
  run.window.Click("cmdDiscardCopy");
  EXPECT_TRUE(Kept(1));
  EXPECT_NE(run.Line(), "");
  desktop.ExpectMessage(question, MessageResult::Yes);
  run.window.Click("cmdDiscardCopy");
  EXPECT_FALSE(Kept(1));
  EXPECT_EQ(run.Line(), "");
}

TEST_F(RecoveryTest, ClosingTheLineLeavesTheCopyForTheNextStart) {
  Crash("keep me");
  {
    Run run(*this);
    run.window.Click("cmdCloseRecovery");
    EXPECT_EQ(run.Line(), "");
    EXPECT_TRUE(run.frame->Unload());
  }
  EXPECT_NE(Run(*this).Line(), "");
}

TEST_F(RecoveryTest, ADamagedCopyIsNeitherOfferedNorRemovedNorWrittenOver) {
  folder.Write("Tessel.recovery-1", "Tessel recovery 1 99 0 0 0 -\n\nshort");
  Run run(*this);
  EXPECT_EQ(run.Line(), "");
  run.window.Type("txtQuery", "x");
  desktop.AdvanceTime(2000);
  EXPECT_EQ(Content("Tessel.recovery-1"), "Tessel recovery 1 99 0 0 0 -\n\nshort");
  EXPECT_EQ(Kept(2)->text, "x");
}

TEST_F(RecoveryTest, AFullDiskIsToldOnceQuietlyAndTheCopyFollowsWhenThereIsRoom) {
  Run run(*this);
  files.FailWrites();
  run.window.Type("txtQuery", "x");
  desktop.AdvanceTime(2000);
  EXPECT_EQ(run.Line(),
            "No recovery copy of the SQL can be kept: " + Copy(1) + ": No space left on device.");
  EXPECT_FALSE(run.window.VisibleInFact("cmdTakeBack"));
  EXPECT_TRUE(desktop.Messages().empty());
  run.window.Click("cmdCloseRecovery");
  run.window.Type("txtQuery", "y");
  desktop.AdvanceTime(5000);
  EXPECT_EQ(run.Line(), "");
  files.FailWrites(std::nullopt);
  desktop.AdvanceTime(2000);
  ASSERT_TRUE(Kept(1));
  EXPECT_EQ(Kept(1)->text, "xy");
}

TEST_F(RecoveryTest, OnAFullDiskTakingBackLeavesTheCopyWhereItIs) {
  Crash("keep me");
  Run run(*this);
  files.FailWrites();
  run.window.Click("cmdTakeBack");
  EXPECT_EQ(run.box.Text(), "keep me");
  EXPECT_EQ(Kept(1)->text, "keep me");
}

TEST_F(RecoveryTest, TheEndOfTheSessionAsksNothingAndKeepsTheNewestText) {
  {
    Run run(*this);
    run.window.Type("txtQuery", "SELECT 1");
    run.main.EndSession();
    desktop.EndSession();
    EXPECT_FALSE(run.window.Loaded());
  }
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_EQ(Kept(1)->text, "SELECT 1");
}

}  // namespace
}  // namespace tessel
