#include "tests/support/QueueHost.h"

#include <utility>

#include "data/tasks/LoadTask.h"
#include "data/tasks/RowWriter.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

QueueHost::QueueHost(EventQueue& queue, std::unique_ptr<ProviderSession> session)
    : queue_(queue),
      runner_(std::move(session)),
      session_(dynamic_cast<MemorySession&>(runner_.Session())) {}

void QueueHost::Run(std::shared_ptr<Task> task) {
  running_ = std::move(task);
  PostStep();
}

void QueueHost::PostStep() {
  if (std::exchange(posted_, true)) return;
  queue_.Post(weak_from_this(), [this] { TakePostedStep(); });
}

void QueueHost::TakePostedStep() {
  posted_ = false;
  if (running_ && !held_ && TakeStep()) PostStep();
}

bool QueueHost::TakeStep() {
  held_ = !std::exchange(resumed_, false) && !running_->StopAsked() && HoldsNextStep();
  if (held_) return false;
  if (runner_.Step(*running_)) return true;
  running_.reset();
  return false;
}

bool QueueHost::HoldsNextStep() const {
  const Task* task = running_.get();
  const MemoryServer& server = session_.Server();
  if (dynamic_cast<const OpenTask*>(task) != nullptr) return server.holdConnecting;
  if (dynamic_cast<const CatalogTask*>(task) != nullptr) return server.holdCatalogChanges;
  if (dynamic_cast<const WriteTask*>(task) != nullptr) return server.holdChanges;
  if (dynamic_cast<const LoadTask*>(task) != nullptr) return server.holdChanges;
  if (const auto* schema = dynamic_cast<const SchemaTask*>(task))
    return server.holdSchemas.contains(schema->Schema());
  const auto& command = dynamic_cast<const ExecuteTask&>(*task);
  return command.HasResult() ? session_.HoldsFetch() : HoldsCommand(command.Sql());
}

bool QueueHost::HoldsCommand(const std::string& sql) const {
  const MemoryResult* answer = session_.Server().FindAnswer(sql);
  if (answer == nullptr) StopTest("The server in memory has no answer to:\n" + sql);
  return answer->holdExecuting;
}

void QueueHost::Cancel(const std::shared_ptr<Task>& task) {
  task->AskToStop();
  session_.Cancel();
  held_ = false;
  PostStep();
}

void QueueHost::Stop(const std::shared_ptr<Task>& running) {
  if (running) {
    Cancel(running);
    WaitForEnd(*running);
  }
  runner_.Close();
}

void QueueHost::WaitForEnd(Task& task) {
  session_.SetWaitedFor(true);
  while (!task.Ended())
    if (!TakeStep() && held_) StopTest("A step is held back that the program waits for.");
  session_.SetWaitedFor(false);
}

void QueueHost::Resume() {
  if (!held_) StopTest("No step is held back.");
  held_ = false;
  resumed_ = true;
  PostStep();
}

}  // namespace tessel::test
