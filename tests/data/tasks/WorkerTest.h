#pragma once

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/cursor/DataConnection.h"
#include "data/tasks/ThreadHost.h"
#include "tests/data/support/DataTest.h"
#include "tests/data/tasks/ScriptedProvider.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

/// Takes what handlers throw.
class CollectedFailures : public FailureSink {
 public:
  void HandlerFailed(std::exception_ptr failure) noexcept override;
  std::vector<std::string> texts;
};

/// Connections of the scripted provider.
class WorkerTest : public testing::Test {
 protected:
  WorkerTest() { providers_->Add(std::make_unique<ScriptedProvider>(script_)); }

  /// Not open yet.
  [[nodiscard]] std::shared_ptr<Connection> NewConnection(FailureSink* failures = nullptr);
  [[nodiscard]] std::shared_ptr<Connection> Connect(FailureSink* failures = nullptr);
  StartedQuery Start(Connection& connection, EventLog& log);
  [[nodiscard]] bool PumpToEnd(const EventLog& log, int ends = 1);
  /// Waits until no thread is left behind and no session exists.
  [[nodiscard]] bool AllGone();

  PumpQueue queue_;
  std::shared_ptr<Script> script_ = std::make_shared<Script>();
  std::shared_ptr<LeftBehind> leftBehind_ = std::make_shared<LeftBehind>();
  int patienceFactor_ = slowdown;  ///< Of connections made from now on.

 private:
  std::shared_ptr<ProviderRegistry> providers_ = std::make_shared<ProviderRegistry>();
};

}  // namespace tessel::test
