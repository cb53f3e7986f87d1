#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/Desktop.h"
#include "tests/headless/DesktopScript.h"
#include "tests/headless/HeadlessServices.h"
#include "tests/headless/HeadlessWindow.h"
#include "tests/headless/WindowStack.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

/// A request for help as the program made it.
struct HelpRequest {
  std::string file;
  int command = 0;
  int data = 0;
  bool operator==(const HelpRequest&) const = default;
};

/// The desktop in memory: real forms, no screen, no waiting. It outlives its windows; its end fails
/// the test for prepared answers that were not used.
class HeadlessDesktop final : public Desktop, public DesktopScript {
 public:
  /// The forms are the program's own unless another folder of form files is given.
  explicit HeadlessDesktop(std::string formsFolder = TESSEL_FORMS_DIR);
  ~HeadlessDesktop() override;

  // --- the contract ------------------------------------------------------------------------------
  [[nodiscard]] std::unique_ptr<Window> MakeWindow(std::string_view formName) override;
  MessageResult ShowMessage(const Message& message) override { return AnswerMessage(message); }
  [[nodiscard]] HeadlessClipboard& TheClipboard() override { return clipboard_; }
  [[nodiscard]] HeadlessQueue& Events() override { return queue_; }
  [[nodiscard]] const Clock& TheClock() const override { return clock_; }
  /// So that work in slices has more than one; at first a look takes no time.
  void LetALookAtTheClockTake(std::int64_t milliseconds) { clock_.LetALookTake(milliseconds); }
  [[nodiscard]] HeadlessNotifications& TheNotifications() override { return notifications_; }
  [[nodiscard]] bool IsKeyDown(int keyCode) const override { return heldKeys_.contains(keyCode); }
  void ProcessPending() override;
  void Defer(std::function<void()> action) override { deferred_.push_back(std::move(action)); }
  void StartProcess(const std::string& path) override;
  bool ShowHelp(const std::string& helpFile, int command, int data) override;
  void ShowHelpOn(const Window& window) override { helpOn_.push_back(window.FormName()); }

  // --- for tests ---------------------------------------------------------------------------------
  /// The newest loaded window of a form; fails the test when there is none.
  [[nodiscard]] HeadlessWindow& WindowOf(std::string_view formName) const;
  /// The loaded windows of a form, the oldest first.
  [[nodiscard]] std::vector<HeadlessWindow*> WindowsOf(std::string_view formName) const;

  /// The system ends the program while nothing is under way.
  void EndSession();
  [[nodiscard]] bool Ending() const { return ending_; }

  void HoldKey(int keyCode) { heldKeys_.insert(keyCode); }
  void ReleaseKey(int keyCode) { heldKeys_.erase(keyCode); }
  /// Lets time pass; the timers that run tick when their moment comes.
  void AdvanceTime(std::int64_t milliseconds);
  /// Runs the notices that wait in the event queue until none is left.
  void DrainEvents();
  /// Runs what was deferred so far, and what that defers, in order.
  void RunDeferred();
  [[nodiscard]] std::size_t DeferredCount() const { return deferred_.size(); }
  /// Called at the start of each ProcessPending with its number, from 1.
  void OnProcessPending(std::function<void(int)> hook) { pendingHook_ = std::move(hook); }
  [[nodiscard]] int ProcessPendingCount() const { return pendingCount_; }

  [[nodiscard]] const std::vector<std::string>& StartedProcesses() const { return started_; }
  /// From now on programs cannot be started, for this reason.
  void FailProcesses(std::string reason) { processFailure_ = std::move(reason); }
  [[nodiscard]] const std::vector<HelpRequest>& HelpRequests() const { return helpRequests_; }
  /// The forms of the windows whose topic was asked for.
  [[nodiscard]] const std::vector<std::string>& HelpOn() const { return helpOn_; }
  void SetHelpWorks(bool works) { helpWorks_ = works; }

  // --- for the twin itself -----------------------------------------------------------------------
  [[nodiscard]] WindowStack& Stack() { return stack_; }
  [[nodiscard]] const WindowStack& Stack() const { return stack_; }
  /// Runs what is under way, then the test's steps, until the window is hidden or gone.
  void RunModal(HeadlessWindow& window);
  /// Fails the test for every window that is still there.
  void VerifyNoWindows() const;
  /// Keeps the end of the test that a handler of the program let out.
  void KeepStop(TestStop stop);
  /// Goes on with an end of the test that was kept.
  void RethrowStop();

 private:
  [[nodiscard]] HeadlessTimer* NextTimer(std::int64_t until) const;

  std::string formsFolder_;
  HeadlessClock clock_;
  HeadlessClipboard clipboard_;
  HeadlessQueue queue_;
  HeadlessNotifications notifications_;
  WindowStack stack_;
  std::set<int> heldKeys_;
  std::deque<std::function<void()>> deferred_;
  std::function<void(int)> pendingHook_;
  int pendingCount_ = 0;
  int idleCount_ = 0;
  std::vector<std::string> started_;
  std::optional<std::string> processFailure_;
  std::vector<HelpRequest> helpRequests_;
  std::vector<std::string> helpOn_;
  bool helpWorks_ = true;
  bool ending_ = false;
  std::optional<TestStop> stop_;
};

}  // namespace tessel::test
