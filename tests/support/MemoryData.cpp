#include "tests/support/MemoryData.h"

#include "tests/support/TestStop.h"

namespace tessel::test {

std::shared_ptr<Connection> MemoryData::CreateConnection() {
  const auto find = [this](const std::string& connectionString) -> MemoryServer& {
    const auto own = servers_.find(connectionString);
    return own == servers_.end() ? static_cast<MemoryServer&>(*this) : own->second;
  };
  auto connection = std::make_shared<FakeConnection>(queue_, log_, find);
  connections_.push_back(connection);
  return connection;
}

MemoryServer& MemoryData::ServerOf(const std::string& connectionString) {
  return servers_[connectionString];
}

std::vector<std::string> MemoryData::ExecutedSql() const {
  std::vector<std::string> texts;
  for (const MemoryLog::Command& command : log_->executed) texts.push_back(command.sql);
  return texts;
}

std::vector<std::shared_ptr<FakeConnection>> MemoryData::Connections() const {
  std::vector<std::shared_ptr<FakeConnection>> alive;
  for (const auto& weak : connections_)
    if (auto connection = weak.lock()) alive.push_back(std::move(connection));
  return alive;
}

void MemoryData::Resume() {
  std::shared_ptr<FakeConnection> held;
  for (const auto& connection : Connections()) {
    if (!connection->IsHeld()) continue;
    if (held != nullptr) StopTest("Several operations are held.");
    held = connection;
  }
  if (held == nullptr) StopTest("No operation is held.");
  held->Resume();
}

}  // namespace tessel::test
