#include "tests/data/tasks/WorkerTest.h"

namespace tessel::test {

void CollectedFailures::HandlerFailed(std::exception_ptr failure) noexcept {
  try {
    std::rethrow_exception(std::move(failure));
  } catch (const std::exception& error) {
    texts.emplace_back(error.what());
  }
}

std::shared_ptr<Connection> WorkerTest::NewConnection(FailureSink* failures) {
  auto connection = std::make_shared<DataConnection>(ConnectionServices{
      queue_, failures, providers_, ThreadHost::Starter(leftBehind_, patienceFactor_)});
  connection->SetConnectionString("Provider=Scripted");
  return connection;
}

std::shared_ptr<Connection> WorkerTest::Connect(FailureSink* failures) {
  auto connection = NewConnection(failures);
  OpenNow(*connection);
  return connection;
}

StartedQuery WorkerTest::Start(Connection& connection, EventLog& log) {
  StartedQuery query(connection.StartQuery("run", LockType::ReadOnly));
  log.Watch(query.Operation());
  return query;
}

bool WorkerTest::PumpToEnd(const EventLog& log, int ends) {
  return queue_.PumpUntil([&] { return log.Ends() >= ends; });
}

bool WorkerTest::AllGone() {
  for (int tries = 0; tries < 2000; ++tries) {
    if (!leftBehind_->Any() && script_->sessions == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

}  // namespace tessel::test
