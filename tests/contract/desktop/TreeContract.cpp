// The tree with check boxes.

#include <gtest/gtest.h>

#include "contract/desktop/controls/TreeView.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

constexpr const char* treeName = "trvBrowser";

/// The schema browser's tree with a database "d" and the tables "t1" (fields "f1", "f2") and "t2".
struct TreeFixture {
  explicit TreeFixture(ContractHost& contractHost)
      : host(contractHost),
        window(ShowForm(host, "frmMDI")),
        tree(window->Find<TreeView>(treeName)) {
    tree.Add("", {"d", "Database", 1});
    tree.AddChildren("d", {{"t1", "Table 1", 2}, {"t2", "Table 2", 2}});
    tree.AddChildren("t1", {{"f1", "Field 1", 3}, {"f2", "Field 2", 3}});
    tree.NodeCheck = [this](const std::string& key) { record.Add("check " + key); };
    tree.NodeClick = [this](const std::string& key) { record.Add("click " + key); };
    tree.NodeExpand = [this](const std::string& key) { record.Add("expand " + key); };
    host.Settle();
  }

  ContractHost& host;
  std::unique_ptr<Window> window;
  TreeView& tree;
  Record record;
};

void NodesHangBelowTheirParents(ContractHost& host) {
  TreeFixture test(host);
  EXPECT_EQ(test.tree.Children(""), Seen{"d"});
  EXPECT_EQ(test.tree.Children("d"), (Seen{"t1", "t2"}));
  EXPECT_EQ(test.tree.Children("t2"), Seen{});
  EXPECT_EQ(test.tree.ChildTexts("d"), (Seen{"Table 1", "Table 2"}));
  EXPECT_EQ(test.tree.ChildTexts("t2"), Seen{});
  EXPECT_EQ(test.tree.Parent("f1"), "t1");
  EXPECT_EQ(test.tree.Parent("d"), "");
  EXPECT_EQ(test.tree.Text("f2"), "Field 2");
  test.tree.SetText("f2", "<b>renamed</b>");
  EXPECT_EQ(test.tree.Text("f2"), "<b>renamed</b>");
  EXPECT_TRUE(test.tree.Exists("t1"));
  EXPECT_FALSE(test.tree.Exists("T1")) << "keys have a case";
}

void KeysAreTakenOnce(ContractHost& host) {
  TreeFixture test(host);
  EXPECT_FALSE(test.tree.Add("t2", {"f1", "Again", 3}));
  EXPECT_EQ(test.tree.Children("t2"), Seen{});
  test.tree.AddChildren("t2", {{"f3", "Field 3", 3}, {"t1", "Again", 3}, {"f4", "Field 4", 3}});
  EXPECT_EQ(test.tree.Children("t2"), (Seen{"f3", "f4"}));
  EXPECT_TRUE(test.tree.Add("", {"e", "Other", 1}));
  EXPECT_EQ(test.tree.Children(""), (Seen{"d", "e"}));
}

void UnknownKeysRaise(ContractHost& host) {
  TreeFixture test(host);
  const auto raises = [](auto action) {
    EXPECT_EQ(ErrorNumberOf(action), errorNumber::itemNotFound);
  };
  raises([&] { test.tree.Add("none", {"x", "X", 1}); });
  raises([&] { static_cast<void>(test.tree.Text("none")); });
  raises([&] { static_cast<void>(test.tree.Parent("none")); });
  raises([&] { static_cast<void>(test.tree.Children("none")); });
  raises([&] { static_cast<void>(test.tree.ChildTexts("none")); });
  raises([&] { static_cast<void>(test.tree.Checked("none")); });
  raises([&] { test.tree.SetChecked("none", true); });
  raises([&] { test.tree.SetExpanded("none", true); });
  raises([&] { test.tree.SelectNode("none"); });
  test.tree.Remove("none");
  EXPECT_FALSE(test.tree.Exists("x"));
}

void RemovingTakesWhatIsBelow(ContractHost& host) {
  TreeFixture test(host);
  test.tree.Remove("t1");
  EXPECT_FALSE(test.tree.Exists("t1"));
  EXPECT_FALSE(test.tree.Exists("f1"));
  EXPECT_EQ(test.tree.Children("d"), Seen{"t2"});
  EXPECT_TRUE(test.tree.Add("t2", {"f1", "Field 1", 3})) << "the key is free again";
  test.tree.Remove("d");
  EXPECT_EQ(test.tree.Children(""), Seen{});
  EXPECT_EQ(test.record.Take(), Seen{});
}

void RemovingARootNodeLeavesTheOthers(ContractHost& host) {
  TreeFixture test(host);
  test.tree.Add("", {"e", "Other", 1});
  test.tree.AddChildren("e", {{"t3", "Table 3", 2}, {"t4", "Table 4", 2}});
  test.tree.SetChecked("t4", true);
  test.tree.Remove("d");
  EXPECT_EQ(test.tree.Children(""), Seen{"e"});
  EXPECT_EQ(test.tree.Children("e"), (Seen{"t3", "t4"}));
  EXPECT_EQ(test.tree.Text("t4"), "Table 4");
  EXPECT_TRUE(test.tree.Checked("t4"));
  test.tree.SelectNode("t3");
  EXPECT_EQ(test.tree.SelectedKey(), "t3");
  EXPECT_TRUE(test.tree.Add("", {"d", "Again", 1}));
  EXPECT_FALSE(test.tree.Exists("f1"));
  EXPECT_EQ(test.tree.Children("d"), Seen{});
}

void RemovingTheSelectedNodeIsSilent(ContractHost& host) {
  TreeFixture test(host);
  test.tree.SelectNode("f1");
  static_cast<void>(test.record.Take());
  test.tree.Remove("t1");
  const std::string selected = test.tree.SelectedKey();
  EXPECT_TRUE(selected.empty() || test.tree.Exists(selected)) << selected;
  EXPECT_EQ(test.record.Take(), Seen{});
}

void ChecksByCodeAreSilent(ContractHost& host) {
  TreeFixture test(host);
  EXPECT_FALSE(test.tree.Checked("t1"));
  test.tree.SetChecked("t1", true);
  EXPECT_TRUE(test.tree.Checked("t1"));
  EXPECT_FALSE(test.tree.Checked("f1")) << "a check is one node's own";
  EXPECT_EQ(test.record.Take(), Seen{});
}

void ChecksByTheUserAreReported(ContractHost& host) {
  TreeFixture test(host);
  test.host.CheckNode(*test.window, treeName, "d");
  EXPECT_TRUE(test.tree.Checked("d"));
  EXPECT_EQ(test.record.Take(), Seen{"check d"});
  test.host.CheckNode(*test.window, treeName, "d");
  EXPECT_FALSE(test.tree.Checked("d"));
  EXPECT_EQ(test.record.Take(), Seen{"check d"});
}

void WithoutACheckBoxNothingIsChecked(ContractHost& host) {
  TreeFixture test(host);
  test.tree.Add("", {"plain", "Without a box", 1, false});
  test.host.ClickNode(*test.window, treeName, "plain");
  static_cast<void>(test.record.Take());
  test.host.PressKey(*test.window, key::space);
  EXPECT_FALSE(test.tree.Checked("plain"));
  test.host.ClickNode(*test.window, treeName, "d");
  test.host.PressKey(*test.window, key::space);
  EXPECT_TRUE(test.tree.Checked("d"));
  EXPECT_EQ(test.record.Take(), (Seen{"click d", "check d"}));
}

void SelectingByTheUserIsReportedOnce(ContractHost& host) {
  TreeFixture test(host);
  test.tree.SetExpanded("d", true);
  static_cast<void>(test.record.Take());
  test.host.ClickNode(*test.window, treeName, "t2");
  EXPECT_EQ(test.tree.SelectedKey(), "t2");
  EXPECT_EQ(test.record.Take(), Seen{"click t2"});
  test.host.ClickNode(*test.window, treeName, "t2");
  EXPECT_EQ(test.record.Take(), Seen{}) << "it was selected already";
  test.host.PressKey(*test.window, key::up);
  EXPECT_EQ(test.tree.SelectedKey(), "t1");
  EXPECT_EQ(test.record.Take(), Seen{"click t1"});
}

void SelectingByCodeShowsTheNode(ContractHost& host) {
  TreeFixture test(host);
  test.tree.SelectNode("f2");
  EXPECT_EQ(test.tree.SelectedKey(), "f2");
  EXPECT_TRUE(test.tree.Expanded("d"));
  EXPECT_TRUE(test.tree.Expanded("t1"));
  for (const std::string& event : test.record.Take())
    EXPECT_FALSE(event.starts_with("click")) << event;
}

void ExpandingIsReportedOnce(ContractHost& host) {
  TreeFixture test(host);
  test.host.ExpandNode(*test.window, treeName, "d");
  EXPECT_TRUE(test.tree.Expanded("d"));
  EXPECT_EQ(test.record.Take(), Seen{"expand d"});
  test.tree.SetExpanded("t1", true);
  EXPECT_EQ(test.record.Take(), Seen{"expand t1"});
  test.tree.SetExpanded("t1", true);
  test.tree.SetExpanded("t1", false);
  EXPECT_FALSE(test.tree.Expanded("t1"));
  EXPECT_EQ(test.record.Take(), Seen{});
}

void NodesHavePlaces(ContractHost& host) {
  TreeFixture test(host);
  test.tree.SetExpanded("d", true);
  host.Settle();
  const Rect bounds = test.tree.NodeBounds("t1");
  ASSERT_GT(bounds.height, 0);
  EXPECT_EQ(test.tree.NodeAt(bounds.left + 15, bounds.top + bounds.height / 2), "t1");
  EXPECT_EQ(test.tree.NodeBounds("f1"), Rect{}) << "its parent is closed";
  const Rect last = test.tree.NodeBounds("t2");
  EXPECT_EQ(test.tree.NodeAt(last.left + 15, last.top + 3 * last.height), "");
}

void NodesInSightAreNotedWheneverNotesAreRefreshed(ContractHost& host) {
  TreeFixture test(host);
  int asked = 0;
  test.tree.NodeNoted = [&](const std::string& key, NodeNote& note) {
    if (key == "d") ++asked;
    note = {"of the shop", "two tables"};
  };
  test.tree.RefreshNotes();
  host.Settle();
  EXPECT_GT(asked, 0);
  asked = 0;
  test.tree.RefreshNotes();
  host.Settle();
  EXPECT_GT(asked, 0);
  EXPECT_EQ(test.tree.Text("d"), "Database") << "a note is no part of the text";
  EXPECT_EQ(test.record.Take(), Seen{});
  test.tree.NodeNoted = nullptr;
}

}  // namespace

std::vector<ContractCase> TreeContract() {
  return {{"NodesHangBelowTheirParents", &NodesHangBelowTheirParents},
          {"KeysAreTakenOnce", &KeysAreTakenOnce},
          {"UnknownKeysRaise", &UnknownKeysRaise},
          {"RemovingTakesWhatIsBelow", &RemovingTakesWhatIsBelow},
          {"RemovingARootNodeLeavesTheOthers", &RemovingARootNodeLeavesTheOthers},
          {"RemovingTheSelectedNodeIsSilent", &RemovingTheSelectedNodeIsSilent},
          {"ChecksByCodeAreSilent", &ChecksByCodeAreSilent},
          {"ChecksByTheUserAreReported", &ChecksByTheUserAreReported},
          {"WithoutACheckBoxNothingIsChecked", &WithoutACheckBoxNothingIsChecked},
          {"SelectingByTheUserIsReportedOnce", &SelectingByTheUserIsReportedOnce},
          {"SelectingByCodeShowsTheNode", &SelectingByCodeShowsTheNode},
          {"ExpandingIsReportedOnce", &ExpandingIsReportedOnce},
          {"NodesHavePlaces", &NodesHavePlaces},
          {"NodesInSightAreNotedWheneverNotesAreRefreshed",
           &NodesInSightAreNotedWheneverNotesAreRefreshed}};
}

}  // namespace tessel::test
