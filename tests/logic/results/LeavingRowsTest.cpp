// What becomes of a change that is pending when the rows it belongs to are about to go.

#include <array>
#include <functional>

#include <gmock/gmock.h>

#include "contract/desktop/controls/ListControls.h"
#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

constexpr const char* question = "Save the change to this record?";

/// One way in which the rows on show go.
struct Way {
  const char* name;
  std::function<void()> go;
  std::function<bool()> gone;  ///< Whether the way was gone to its end.
};

class LeavingRowsTest : public test::EditingFixture {
 protected:
  LeavingRowsTest() {
    data.defaultDatabase = "shop";
    data.catalogs = {"shop", "test"};
  }

  [[nodiscard]] std::vector<Way> Ways() {
    const auto ranAgain = [this] { return data.ExecutedSql().size() > commands_; };
    return {
        {"close", [this] { W().CloseByControlBox(); }, [this] { return Windows() == 0; }},
        {"frame", [this] { frame->Unload(); }, [this] { return Windows() == 0; }},
        {"reconnect", [this] { W().Click("cmdReconnect"); },
         [this] { return data.Log().opened.size() == 2; }},
        {"catalog", [this] { W().SelectItem("cboCatalog", 1); },
         [this] { return records->TheConnection()->DefaultDatabase() == "test"; }},
        {"F5", [this] { Press(key::f5); }, ranAgain},
        {"history", [this] { Press(key::left, shiftState::alt); }, ranAgain},
        {"query", [this] { Run("another"); }, ranAgain},
    };
  }
  [[nodiscard]] std::size_t Windows() const { return desktop.WindowsOf("frmRecords").size(); }

  /// A connected window with a change that is pending in its first row.
  void Prepare() {
    ASSERT_TRUE(Connect());
    data.AnswerNothing("another");
    RunUnlocked("first");
    RunRows("select");
    ClickCell(0, name);
    Type("typed");
    commands_ = data.ExecutedSql().size();
  }
  [[nodiscard]] bool StillTyping() {
    return Shows("DataGrid") && Grid().ChangePending() && Grid().CellText() == "typed";
  }

  std::size_t commands_ = 0;
};

/// The session is gone, so the change cannot be saved before there is another one.
TEST_F(LeavingRowsTest, AChangeOutlivesALostSession) {
  Prepare();
  data.LoseSessions();
  ExpectNotice("The server has gone away.");
  Press('S', shiftState::ctrl);
  ASSERT_EQ(records->TheConnection()->State(), objectState::closed);
  EXPECT_TRUE(StillTyping());
  Press('C', shiftState::ctrl | shiftState::alt);
  EXPECT_EQ(records->TheConnection()->State(), objectState::open);
  EXPECT_TRUE(StillTyping());
  EXPECT_THAT(Status(), testing::HasSubstr("The change to this record is not saved yet."));
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("typed"));
}

/// Every answer is given on every way.
class EachWay : public LeavingRowsTest, public ::testing::WithParamInterface<int> {
 protected:
  EachWay() : way(Ways().at(static_cast<std::size_t>(GetParam()))) { Prepare(); }
  Way way;
};

TEST_P(EachWay, YesWritesTheChangeAndGoesOn) {
  desktop.ExpectMessage(question, MessageResult::Yes, [](const Message& message) {
    EXPECT_EQ(message.buttons, MessageButtons::YesNoCancel);
    EXPECT_EQ(message.icon, MessageIcon::Question);
    EXPECT_TRUE(message.help);
  });
  way.go();
  EXPECT_EQ(Stored(0, name), Text("typed"));
  EXPECT_TRUE(way.gone());
}

TEST_P(EachWay, NoDropsTheChangeAndGoesOn) {
  desktop.ExpectMessage(question, MessageResult::No);
  way.go();
  EXPECT_EQ(Stored(0, name), Text("one"));
  EXPECT_TRUE(way.gone());
  if (Windows() > 0 && Grid().DataSource() != nullptr) {
    EXPECT_FALSE(Grid().ChangePending());
    EXPECT_TRUE(NoButtonShows());
  }
}

TEST_P(EachWay, CancelStopsAndKeepsTheChange) {
  desktop.ExpectMessage(question, MessageResult::Cancel);
  way.go();
  EXPECT_FALSE(way.gone());
  EXPECT_TRUE(StillTyping());
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(W().Find<ComboBox>("cboCatalog").Text(), "shop");
}

TEST_P(EachWay, AChangeThatCannotBeWrittenStopsAndStays) {
  data.changeFailure = MemoryError("value too long");
  desktop.ExpectMessage(question, MessageResult::Yes);
  ExpectNotice("value too long");
  way.go();
  EXPECT_FALSE(way.gone());
  EXPECT_TRUE(Grid().ChangePending());
  EXPECT_EQ(Grid().CellText(), "typed");
  EXPECT_TRUE(ButtonsShow());
}

TEST_P(EachWay, ALostServerStopsYesAndLetsNoGoOn) {
  data.LoseSessions();
  desktop.ExpectMessage(question, MessageResult::Yes);
  ExpectNotice("The server has gone away.");
  way.go();
  EXPECT_FALSE(way.gone());
  EXPECT_TRUE(Grid().ChangePending());
  if (std::string(way.name) != "close") return;
  desktop.ExpectMessage(question, MessageResult::No);
  way.go();
  EXPECT_TRUE(way.gone());
}

TEST_P(EachWay, WithNothingPendingNothingIsAsked) {
  Press('R', shiftState::ctrl);
  way.go();
  EXPECT_TRUE(way.gone());
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_P(EachWay, ANewRecordIsAskedAboutTheSame) {
  Press('R', shiftState::ctrl);
  W().GoToNewRow("DataGrid");
  ClickCell(3, name);
  Type("typed");
  desktop.ExpectMessage(question, MessageResult::Yes);
  way.go();
  EXPECT_TRUE(way.gone());
  ASSERT_EQ(table->size(), 4U);
  EXPECT_EQ(Stored(3, name), Text("typed"));
}

std::string NameOfWay(const ::testing::TestParamInfo<int>& info) {
  constexpr std::array names{"Close",   "FrameClose", "Reconnect", "CatalogChange",
                             "Requery", "History",    "NewQuery"};
  return names.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Ways, EachWay, ::testing::Range(0, 7), &NameOfWay);

TEST_F(LeavingRowsTest, APreviewThatIsCancelledAsksNothing) {
  Prepare();
  desktop.OnModal("frmText", [](HeadlessWindow& w) { w.Click("cmdCancel"); });
  EXPECT_FALSE(records->DoQueryTags("another", true, newQuery));
  EXPECT_TRUE(StillTyping());
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(LeavingRowsTest, ACancelledWriteStopsToo) {
  Prepare();
  data.holdChanges = true;
  desktop.ExpectMessage(question, MessageResult::Yes);
  desktop.OnModal("dlgAsync", [](HeadlessWindow& w) { w.Click("cmdCancel"); });
  W().CloseByControlBox();
  EXPECT_EQ(Windows(), 1U);
  EXPECT_TRUE(Grid().ChangePending());
}

/// The first window's No is not carried out when the second says Cancel.
TEST_F(LeavingRowsTest, ACancelInOneWindowKeepsTheFrameAndEveryChange) {
  Prepare();
  HeadlessWindow& first = W();
  frmRecords second(global, async, host);
  ConnectRequest request;
  request.connectionString = "Provider=Fake";
  ASSERT_TRUE(second.Connect(request));
  W().PressKey('L', shiftState::ctrl);
  EXPECT_TRUE(second.DoQueryTags("select", false, newQuery));
  ClickCell(1, name);
  Type("second");
  desktop.ExpectMessage(question, MessageResult::No, [&](const Message&) {
    EXPECT_TRUE(first.Active()) << "the record that is asked about is to be seen";
  });
  desktop.ExpectMessage(question, MessageResult::Cancel,
                        [&](const Message&) { EXPECT_TRUE(second.TheWindow().Active()); });
  EXPECT_FALSE(frame->Unload());
  EXPECT_EQ(Windows(), 2U);
  EXPECT_EQ(first.Find<DataGrid>("DataGrid").CellText(), "typed");
  EXPECT_EQ(second.TheWindow().Find<DataGrid>("DataGrid").CellText(), "second");
}

}  // namespace
}  // namespace tessel
