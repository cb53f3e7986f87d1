// Menus of the menu bar, pop-up menus, shortcuts.

#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/desktop/controls/TreeView.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

void OpeningTitlesComesBeforeTheCommand(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  Record record;
  frame->Menu("menuEdit").Click = record.Noting("menu");
  frame->Menu("mnuEditVocab").Click = record.Noting("command");
  host.ChooseMenu(*frame, "mnuEditVocab");
  EXPECT_EQ(record.Take(), (Seen{"menu", "command"}));
}

void ATitleMayDisableItsCommands(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  Record record;
  frame->Menu("menuEdit").Click = [&] { frame->Menu("mnuEditVocab").SetEnabled(false); };
  frame->Menu("mnuEditVocab").Click = record.Noting("command");
  host.ChooseMenu(*frame, "mnuEditVocab");
  EXPECT_EQ(record.Take(), Seen{});
}

void ADisabledCommandIsNotChosen(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  Record record;
  MenuItem& command = frame->Menu("mnuEditVocab");
  command.Click = record.Noting("command");
  command.Choose();
  EXPECT_EQ(record.Take(), Seen{"command"});
  command.SetEnabled(false);
  command.Choose();
  EXPECT_EQ(record.Take(), Seen{});
}

void ChoosingLeavesTheCheckAlone(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  MenuItem& command = frame->Menu("mnuEditWordWrap");
  for (const bool checked : {true, false}) {
    command.SetChecked(checked);
    bool seen = !checked;
    command.Click = [&] { seen = command.Checked(); };
    host.ChooseMenu(*frame, "mnuEditWordWrap");
    EXPECT_EQ(seen, checked);
    EXPECT_EQ(command.Checked(), checked);
  }
}

void ChecksAreSetSilently(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  Record record;
  MenuItem& command = frame->Menu("mnuWindowSidebar");
  command.Click = record.Noting("command");
  command.SetChecked(true);
  EXPECT_TRUE(command.Checked());
  command.SetChecked(false);
  EXPECT_FALSE(command.Checked());
  EXPECT_EQ(record.Take(), Seen{});
}

void AShortcutChoosesItsCommand(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  Record record;
  frame->Menu("menuWindow").Click = record.Noting("menu");
  frame->Menu("mnuWindowSidebar").Click = record.Noting("command");
  frame->Find<TreeView>("trvBrowser").SetFocus();
  host.PressKey(*frame, key::f8);
  EXPECT_EQ(record.Take(), Seen{"command"});
  frame->Menu("mnuWindowSidebar").SetEnabled(false);
  host.PressKey(*frame, key::f8);
  EXPECT_EQ(record.Take(), Seen{});
}

void TheFramesShortcutsReachItsDocuments(ContractHost& host) {
  const Framed windows(host, "frmMain");
  Record record;
  windows.frame->Menu("mnuDBExecute").Click = record.Noting("execute");
  windows.frame->Menu("mnuDBPreview").Click = record.Noting("preview");
  windows.document->Find<Control>("txtQuery").SetFocus();
  host.PressKey(*windows.document, key::f5);
  host.PressKey(*windows.document, key::f5, shiftState::shift);
  EXPECT_EQ(record.Take(), (Seen{"execute", "preview"}));
}

void ADocumentsOwnMenusKeepTheFramesShortcutsOut(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  Record record;
  windows.frame->Menu("mnuDBExecute").Click = record.Noting("execute");
  windows.frame->Menu("mnuWindowSidebar").Click = record.Noting("frame's sidebar");
  windows.document->Menu("mnuWindowSidebar").Click = record.Noting("document's sidebar");
  windows.document->KeyDown = [&](KeyEvent& event) {
    record.Add("key " + std::to_string(event.keyCode));
  };
  windows.document->Find<Control>("txtStatus").SetFocus();
  host.Settle();
  host.PressKey(*windows.document, key::f5);
  EXPECT_EQ(record.Take(), Seen{"key 116"});
  host.PressKey(*windows.document, key::f8);
  EXPECT_EQ(record.Take(), Seen{"document's sidebar"});
}

void CommandsForEverywhereKeepTheirShortcuts(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  Record record;
  windows.frame->Menu("mnuFileNew").Click = record.Noting("new");
  windows.frame->Menu("mnuFileOpen").Click = record.Noting("open");
  windows.frame->Menu("mnuFileSave").Click = record.Noting("save");
  windows.document->Find<Control>("txtStatus").SetFocus();
  host.Settle();
  for (const char letter : {'N', 'O', 'S'})
    host.PressKey(*windows.document, letter, shiftState::ctrl);
  EXPECT_EQ(record.Take(), (Seen{"new", "open"}));
}

void CaptionsAndTagsAreKept(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  MenuItem& command = frame->Menu("mnuFileSave");
  EXPECT_EQ(command.Name(), "mnuFileSave");
  EXPECT_EQ(command.Caption(), "&Save");
  command.SetCaption("&Save && close");
  EXPECT_EQ(command.Caption(), "&Save && close");
  EXPECT_EQ(command.Tag(), 0);
  command.SetTag(7);
  EXPECT_EQ(command.Tag(), 7);
  EXPECT_TRUE(command.Visible());
  command.SetVisible(false);
  EXPECT_FALSE(command.Visible());
}

void AMissingMenuRaises(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(frame->Menu("mnuNone")); }),
            errorNumber::itemNotFound);
}

void APopupReturnsWhenItHasClosed(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  Window& window = *windows.document;
  Record record;
  window.Menu("menuBLOB").Click = record.Noting("menu");
  window.Menu("mnuBLOBLoad").Click = record.Noting("load");
  host.OnPopup("menuBLOB", "mnuBLOBLoad");
  window.PopupMenu(window.Menu("menuBLOB"), &window.Find<Control>("txtStatus"), 30, 30);
  EXPECT_EQ(record.Take(), (Seen{"menu", "load"}));
  host.OnPopup("menuBLOB", "");
  window.PopupMenu(window.Menu("menuBLOB"), nullptr, 0, 0);
  EXPECT_EQ(record.Take(), Seen{"menu"});
}

}  // namespace

std::vector<ContractCase> MenuContract() {
  return {
      {"OpeningTitlesComesBeforeTheCommand", &OpeningTitlesComesBeforeTheCommand},
      {"ATitleMayDisableItsCommands", &ATitleMayDisableItsCommands},
      {"ADisabledCommandIsNotChosen", &ADisabledCommandIsNotChosen},
      {"ChoosingLeavesTheCheckAlone", &ChoosingLeavesTheCheckAlone},
      {"ChecksAreSetSilently", &ChecksAreSetSilently},
      {"AShortcutChoosesItsCommand", &AShortcutChoosesItsCommand},
      {"TheFramesShortcutsReachItsDocuments", &TheFramesShortcutsReachItsDocuments},
      {"ADocumentsOwnMenusKeepTheFramesShortcutsOut", &ADocumentsOwnMenusKeepTheFramesShortcutsOut},
      {"CommandsForEverywhereKeepTheirShortcuts", &CommandsForEverywhereKeepTheirShortcuts},
      {"CaptionsAndTagsAreKept", &CaptionsAndTagsAreKept},
      {"AMissingMenuRaises", &AMissingMenuRaises},
      {"APopupReturnsWhenItHasClosed", &APopupReturnsWhenItHasClosed}};
}

}  // namespace tessel::test
