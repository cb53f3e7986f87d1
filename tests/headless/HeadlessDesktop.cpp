#include "tests/headless/HeadlessDesktop.h"

#include <utility>

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel::test {

namespace {

/// So many calls of ProcessPending with nothing to process mean a loop that never ends.
constexpr int mostIdleCalls = 5'000'000;

}  // namespace

HeadlessDesktop::HeadlessDesktop(std::string formsFolder) : formsFolder_(std::move(formsFolder)) {}

HeadlessDesktop::~HeadlessDesktop() {
  VerifyNoWindows();
  if (!testing::Test::HasFailure()) VerifyScript();
}

void HeadlessDesktop::VerifyNoWindows() const {
  for (const HeadlessWindow* window : stack_.Windows())
    ADD_FAILURE() << "The window " << window->FormName() << " outlives its desktop.";
}

std::unique_ptr<Window> HeadlessDesktop::MakeWindow(std::string_view formName) {
  FormFile form = FormFile::Read(formsFolder_, formName);
  HeadlessWindow* frame = nullptr;
  if (form.properties.Text("kind") == "document")
    for (HeadlessWindow* window : stack_.Windows())
      if (window->IsFrame() && window->Loaded()) frame = window;
  return std::make_unique<HeadlessWindow>(*this, std::move(form), frame);
}

void HeadlessDesktop::ProcessPending() {
  ++pendingCount_;
  idleCount_ = queue_.Count() == 0 && !pendingHook_ ? idleCount_ + 1 : 0;
  if (idleCount_ > mostIdleCalls) StopTest("The program waits for ever for something to happen.");
  if (pendingHook_) pendingHook_(pendingCount_);
  for (std::size_t left = queue_.Count(); left > 0; --left) queue_.RunOne();
  RethrowStop();
}

void HeadlessDesktop::StartProcess(const std::string& path) {
  if (processFailure_) throw Error(errorNumber::file, "Tessel", *processFailure_);
  started_.push_back(path);
}

bool HeadlessDesktop::ShowHelp(const std::string& helpFile, int command, int data) {
  helpRequests_.push_back({helpFile, command, data});
  return helpWorks_;
}

void HeadlessDesktop::EndSession() {
  ending_ = true;
  SessionEnds.Raise(nullptr);
  for (HeadlessWindow* window : stack_.Windows())
    if (window->IsFrame() && window->Loaded()) {
      window->Unload();
      break;
    }
}

HeadlessWindow& HeadlessDesktop::WindowOf(std::string_view formName) const {
  const std::vector<HeadlessWindow*> windows = WindowsOf(formName);
  if (windows.empty()) StopTest("No window " + std::string(formName) + " is loaded.");
  return *windows.back();
}

std::vector<HeadlessWindow*> HeadlessDesktop::WindowsOf(std::string_view formName) const {
  std::vector<HeadlessWindow*> windows;
  for (HeadlessWindow* window : stack_.Windows())
    if (window->Loaded() && window->FormName() == formName) windows.push_back(window);
  return windows;
}

void HeadlessDesktop::AdvanceTime(std::int64_t milliseconds) {
  const std::int64_t end = clock_.Milliseconds() + milliseconds;
  while (HeadlessTimer* timer = NextTimer(end)) {
    clock_.Set(timer->NextTick());
    timer->TickNow();
    RethrowStop();
  }
  clock_.Set(end);
}

void HeadlessDesktop::DrainEvents() {
  while (queue_.RunOne()) RethrowStop();
}

void HeadlessDesktop::RunDeferred() {
  while (!deferred_.empty()) {
    const std::function<void()> action = std::move(deferred_.front());
    deferred_.pop_front();
    action();
    RethrowStop();
  }
}

void HeadlessDesktop::RunModal(HeadlessWindow& window) {
  const std::string form = window.FormName();
  const std::weak_ptr<const void> token = window.Token();
  while (!token.expired() && window.Visible()) {
    if (!queue_.RunOne() && !RunStep(window))
      StopTest("The modal window " + form + " would wait for ever.");
    RethrowStop();
  }
}

void HeadlessDesktop::KeepStop(TestStop stop) {
  if (!stop_) stop_ = std::move(stop);
}

void HeadlessDesktop::RethrowStop() {
  if (stop_) throw *std::exchange(stop_, std::nullopt);
}

HeadlessTimer* HeadlessDesktop::NextTimer(std::int64_t until) const {
  HeadlessTimer* next = nullptr;
  for (const HeadlessWindow* window : stack_.Windows())
    for (const auto& [name, timer] : window->Timers())
      if (timer->Runs() && timer->NextTick() <= until &&
          (next == nullptr || timer->NextTick() < next->NextTick()))
        next = timer.get();
  return next;
}

}  // namespace tessel::test
