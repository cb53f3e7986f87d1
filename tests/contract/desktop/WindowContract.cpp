// Windows: showing, unloading, the frame and its documents.

#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

std::string ReasonName(UnloadReason reason) {
  switch (reason) {
    case UnloadReason::ControlBox: return "box";
    case UnloadReason::Code: return "code";
    case UnloadReason::Frame: break;
  }
  return "frame";
}

/// Notes QueryUnload and Unloaded of a window, and refuses while `refuse` says so.
void Watch(Window& window, const std::string& name, Record& record, const bool& refuse) {
  window.QueryUnload = [&record, &refuse, name](bool& refused, UnloadReason reason) {
    record.Add(name + " asked " + ReasonName(reason));
    refused = refuse;
  };
  window.Unloaded = record.Noting(name + " unloaded");
}

void AFormHasWhatItNames(ContractHost& host) {
  const auto window = host.TheDesktop().MakeWindow("dlgText");
  EXPECT_EQ(window->FormName(), "dlgText");
  EXPECT_TRUE(window->Loaded());
  EXPECT_FALSE(window->Visible());
  EXPECT_EQ(window->Find<TextBox>("txtText").Name(), "txtText");
  EXPECT_EQ(&window->Find<Control>("txtText"), &window->Find<TextBox>("txtText"));
  const auto missing = [&](auto action) {
    EXPECT_EQ(ErrorNumberOf(action), errorNumber::itemNotFound);
  };
  missing([&] { static_cast<void>(window->Find<TextBox>("txtNone")); });
  missing([&] { static_cast<void>(window->Find<Label>("txtText")); });
  missing([&] { static_cast<void>(host.TheDesktop().MakeWindow("frmNone")); });
}

void AWindowKeepsItsProperties(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  window->SetCaption("<b>Caption</b> & more");
  EXPECT_EQ(window->Caption(), "<b>Caption</b> & more");
  window->SetHelpContext(8203);
  EXPECT_EQ(window->HelpContext(), 8203);
  EXPECT_FALSE(window->Minimized());
  EXPECT_GT(window->ScaleWidth(), 0);
  EXPECT_GT(window->ScaleHeight(), 0);
  EXPECT_TRUE(window->Enabled());
}

void UnloadingAsksFirst(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  Record record;
  bool refuse = true;
  Watch(*window, "it", record, refuse);
  EXPECT_FALSE(window->Unload());
  EXPECT_TRUE(window->Loaded());
  EXPECT_TRUE(window->Visible());
  EXPECT_EQ(record.Take(), Seen{"it asked code"});
  refuse = false;
  EXPECT_TRUE(window->Unload());
  EXPECT_FALSE(window->Loaded());
  EXPECT_FALSE(window->Visible());
  EXPECT_EQ(record.Take(), (Seen{"it asked code", "it unloaded"}));
  EXPECT_TRUE(window->Unload());
  EXPECT_EQ(record.Take(), Seen{}) << "it is not loaded any more";
}

void TheUsersCloseAsksToo(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  Record record;
  bool refuse = true;
  Watch(*window, "it", record, refuse);
  host.CloseByControlBox(*window);
  EXPECT_TRUE(window->Visible());
  refuse = false;
  host.CloseByControlBox(*window);
  EXPECT_FALSE(window->Loaded());
  EXPECT_EQ(record.Take(), (Seen{"it asked box", "it asked box", "it unloaded"}));
}

void ControlsLiveAsLongAsTheWindow(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  auto& box = window->Find<TextBox>("txtText");
  box.SetText("kept");
  window->Unload();
  EXPECT_EQ(box.Text(), "kept");
  box.SetText("still usable");
  EXPECT_EQ(box.Text(), "still usable");
}

void DestroyingAWindowAsksNobody(ContractHost& host) {
  auto window = ShowForm(host, "dlgText");
  Record record;
  const bool refuse = true;
  Watch(*window, "it", record, refuse);
  window.reset();
  EXPECT_EQ(record.Take(), Seen{});
}

void AFrameAsksAllDocumentsFirst(ContractHost& host) {
  const Framed windows(host, "frmMain");
  const auto second = ShowForm(host, "frmRecords");
  Record record;
  bool refuse = true;
  const bool agree = false;
  Watch(*windows.frame, "frame", record, agree);
  Watch(*windows.document, "first", record, agree);
  Watch(*second, "second", record, refuse);
  EXPECT_FALSE(windows.frame->Unload());
  EXPECT_TRUE(windows.document->Loaded());
  EXPECT_TRUE(windows.frame->Visible());
  EXPECT_EQ(record.Take(), (Seen{"first asked frame", "second asked frame"}));
  refuse = false;
  EXPECT_TRUE(windows.frame->Unload());
  EXPECT_FALSE(windows.document->Loaded());
  EXPECT_FALSE(second->Loaded());
  EXPECT_EQ(record.Take(), (Seen{"first asked frame", "second asked frame", "frame asked code",
                                 "first unloaded", "second unloaded", "frame unloaded"}));
}

void TheUsersCloseOfAFrameTellsDocumentsSo(ContractHost& host) {
  const Framed windows(host, "frmMain");
  Record record;
  const bool agree = false;
  Watch(*windows.frame, "frame", record, agree);
  Watch(*windows.document, "document", record, agree);
  host.CloseByControlBox(*windows.frame);
  EXPECT_EQ(record.Take(), (Seen{"document asked frame", "frame asked box", "document unloaded",
                                 "frame unloaded"}));
}

void ADocumentIsClosedByItself(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  Record record;
  const bool agree = false;
  Watch(*windows.document, "document", record, agree);
  host.CloseByControlBox(*windows.document);
  EXPECT_FALSE(windows.document->Loaded());
  EXPECT_TRUE(windows.frame->Loaded());
  EXPECT_EQ(record.Take(), (Seen{"document asked box", "document unloaded"}));
}

void DocumentsTakeTurnsInBeingActive(ContractHost& host) {
  const Framed windows(host, "frmMain");
  EXPECT_TRUE(windows.document->Active());
  const auto second = ShowForm(host, "frmRecords");
  EXPECT_TRUE(second->Active());
  EXPECT_FALSE(windows.document->Active());
  int activated = 0;
  windows.document->Activated = [&] { ++activated; };
  windows.document->Activate();
  host.Settle();
  EXPECT_TRUE(windows.document->Active());
  EXPECT_FALSE(second->Active());
  EXPECT_EQ(activated, 1);
}

void AModalWindowReturnsWhenItIsHidden(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("dlgText");
  auto& box = window->Find<TextBox>("txtText");
  window->Find<Button>("cmdOK").Click = [&] { window->Hide(); };
  host.OnModal("dlgText", [&](Window& modal) {
    EXPECT_TRUE(modal.Visible());
    host.Type(modal, "txtText", "answer");
    host.Click(modal, "cmdOK");
  });
  window->ShowModal(frame.get());
  EXPECT_FALSE(window->Visible());
  EXPECT_TRUE(window->Loaded());
  EXPECT_EQ(box.Text(), "answer");
}

void AModalWindowReturnsWhenItIsUnloaded(ContractHost& host) {
  const auto window = host.TheDesktop().MakeWindow("dlgText");
  Record record;
  const bool agree = false;
  Watch(*window, "it", record, agree);
  host.OnModal("dlgText", [&](Window& modal) { host.CloseByControlBox(modal); });
  window->ShowModal(nullptr);
  EXPECT_FALSE(window->Loaded());
  EXPECT_EQ(record.Take(), (Seen{"it asked box", "it unloaded"}));
}

void AModalWindowIsShownAgain(ContractHost& host) {
  const auto window = host.TheDesktop().MakeWindow("dlgText");
  int shown = 0;
  for (int i = 0; i < 2; ++i) {
    host.OnModal("dlgText", [&](Window& modal) {
      ++shown;
      modal.Hide();
    });
    window->ShowModal(nullptr);
  }
  EXPECT_EQ(shown, 2);
}

void AModalWindowMayEndAsItIsActivated(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("dlgAsync");
  int activated = 0;
  window->Activated = [&] {
    ++activated;
    window->Hide();
  };
  window->ShowModal(frame.get());
  EXPECT_EQ(activated, 1);
  EXPECT_FALSE(window->Visible());
}

void ANoticeEndsAModalWindow(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("dlgAsync");
  const auto owner = std::make_shared<int>();
  host.TheDesktop().Events().Post(owner, [&] { window->Hide(); });
  window->ShowModal(frame.get());
  EXPECT_FALSE(window->Visible());
}

void AModelessWindowStandsAboveItsOwner(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("dlgAsync");
  window->ShowAbove(*frame);
  host.Settle();
  EXPECT_TRUE(window->Visible());
  EXPECT_TRUE(frame->Visible());
  window->Hide();
  EXPECT_FALSE(window->Visible());
  EXPECT_TRUE(window->Loaded());
}

void ADisabledWindowTakesNoInput(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  int clicks = 0;
  window->Find<Button>("cmdOK").Click = [&] { ++clicks; };
  window->SetEnabled(false);
  EXPECT_FALSE(window->Enabled());
  host.Click(*window, "cmdOK");
  EXPECT_EQ(clicks, 0);
  window->SetEnabled(true);
  host.Click(*window, "cmdOK");
  EXPECT_EQ(clicks, 1);
}

void AWindowTellsOfItsSize(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  Window& window = *windows.document;
  int resized = 0;
  window.Resize = [&] { ++resized; };
  const Rect before = window.Bounds();
  window.SetBounds({before.left, before.top, before.width + 600, before.height});
  host.Settle();
  EXPECT_EQ(window.Bounds().width, before.width + 600);
  EXPECT_EQ(resized, 1);
  window.SetBounds(window.Bounds());
  host.Settle();
  EXPECT_EQ(resized, 1);
}

void AFirstShowingTellsTheSize(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("frmRecords");
  int resized = 0;
  window->Resize = [&] { ++resized; };
  window->Show();
  host.Settle();
  EXPECT_GE(resized, 1);
}

/// Rows one below another without a gap.
void ExpectRows(const std::vector<const Window*>& rows) {
  constexpr int rounding = 30;
  for (std::size_t n = 1; n < rows.size(); ++n) {
    const Rect above = rows[n - 1]->Bounds();
    EXPECT_NEAR(rows[n]->Bounds().top, above.top + above.height, rounding);
    EXPECT_NEAR(rows[n]->Bounds().left, above.left, rounding);
    EXPECT_NEAR(rows[n]->Bounds().width, above.width, rounding);
  }
}

void TiledDocumentsStayTiled(ContractHost& host) {
  const Framed windows(host, "frmMain");
  Window& first = *windows.document;
  windows.frame->Arrange(Tiling::Horizontal);
  const Rect alone = first.Bounds();
  const auto second = ShowForm(host, "frmRecords");
  ExpectRows({&first, second.get()});
  EXPECT_NEAR(first.Bounds().height, alone.height / 2, 30);
  Rect larger = windows.frame->Bounds();
  larger.width += 1500;
  larger.height += 1500;
  windows.frame->SetBounds(larger);
  host.Settle();
  ExpectRows({&first, second.get()});
  EXPECT_NEAR(first.Bounds().width, alone.width + 1500, 30);
  EXPECT_NEAR(first.Bounds().height, (alone.height + 1500) / 2, 30);
  second->Unload();
  host.Settle();
  EXPECT_NEAR(first.Bounds().height, alone.height + 1500, 30);
}

void AFloatingDocumentIsNoTile(ContractHost& host) {
  const Framed windows(host, "frmMain");
  const auto second = ShowForm(host, "frmRecords");
  windows.frame->Arrange(Tiling::Horizontal);
  const Rect tile = windows.document->Bounds();
  const auto floating = ShowForm(host, "frmRows");
  EXPECT_EQ(windows.document->Bounds(), tile);
  EXPECT_GT(floating->Bounds().height, tile.height);
  const Rect place{300, 450, 6000, 4500};
  floating->SetBounds(place);
  second->Unload();
  host.Settle();
  EXPECT_GT(windows.document->Bounds().height, tile.height) << "the others are tiled again";
  EXPECT_EQ(floating->Bounds(), place);
}

void AHandMadeLayoutIsLeftAlone(ContractHost& host) {
  const Framed windows(host, "frmMain");
  Window& first = *windows.document;
  windows.frame->Arrange(Tiling::Horizontal);
  first.SetBounds({300, 450, 6000, 4500});
  const auto second = ShowForm(host, "frmRecords");
  const Rect before = second->Bounds();
  Rect larger = windows.frame->Bounds();
  larger.width += 1500;
  windows.frame->SetBounds(larger);
  host.Settle();
  EXPECT_EQ(first.Bounds(), (Rect{300, 450, 6000, 4500}));
  EXPECT_EQ(second->Bounds(), before);
  second->Unload();
  host.Settle();
  EXPECT_EQ(first.Bounds(), (Rect{300, 450, 6000, 4500}));
}

void AMaximizedDocumentIsLeftAloneUntilTheNextTiling(ContractHost& host) {
  const Framed windows(host, "frmMain");
  const auto second = ShowForm(host, "frmRecords");
  windows.frame->Arrange(Tiling::Horizontal);
  EXPECT_FALSE(windows.document->Maximized());
  windows.document->Activate();
  host.Maximize(*windows.document);
  EXPECT_TRUE(windows.document->Maximized());
  Rect larger = windows.frame->Bounds();
  larger.width += 1500;
  windows.frame->SetBounds(larger);
  host.Settle();
  EXPECT_TRUE(windows.document->Maximized());
  windows.frame->Arrange(Tiling::Horizontal);
  host.Settle();
  EXPECT_FALSE(windows.document->Maximized());
  EXPECT_FALSE(second->Maximized());
  ExpectRows({windows.document.get(), second.get()});
}

void CodeMaximizesADocument(ContractHost& host) {
  const Framed windows(host, "frmMain");
  const auto second = ShowForm(host, "frmRecords");
  windows.frame->Arrange(Tiling::Horizontal);
  windows.document->SetMaximized(true);
  host.Settle();
  EXPECT_TRUE(windows.document->Maximized());
  EXPECT_FALSE(second->Maximized());
  windows.document->SetMaximized(true);
  windows.document->SetMaximized(false);
  host.Settle();
  EXPECT_FALSE(windows.document->Maximized());
  ExpectRows({windows.document.get(), second.get()});
  windows.frame->SetMaximized(true);
  EXPECT_FALSE(windows.frame->Maximized()) << "that is the user's";
}

void WithTabsTheOtherDocumentsLieUponEachOther(ContractHost& host) {
  const Framed windows(host, "frmMain");
  const auto second = ShowForm(host, "frmRecords");
  windows.frame->Arrange(Tiling::Horizontal);
  EXPECT_FALSE(windows.frame->Tabbed());
  const Rect alone = second->Bounds();
  windows.frame->SetTabbed(true);
  windows.frame->Arrange(Tiling::Horizontal);
  EXPECT_TRUE(windows.frame->Tabbed());
  EXPECT_EQ(second->Bounds(), alone) << "there is nothing to choose";
  const auto third = ShowForm(host, "frmRecords");
  EXPECT_EQ(third->Bounds(), second->Bounds());
  EXPECT_GT(second->Bounds().height, 0);
  EXPECT_GE(second->Bounds().top, windows.document->Bounds().height);
  EXPECT_NEAR(windows.document->Bounds().height, alone.height, 30);
  third->Unload();
  host.Settle();
  EXPECT_EQ(second->Bounds(), alone);
  const auto fourth = ShowForm(host, "frmRecords");
  windows.frame->SetTabbed(false);
  windows.frame->Arrange(Tiling::Horizontal);
  host.Settle();
  ExpectRows({windows.document.get(), second.get(), fourth.get()});
}

void AWindowShownSoonComesUpAndGoesAway(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  const auto window = host.TheDesktop().MakeWindow("dlgAsync");
  int clicks = 0;
  window->Find<Button>("cmdCancel").Click = [&] { ++clicks; };
  window->ShowAboveSoon(*frame);
  EXPECT_TRUE(window->Visible());
  host.PassTime(400);
  host.Click(*window, "cmdCancel");
  EXPECT_EQ(clicks, 1);
  window->Hide();
  EXPECT_FALSE(window->Visible());
  window->ShowAboveSoon(*frame);
  window->Unload();
  host.PassTime(400);
  EXPECT_FALSE(window->Visible());
}

void AContainerTellsOfItsSize(ContractHost& host) {
  const auto frame = ShowForm(host, "frmMDI");
  auto& box = frame->Find<PictureBox>("fraBrowser");
  int resized = 0;
  box.Resize = [&] { ++resized; };
  const Rect before = box.Bounds();
  const Rect wider{before.left, before.top, before.width + 150, before.height};
  box.SetBounds(wider);
  host.Settle();
  EXPECT_EQ(box.Bounds(), wider);
  EXPECT_EQ(resized, 1);
  box.SetBounds(wider);
  host.Settle();
  EXPECT_EQ(resized, 1);
}

void ControlsKeepTheirProperties(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  auto& label = windows.document->Find<Label>("lblWarning");
  label.SetCaption("<b>&plain</b>");
  EXPECT_EQ(label.Caption(), "<b>&plain</b>");
  label.SetToolTip("tip <i>");
  EXPECT_EQ(label.ToolTip(), "tip <i>");
  label.SetBackColor(0x00BF00);
  label.SetForeColor(0x0000FF);
  EXPECT_EQ(label.BackColor(), 0x00BF00U);
  EXPECT_EQ(label.ForeColor(), 0x0000FFU);
  label.SetBounds({60, 750, 3000, 195});
  EXPECT_EQ(label.Bounds(), (Rect{60, 750, 3000, 195}));
  label.SetBackColor(color::windowBackground);
  EXPECT_EQ(label.BackColor(), color::windowBackground);
  EXPECT_FALSE(label.Visible());
  label.SetVisible(true);
  EXPECT_TRUE(label.Visible());
  EXPECT_TRUE(label.Enabled());
}

void VisibilityIsTheControlsOwn(ContractHost& host) {
  const auto window = host.TheDesktop().MakeWindow("frmMDI");
  auto& tree = window->Find<Control>("trvBrowser");
  EXPECT_TRUE(tree.Visible()) << "the window is not shown";
  window->Show();
  window->Find<PictureBox>("box").SetVisible(false);
  EXPECT_TRUE(tree.Visible()) << "its container is hidden";
}

void AHandlersFailureIsShownAndOver(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  window->Find<Button>("cmdOK").Click = [] {
    throw Error(errorNumber::application, "Tessel", "It <b>went</b> wrong.");
  };
  host.OnMessage("It <b>went</b> wrong.", MessageResult::Ok);
  host.Click(*window, "cmdOK");
  EXPECT_TRUE(window->Visible());
}

}  // namespace

std::vector<ContractCase> WindowContract() {
  return {{"AFormHasWhatItNames", &AFormHasWhatItNames},
          {"AWindowKeepsItsProperties", &AWindowKeepsItsProperties},
          {"UnloadingAsksFirst", &UnloadingAsksFirst},
          {"TheUsersCloseAsksToo", &TheUsersCloseAsksToo},
          {"ControlsLiveAsLongAsTheWindow", &ControlsLiveAsLongAsTheWindow},
          {"DestroyingAWindowAsksNobody", &DestroyingAWindowAsksNobody},
          {"AFrameAsksAllDocumentsFirst", &AFrameAsksAllDocumentsFirst},
          {"TheUsersCloseOfAFrameTellsDocumentsSo", &TheUsersCloseOfAFrameTellsDocumentsSo},
          {"ADocumentIsClosedByItself", &ADocumentIsClosedByItself},
          {"DocumentsTakeTurnsInBeingActive", &DocumentsTakeTurnsInBeingActive},
          {"AModalWindowReturnsWhenItIsHidden", &AModalWindowReturnsWhenItIsHidden},
          {"AModalWindowReturnsWhenItIsUnloaded", &AModalWindowReturnsWhenItIsUnloaded},
          {"AModalWindowIsShownAgain", &AModalWindowIsShownAgain},
          {"AModalWindowMayEndAsItIsActivated", &AModalWindowMayEndAsItIsActivated},
          {"ANoticeEndsAModalWindow", &ANoticeEndsAModalWindow},
          {"AModelessWindowStandsAboveItsOwner", &AModelessWindowStandsAboveItsOwner},
          {"ADisabledWindowTakesNoInput", &ADisabledWindowTakesNoInput},
          {"AWindowTellsOfItsSize", &AWindowTellsOfItsSize},
          {"AFirstShowingTellsTheSize", &AFirstShowingTellsTheSize},
          {"TiledDocumentsStayTiled", &TiledDocumentsStayTiled},
          {"AFloatingDocumentIsNoTile", &AFloatingDocumentIsNoTile},
          {"AHandMadeLayoutIsLeftAlone", &AHandMadeLayoutIsLeftAlone},
          {"AMaximizedDocumentIsLeftAloneUntilTheNextTiling",
           &AMaximizedDocumentIsLeftAloneUntilTheNextTiling},
          {"CodeMaximizesADocument", &CodeMaximizesADocument},
          {"WithTabsTheOtherDocumentsLieUponEachOther", &WithTabsTheOtherDocumentsLieUponEachOther},
          {"AWindowShownSoonComesUpAndGoesAway", &AWindowShownSoonComesUpAndGoesAway},
          {"AContainerTellsOfItsSize", &AContainerTellsOfItsSize},
          {"ControlsKeepTheirProperties", &ControlsKeepTheirProperties},
          {"VisibilityIsTheControlsOwn", &VisibilityIsTheControlsOwn},
          {"AHandlersFailureIsShownAndOver", &AHandlersFailureIsShownAndOver}};
}

}  // namespace tessel::test
