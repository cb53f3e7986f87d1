#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/providers/Provider.h"

namespace tessel::test {

/// Where a call hangs until the test lets it pass.
class Gate {
 public:
  ~Gate() { Open(); }

  /// Waits until the gate is open.
  void Pass();
  void Open();
  /// Waits until somebody stands at the gate.
  void AwaitArrival();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = false;
  int arrived_ = 0;
};

using Fields = std::vector<FieldInfo>;

/// Of a result without columns.
[[nodiscard]] inline Fields NoColumns() { return {}; }

/// What the sessions of a ScriptedProvider do; shared with them, as they may outlive the test's own
/// objects. To be changed while no session works only.
struct Script {
  std::function<void(WorkContext&)> open;
  std::function<Properties()> properties;
  std::function<Fields(const std::string&, WorkContext&)> execute;
  std::function<bool(RowSink&, std::size_t, WorkContext&)> fetch;
  std::function<Fields(WorkContext&)> next;
  std::function<bool()> unique;
  std::function<std::string()> catalog;
  std::function<void(const std::string&)> setCatalog;
  std::function<UserTransaction()> transaction;
  std::function<void()> cancel;
  std::atomic<bool> alive = true;
  std::chrono::milliseconds patience{150};

  std::atomic<int> opens = 0;
  std::atomic<int> closes = 0;
  std::atomic<int> sessions = 0;  ///< That exist now.
  std::atomic<int> cancels = 0;
  std::atomic<int> wrongCancels = 0;  ///< That hit an operation nobody had asked to stop.
  std::atomic<int> wrongCalls = 0;    ///< Calls that broke the order promised to a session.
};

/// "Scripted": a database whose every step a test decides.
class ScriptedProvider : public Provider {
 public:
  explicit ScriptedProvider(std::shared_ptr<Script> script) : script_(std::move(script)) {}

  [[nodiscard]] std::vector<std::string> Names() const override { return {"Scripted"}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override;

 private:
  std::shared_ptr<Script> script_;
};

/// A result of one whole-number column "n".
[[nodiscard]] Fields OneColumn();
/// Adds rows `first` to `last` to such a result.
void AddNumbers(RowSink& rows, std::int64_t first, std::int64_t last);

}  // namespace tessel::test
