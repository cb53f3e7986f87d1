// List boxes and combo boxes.

#include <gtest/gtest.h>

#include "contract/desktop/controls/ListControls.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

struct ListUnderTest {
  ContractHost& host;
  Window& window;
  const std::string name;
  ListControl& control;
  Record record;

  void Fill() {
    for (const char* text : {"zero", "one", "two"}) control.AddItem(text);
  }
};

using ListBody = void (*)(ListUnderTest&);

void ForList(ContractHost& host, const std::string& form, const std::string& name, ListBody body) {
  SCOPED_TRACE(form + "." + name);
  const Framed windows(host, form);
  ListUnderTest list{host, *windows.document, name, windows.document->Find<ListControl>(name), {}};
  list.control.Clear();
  list.control.SetVisible(true);
  list.control.Click = [&list] {
    list.record.Add("click " + std::to_string(list.control.ListIndex()));
  };
  if (auto* box = dynamic_cast<ComboBox*>(&list.control))
    box->Change = list.record.Noting("change");
  body(list);
}

/// The rule holds for list boxes and for combo boxes, editable or not.
void ForEachList(ContractHost& host, ListBody body) {
  ForList(host, "frmMain", "lstOptions", body);
  ForList(host, "frmRecords", "cboCatalog", body);
  ForList(host, "dlgDataLink", "cboProvider", body);
}

void AddingSelectsNothing(ContractHost& host) {
  ForEachList(host, [](ListUnderTest& list) {
    list.Fill();
    EXPECT_EQ(list.control.ListCount(), 3);
    EXPECT_EQ(list.control.List(2), "two");
    EXPECT_EQ(list.control.ListIndex(), -1);
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void SelectingByCodeClicksOnce(ContractHost& host) {
  ForEachList(host, [](ListUnderTest& list) {
    list.Fill();
    list.control.SetListIndex(1);
    EXPECT_EQ(list.record.Take(), Seen{"click 1"});
    list.control.SetListIndex(1);
    list.control.SetListIndex(-1);
    EXPECT_EQ(list.control.ListIndex(), -1);
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void SelectingByTheUserClicksOnce(ContractHost& host) {
  ForEachList(host, [](ListUnderTest& list) {
    list.Fill();
    list.host.SelectEntry(list.window, list.name, 2);
    EXPECT_EQ(list.control.ListIndex(), 2);
    EXPECT_EQ(list.record.Take(), Seen{"click 2"});
    list.host.SelectEntry(list.window, list.name, 2);
    EXPECT_EQ(list.record.Take(), Seen{}) << "the same entry again";
    list.host.SelectEntry(list.window, list.name, 0);
    EXPECT_EQ(list.record.Take(), Seen{"click 0"});
  });
}

void ClearingIsSilent(ContractHost& host) {
  ForEachList(host, [](ListUnderTest& list) {
    list.Fill();
    list.control.SetListIndex(1);
    static_cast<void>(list.record.Take());
    list.control.Clear();
    EXPECT_EQ(list.control.ListCount(), 0);
    EXPECT_EQ(list.control.ListIndex(), -1);
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void EntriesArePlainText(ContractHost& host) {
  ForEachList(host, [](ListUnderTest& list) {
    list.control.AddItem("<b>&one</b> \xF0\x9F\x98\x80");
    EXPECT_EQ(list.control.List(0), "<b>&one</b> \xF0\x9F\x98\x80");
  });
}

void AFixedComboBoxShowsItsEntries(ContractHost& host) {
  ForList(host, "frmRecords", "cboCatalog", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ComboBox&>(list.control);
    list.Fill();
    EXPECT_FALSE(box.Editable());
    EXPECT_EQ(box.Text(), "");
    box.SetText("two");
    EXPECT_EQ(box.ListIndex(), 2);
    EXPECT_EQ(box.Text(), "two");
    EXPECT_EQ(list.record.Take(), Seen{"click 2"});
    box.SetText("two");
    box.SetText("three");
    EXPECT_EQ(box.Text(), "two") << "there is no such entry";
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void AListBoxShowsItsLinesAsTold(ContractHost& host) {
  ForList(host, "frmMain", "lstOptions", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ListBox&>(list.control);
    list.Fill();
    box.SetLines(TextLines({"one", "two"}),
                 [](std::string_view line) { return "<" + std::string(line) + ">"; });
    EXPECT_EQ(box.ListCount(), 2);
    EXPECT_EQ(box.ListIndex(), -1);
    EXPECT_EQ(box.List(1), "<two>");
    EXPECT_EQ(box.Line(1), "two");
    box.AddItem("three");
    EXPECT_EQ(box.List(2), "<three>");
    box.SetLines(TextLines({"four"}), nullptr);
    EXPECT_EQ(box.List(0), "four");
    box.Clear();
    EXPECT_EQ(box.ListCount(), 0);
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void AnEditableComboBoxHasAnyText(ContractHost& host) {
  ForList(host, "dlgDataLink", "cboProvider", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ComboBox&>(list.control);
    list.Fill();
    EXPECT_TRUE(box.Editable());
    box.SetText("other");
    EXPECT_EQ(box.Text(), "other");
    EXPECT_EQ(box.ListIndex(), -1);
    EXPECT_EQ(list.record.Take(), Seen{"change"});
    box.SetText("other");
    EXPECT_EQ(list.record.Take(), Seen{});
    box.Clear();
    EXPECT_EQ(box.Text(), "");
    EXPECT_EQ(list.record.Take(), Seen{});
  });
}

void AnEditableComboBoxTakesAnEntrysText(ContractHost& host) {
  ForList(host, "dlgDataLink", "cboProvider", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ComboBox&>(list.control);
    list.Fill();
    box.SetListIndex(1);
    EXPECT_EQ(box.Text(), "one");
    EXPECT_EQ(list.record.Take(), Seen{"click 1"});
    list.host.SelectEntry(list.window, list.name, 2);
    EXPECT_EQ(box.Text(), "two");
    EXPECT_EQ(list.record.Take(), Seen{"click 2"});
  });
}

void AnEditableComboBoxHoldsALongText(ContractHost& host) {
  ForList(host, "dlgDataLink", "cboProvider", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ComboBox&>(list.control);
    const std::string longText(100'000, 'x');
    box.SetText(longText);
    EXPECT_EQ(box.Text(), longText);
  });
}

void TypingIntoAComboBoxChangesItsText(ContractHost& host) {
  ForList(host, "dlgDataLink", "cboProvider", [](ListUnderTest& list) {
    auto& box = dynamic_cast<ComboBox&>(list.control);
    list.Fill();
    box.SetListIndex(1);
    box.SelectAllText();
    static_cast<void>(list.record.Take());
    list.host.Type(list.window, list.name, "xy");
    EXPECT_EQ(box.Text(), "xy");
    EXPECT_EQ(box.ListIndex(), -1);
    EXPECT_EQ(list.record.Take(), (Seen{"change", "change"}));
  });
}

}  // namespace

std::vector<ContractCase> ListContract() {
  return {{"AddingSelectsNothing", &AddingSelectsNothing},
          {"SelectingByCodeClicksOnce", &SelectingByCodeClicksOnce},
          {"SelectingByTheUserClicksOnce", &SelectingByTheUserClicksOnce},
          {"ClearingIsSilent", &ClearingIsSilent},
          {"EntriesArePlainText", &EntriesArePlainText},
          {"AListBoxShowsItsLinesAsTold", &AListBoxShowsItsLinesAsTold},
          {"AFixedComboBoxShowsItsEntries", &AFixedComboBoxShowsItsEntries},
          {"AnEditableComboBoxHasAnyText", &AnEditableComboBoxHasAnyText},
          {"AnEditableComboBoxTakesAnEntrysText", &AnEditableComboBoxTakesAnEntrysText},
          {"AnEditableComboBoxHoldsALongText", &AnEditableComboBoxHoldsALongText},
          {"TypingIntoAComboBoxChangesItsText", &TypingIntoAComboBoxChangesItsText}};
}

}  // namespace tessel::test
