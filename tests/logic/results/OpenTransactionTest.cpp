// The word that tells the user's transaction, and what becomes of it when its session would end.

#include <array>
#include <functional>

#include "contract/desktop/controls/ListControls.h"
#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

constexpr const char* question = "The connection 'Shop' has a transaction open since 14:05.";
constexpr const char* failedQuestion =
    "The connection 'Shop' has a transaction open since 14:05. It has failed: all that can be done "
    "is to roll it back.";
constexpr const char* saveQuestion = "Save the change to this record?";

class OpenTransactionTest : public test::EditingFixture {
 protected:
  OpenTransactionTest() {
    data.defaultDatabase = "shop";
    data.catalogs = {"shop", "test"};
    data.properties.Set("Catalog Change Ends Session", true);
    EXPECT_TRUE(Connect());
    data.AnswerNothing("begin").Leaves(UserTransaction::Open);
    data.AnswerNothing("COMMIT").Leaves(UserTransaction::None);
    data.AnswerNothing("ROLLBACK").Leaves(UserTransaction::None);
    data.AnswerNothing("no autocommit").Leaves(UserTransaction::Waiting);
    data.AnswerError("bad", MemoryError("no such table"));
    data.AnswerNothing("another");
  }

  void Begin() {
    ASSERT_TRUE(Run("begin"));
    desktop.DrainEvents();
  }
  /// A transaction that accepts nothing but its end.
  void BeginAndFail() {
    Begin();
    data.Answer("fails", MemoryFields({"a"}), {}).Leaves(UserTransaction::Failed);
    EXPECT_TRUE(Run("fails"));
    desktop.DrainEvents();
  }
  void TypeIntoARow() {
    RunUnlocked("select");
    ClickCell(0, name);
    Type("typed");
  }

  [[nodiscard]] Label& Word() { return W().Find<Label>("lblTransaction"); }
  [[nodiscard]] std::size_t Windows() const { return desktop.WindowsOf("frmRecords").size(); }
  [[nodiscard]] bool Open() {
    return records->TheConnection()->Transaction().state == UserTransaction::Open;
  }
  [[nodiscard]] std::string LastSql() const { return data.ExecutedSql().back(); }
};

// --- the word ------------------------------------------------------------------------------------

TEST_F(OpenTransactionTest, TheWordTellsWhatTheTransactionIsLike) {
  EXPECT_TRUE(Shows("lblTransaction"));
  EXPECT_EQ(Word().Caption(), "Idle");
  const Color quiet = Word().BackColor();
  Begin();
  EXPECT_EQ(Word().Caption(), "In transaction since 14:05");
  EXPECT_NE(Word().BackColor(), quiet);
  data.transactionTime += std::chrono::minutes(7);
  data.Answer("fails", MemoryFields({"a"}), {}).Leaves(UserTransaction::Failed);
  Run("fails");
  desktop.DrainEvents();
  EXPECT_EQ(Word().Caption(), "Failed transaction since 14:05");
  EXPECT_NE(Word().BackColor(), quiet);
  Run("ROLLBACK");
  desktop.DrainEvents();
  EXPECT_EQ(Word().Caption(), "Idle");
  EXPECT_EQ(Word().BackColor(), quiet);
  Run("begin");
  desktop.DrainEvents();
  EXPECT_EQ(Word().Caption(), "In transaction since 14:12");
  Run("no autocommit");
  desktop.DrainEvents();
  EXPECT_EQ(Word().Caption(), "Idle, autocommit off");
}

TEST_F(OpenTransactionTest, WhereTheDatabaseDoesNotTellThereIsNoWord) {
  data.AnswerNothing("mystery").Leaves(UserTransaction::Unknown);
  Run("mystery");
  desktop.DrainEvents();
  EXPECT_FALSE(Shows("lblTransaction"));
  W().CloseByControlBox();
  EXPECT_EQ(Windows(), 0U);
}

TEST_F(OpenTransactionTest, ALostSessionHasNoTransaction) {
  Begin();
  data.LoseSessions();
  Run("another");
  desktop.DrainEvents();
  EXPECT_FALSE(Shows("lblTransaction"));
  W().CloseByControlBox();
  EXPECT_EQ(Windows(), 0U);
}

// --- the question, on each way that ends the session ---------------------------------------------

struct Way {
  const char* name;
  std::function<void()> go;
  std::function<bool()> gone;
};

class EachEnd : public OpenTransactionTest, public ::testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] std::array<Way, 4> Ways() {
    return {Way{"Close", [this] { W().CloseByControlBox(); }, [this] { return Windows() == 0; }},
            Way{"FrameClose", [this] { frame->Unload(); }, [this] { return Windows() == 0; }},
            Way{"Reconnect", [this] { W().Click("cmdReconnect"); },
                [this] { return data.Log().opened.size() == 2; }},
            Way{"CatalogChange", [this] { W().SelectItem("cboCatalog", 1); },
                [this] { return records->TheConnection()->DefaultDatabase() == "test"; }}};
  }
  void ExpectAllIsKept() {
    EXPECT_FALSE(way.gone());
    ASSERT_EQ(Windows(), 1U);
    EXPECT_EQ(W().Find<ComboBox>("cboCatalog").Text(), "shop");
    EXPECT_NE(Status(), "[12:00:00]  Disconnected.");
  }

  Way way = Ways().at(static_cast<std::size_t>(GetParam()));
};

TEST_P(EachEnd, CommitCommitsAndGoesOn) {
  Begin();
  desktop.ExpectMessage(question, MessageResult::Yes, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::YesNoCancel);
    EXPECT_EQ(message.captions, (std::vector<std::string>{"&Commit", "&Roll back", "Cancel"}));
    EXPECT_EQ(message.defaultAnswer, MessageResult::Cancel) << "Enter must do no harm";
    EXPECT_TRUE(message.help);
  });
  way.go();
  EXPECT_EQ(LastSql(), "COMMIT");
  EXPECT_TRUE(way.gone());
}

/// A frame that closes ends the session, and with it the transaction, when no window refuses.
TEST_P(EachEnd, RollBackRollsBackAndGoesOn) {
  Begin();
  desktop.ExpectMessage(question, MessageResult::No);
  way.go();
  EXPECT_EQ(LastSql(), std::string(way.name) == "FrameClose" ? "begin" : "ROLLBACK");
  EXPECT_TRUE(way.gone());
}

TEST_P(EachEnd, CancelKeepsAllAsItIs) {
  Begin();
  desktop.ExpectMessage(question, MessageResult::Cancel);
  way.go();
  ExpectAllIsKept();
  EXPECT_TRUE(Open());
  EXPECT_EQ(LastSql(), "begin");
}

TEST_P(EachEnd, ACommitThatFailsShowsWhyAndKeepsAll) {
  Begin();
  data.AnswerError("COMMIT", MemoryError("deferred constraint"));
  Run("COMMIT");  // Takes the answer that is there already.
  Run("begin");
  desktop.ExpectMessage(question, MessageResult::Yes);
  ExpectNotice("deferred constraint");
  way.go();
  ExpectAllIsKept();
}

TEST_P(EachEnd, ACancelledCommitKeepsAll) {
  data.AnswerNothing("COMMIT").HoldExecuting();
  Run("COMMIT");
  Begin();
  desktop.ExpectMessage(question, MessageResult::Yes);
  desktop.OnModal("dlgAsync", [](HeadlessWindow& w) { w.Click("cmdCancel"); });
  way.go();
  ExpectAllIsKept();
  EXPECT_TRUE(Open());
}

TEST_P(EachEnd, AFailedTransactionCanOnlyBeRolledBack) {
  BeginAndFail();
  desktop.ExpectMessage(failedQuestion, MessageResult::Cancel, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::OkCancel);
    EXPECT_EQ(message.captions, (std::vector<std::string>{"&Roll back", "Cancel"}));
  });
  way.go();
  ExpectAllIsKept();
  desktop.ExpectMessage(failedQuestion, MessageResult::Ok);
  way.go();
  EXPECT_TRUE(way.gone());
}

/// The server went away without a sign: the commit tells, the rollback has nothing left to do.
TEST_P(EachEnd, WithTheServerGoneACommitSaysSoAndTheNextAttemptGoesOn) {
  Begin();
  desktop.ExpectMessage(question, MessageResult::Yes,
                        [this](const Message&) { data.LoseSessions(); });
  ExpectNotice("The server has gone away.");
  way.go();
  ExpectAllIsKept();
  if (std::string(way.name) == "CatalogChange") return;  // It needs a session.
  way.go();
  EXPECT_TRUE(way.gone());
}

TEST_P(EachEnd, ARollbackThatFindsTheServerGoneGoesOn) {
  if (std::string(way.name) == "CatalogChange") GTEST_SKIP() << "it needs a session";
  Begin();
  desktop.ExpectMessage(question, MessageResult::No,
                        [this](const Message&) { data.LoseSessions(); });
  if (std::string(way.name) != "FrameClose") ExpectNotice("The server has gone away.");
  way.go();
  EXPECT_TRUE(way.gone());
}

TEST_P(EachEnd, WithNoneOpenOrNothingDoneNothingIsAsked) {
  Run("no autocommit");
  way.go();
  EXPECT_TRUE(way.gone());
  EXPECT_TRUE(desktop.Messages().empty());
}

// --- with a change of a row as well --------------------------------------------------------------

TEST_P(EachEnd, TheChangeIsSavedBeforeTheTransactionIsCommitted) {
  Begin();
  TypeIntoARow();
  desktop.ExpectMessage(saveQuestion, MessageResult::Yes);
  desktop.ExpectMessage(question, MessageResult::Yes);
  way.go();
  EXPECT_EQ(Stored(0, name), Text("typed"));
  EXPECT_EQ(LastSql(), "COMMIT");
  EXPECT_TRUE(way.gone());
}

TEST_P(EachEnd, ACancelAtTheTransactionKeepsTheChangeThatWasLetGo) {
  Begin();
  TypeIntoARow();
  desktop.ExpectMessage(saveQuestion, MessageResult::No);
  desktop.ExpectMessage(question, MessageResult::Cancel);
  way.go();
  ExpectAllIsKept();
  EXPECT_EQ(Grid().CellText(), "typed");
  EXPECT_TRUE(Open());
}

TEST_P(EachEnd, ACancelAtTheChangeAsksNothingMore) {
  Begin();
  TypeIntoARow();
  desktop.ExpectMessage(saveQuestion, MessageResult::Cancel);
  way.go();
  ExpectAllIsKept();
  EXPECT_TRUE(Open());
}

std::string NameOfEnd(const ::testing::TestParamInfo<int>& info) {
  constexpr std::array names{"Close", "FrameClose", "Reconnect", "CatalogChange"};
  return names.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Ways, EachEnd, ::testing::Range(0, 4), &NameOfEnd);

// --- what ends no session ------------------------------------------------------------------------

TEST_F(OpenTransactionTest, QueriesAskNothingForTheTransactionGoesOn) {
  RunThreeRows("select 1");
  Begin();
  RunThreeRows("select 2");
  Press(key::f5);
  Press(key::left, shiftState::alt);
  Run("bad");
  EXPECT_TRUE(Open());
  EXPECT_TRUE(desktop.Messages().empty());
  Run("ROLLBACK");
}

TEST_F(OpenTransactionTest, WithAChangeAsWellQueriesAskAboutThatOnly) {
  Begin();
  RunUnlocked("select 1");
  const std::vector<std::function<void()>> queries = {
      [this] { Run("another"); }, [this] { Press(key::f5); },
      [this] { Press(key::left, shiftState::alt); }};
  for (const auto& query : queries) {
    RunRows("select 2");
    ClickCell(0, name);
    Type("typed");
    const std::size_t before = data.ExecutedSql().size();
    desktop.ExpectMessage(saveQuestion, MessageResult::Yes);
    query();
    EXPECT_EQ(Stored(0, name), Text("typed"));
    EXPECT_EQ(data.ExecutedSql().size(), before + 1);
    EXPECT_TRUE(Open());
  }
  Run("ROLLBACK");
}

/// The server rolled the transaction back when the session was lost; the change is still here.
TEST_P(EachEnd, WithTheServerGoneOnlyTheChangeIsLeftToAskAbout) {
  if (std::string(way.name) == "CatalogChange") GTEST_SKIP() << "it needs a session";
  Begin();
  TypeIntoARow();
  data.LoseSessions();
  desktop.ExpectMessage(saveQuestion, MessageResult::Yes);
  ExpectNotice("The server has gone away.");
  way.go();
  ExpectAllIsKept();
  EXPECT_EQ(Grid().CellText(), "typed");
  const bool staysOnShow = std::string(way.name) == "Reconnect";
  if (!staysOnShow) desktop.ExpectMessage(saveQuestion, MessageResult::No);
  way.go();
  EXPECT_TRUE(way.gone());
  if (staysOnShow) {
    EXPECT_EQ(Grid().CellText(), "typed");
  }
}

TEST_F(OpenTransactionTest, ACatalogChangeWithinTheSessionAsksNothing) {
  data.properties.Set("Catalog Change Ends Session", false);
  W().Click("cmdReconnect");
  Begin();
  W().SelectItem("cboCatalog", 1);
  EXPECT_EQ(records->TheConnection()->DefaultDatabase(), "test");
  EXPECT_TRUE(Open());
  EXPECT_TRUE(desktop.Messages().empty());
}

/// Nothing is rolled back for a frame that stays.
TEST_F(OpenTransactionTest, ACancelInTheSecondWindowKeepsTheFirstOnesTransaction) {
  Begin();
  frmRecords second(global, async, host);
  ConnectRequest request;
  request.connectionString = "Provider=Fake";
  request.caption = "Second";
  ASSERT_TRUE(second.Connect(request));
  EXPECT_TRUE(second.DoQueryTags("begin", false, newQuery));
  desktop.ExpectMessage(question, MessageResult::No);
  desktop.ExpectMessage("The connection 'Second' has a transaction open since 14:05.",
                        MessageResult::Cancel);
  EXPECT_FALSE(frame->Unload());
  ASSERT_EQ(Windows(), 2U);
  EXPECT_TRUE(Open());
  EXPECT_EQ(second.TheConnection()->Transaction().state, UserTransaction::Open);
}

}  // namespace
}  // namespace tessel
