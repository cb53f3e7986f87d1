// What the desktop offers besides windows: time, notices, the clipboard, messages, progress.

#include <thread>

#include <gtest/gtest.h>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

void ATimerTicksWhileItIsEnabled(ContractHost& host) {
  const auto window = ShowForm(host, "dlgAsync");
  Timer& timer = window->TimerNamed("tmrTimer");
  EXPECT_EQ(&timer, &window->TimerNamed("tmrTimer"));
  EXPECT_FALSE(timer.Enabled());
  int ticks = 0;
  timer.Tick = [&] { ++ticks; };
  timer.SetInterval(20);
  host.PassTime(100);
  EXPECT_EQ(ticks, 0) << "it is not enabled";
  timer.SetEnabled(true);
  host.PassTime(200);
  EXPECT_GE(ticks, 2);
  EXPECT_LE(ticks, 10);
  timer.SetEnabled(false);
  ticks = 0;
  host.PassTime(100);
  EXPECT_EQ(ticks, 0);
}

void ATimerMayStopItself(ContractHost& host) {
  const auto window = ShowForm(host, "dlgAsync");
  Timer& timer = window->TimerNamed("tmrTimer");
  int ticks = 0;
  timer.Tick = [&] {
    ++ticks;
    timer.SetEnabled(false);
  };
  timer.SetInterval(10);
  timer.SetEnabled(true);
  host.PassTime(200);
  EXPECT_EQ(ticks, 1);
}

void TheClockGoesOn(ContractHost& host) {
  const Clock& clock = host.TheDesktop().TheClock();
  const std::int64_t before = clock.Milliseconds();
  host.PassTime(50);
  EXPECT_GE(clock.Milliseconds() - before, 50);
  EXPECT_NE(clock.LongTime().find(':'), std::string::npos) << clock.LongTime();
  using std::chrono::minutes;
  const std::chrono::system_clock::time_point moment(minutes(1000));
  const std::string time = clock.ShortTimeOf(moment);
  ASSERT_EQ(time.size(), 5U) << time;
  EXPECT_EQ(time.substr(2), clock.ShortTimeOf(moment + minutes(60)).substr(2)) << "an hour later";
  EXPECT_NE(time, clock.ShortTimeOf(moment + minutes(60)));
  EXPECT_EQ(time, clock.ShortTimeOf(moment + minutes(24 * 60))) << "a day later";
  const std::string stamp = clock.UtcStamp();
  EXPECT_EQ(stamp.size(), std::string("2026-11-22T14:03:59Z").size()) << stamp;
  EXPECT_EQ(stamp.substr(10, 1) + stamp.substr(stamp.size() - 1), "TZ") << stamp;
}

void ProgressStaysWithinItsBounds(ContractHost& host) {
  const auto window = ShowForm(host, "dlgAsync");
  auto& bar = window->Find<ProgressBar>("prgProgress");
  bar.SetMax(10);
  EXPECT_DOUBLE_EQ(bar.Max(), 10);
  bar.SetValue(2.5);
  EXPECT_DOUBLE_EQ(bar.Value(), 2.5);
  bar.SetValue(12);
  EXPECT_DOUBLE_EQ(bar.Value(), 10);
  bar.SetValue(-1);
  EXPECT_DOUBLE_EQ(bar.Value(), 0);
  bar.SetMax(1e9);
  bar.SetValue(999999999);
  EXPECT_DOUBLE_EQ(bar.Value(), 999999999);
}

void TheClipboardHoldsText(ContractHost& host) {
  Clipboard& clipboard = host.TheDesktop().TheClipboard();
  clipboard.SetText("a\xC3\xA9\xF0\x9F\x98\x80\r\n\tz");
  EXPECT_EQ(clipboard.Text(), "a\xC3\xA9\xF0\x9F\x98\x80\r\n\tz");
  clipboard.SetText("");
  EXPECT_EQ(clipboard.Text(), "");
}

void NoticesRunInOrderOnThisThread(ContractHost& host) {
  EventQueue& queue = host.TheDesktop().Events();
  const auto owner = std::make_shared<int>();
  const auto here = std::this_thread::get_id();
  Record record;
  std::thread worker([&] {
    for (const char* name : {"one", "two", "three"})
      queue.Post(owner, [&record, here, name] {
        record.Add(std::this_thread::get_id() == here ? name : "wrong thread");
      });
  });
  worker.join();
  EXPECT_EQ(record.Take(), Seen{});
  host.TheDesktop().ProcessPending();
  EXPECT_EQ(record.Take(), (Seen{"one", "two", "three"}));
}

void NoticesOfDeadOwnersAreDropped(ContractHost& host) {
  EventQueue& queue = host.TheDesktop().Events();
  Record record;
  const auto alive = std::make_shared<int>();
  auto dead = std::make_shared<int>();
  queue.Post(dead, [&] { record.Add("dead"); });
  queue.Post(alive, [&] { record.Add("alive"); });
  dead.reset();
  host.Settle();
  EXPECT_EQ(record.Take(), Seen{"alive"});
}

void DeferredActionsRunOutsideHandlers(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  Record record;
  window->Find<Button>("cmdOK").Click = [&] {
    host.TheDesktop().Defer(record.Noting("deferred"));
    record.Add("handled");
  };
  window->Find<Button>("cmdOK").Press();
  EXPECT_EQ(record.Take(), Seen{"handled"});
  host.Settle();
  EXPECT_EQ(record.Take(), Seen{"deferred"});
}

void DeferredActionsWaitForModalWindows(ContractHost& host) {
  const auto window = host.TheDesktop().MakeWindow("dlgText");
  Record record;
  host.OnModal("dlgText", [&](Window& modal) {
    host.TheDesktop().Defer(record.Noting("deferred"));
    host.TheDesktop().ProcessPending();
    record.Add("closing");
    modal.Hide();
  });
  window->ShowModal(nullptr);
  EXPECT_EQ(record.Take(), Seen{"closing"});
  host.Settle();
  EXPECT_EQ(record.Take(), Seen{"deferred"});
}

void MessagesAreAnswered(ContractHost& host) {
  host.OnMessage("Go <b>on</b>?", MessageResult::No);
  EXPECT_EQ(host.TheDesktop().ShowMessage({.text = "Go <b>on</b>?",
                                           .buttons = MessageButtons::YesNoCancel,
                                           .icon = MessageIcon::Question}),
            MessageResult::No);
  host.OnMessage("Done.", MessageResult::Ok);
  EXPECT_EQ(host.TheDesktop().ShowMessage({.text = "Done."}), MessageResult::Ok);
}

void NoKeyIsHeld(ContractHost& host) {
  for (const int code : {key::shift, key::control, key::alt})
    EXPECT_FALSE(host.TheDesktop().IsKeyDown(code));
}

}  // namespace

std::vector<ContractCase> DesktopContract() {
  return {{"ATimerTicksWhileItIsEnabled", &ATimerTicksWhileItIsEnabled},
          {"ATimerMayStopItself", &ATimerMayStopItself},
          {"TheClockGoesOn", &TheClockGoesOn},
          {"ProgressStaysWithinItsBounds", &ProgressStaysWithinItsBounds},
          {"TheClipboardHoldsText", &TheClipboardHoldsText},
          {"NoticesRunInOrderOnThisThread", &NoticesRunInOrderOnThisThread},
          {"NoticesOfDeadOwnersAreDropped", &NoticesOfDeadOwnersAreDropped},
          {"DeferredActionsRunOutsideHandlers", &DeferredActionsRunOutsideHandlers},
          {"DeferredActionsWaitForModalWindows", &DeferredActionsWaitForModalWindows},
          {"MessagesAreAnswered", &MessagesAreAnswered},
          {"NoKeyIsHeld", &NoKeyIsHeld}};
}

}  // namespace tessel::test
