// The box in which the value of a tag is edited, over the list of tags.

#include "tests/logic/tags/TagsFixture.h"

namespace tessel {
namespace {

class TagEditorTest : public test::TagsFixture {};

TEST_F(TagEditorTest, AClickInTheValueColumnOpensTheEditorOverTheValue) {
  AddTag("a");
  AddTag("b");
  EXPECT_FALSE(EditorShows());
  W().SelectRow("lsvTags", 1);
  EXPECT_FALSE(EditorShows());
  ClickValue(1);
  ASSERT_TRUE(EditorShows());
  EXPECT_EQ(W().FocusName(), "cboTagValue");
  EXPECT_EQ(Editor().ToolTip(), "Selected tag value");
  const Rect cell = List().CellBounds(1, 1);
  const Rect editor = Editor().Bounds();
  EXPECT_EQ(editor.left, List().Bounds().left + cell.left);
  EXPECT_EQ(editor.width, cell.width);
  EXPECT_GE(editor.height, cell.height);
  EXPECT_LE(editor.top, List().Bounds().top + cell.top);
  EXPECT_GE(editor.top + editor.height, List().Bounds().top + cell.top + cell.height);
}

TEST_F(TagEditorTest, OnlyTheLeftButtonOpensTheEditor) {
  AddTag("a");
  W().ClickCell("lsvTags", 0, 1, {MouseButton::Middle, shiftState::none, 0, 0});
  EXPECT_FALSE(EditorShows());
}

TEST_F(TagEditorTest, TheEditorOffersTheValuesOldestFirstWithTheCurrentOneAsText) {
  AddTag("a");
  ClickValue(0);
  EXPECT_TRUE(EditorList().empty());
  EXPECT_EQ(Editor().Text(), "");
  for (const char* value : {"1", "2", "3", "1"}) GiveValue(0, value);
  EXPECT_EQ(EditorList(), (Values{"2", "3", "1"}));
  EXPECT_EQ(Editor().Text(), "1");
  W().PressKey(key::escape);
  ClickValue(0);
  EXPECT_EQ(EditorList(), (Values{"2", "3", "1"}));
  EXPECT_EQ(Editor().Text(), "1");
  EXPECT_TRUE(Editor().AllTextSelected());
}

TEST_F(TagEditorTest, EnterMakesTheTextTheValueAndSelectsIt) {
  AddTag("a");
  TypeValue(0, "it's");
  EXPECT_EQ(ShownValue(0), "");
  EXPECT_TRUE(store.ValuesOf("a").empty());
  W().PressKey(key::enter);
  EXPECT_EQ(ShownValue(0), "it's");
  EXPECT_EQ(store.ValuesOf("a"), Values{"it's"});
  EXPECT_TRUE(Editor().AllTextSelected());
  EXPECT_TRUE(EditorShows());
  EXPECT_EQ(EditorList(), Values{"it's"});
}

TEST_F(TagEditorTest, AValuePickedFromTheListBecomesTheCurrentOneWithEnter) {
  AddTag("a");
  for (const char* value : {"1", "2"}) GiveValue(0, value);
  W().SelectItem("cboTagValue", 0);
  EXPECT_EQ(ShownValue(0), "2");
  W().PressKey(key::enter);
  EXPECT_EQ(ShownValue(0), "1");
  EXPECT_EQ(EditorList(), (Values{"2", "1"}));
}

TEST_F(TagEditorTest, AnEmptyTextIsNoValue) {
  AddTag("a");
  GiveValue(0, "1");
  GiveValue(0, "");
  EXPECT_EQ(store.ValuesOf("a"), Values{"1"});
  EXPECT_EQ(ShownValue(0), "1");
  EXPECT_EQ(Editor().Text(), "1");
}

TEST_F(TagEditorTest, EnterWithAModifierIsNoConfirmation) {
  AddTag("a");
  TypeValue(0, "1");
  W().PressKey(key::enter, shiftState::ctrl);
  EXPECT_TRUE(store.ValuesOf("a").empty());
}

TEST_F(TagEditorTest, EscClosesTheEditorAndKeepsTheValue) {
  AddTag("a");
  GiveValue(0, "1");
  TypeValue(0, "2");
  W().PressKey(key::escape);
  EXPECT_FALSE(EditorShows());
  EXPECT_EQ(W().FocusName(), "lsvTags");
  EXPECT_EQ(store.ValuesOf("a"), Values{"1"});
}

TEST_F(TagEditorTest, AClickOnAnotherTagTakesTheEditorThere) {
  AddTag("a");
  AddTag("b");
  GiveValue(1, "b1");
  TypeValue(0, "a1");
  W().SelectRow("lsvTags", 1);
  ASSERT_TRUE(EditorShows());
  EXPECT_EQ(Editor().Text(), "b1");
  EXPECT_EQ(EditorList(), Values{"b1"});
  EXPECT_EQ(W().FocusName(), "cboTagValue");
  EXPECT_EQ(ShownValue(0), "a1");
  const Rect cell = List().CellBounds(1, 1);
  EXPECT_GE(Editor().Bounds().top + Editor().Bounds().height,
            List().Bounds().top + cell.top + cell.height);
  GiveValue(0, "a2");
  EXPECT_EQ(ShownValue(0), "a2");
  EXPECT_EQ(ShownValue(1), "b1");
}

TEST_F(TagEditorTest, AClickOnTheTagBeingEditedKeepsWhatWasTyped) {
  AddTag("a");
  TypeValue(0, "typed");
  ClickValue(0);
  W().SelectRow("lsvTags", 0);
  EXPECT_EQ(Editor().Text(), "typed");
  EXPECT_EQ(ShownValue(0), "");
  EXPECT_EQ(W().FocusName(), "cboTagValue");
}

TEST_F(TagEditorTest, WhileTheEditorIsOpenTheListPassesTheFocusOn) {
  AddTag("a");
  ClickValue(0);
  List().SetFocus();
  EXPECT_EQ(W().FocusName(), "cboTagValue");
}

TEST_F(TagEditorTest, AddingATagClosesTheEditorAndKeepsItsText) {
  AddTag("a");
  TypeValue(0, "1");
  W().Click("cmdAddTag");
  EXPECT_FALSE(EditorShows());
  EXPECT_EQ(W().FocusName(), "lsvTags");
  EXPECT_EQ(List().EditedRow(), 1);
  EXPECT_EQ(ValueOf("a"), "1");
}

TEST_F(TagEditorTest, TheEditorFollowsTheSizeOfTheList) {
  AddTag("a");
  ClickValue(0);
  const Rect before = Editor().Bounds();
  List().SetColumnWidth(0, 600);
  List().SetColumnWidth(1, 2000);
  panel.FollowResize();
  EXPECT_EQ(Editor().Bounds(), (Rect{before.left - 840, before.top, 2000, before.height}));
}

TEST_F(TagEditorTest, TheEditorGoesWithItsTagWhenTheListIsScrolled) {
  for (int tag = 0; tag < 40; ++tag) AddTag("t" + std::to_string(tag));
  W().ScrollTo("lsvTags", 0);
  TypeValue(3, "three");
  const int before = Editor().Bounds().top;
  W().ScrollTo("lsvTags", 2);
  ASSERT_TRUE(EditorShows());
  EXPECT_EQ(Editor().Bounds().top, before - 2 * List().CellBounds(3, 1).height);
  EXPECT_EQ(Editor().Text(), "three") << "what was typed stays";
  EXPECT_EQ(ShownValue(3), "") << "and is not confirmed";
  W().PressKey(key::enter);
  EXPECT_EQ(ShownValue(3), "three");
}

TEST_F(TagEditorTest, TheEditorClosesWhenItsTagIsScrolledOutOfSight) {
  for (int tag = 0; tag < 40; ++tag) AddTag("t" + std::to_string(tag));
  W().ScrollTo("lsvTags", 0);
  TypeValue(3, "three");
  W().ScrollTo("lsvTags", 10);
  EXPECT_FALSE(EditorShows());
  EXPECT_EQ(W().FocusName(), "lsvTags");
  EXPECT_EQ(ValueOf("t3"), "three") << "its own tag has what was typed";
  for (int tag = 0; tag < 40; ++tag) EXPECT_EQ(ShownValue(tag), tag == 3 ? "three" : "") << tag;
}

TEST_F(TagEditorTest, EnterInTheListOpensTheEditor) {
  List().SetFocus();
  W().PressKey(key::enter);
  EXPECT_FALSE(EditorShows()) << "there is no tag";
  AddTag("a");
  AddTag("b");
  GiveValue(1, "old");
  W().PressKey(key::escape);
  W().PressKey(key::enter);
  ASSERT_TRUE(EditorShows());
  EXPECT_EQ(W().FocusName(), "cboTagValue");
  EXPECT_EQ(Editor().Text(), "old");
  EXPECT_TRUE(Editor().AllTextSelected());
  Editor().SetText("");
  W().Type("cboTagValue", "new");
  W().PressKey(key::enter);
  EXPECT_EQ(ShownValue(1), "new");
}

TEST_F(TagEditorTest, AFilledEditorShowsTheStoresValues) {
  AddTag("a");
  TypeValue(0, "typed");
  store.SetCurrent("a", "elsewhere");
  panel.ConfirmTagValueSync();
  EXPECT_EQ(Editor().Text(), "elsewhere");
  EXPECT_EQ(EditorList(), Values{"elsewhere"});
}

}  // namespace
}  // namespace tessel
