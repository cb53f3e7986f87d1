#include "logic/tags/TagsPanel.h"

#include "contract/desktop/controls/TextBox.h"
#include "logic/app/Main.h"
#include "tests/logic/tags/TagsFixture.h"

namespace tessel {
namespace {

class TagsPanelTest : public test::TagsFixture {};

// --- adding --------------------------------------------------------------------------------------

TEST_F(TagsPanelTest, AddingMakesATagWithoutValueAndLetsItsNameBeTyped) {
  W().Click("cmdAddTag");
  ASSERT_EQ(Names(), std::vector<std::string>{"NewTag"});
  EXPECT_EQ(List().Row(0).key, "NEWTAG");
  EXPECT_EQ(ShownValue(0), "");
  EXPECT_EQ(List().SelectedIndex(), 0);
  EXPECT_EQ(W().FocusName(), "lsvTags");
  EXPECT_EQ(List().EditedRow(), 0);
  EXPECT_TRUE(store.Has("newtag"));
  EXPECT_TRUE(store.ValuesOf("newtag").empty());
}

TEST_F(TagsPanelTest, NewNamesCountFromTwo) {
  for (int i = 0; i < 4; ++i) W().Click("cmdAddTag");
  EXPECT_EQ(Names(), (std::vector<std::string>{"NewTag", "NewTag2", "NewTag3", "NewTag4"}));
  W().SelectRow("lsvTags", 1);
  W().Click("cmdRemoveTag");
  W().Click("cmdAddTag");
  EXPECT_EQ(Names(), (std::vector<std::string>{"NewTag", "NewTag3", "NewTag4", "NewTag2"}));
}

TEST_F(TagsPanelTest, ANewNameIsFreeInUpperAndLowerCase) {
  AddTag("NEWTAG");
  W().Click("cmdAddTag");
  EXPECT_EQ(Names().back(), "NewTag2");
}

TEST_F(TagsPanelTest, TheTipShowsHowTheTagIsWritten) {
  AddTag("City");
  EXPECT_EQ(List().Row(0).toolTip, "<%?City%>  <*?City*>");
}

// --- renaming ------------------------------------------------------------------------------------

TEST_F(TagsPanelTest, ARenamedTagKeepsItsValueUnderTheNewName) {
  AddTag("City");
  GiveValue(0, "Rome");
  W().PressKey(key::escape);
  W().PressKey(key::f2);
  W().EditLabel("lsvTags", "Town");
  EXPECT_EQ(Names(), std::vector<std::string>{"Town"});
  EXPECT_EQ(List().Row(0).key, "TOWN");
  EXPECT_EQ(List().Row(0).toolTip, "<%?Town%>  <*?Town*>");
  EXPECT_EQ(ShownValue(0), "Rome");
  EXPECT_EQ(ValueOf("town"), "Rome");
  EXPECT_FALSE(store.Has("City"));
}

TEST_F(TagsPanelTest, ANameMayChangeInItsCaseOnly) {
  AddTag("city");
  GiveValue(0, "Rome");
  List().StartLabelEdit(0);
  W().EditLabel("lsvTags", "CITY");
  EXPECT_EQ(Names(), std::vector<std::string>{"CITY"});
  EXPECT_EQ(List().Row(0).toolTip, "<%?CITY%>  <*?CITY*>");
  EXPECT_EQ(ValueOf("city"), "Rome");
}

TEST_F(TagsPanelTest, AnInvalidNameIsRefused) {
  AddTag("City");
  for (const char* name : {"", " ", "a b", "a-b", "a%", "n\xC3\xA4me", "a\n"}) {
    List().StartLabelEdit(0);
    ExpectNotice("Please give a valid name.");
    W().EditLabel("lsvTags", name);
    EXPECT_EQ(Names(), std::vector<std::string>{"City"}) << name;
    EXPECT_TRUE(store.Has("City"));
  }
}

TEST_F(TagsPanelTest, ANameMayHoldEveryIdentifierCharacter) {
  AddTag("_a9#@$Z");
  EXPECT_EQ(Names(), std::vector<std::string>{"_a9#@$Z"});
  EXPECT_EQ(List().Row(0).key, "_A9#@$Z");
}

TEST_F(TagsPanelTest, ATakenNameIsRefusedAndTheOldKeyStays) {
  AddTag("City");
  AddTag("Town");
  GiveValue(0, "Rome");
  W().PressKey(key::escape);
  List().StartLabelEdit(1);
  ExpectNotice("There is already a tag 'CITY'.");
  W().EditLabel("lsvTags", "CITY");
  EXPECT_EQ(Names(), (std::vector<std::string>{"City", "Town"}));
  EXPECT_EQ(List().Row(1).key, "TOWN");
  EXPECT_EQ(List().Row(1).toolTip, "<%?Town%>  <*?Town*>");
  EXPECT_TRUE(store.Has("Town"));
  EXPECT_EQ(ValueOf("City"), "Rome");
}

TEST_F(TagsPanelTest, AnOpenEditorFollowsTheNewName) {
  AddTag("City");
  TypeValue(0, "Rome");
  List().StartLabelEdit(0);
  W().EditLabel("lsvTags", "Town");
  W().PressKey(key::enter);
  EXPECT_EQ(ValueOf("Town"), "Rome");
  EXPECT_EQ(ShownValue(0), "Rome");
}

TEST_F(TagsPanelTest, ACancelledEditKeepsTheName) {
  AddTag("City");
  W().PressKey(key::f2);
  W().CancelLabelEdit("lsvTags");
  EXPECT_EQ(Names(), std::vector<std::string>{"City"});
}

// --- removing ------------------------------------------------------------------------------------

TEST_F(TagsPanelTest, ATagWithoutOrWithOneValueGoesWithoutAQuestion) {
  AddTag("a");
  AddTag("b");
  GiveValue(1, "1");
  W().PressKey(key::escape);
  W().PressKey(key::del);
  EXPECT_EQ(Names(), std::vector<std::string>{"a"});
  EXPECT_FALSE(store.Has("b"));
  W().Click("cmdRemoveTag");
  EXPECT_TRUE(Names().empty());
  EXPECT_FALSE(store.Has("a"));
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(TagsPanelTest, ATagWithTwoValuesIsAskedAbout) {
  AddTag("City");
  GiveValue(0, "Rome");
  GiveValue(0, "Oslo");
  const auto look = [this](const Message& message) {
    EXPECT_EQ(message.icon, MessageIcon::Question);
    EXPECT_EQ(message.buttons, MessageButtons::OkCancel);
    message.help();
    EXPECT_EQ(desktop.HelpRequests().back().data, 9100);
  };
  desktop.ExpectMessage("Remove tag 'City'?", MessageResult::Cancel, look);
  W().Click("cmdRemoveTag");
  EXPECT_EQ(ValueOf("City"), "Oslo");
  EXPECT_TRUE(EditorShows());
  desktop.ExpectMessage("Remove tag 'City'?", MessageResult::Ok, look);
  W().Click("cmdRemoveTag");
  EXPECT_TRUE(Names().empty());
  EXPECT_FALSE(store.Has("City"));
  EXPECT_FALSE(EditorShows());
}

TEST_F(TagsPanelTest, RemovingWithoutATagDoesNothing) {
  W().Click("cmdRemoveTag");
  EXPECT_TRUE(Names().empty());
}

TEST_F(TagsPanelTest, ATagOfARemovedNameBeginsWithoutValues) {
  AddTag("City");
  GiveValue(0, "Rome");
  W().Click("cmdRemoveTag");
  AddTag("City");
  EXPECT_EQ(Failure("City"), "No value given for tag: 'City'");
}

// --- keys and menus ------------------------------------------------------------------------------

TEST_F(TagsPanelTest, KeysAddRenameRemoveAndLeave) {
  List().SetFocus();
  W().PressKey(key::insert);
  W().EditLabel("lsvTags", "a");
  W().PressKey(key::f2);
  EXPECT_EQ(List().EditedRow(), 0);
  W().EditLabel("lsvTags", "b");
  EXPECT_EQ(Names(), std::vector<std::string>{"b"});
  W().PressKey(key::f7);
  EXPECT_EQ(host.focused, 1);
  W().PressKey(key::del);
  EXPECT_TRUE(Names().empty());
  W().PressKey(key::f2);
}

TEST_F(TagsPanelTest, KeysWithAModifierAreNotTaken) {
  AddTag("a");
  for (const int shift : {shiftState::shift, shiftState::ctrl, shiftState::alt})
    for (const int code : {key::enter, key::insert, key::del, key::f2, key::f7})
      W().PressKey(code, shift);
  EXPECT_EQ(Names(), std::vector<std::string>{"a"});
  EXPECT_EQ(List().EditedRow(), -1);
  EXPECT_EQ(host.focused, 0);
}

TEST_F(TagsPanelTest, TheMenuInsertsTheTagInEitherForm) {
  AddTag("City");
  desktop.ExpectPopup("menuTags", "mnuTag_0");
  W().PressKey(key::contextMenu);
  EXPECT_EQ(desktop.Popups().back().at, "lsvTags");
  EXPECT_EQ(desktop.Popups().back().x, 75);
  EXPECT_EQ(desktop.Popups().back().y, 75);
  desktop.ExpectPopup("menuTags", "");
  W().PressKey(key::f10, shiftState::shift);
  desktop.ExpectPopup("menuTags", "mnuTag_1");
  W().MouseUp("lsvTags", MouseButton::Right);
  EXPECT_EQ(desktop.Popups().back().at, "");
  EXPECT_EQ(host.inserted, (std::vector<std::string>{"<%?City%>", "<*?City*>"}));
}

TEST_F(TagsPanelTest, TheMenuOffersWhatTheKeysDo) {
  AddTag("City");
  GiveValue(0, "Rome");
  W().PressKey(key::escape);
  desktop.ExpectPopup("menuTags", "mnuTagsValue");
  W().PressKey(key::contextMenu);
  EXPECT_TRUE(EditorShows());
  W().PressKey(key::escape);
  desktop.ExpectPopup("menuTags", "mnuTagsRename");
  W().PressKey(key::contextMenu);
  EXPECT_EQ(List().EditedRow(), 0);
  W().EditLabel("lsvTags", "Town");
  desktop.ExpectPopup("menuTags", "mnuTagsAdd");
  W().PressKey(key::contextMenu);
  W().CancelLabelEdit("lsvTags");
  EXPECT_EQ(Names(), (std::vector<std::string>{"Town", "NewTag"}));
  desktop.ExpectPopup("menuTags", "mnuTagsRemove");
  W().PressKey(key::contextMenu);
  EXPECT_EQ(Names(), std::vector<std::string>{"Town"});
}

TEST_F(TagsPanelTest, F7LeavesTheValueForTheSql) {
  AddTag("City");
  TypeValue(0, "Rome");
  W().PressKey(key::f7);
  EXPECT_EQ(host.focused, 1);
  EXPECT_EQ(ValueOf("City"), "Rome");
}

TEST_F(TagsPanelTest, TheMenuEntriesAreTheTwoForms) {
  EXPECT_EQ(W().Menu("menuTags").Caption(), "Tags");
  EXPECT_EQ(W().Menu("mnuTag_0").Caption(), "<%?Value%>");
  EXPECT_EQ(W().Menu("mnuTag_1").Caption(), "<*?String*>");
  EXPECT_EQ(W().Find<Button>("cmdAddTag").ToolTip(), "Add tag (Ins)");
  EXPECT_EQ(W().Find<Button>("cmdRemoveTag").ToolTip(), "Remove tag (Del)");
}

TEST_F(TagsPanelTest, WithoutATagThereIsNoMenu) {
  List().SetFocus();
  W().PressKey(key::contextMenu);
  W().MouseUp("lsvTags", MouseButton::Right);
  EXPECT_TRUE(desktop.Popups().empty());
  W().Menu("mnuTag_0").Choose();
  EXPECT_TRUE(host.inserted.empty());
}

TEST_F(TagsPanelTest, TheLeftButtonOpensNoMenu) {
  AddTag("City");
  W().MouseUp("lsvTags", MouseButton::Left);
  EXPECT_TRUE(desktop.Popups().empty());
}

// --- values for tags -----------------------------------------------------------------------------

TEST_F(TagsPanelTest, ATagIsFoundInUpperAndLowerCaseAndTakesItsForm) {
  AddTag("City");
  GiveValue(0, "L'Aquila");
  EXPECT_EQ(panel.GetTagValue("cITY", false, false), "L'Aquila");
  EXPECT_EQ(panel.GetTagValue("city", false, true), "'L''Aquila'");
  EXPECT_EQ(panel.GetTagValue("CITY", true, false), "(L'Aquila)");
  EXPECT_EQ(panel.GetTagValue("City", true, true), "('L''Aquila')");
}

TEST_F(TagsPanelTest, UnknownTagsAndTagsWithoutValueSaySoByTheNameAsWritten) {
  AddTag("City");
  EXPECT_EQ(Failure("toWn"), "Undefined tag: 'toWn'");
  EXPECT_EQ(Failure(""), "Undefined tag: ''");
  EXPECT_EQ(Failure("ciTy"), "No value given for tag: 'ciTy'");
}

TEST_F(TagsPanelTest, AValueTypedButNotConfirmedIsUsedAndKept) {
  AddTag("City");
  GiveValue(0, "Rome");
  TypeValue(0, "Oslo");
  EXPECT_EQ(ValueOf("city"), "Oslo");
  EXPECT_EQ(ShownValue(0), "Oslo");
  EXPECT_EQ(store.ValuesOf("City"), (Values{"Rome", "Oslo"}));
  EXPECT_EQ(EditorList(), (Values{"Rome", "Oslo"}));
  EXPECT_EQ(Editor().Text(), "Oslo");
}

TEST_F(TagsPanelTest, AFirstValueTypedButNotConfirmedIsUsed) {
  AddTag("City");
  TypeValue(0, "Rome");
  EXPECT_EQ(ValueOf("City"), "Rome");
}

TEST_F(TagsPanelTest, AnEmptiedEditorDoesNotCount) {
  AddTag("City");
  GiveValue(0, "Rome");
  TypeValue(0, "");
  EXPECT_EQ(ValueOf("City"), "Rome");
  EXPECT_EQ(Editor().Text(), "Rome");
}

TEST_F(TagsPanelTest, AnEditorOnAnotherTagOrAHiddenOneDoesNotCount) {
  AddTag("a");
  AddTag("b");
  GiveValue(0, "1");
  TypeValue(1, "2");
  EXPECT_EQ(ValueOf("a"), "1");
  EXPECT_TRUE(store.ValuesOf("b").empty());
  W().PressKey(key::escape);
  EXPECT_EQ(Failure("b"), "No value given for tag: 'b'");
}

// --- in the program ------------------------------------------------------------------------------

class TagsInProgramTest : public test::LogicFixture {
 protected:
  TagsInProgramTest() {
    desktop.OnModal("dlgConnect", [](test::HeadlessWindow& w) {
      w.Find<TextBox>("txtCnStr").SetText("A");
      w.Click("cmdConnect");
    });
    program.Main();
  }
  test::HeadlessWindow& Frame() { return desktop.WindowOf("frmMDI"); }
  test::HeadlessWindow& Query() { return desktop.WindowOf("frmMain"); }
  void AddTag(const std::string& name) {
    Frame().Click("cmdAddTag");
    Frame().EditLabel("lsvTags", name);
  }
  void TypeValue(int row, const std::string& text) {
    Frame().ClickCell("lsvTags", row, 1, {MouseButton::Left, shiftState::none, 0, 0});
    Frame().Type("cboTagValue", text);
  }
  void Execute(const std::string& sql) {
    auto& box = Query().Find<RichTextBox>("txtQuery");
    box.SetText(sql);
    box.Select(0, sql.size());
    Frame().ChooseMenu("mnuDBExecute");
  }

  Program program{Platform{desktop, data, files, folder.Path().string(), folder.File("Tessel"),
                           "1.0", nullptr}};
};

TEST_F(TagsInProgramTest, ATagOfThePanelIsInsertedTypedAndUsed) {
  AddTag("City");
  desktop.ExpectPopup("menuTags", "mnuTag_1");
  Frame().MouseUp("lsvTags", MouseButton::Right);
  EXPECT_EQ(Query().Find<RichTextBox>("txtQuery").Text(), "<*?City*>");
  TypeValue(0, "L'Aquila");
  data.AnswerNothing("select 'L''Aquila'");
  Execute("select <*?city*>");
  EXPECT_EQ(data.ExecutedSql(), std::vector<std::string>{"select 'L''Aquila'"});
}

TEST_F(TagsInProgramTest, AnUndefinedTagRunsNothingAndLeavesTheSqlAlone) {
  desktop.ExpectMessage("Undefined tag: 'City'");
  Execute("select <%?City%>");
  EXPECT_TRUE(data.ExecutedSql().empty());
  EXPECT_EQ(Query().Find<RichTextBox>("txtQuery").Text(), "select <%?City%>");
}

TEST_F(TagsInProgramTest, F7LeavesTheListForTheQueryWindow) {
  AddTag("City");
  Frame().PressKey(key::f7);
  EXPECT_EQ(Query().FocusName(), "txtQuery");
}

TEST_F(TagsInProgramTest, AnOpenEditorFollowsTheSidebar) {
  AddTag("City");
  TypeValue(0, "Rome");
  Frame().ResizeControl("box", 4500, 9000);
  auto& list = Frame().Find<ListView>("lsvTags");
  auto& editor = Frame().Find<ComboBox>("cboTagValue");
  EXPECT_EQ(editor.Bounds().left, list.CellBounds(0, 1).left);
  EXPECT_EQ(editor.Bounds().width, 4500 - 300 - 1020);
  program.Frame().ConfirmTagValueSync();
  EXPECT_EQ(editor.Text(), "");
}

TEST_F(TagsInProgramTest, TagsAndValuesEndWithTheProgram) {
  AddTag("City");
  TypeValue(0, "Rome");
  Frame().PressKey(key::enter);
  Program next(Platform{desktop, data, files, folder.Path().string(), folder.File("Tessel"), "1.0",
                        nullptr});
  desktop.OnModal("dlgConnect", [](test::HeadlessWindow& w) { w.Click("cmdCancel"); });
  next.Main();
  EXPECT_EQ(Frame().Find<ListView>("lsvTags").Count(), 0);
}

}  // namespace
}  // namespace tessel
