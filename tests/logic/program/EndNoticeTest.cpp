#include "logic/program/EndNotice.h"

#include "logic/program/dlgAsync.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel {
namespace {

TEST(NoticeTextTest, SaysWhatEndedAndWhatCameOfIt) {
  EXPECT_EQ(NoticeText({"Shop", "Executing...", 67'000, false, RecordsText(250)}),
            "Executing has ended after 00:01:07: 250 records.");
  EXPECT_EQ(NoticeText({"Shop", "Deleting the record...", 11'000, false, RecordsText(1)}),
            "Deleting the record has ended after 00:00:11: 1 record.");
  EXPECT_EQ(NoticeText({"Shop", "Connecting...", 15'000, false, ""}),
            "Connecting has ended after 00:00:15.");
  EXPECT_EQ(NoticeText({"Shop", "Connecting...", 15'000, true, "connection refused"}),
            "Connecting has failed after 00:00:15: connection refused.");
}

TEST(PublicPartTest, EndsBeforeWhatMayBeSqlOrData) {
  EXPECT_EQ(PublicPart("connection refused"), "connection refused");
  EXPECT_EQ(PublicPart("The table doesn't exist."), "The table doesn't exist");
  EXPECT_EQ(PublicPart("syntax error\nLINE 1: select secret"), "syntax error");
  EXPECT_EQ(PublicPart("invalid input syntax for type integer: \"secret\""),
            "invalid input syntax for type integer");
  EXPECT_EQ(PublicPart("check the manual near 'secret = 'x' limit 1' at line 1"),
            "check the manual near");
  EXPECT_EQ(PublicPart("The duplicate key value is (secret)."), "The duplicate key value is");
  EXPECT_EQ(PublicPart("'secret' is wrong"), "");
  EXPECT_EQ(PublicPart(""), "");
}

/// A user who has turned to another program while work goes on.
class EndNoticeTest : public test::LogicFixture {
 protected:
  EndNoticeTest() {
    frame->Show();
    connection->SetConnectionString("Provider=Fake");
    test::OpenNow(*connection);
    async.NameConnection(connection, "Shop");
    desktop.TheNotifications().SetUserHere(false);
  }
  /// The next operation takes that long.
  void Take(std::int64_t milliseconds) {
    desktop.OnModal("dlgAsync", [this, milliseconds](test::HeadlessWindow&) {
      desktop.AdvanceTime(milliseconds);
      data.Resume();
    });
  }
  void Query() {
    std::int64_t affected = 0;
    async.DoQuery(connection->StartQuery("select", LockType::ReadOnly), affected, true);
  }
  std::vector<std::string> Told() {
    std::vector<std::string> texts;
    for (const auto& notice : desktop.TheNotifications().Shown()) {
      texts.push_back(notice.text);
      EXPECT_EQ(notice.title, "Shop");
    }
    return texts;
  }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  dlgAsync async{desktop, *frame};
  std::shared_ptr<Connection> connection = data.CreateConnection();
};

TEST_F(EndNoticeTest, AQueryOfMoreThanTenSecondsIsToldOf) {
  data.Answer("select", MemoryFields({"a"}), {{Value("x")}, {Value("y")}}).HoldExecuting();
  Take(10'001);
  Query();
  EXPECT_EQ(Told(), std::vector<std::string>{"Executing has ended after 00:00:10: 2 records."});
}

TEST_F(EndNoticeTest, AShorterOneIsNot) {
  data.Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  Take(10'000);
  Query();
  EXPECT_TRUE(Told().empty());
}

TEST_F(EndNoticeTest, AUserWhoIsHereIsNotTold) {
  desktop.TheNotifications().SetUserHere(true);
  data.Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  Take(60'000);
  Query();
  EXPECT_TRUE(Told().empty());
}

TEST_F(EndNoticeTest, ACountIsToldWhereThereAreNoRows) {
  data.AnswerCount("select", 42).HoldExecuting();
  Take(60'000);
  Query();
  EXPECT_EQ(Told(), std::vector<std::string>{"Executing has ended after 00:01:00: 42 records."});
}

TEST_F(EndNoticeTest, AFailureIsToldWithoutTheSqlInIt) {
  data.AnswerError("select", MemoryError("syntax error at or near \"secret\"")).HoldExecuting();
  Take(12'000);
  EXPECT_THROW(Query(), Error);
  EXPECT_EQ(Told(), std::vector<std::string>{
                        "Executing has failed after 00:00:12: syntax error at or near."});
}

TEST_F(EndNoticeTest, WhoeverCancelsIsNotTold) {
  data.Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    desktop.AdvanceTime(60'000);
    w.Click("cmdCancel");
  });
  Query();
  EXPECT_TRUE(Told().empty());
}

TEST_F(EndNoticeTest, ALoopIsToldOfOnce) {
  const auto step = [this](std::int64_t /*i*/) { desktop.AdvanceTime(4'000); };
  EXPECT_TRUE(async.ForEach("Converting all 3 records...", connection.get(), 3, step));
  EXPECT_EQ(Told(), std::vector<std::string>{"Converting all 3 records has ended after 00:00:12."});
}

TEST_F(EndNoticeTest, ALoopThatThrowsHasFailed) {
  const auto step = [this](std::int64_t /*i*/) {
    desktop.AdvanceTime(60'000);
    throw Error(errorNumber::application, "Tessel", "secret");
  };
  EXPECT_THROW(async.ForEach("Reading vocabulary...", connection.get(), 3, step), Error);
  EXPECT_EQ(Told(), std::vector<std::string>{"Reading vocabulary has failed after 00:01:00."});
}

}  // namespace
}  // namespace tessel
