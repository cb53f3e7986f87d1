// Other programs: started without a shell, fed and read through pipes that never wait, and ended
// when nobody wants their answer any more.

#include "system/PosixPrograms.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include "contract/base/Error.h"

namespace tessel {

namespace {

[[noreturn]] void RaiseFailure(const std::string& path, int code) {
  throw Error(errorNumber::file, "Tessel", path + ": " + std::generic_category().message(code));
}

/// A descriptor that is closed at its end; -1: none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  void Close() {
    if (number_ >= 0) close(std::exchange(number_, -1));
  }
  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }

 private:
  int number_;
};

/// This program's end and the other program's end of a line between them. A pair of sockets, so
/// that writing to one that is closed is an error and no signal.
struct Line {
  Descriptor ours;
  Descriptor theirs;
};

Line MakeLine(const std::string& path) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    RaiseFailure(path, errno);
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Adds what is there; closes the line at its end.
void ReadInto(std::string& text, Descriptor& line) {
  std::array<char, 65536> buffer{};
  while (line.IsOpen()) {
    const ssize_t count = read(line.Number(), buffer.data(), buffer.size());
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count < 0 && errno == EINTR) continue;
    else if (count < 0 && errno == EAGAIN) return;
    else line.Close();
  }
}

class PosixProgram final : public RunningProgram {
 public:
  PosixProgram(pid_t process, Descriptor input, Descriptor output, Descriptor complaints,
               std::string text)
      : process_(process),
        input_(std::move(input)),
        output_(std::move(output)),
        complaints_(std::move(complaints)),
        text_(std::move(text)) {
    PassOn();
  }

  ~PosixProgram() override {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    Reap(0);
  }

  bool HasEnded(int milliseconds) override {
    if (process_ <= 0) return true;
    WaitForNews(milliseconds);
    PassOn();
    ReadInto(told_, output_);
    ReadInto(complained_, complaints_);
    if (!output_.IsOpen() && !complaints_.IsOpen()) Reap(WNOHANG);
    return process_ <= 0;
  }
  const std::string& Output() const override { return told_; }
  const std::string& Complaints() const override { return complained_; }
  int ExitStatus() const override { return status_; }

 private:
  void WaitForNews(int milliseconds) const {
    std::array<pollfd, 3> watched{{{input_.Number(), POLLOUT, 0},
                                   {output_.Number(), POLLIN, 0},
                                   {complaints_.Number(), POLLIN, 0}}};
    poll(watched.data(), watched.size(), milliseconds);
  }

  /// A program that reads no further has what it needs.
  void PassOn() {
    while (input_.IsOpen() && passed_ < text_.size()) {
      const ssize_t count =
          send(input_.Number(), text_.data() + passed_, text_.size() - passed_, MSG_NOSIGNAL);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0 && errno == EAGAIN) return;
      if (count < 0) break;
      passed_ += static_cast<std::size_t>(count);
    }
    input_.Close();
  }

  void Reap(int flags) {
    int status = 0;
    pid_t ended = 0;
    do ended = waitpid(process_, &status, flags);
    while (ended < 0 && errno == EINTR);
    if (ended == 0) return;
    process_ = 0;
    if (ended > 0 && WIFEXITED(status)) status_ = WEXITSTATUS(status);
  }

  pid_t process_;  ///< 0: it has ended.
  Descriptor input_;
  Descriptor output_;
  Descriptor complaints_;
  std::string text_;
  std::size_t passed_ = 0;  ///< Bytes of the text.
  std::string told_;
  std::string complained_;
  int status_ = -1;
};

/// What the new process does with its descriptors.
class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  void Put(const Descriptor& from, int to) {
    posix_spawn_file_actions_adddup2(&actions_, from.Number(), to);
  }
  [[nodiscard]] const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::string PosixPrograms::Find(std::string_view name) const {
  const char* folders = std::getenv("PATH");
  std::string_view rest = folders == nullptr ? "" : folders;
  while (!rest.empty()) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
    const std::string path = std::string(folder) + "/" + std::string(name);
    if (!folder.empty() && access(path.c_str(), X_OK) == 0) return path;
  }
  return {};
}

std::unique_ptr<RunningProgram> PosixPrograms::Start(const std::string& path,
                                                     const std::vector<std::string>& arguments,
                                                     std::string input) {
  Line in = MakeLine(path);
  Line out = MakeLine(path);
  Line complaints = MakeLine(path);
  SpawnActions actions;
  actions.Put(in.theirs, STDIN_FILENO);
  actions.Put(out.theirs, STDOUT_FILENO);
  actions.Put(complaints.theirs, STDERR_FILENO);
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), path);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  const int code =
      posix_spawn(&process, path.c_str(), actions.Get(), nullptr, pointers.data(), environ);
  if (code != 0) RaiseFailure(path, code);
  return std::make_unique<PosixProgram>(process, std::move(in.ours), std::move(out.ours),
                                        std::move(complaints.ours), std::move(input));
}

}  // namespace tessel
