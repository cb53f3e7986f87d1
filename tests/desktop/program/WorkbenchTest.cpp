// The sidebar driven by mouse and keyboard: the tree, the tags panel, and the way between them and
// the other windows.

#include <QAbstractItemView>
#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include "contract/desktop/controls/TreeView.h"
#include "desktop/look/Scale.h"
#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

class WorkbenchTest : public ProgramFixture {
 protected:
  void StartWithSchema() {
    loadsSchema = true;
    Start();
    Query().Find<RichTextBox>("txtQuery").SetText("");
  }

  TreeView& Tree() { return Frame().Find<TreeView>("trvBrowser"); }
  QTreeView& TreeWidget() { return WidgetAs<QTreeView>(Frame(), "trvBrowser"); }
  ListView& Tags() { return Frame().Find<ListView>("lsvTags"); }
  ComboBox& TagValue() { return Frame().Find<ComboBox>("cboTagValue"); }
  RichTextBox& Box() { return Query().Find<RichTextBox>("txtQuery"); }
  bool InQuery() { return Query().Active() && Box().HasFocus(); }

  /// Where a node's text stands in the tree's viewport.
  QPoint TextOf(const std::string& key) {
    Tree().SelectNode(key);
    host.Settle();
    const QRect node = Scale().Pixels(Tree().NodeBounds(key));
    const QPoint place(node.left() + 60, node.center().y());
    return TreeWidget().viewport()->mapFrom(&TreeWidget(), place);
  }
  void DoubleClickNode(const std::string& key) {
    const QPoint place = TextOf(key);
    QTest::mouseClick(TreeWidget().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(TreeWidget().viewport(), Qt::LeftButton, {}, place);
    host.Settle();
  }
  void RightClickNode(const std::string& key, const std::string& menu, const std::string& command) {
    const QPoint place = TextOf(key);
    host.OnPopup(menu, command);
    QTest::mouseClick(TreeWidget().viewport(), Qt::RightButton, {}, place);
    WaitForKeyboard();
  }
  bool HasCheckBox(const std::string& key) {
    Tree().SelectNode(key);
    return TreeWidget().currentIndex().data(Qt::CheckStateRole).isValid();
  }

  /// Adds a tag by the button and types its name into the label.
  void AddTag(const std::string& name) {
    host.Click(Frame(), "cmdAddTag");
    TypeText(name);
    PressKeyCode(key::enter);
    host.Settle();
  }
  /// Opens the value box when it is not open, and types over its text, which is selected then.
  void TypeOver(int row, const std::string& value) {
    if (TagValue().Visible()) TagValue().SetFocus();
    else host.ClickCell(Frame(), "lsvTags", row, 1);
    PressKeyCode('A', shiftState::ctrl);
    TypeText(value);
  }
  void TypeValue(int row, const std::string& value) {
    TypeOver(row, value);
    host.PressKey(Frame(), key::enter);
  }

  const std::string customers = "td1.CUSTOMERS";
  const std::string name = "fd1.CUSTOMERS.NAME";
};

// --- the tree ------------------------------------------------------------------------------------

TEST_F(WorkbenchTest, TablesAndFieldsHaveCheckBoxesAndDatabasesNone) {
  StartWithSchema();
  EXPECT_FALSE(HasCheckBox("d1"));
  EXPECT_TRUE(HasCheckBox(customers));
  EXPECT_TRUE(HasCheckBox(name));
}

TEST_F(WorkbenchTest, TickingATableTicksItsFields) {
  StartWithSchema();
  Tree().SelectNode(customers);
  host.CheckNode(Frame(), "trvBrowser", customers);
  EXPECT_TRUE(Tree().Checked(name));
  Tree().SetExpanded(customers, true);
  Tree().SelectNode(name);
  host.CheckNode(Frame(), "trvBrowser", name);
  EXPECT_FALSE(Tree().Checked(name));
  EXPECT_TRUE(Tree().Checked("fd1.CUSTOMERS.CITY"));
  Tree().SelectNode(customers);
  host.PressKey(Frame(), key::space);
  EXPECT_FALSE(Tree().Checked("fd1.CUSTOMERS.CITY")) << "the space bar works on the focused tree";
}

TEST_F(WorkbenchTest, ADoubleClickTakesTheNameAndLeavesTheNodeAsItWas) {
  StartWithSchema();
  for (const bool open : {false, true}) {
    Tree().SetExpanded(customers, open);
    DoubleClickNode(customers);
    EXPECT_EQ(Tree().Expanded(customers), open);
    EXPECT_TRUE(InQuery());
  }
  EXPECT_EQ(Box().Text(), "CustomersCustomers");
}

TEST_F(WorkbenchTest, ADoubleClickOnTheArrowOrTheCheckBoxTakesNothing) {
  StartWithSchema();
  const QPoint text = TextOf(customers);
  const int left = Scale().Pixels(Tree().NodeBounds(customers)).left();
  for (const int beside : {left - 8, left + 8}) {
    const QPoint place(beside, text.y());
    QTest::mouseClick(TreeWidget().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(TreeWidget().viewport(), Qt::LeftButton, {}, place);
    host.Settle();
  }
  EXPECT_EQ(Box().Text(), "");
}

TEST_F(WorkbenchTest, EnterTakesTheNameAndTurnsTheNode) {
  StartWithSchema();
  Tree().SelectNode("td1.ORDER LINES");
  Tree().SetFocus();
  host.PressKey(Frame(), key::enter);
  EXPECT_EQ(Box().Text(), "[Order Lines]");
  EXPECT_TRUE(Tree().Expanded("td1.ORDER LINES"));
  EXPECT_TRUE(InQuery());
}

TEST_F(WorkbenchTest, ArrowKeysWalkTheTree) {
  StartWithSchema();
  Tree().SelectNode("d1");
  Tree().SetFocus();
  host.PressKey(Frame(), key::down);
  const std::string first = Tree().SelectedKey();
  EXPECT_TRUE(first.starts_with("td1."));
  host.PressKey(Frame(), key::right);
  EXPECT_TRUE(Tree().Expanded(first));
  host.PressKey(Frame(), key::down);
  EXPECT_TRUE(Tree().SelectedKey().starts_with("fd1."));
  host.PressKey(Frame(), key::left);
  host.PressKey(Frame(), key::left);
  EXPECT_FALSE(Tree().Expanded(first));
}

TEST_F(WorkbenchTest, TheRightButtonOpensTheMenuOfTheNode) {
  StartWithSchema();
  RightClickNode("d1", "menuDB", "");
  RightClickNode(customers, "menuTable", "mnuTableSelect");
  EXPECT_EQ(Box().Text(), "SELECT * FROM Customers\r\n");
  RightClickNode(name, "menuField", "mnuFieldName");
  EXPECT_EQ(Box().Text(), "SELECT * FROM Customers\r\nName");
}

TEST_F(WorkbenchTest, WhatTheTreeWritesIsSelectedAndRunsWithF5) {
  StartWithSchema();
  Tree().SetChecked("fd1.ORDER LINES.ORDERID", true);
  Tree().SetChecked("fd1.ORDER LINES.UNIT PRICE", true);
  RightClickNode("td1.ORDER LINES", "menuTable", "mnuTableSelect");
  EXPECT_EQ(Box().SelText(), "SELECT OrderID, [Unit Price] FROM [Order Lines]\r\n");
  host.PressKey(Frame(), key::f5);
  WaitForKeyboard();
  EXPECT_TRUE(Status(0).ends_with(" record(s).")) << Status(0);
}

TEST_F(WorkbenchTest, F6AndF7GoRoundTheWindows) {
  StartWithSchema();
  EXPECT_TRUE(InQuery());
  host.PressKey(Query(), key::f7);
  EXPECT_TRUE(Tree().HasFocus());
  host.PressKey(Frame(), key::f7);
  EXPECT_TRUE(InQuery());
  host.PressKey(Query(), key::f6);
  EXPECT_TRUE(Records(0).Active());
}

// --- the tags panel ------------------------------------------------------------------------------

TEST_F(WorkbenchTest, ATagIsAddedNamedGivenAValueAndUsed) {
  Start();
  AddTag("city");
  ASSERT_EQ(Tags().Count(), 1);
  EXPECT_EQ(Tags().Row(0).text, "city");
  TypeValue(0, "Oslo");
  EXPECT_EQ(Tags().Row(0).subItems.at(0), "Oslo");
  Run("SELECT <*?CITY*> AS c, {*?city*} AS d");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "Oslo");
  EXPECT_EQ(Box().Text(), "SELECT <*?CITY*> AS c, {*?city*} AS d");
}

TEST_F(WorkbenchTest, AValueTypedAndNotConfirmedCounts) {
  Start();
  AddTag("n");
  TypeValue(0, "1");
  TypeOver(0, "22");
  Run("SELECT <%?n%> AS n");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "22");
  EXPECT_EQ(Tags().Row(0).subItems.at(0), "22");
}

TEST_F(WorkbenchTest, TheEditorOffersTheEarlierValues) {
  Start();
  AddTag("n");
  for (const char* value : {"1", "2", "3", "2"}) TypeValue(0, value);
  EXPECT_EQ(TagValue().ListCount(), 3);
  EXPECT_EQ(TagValue().List(0), "1");
  EXPECT_EQ(TagValue().List(2), "2") << "the current value is the last one";
  host.SelectEntry(Frame(), "cboTagValue", 0);
  host.PressKey(Frame(), key::enter);
  EXPECT_EQ(Tags().Row(0).subItems.at(0), "1");
  host.PressKey(Frame(), key::escape);
  EXPECT_FALSE(TagValue().Visible());
  EXPECT_TRUE(Tags().HasFocus());
}

TEST_F(WorkbenchTest, KeysOfTheTagsList) {
  Start();
  Tags().SetFocus();
  host.Settle();
  host.PressKey(Frame(), key::insert);
  host.EndLabelEdit(Frame(), "lsvTags", "a");
  host.PressKey(Frame(), key::insert);
  host.EndLabelEdit(Frame(), "lsvTags", "b");
  ASSERT_EQ(Tags().Count(), 2);
  Tags().SetSelectedIndex(0);
  Tags().SetFocus();
  host.PressKey(Frame(), key::f2);
  host.EndLabelEdit(Frame(), "lsvTags", "renamed");
  EXPECT_EQ(Tags().Row(0).text, "renamed");
  Tags().SetFocus();
  host.PressKey(Frame(), key::del);
  EXPECT_EQ(Tags().Count(), 1);
  EXPECT_EQ(Tags().Row(0).text, "b");
  host.PressKey(Frame(), key::f7);
  EXPECT_TRUE(InQuery());
}

TEST_F(WorkbenchTest, TheValueBoxGoesWithItsTagWhenTheListIsScrolled) {
  Start();
  for (int tag = 0; tag < 40; ++tag) AddTag("t" + std::to_string(tag));
  Tags().SetSelectedIndex(0);
  host.Settle();
  TypeOver(3, "three");
  QScrollBar& bar = *WidgetAs<QTreeWidget>(Frame(), "lsvTags").verticalScrollBar();
  const int before = TagValue().Bounds().top;
  bar.setValue(bar.value() + bar.singleStep() * 2);
  host.Settle();
  ASSERT_TRUE(TagValue().Visible());
  EXPECT_LT(TagValue().Bounds().top, before);
  const Rect cell = Tags().CellBounds(3, 1);
  const int middle = Tags().Bounds().top + cell.top + cell.height / 2;
  EXPECT_NEAR(TagValue().Bounds().top + TagValue().Bounds().height / 2, middle, 30);
  bar.setValue(bar.maximum());
  host.Settle();
  EXPECT_FALSE(TagValue().Visible());
  EXPECT_TRUE(Tags().HasFocus());
  EXPECT_EQ(Tags().Row(3).subItems.at(0), "three");
  for (int tag = 4; tag < 40; ++tag) EXPECT_EQ(Tags().Row(tag).subItems.at(0), "");
}

TEST_F(WorkbenchTest, EnterOpensTheValueOfATag) {
  Start();
  AddTag("a");
  AddTag("b");
  Tags().SetFocus();
  host.PressKey(Frame(), key::up);
  host.PressKey(Frame(), key::enter);
  ASSERT_TRUE(TagValue().Visible());
  EXPECT_TRUE(TagValue().HasFocus());
  TypeText("typed");
  host.PressKey(Frame(), key::enter);
  EXPECT_EQ(Tags().Row(0).subItems.at(0), "typed");
  EXPECT_EQ(Tags().Row(1).subItems.at(0), "");
}

TEST_F(WorkbenchTest, ANameThatIsNoneOrTakenIsRefused) {
  Start();
  AddTag("a");
  host.Click(Frame(), "cmdAddTag");
  host.OnMessage("Please give a valid name.", MessageResult::Ok);
  host.EndLabelEdit(Frame(), "lsvTags", "no name");
  EXPECT_EQ(Tags().Row(1).text, "NewTag");
}

TEST_F(WorkbenchTest, RemovingATagOfSeveralValuesAsks) {
  Start();
  AddTag("n");
  TypeValue(0, "1");
  TypeValue(0, "2");
  host.OnMessage("Remove tag 'n'?", MessageResult::Cancel);
  host.Click(Frame(), "cmdRemoveTag");
  EXPECT_EQ(Tags().Count(), 1);
  host.OnMessage("Remove tag 'n'?", MessageResult::Ok);
  host.Click(Frame(), "cmdRemoveTag");
  EXPECT_EQ(Tags().Count(), 0);
}

TEST_F(WorkbenchTest, TheTagsMenuWritesTheTag) {
  Start();
  AddTag("n");
  Box().SetText("");
  Tags().SetFocus();
  host.OnPopup("menuTags", "mnuTag_1");
  host.PressKey(Frame(), key::contextMenu);
  EXPECT_EQ(Box().Text(), "<*?n*>");
}

TEST_F(WorkbenchTest, ShiftF10OpensTheMenusOfTheSidebar) {
  StartWithSchema();
  AddTag("n");
  Box().SetText("");
  Tags().SetFocus();
  host.OnPopup("menuTags", "mnuTag_1");
  host.PressKey(Frame(), key::f10, shiftState::shift);
  EXPECT_EQ(Box().Text(), "<*?n*>");
  Box().SetText("");
  Tree().SelectNode(customers);
  Tree().SetFocus();
  host.OnPopup("menuTable", "mnuTableName");
  host.PressKey(Frame(), key::f10, shiftState::shift);
  EXPECT_EQ(Box().Text(), "Customers");
}

TEST_F(WorkbenchTest, ShiftF10OpensTheMenuOfATextBox) {
  Start();
  Box().SetFocus();
  host.Settle();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  host.PressKey(Query(), key::f10, shiftState::shift);
  QWidget* menu = QApplication::activePopupWidget();
  ASSERT_NE(menu, nullptr);
  menu->close();
}

TEST_F(WorkbenchTest, AnUndefinedTagRunsNothing) {
  Start();
  host.OnMessage("Undefined tag: 'nowhere'", MessageResult::Ok);
  Run("SELECT <%?nowhere%>");
  EXPECT_EQ(Status(0), "Connected.");
  EXPECT_EQ(Box().Text(), "SELECT <%?nowhere%>");
}

// --- history -------------------------------------------------------------------------------------

TEST_F(WorkbenchTest, HistoryByKeysAndMenu) {
  Start();
  for (int i = 1; i <= 12; ++i) Run("SELECT " + std::to_string(i) + " AS n");
  host.PressKey(Query(), key::f6);
  host.PressKey(Records(0), key::left, shiftState::alt);
  host.PressKey(Records(0), key::left, shiftState::alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "10");
  host.PressKey(Records(0), key::right, shiftState::alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "11");
  host.OnPopup("menuHistory", "mnuHistorical_7");
  host.PressKey(Records(0), key::up, shiftState::alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "3") << "the eighth back";
  host.OnPopup("menuHistory", "mnuHistorical_0");
  host.PressKey(Records(0), key::down, shiftState::alt);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "4");
}

TEST_F(WorkbenchTest, ATaggedQueryIsRunAgainWithItsNewValue) {
  Start();
  AddTag("n");
  TypeValue(0, "5");
  Run("SELECT <%?n%> AS n");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "5");
  TypeValue(0, "6");
  host.Click(Records(0), "cmdRequeryTags");
  EXPECT_EQ(Grid(0).ShownText(0, 0), "6");
  WaitForKeyboard();
  host.PressKey(Records(0), key::f5, shiftState::ctrl);
  EXPECT_EQ(Grid(0).ShownText(0, 0), "6");
}

}  // namespace
}  // namespace tessel::test
