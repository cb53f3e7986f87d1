#include "tests/data/servers/DatabaseServer.h"

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "tests/data/servers/Listener.h"

namespace tessel::test {

using std::chrono::steady_clock;

DatabaseServer::DatabaseServer(const ServerFolder& folders, const std::string& name,
                               const RecipeMaker& recipe)
    : folders_(folders), log_(folders.Path() / (name + ".log")) {
  login_.port = FreePort();
  recipe_ = recipe(folders.MakeServerFolder(name), login_);
  recipe_.name = name;
  for (const ServerRecipe::Step& step : recipe_.preparation)
    RunCommand(AsServerUser(step.command), {.input = step.input, .output = log_});
  Start();
}

DatabaseServer::~DatabaseServer() { Kill(); }

void DatabaseServer::Start() {
  process_ = Process(AsServerUser(recipe_.command), {.output = log_});
  folders_.NoteRunning(recipe_.name, process_.Id());
  WaitUntilItAnswers();
}

void DatabaseServer::WaitUntilItAnswers() {
  const auto end = steady_clock::now() + std::chrono::minutes(1);
  while (!recipe_.answers()) {
    const bool ended = process_.Wait(std::chrono::milliseconds(50)).has_value();
    if (ended || steady_clock::now() > end)
      throw std::runtime_error("The test server " + recipe_.name + " does not start:\n" +
                               LogTail());
  }
}

/// The threads of a server stop one after the other: what is asked right after the signal might
/// still be answered.
void DatabaseServer::Freeze() const {
  process_.SignalTree(SIGSTOP);
  for (int tries = 0; tries < 200 && !process_.IsStopped(); ++tries)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void DatabaseServer::Thaw() const { process_.SignalTree(SIGCONT); }

void DatabaseServer::Kill() {
  if (process_.Id() == 0) return;
  Thaw();
  process_.Signal(SIGQUIT);
  if (!process_.Wait(std::chrono::seconds(10))) process_ = Process();
  folders_.NoteEnded(recipe_.name);
}

void DatabaseServer::Restart() {
  Kill();
  Start();
}

}  // namespace tessel::test
