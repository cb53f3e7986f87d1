// What becomes of unsaved SQL when the desktop's session ends.

#include <fstream>
#include <iterator>

#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

class SessionEndTest : public ProgramFixture {
 protected:
  void SetUp() override {
    Start();
    host.Type(Query(), "txtQuery", "select 1");
    host.Settle();
  }
  [[nodiscard]] bool Kept() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
      std::ifstream file(entry.path());
      const std::string bytes(std::istreambuf_iterator<char>(file), {});
      if (bytes.find("select 1") != std::string::npos) return true;
    }
    return false;
  }
  const std::string question = "Save changes to SQL?";
};

TEST_F(SessionEndTest, AsksForUnsavedSqlAndStaysWhenTheUserWantsThat) {
  host.OnMessage(question, MessageResult::Cancel);
  EXPECT_FALSE(host.Qt().CommitSession(true));
  EXPECT_TRUE(Frame().Loaded());
}

TEST_F(SessionEndTest, EndsTheProgramOnceTheQuestionIsAnswered) {
  host.OnMessage(question, MessageResult::No);
  EXPECT_TRUE(host.Qt().CommitSession(true));
  EXPECT_FALSE(Frame().Loaded());
  EXPECT_FALSE(Kept()) << "it was given up on purpose";
}

TEST_F(SessionEndTest, WhereNothingMayBeAskedTheSqlIsKept) {
  EXPECT_TRUE(host.Qt().CommitSession(false));
  host.Settle();
  EXPECT_FALSE(Frame().Loaded());
  EXPECT_TRUE(Kept());
}

}  // namespace
}  // namespace tessel::test
