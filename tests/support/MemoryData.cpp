#include "tests/support/MemoryData.h"

#include <utility>

#include "data/cursor/DataConnection.h"
#include "data/providers/memory/MemoryProvider.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

/// A connection that can fail to close.
class MemoryConnection final : public DataConnection {
 public:
  MemoryConnection(ConnectionServices services, const std::optional<ErrorInfo>& closeFailure)
      : DataConnection(std::move(services)), closeFailure_(closeFailure) {}

  void Close() override {
    if (closeFailure_) throw Error(*closeFailure_);
    DataConnection::Close();
  }

 private:
  const std::optional<ErrorInfo>& closeFailure_;
};

template <class T>
std::vector<std::shared_ptr<T>> AliveOf(const std::vector<std::weak_ptr<T>>& all) {
  std::vector<std::shared_ptr<T>> alive;
  for (const std::weak_ptr<T>& weak : all)
    if (auto one = weak.lock()) alive.push_back(std::move(one));
  return alive;
}

/// What was fetched is handed over and told of after every step.
constexpr FetchPace everyStep{
    .progress = {}, .handOver = {}, .chunk = {}, .fewestRows = FetchPace::mostRows};

}  // namespace

std::shared_ptr<Connection> MemoryData::CreateConnection() {
  const auto made = std::make_shared<std::weak_ptr<Connection>>();
  auto providers = std::make_shared<ProviderRegistry>();
  const auto route = [this, made] { return RouteOf(made->lock()->ConnectionString()); };
  providers->Add(std::make_unique<MemoryProvider>(route), true);
  auto connection = std::make_shared<MemoryConnection>(
      ConnectionServices{
          .queue = queue_,
          .providers = std::move(providers),
          .startHost = [this](auto session) { return StartHost(std::move(session)); },
          .pace = everyStep,
          .now = [this] { return transactionTime; }},
      closeFailure);
  *made = connection;
  connections_.push_back(connection);
  return connection;
}

MemoryRoute MemoryData::RouteOf(const std::string& connectionString) {
  const auto own = servers_.find(connectionString);
  MemoryServer& server = own == servers_.end() ? *this : own->second;
  return {&server, log_, connectionString};
}

std::shared_ptr<SessionHost> MemoryData::StartHost(std::unique_ptr<ProviderSession> session) {
  auto host = std::make_shared<QueueHost>(queue_, std::move(session));
  hosts_.push_back(host);
  return host;
}

MemoryServer& MemoryData::ServerOf(const std::string& connectionString) {
  return servers_[connectionString];
}

std::vector<std::string> MemoryData::ExecutedSql() const {
  std::vector<std::string> texts;
  for (const MemoryLog::Command& command : log_->executed) texts.push_back(command.sql);
  return texts;
}

std::vector<std::shared_ptr<Connection>> MemoryData::Connections() const {
  return AliveOf(connections_);
}

std::vector<std::shared_ptr<QueueHost>> MemoryData::Hosts() const { return AliveOf(hosts_); }

void MemoryData::Resume() {
  std::shared_ptr<QueueHost> held;
  for (const auto& host : Hosts()) {
    if (!host->IsHeld()) continue;
    if (held != nullptr) StopTest("Several steps are held back.");
    held = host;
  }
  if (held == nullptr) StopTest("No step is held back.");
  held->Resume();
}

void MemoryData::ResumeAll() {
  for (const auto& host : Hosts())
    if (host->IsHeld()) host->Resume();
}

void MemoryData::LoseSessions() {
  for (const auto& host : Hosts()) host->Session().Lose();
}

}  // namespace tessel::test
