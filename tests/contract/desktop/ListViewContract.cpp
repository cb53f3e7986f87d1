// The report list with columns.

#include <algorithm>

#include <gtest/gtest.h>

#include "contract/desktop/controls/ListView.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

constexpr const char* listName = "lsvConnections";

/// The list of saved connections in its window, filled with "b", "A" and "c".
struct ListFixture {
  explicit ListFixture(ContractHost& contractHost)
      : host(contractHost),
        window(ShowForm(host, "dlgConnect")),
        list(window->Find<ListView>(listName)) {
    list.Clear();
    for (const char* text : {"b", "A", "c"})
      list.Insert(list.Count(), {text, text, {"x"}, "", 0, 0});
    list.ItemClick = [this](int row) { record.Add("item " + std::to_string(row)); };
    list.ColumnClick = [this](int column) { record.Add("column " + std::to_string(column)); };
    list.CellClick = [this](int row, int column, const MouseEvent& event) {
      record.Add("cell " + std::to_string(row) + " " + std::to_string(column) +
                 (event.button == MouseButton::Left ? " left" : " other"));
    };
    list.DblClick = record.Noting("double");
    host.Settle();
  }

  [[nodiscard]] std::string Texts() const {
    std::string texts;
    for (int row = 0; row < list.Count(); ++row) texts += list.Row(row).text;
    return texts;
  }
  [[nodiscard]] std::string SelectedText() const {
    return list.SelectedIndex() < 0 ? "" : list.Row(list.SelectedIndex()).text;
  }

  ContractHost& host;
  std::unique_ptr<Window> window;
  ListView& list;
  Record record;
};

void RowsKeepWhatTheyHold(ContractHost& host) {
  ListFixture test(host);
  const int index =
      test.list.Insert(1, {"key", "<i>text</i>", {"sub", "more"}, "tip", -2147483643, 0x0000FF});
  EXPECT_EQ(index, 1);
  EXPECT_EQ(test.Texts(), "b<i>text</i>Ac");
  const ListRow& row = test.list.Row(1);
  EXPECT_EQ(row.key, "key");
  EXPECT_EQ(row.subItems.at(0), "sub");
  EXPECT_EQ(row.toolTip, "tip");
  EXPECT_EQ(row.tag, -2147483643);
  EXPECT_EQ(row.foreColor, 0x0000FFU);
  test.list.SetRow(1, {"key", "new", {"sub"}, "", 0, 0});
  EXPECT_EQ(test.list.Row(1).text, "new");
  EXPECT_EQ(test.record.Take(), Seen{});
}

void KeysAreUnique(ContractHost& host) {
  ListFixture test(host);
  EXPECT_EQ(ErrorNumberOf([&] {
              test.list.Insert(0, {"c", "again", {}, "", 0, 0});
            }),
            errorNumber::application);
  EXPECT_EQ(test.list.Count(), 3);
  test.list.Insert(3, {"", "d", {}, "", 0, 0});
  test.list.Insert(4, {"", "e", {}, "", 0, 0});
  EXPECT_EQ(test.list.FindKey("c"), 2);
  EXPECT_EQ(test.list.FindKey("none"), -1);
  EXPECT_EQ(test.list.FindText("a"), 1) << "without regard to case";
  EXPECT_EQ(test.list.FindText("A "), -1) << "the whole text";
}

void SelectingByCodeIsSilent(ContractHost& host) {
  ListFixture test(host);
  EXPECT_EQ(test.list.SelectedIndex(), -1);
  test.list.SetSelectedIndex(2);
  EXPECT_EQ(test.SelectedText(), "c");
  test.list.SetSelectedIndex(-1);
  EXPECT_EQ(test.list.SelectedIndex(), -1);
  EXPECT_EQ(test.record.Take(), Seen{});
}

void AClickSelectsAndIsReported(ContractHost& host) {
  ListFixture test(host);
  test.host.ClickCell(*test.window, listName, 1, 1);
  EXPECT_EQ(test.SelectedText(), "A");
  EXPECT_EQ(test.record.Take(), (Seen{"item 1", "cell 1 1 left"}));
  test.host.ClickCell(*test.window, listName, 1, 0);
  EXPECT_EQ(test.record.Take(), (Seen{"item 1", "cell 1 0 left"})) << "the same row again";
}

void ADoubleClickIsOneOfTheLeftButtonOnARow(ContractHost& host) {
  ListFixture test(host);
  const auto doubles = [&] {
    const Seen seen = test.record.Take();
    return std::ranges::count(seen, "double");
  };
  test.host.DoubleClickRow(*test.window, listName, 1, MouseButton::Left);
  EXPECT_EQ(doubles(), 1);
  test.host.DoubleClickRow(*test.window, listName, 1, MouseButton::Right);
  test.host.DoubleClickRow(*test.window, listName, 1, MouseButton::Middle);
  EXPECT_EQ(doubles(), 0) << "another button";
  test.host.DoubleClick(*test.window, listName);
  EXPECT_EQ(doubles(), 0) << "beside the rows";
  EXPECT_EQ(test.SelectedText(), "A");
}

void TheUserCannotUnselectTheRow(ContractHost& host) {
  ListFixture test(host);
  test.host.ClickCell(*test.window, listName, 0, 0);
  static_cast<void>(test.record.Take());
  test.host.ClickMouse(*test.window, listName, MouseButton::Left, shiftState::ctrl);
  EXPECT_EQ(test.SelectedText(), "b");
  test.list.SetFocus();
  test.host.PressKey(*test.window, key::space, shiftState::ctrl);
  EXPECT_EQ(test.SelectedText(), "b");
  test.host.PressKey(*test.window, key::down);
  EXPECT_EQ(test.SelectedText(), "A");
}

void ScrollingIsReported(ContractHost& host) {
  ListFixture test(host);
  test.list.SetBounds({0, 0, 6000, 1500});
  for (int more = 0; more < 50; ++more)
    test.list.Insert(test.list.Count(), {"", "more", {""}, "", 0, 0});
  test.list.SetSelectedIndex(0);
  host.Settle();
  int scrolled = 0;
  test.list.Scrolled = [&] { ++scrolled; };
  test.list.SetSelectedIndex(0);
  EXPECT_EQ(scrolled, 0);
  test.list.SetSelectedIndex(52);
  EXPECT_EQ(scrolled, 1);
  EXPECT_EQ(test.list.CellBounds(0, 0), Rect());
}

void TheKeyboardReachesRows(ContractHost& host) {
  ListFixture test(host);
  test.list.SetFocus();
  test.list.SetSelectedIndex(0);
  test.host.PressKey(*test.window, key::down);
  EXPECT_EQ(test.list.SelectedIndex(), 1);
  EXPECT_EQ(test.record.Take(), Seen{"item 1"});
  test.host.PressKey(*test.window, key::end);
  EXPECT_EQ(test.record.Take(), Seen{"item 2"});
}

void RemovingTheSelectedRowSelectsTheNext(ContractHost& host) {
  ListFixture test(host);
  test.list.SetSelectedIndex(1);
  test.list.Remove(1);
  EXPECT_EQ(test.SelectedText(), "c");
  test.list.Remove(1);
  EXPECT_EQ(test.SelectedText(), "b") << "the last one at the end";
  test.list.Remove(0);
  EXPECT_EQ(test.list.SelectedIndex(), -1);
  EXPECT_EQ(test.record.Take(), Seen{});
}

void OtherChangesKeepTheSelectedRow(ContractHost& host) {
  ListFixture test(host);
  test.list.SetSelectedIndex(1);
  test.list.Insert(0, {"", "z", {}, "", 0, 0});
  EXPECT_EQ(test.SelectedText(), "A");
  test.list.Remove(0);
  test.list.Remove(2);
  EXPECT_EQ(test.SelectedText(), "A");
  EXPECT_EQ(test.record.Take(), Seen{});
  test.list.Clear();
  EXPECT_EQ(test.list.SelectedIndex(), -1);
  EXPECT_EQ(test.list.Count(), 0);
  EXPECT_EQ(test.record.Take(), Seen{});
}

void SortingIgnoresCaseAndKeepsTheSelection(ContractHost& host) {
  ListFixture test(host);
  EXPECT_FALSE(test.list.Sorted());
  test.list.SetSelectedIndex(0);
  test.list.Sort(0, false);
  EXPECT_TRUE(test.list.Sorted());
  EXPECT_EQ(test.list.SortColumn(), 0);
  EXPECT_FALSE(test.list.SortDescending());
  EXPECT_EQ(test.Texts(), "Abc");
  EXPECT_EQ(test.SelectedText(), "b");
  test.list.Sort(0, true);
  EXPECT_TRUE(test.list.SortDescending());
  EXPECT_EQ(test.Texts(), "cbA");
  EXPECT_EQ(test.SelectedText(), "b");
  EXPECT_EQ(test.record.Take(), Seen{});
}

void ASortedListStaysSorted(ContractHost& host) {
  ListFixture test(host);
  test.list.Sort(0, false);
  test.list.SetSelectedIndex(2);
  EXPECT_EQ(test.list.Insert(0, {"", "bb", {}, "", 0, 0}), 2);
  EXPECT_EQ(test.Texts(), "Abbbc");
  EXPECT_EQ(test.SelectedText(), "c");
  test.list.SetRow(3, {"c", "a0", {}, "", 0, 0});
  EXPECT_EQ(test.Texts(), "Aa0bbb");
  EXPECT_EQ(test.SelectedText(), "a0");
}

void SortingByAnotherColumnReadsThatColumn(ContractHost& host) {
  ListFixture test(host);
  test.list.SetRow(0, {"b", "b", {"3"}, "", 0, 0});
  test.list.SetRow(1, {"A", "A", {"1"}, "", 0, 0});
  test.list.SetRow(2, {"c", "c", {"2"}, "", 0, 0});
  test.list.Sort(1, false);
  EXPECT_EQ(test.Texts(), "Acb");
  EXPECT_EQ(test.list.SortColumn(), 1);
}

void AColumnClickIsReportedAndSortsNothing(ContractHost& host) {
  ListFixture test(host);
  test.host.ClickColumn(*test.window, listName, 1);
  EXPECT_EQ(test.record.Take(), Seen{"column 1"});
  EXPECT_EQ(test.Texts(), "bAc");
  EXPECT_FALSE(test.list.Sorted());
}

void ColumnsHaveCaptionsAndWidths(ContractHost& host) {
  ListFixture test(host);
  EXPECT_EQ(test.list.ColumnCaption(0), "Caption");
  EXPECT_EQ(test.list.ColumnCaption(1), "Connection String");
  test.list.SetColumnWidth(0, 1500);
  EXPECT_EQ(test.list.ColumnWidth(0), 1500);
}

void CellsHavePlaces(ContractHost& host) {
  ListFixture test(host);
  test.list.SetColumnWidth(0, 1500);
  test.list.SetBounds({0, 0, 6000, 3000});
  host.Settle();
  const Rect first = test.list.CellBounds(0, 0);
  const Rect second = test.list.CellBounds(0, 1);
  const Rect below = test.list.CellBounds(1, 0);
  EXPECT_GT(first.height, 0);
  EXPECT_EQ(first.width, 1500);
  EXPECT_EQ(second.left, first.left + first.width);
  EXPECT_GE(below.top, first.top + first.height);
}

void ALabelIsEdited(ContractHost& host) {
  ListFixture test(host);
  test.list.AfterLabelEdit = [&](int row, const std::string& text, bool& /*keep*/) {
    test.record.Add("edited " + std::to_string(row) + " " + text);
  };
  test.list.StartLabelEdit(1);
  test.host.EndLabelEdit(*test.window, listName, "new");
  EXPECT_EQ(test.list.Row(1).text, "new");
  EXPECT_EQ(test.record.Take(), Seen{"edited 1 new"});
}

void ALabelsNewTextIsRefused(ContractHost& host) {
  ListFixture test(host);
  test.list.AfterLabelEdit = [](int, const std::string&, bool& keep) { keep = true; };
  test.list.StartLabelEdit(1);
  test.host.EndLabelEdit(*test.window, listName, "new");
  EXPECT_EQ(test.list.Row(1).text, "A");
}

}  // namespace

std::vector<ContractCase> ListViewContract() {
  return {{"RowsKeepWhatTheyHold", &RowsKeepWhatTheyHold},
          {"KeysAreUnique", &KeysAreUnique},
          {"SelectingByCodeIsSilent", &SelectingByCodeIsSilent},
          {"AClickSelectsAndIsReported", &AClickSelectsAndIsReported},
          {"ADoubleClickIsOneOfTheLeftButtonOnARow", &ADoubleClickIsOneOfTheLeftButtonOnARow},
          {"TheUserCannotUnselectTheRow", &TheUserCannotUnselectTheRow},
          {"ScrollingIsReported", &ScrollingIsReported},
          {"TheKeyboardReachesRows", &TheKeyboardReachesRows},
          {"RemovingTheSelectedRowSelectsTheNext", &RemovingTheSelectedRowSelectsTheNext},
          {"OtherChangesKeepTheSelectedRow", &OtherChangesKeepTheSelectedRow},
          {"SortingIgnoresCaseAndKeepsTheSelection", &SortingIgnoresCaseAndKeepsTheSelection},
          {"ASortedListStaysSorted", &ASortedListStaysSorted},
          {"SortingByAnotherColumnReadsThatColumn", &SortingByAnotherColumnReadsThatColumn},
          {"AColumnClickIsReportedAndSortsNothing", &AColumnClickIsReportedAndSortsNothing},
          {"ColumnsHaveCaptionsAndWidths", &ColumnsHaveCaptionsAndWidths},
          {"CellsHavePlaces", &CellsHavePlaces},
          {"ALabelIsEdited", &ALabelIsEdited},
          {"ALabelsNewTextIsRefused", &ALabelsNewTextIsRefused}};
}

}  // namespace tessel::test
