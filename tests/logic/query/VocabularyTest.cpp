#include "logic/query/completion/vocab.h"

#include <gmock/gmock.h>

#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VocabularyTest : public test::LogicFixture {
 protected:
  void Load() { vocabulary.LoadVocabulary(); }
  [[nodiscard]] std::string Path() const { return folder.File("Tessel.vocab.txt"); }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  Vocabulary vocabulary{global};
};

TEST_F(VocabularyTest, TheFileLosesIndentationAndEmptyLinesAndKeepsTrailingSpaces) {
  folder.Write("Tessel.vocab.txt", "  group by  \r\n\r\n   \r\nh\xC3\xA9\r\n\tx\r\nlast ");
  Load();
  EXPECT_THAT(vocabulary.GlobalWords(), ElementsAre("group by  ", "h\xC3\xA9", "\tx", "last "));
  EXPECT_EQ(vocabulary.FilePath(), Path());
}

TEST_F(VocabularyTest, AMissingFileIsAnOrdinaryFirstStart) {
  Load();
  EXPECT_THAT(vocabulary.GlobalWords(), IsEmpty());
  EXPECT_THAT(vocabulary.Tables(), IsEmpty());
  EXPECT_THAT(vocabulary.Fields(), IsEmpty());
  ASSERT_EQ(vocabulary.Custom().size(), 1U);
  EXPECT_EQ(vocabulary.Custom().front().first, "_Global");
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(VocabularyTest, AFileThatCannotBeReadLeavesTheListAsItWas) {
  folder.Write("Tessel.vocab.txt", "word\r\n");
  Load();
  WordList words = {"before"};
  EXPECT_FALSE(vocabulary.ReadWordListFile(words, folder.Path().string()));
  EXPECT_FALSE(vocabulary.ReadWordListFile(words, folder.File("none.txt")));
  EXPECT_THAT(words, ElementsAre("before"));
  EXPECT_TRUE(vocabulary.ReadWordListFile(words, Path()));
  EXPECT_THAT(words, ElementsAre("before", "word"));
}

TEST_F(VocabularyTest, TheFileIsReadInEachEncodingAQueryFileMayHave) {
  const auto wordsOf = [&](const std::string& bytes) {
    folder.Write("Tessel.vocab.txt", bytes);
    Load();
    return vocabulary.GlobalWords();
  };
  EXPECT_THAT(wordsOf("\xEF\xBB\xBFh\xC3\xA9\r\nb\r\n"), ElementsAre("h\xC3\xA9", "b"));
  EXPECT_THAT(wordsOf("h\xE9\r\nb\r\n"), ElementsAre("h\xC3\xA9", "b"));
  EXPECT_THAT(wordsOf(std::string("\xFF\xFEh\0\xE9\0\r\0\n\0b\0", 12)),
              ElementsAre("h\xC3\xA9", "b"));
  EXPECT_THAT(wordsOf(std::string("\xFE\xFF\0h\0\xE9", 6)), ElementsAre("h\xC3\xA9"));
}

TEST_F(VocabularyTest, AByteOrderMarkIsWrittenAgain) {
  folder.Write("Tessel.vocab.txt", "\xEF\xBB\xBF"
                                   "a\r\n");
  Load();
  vocabulary.WriteWordListFile(Path(), {"b"}, false);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "\xEF\xBB\xBF"
                                         "b\r\n");
  vocabulary.WriteWordListFile(Path(), {"c"}, true);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "\xEF\xBB\xBF"
                                         "b\r\nc\r\n");
  EXPECT_FALSE(realFiles.FileExists(Path() + ".old"));
}

TEST_F(VocabularyTest, AFileThatWasNotUtf8IsKeptAsItWasWhenItIsWritten) {
  for (const std::string& bytes :
       {std::string("h\xE9 mixed with \xC3\xA9\r\n"), std::string("\xFF\xFE\0\xD8"
                                                                  "a\0!",
                                                                  7)}) {
    folder.Write("Tessel.vocab.txt", bytes);
    Load();
    vocabulary.WriteWordListFile(Path(), {"new"}, false);
    EXPECT_EQ(Content("Tessel.vocab.txt"), "new\r\n");
  }
  EXPECT_EQ(Content("Tessel.vocab.txt.old"), "h\xE9 mixed with \xC3\xA9\r\n");
  EXPECT_EQ(Content("Tessel.vocab.txt.old2"), std::string("\xFF\xFE\0\xD8"
                                                          "a\0!",
                                                          7));
}

TEST_F(VocabularyTest, AFileThatCannotBeReadIsNotReplaced) {
  folder.Write("Tessel.vocab.txt", "precious\r\n");
  files.FailReads("Permission denied");
  Load();
  desktop.ExpectMessage("Error saving vocabulary: " + Path() + ": Permission denied");
  vocabulary.WriteWordListFile(Path(), {"new"}, false);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "precious\r\n");
}

TEST_F(VocabularyTest, ACopyThatCannotBeWrittenLeavesTheFile) {
  folder.Write("Tessel.vocab.txt", "h\xE9\r\n");
  Load();
  files.FailWrites("No space left on device");
  desktop.ExpectMessage("Error saving vocabulary: " + Path() + ".old: No space left on device");
  vocabulary.WriteWordListFile(Path(), {"new"}, false);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "h\xE9\r\n");
}

TEST_F(VocabularyTest, WritingReplacesOrAppends) {
  Load();
  vocabulary.WriteWordListFile(Path(), {"a ", "b"}, false);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "a \r\nb\r\n");
  vocabulary.WriteWordListFile(Path(), {"c"}, true);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "a \r\nb\r\nc\r\n");
  vocabulary.WriteWordListFile(Path(), {"d"}, false);
  EXPECT_EQ(Content("Tessel.vocab.txt"), "d\r\n");
  vocabulary.WriteWordListFile(folder.File("new.txt"), {"e"}, true);
  EXPECT_EQ(Content("new.txt"), "e\r\n");
}

TEST_F(VocabularyTest, TextAndListComeBackFromEachOther) {
  const WordList words = {"one", "two words ", "one"};
  std::string text = "before\r\n";
  WordListToText(text, words);
  EXPECT_EQ(text, "before\r\none\r\ntwo words \r\none\r\n");
  WordList again = {"first"};
  ParseWordList(again, "  one\r\n\r\n two words \none");
  EXPECT_THAT(again, ElementsAre("first", "one", "two words ", "one"));
}

TEST_F(VocabularyTest, ListsKeepTheOrderInWhichTheyWereAdded) {
  Vocabulary::Section section;
  Vocabulary::ListNamed(section, "z") = {"1"};
  Vocabulary::ListNamed(section, "a") = {"2"};
  Vocabulary::ListNamed(section, "z").push_back("3");
  ASSERT_EQ(section.size(), 2U);
  EXPECT_THAT(section.front().second, ElementsAre("1", "3"));
  Vocabulary::RemoveList(section, "z");
  Vocabulary::RemoveList(section, "not there");
  ASSERT_EQ(section.size(), 1U);
  EXPECT_EQ(section.front().first, "a");
}

}  // namespace
}  // namespace tessel
