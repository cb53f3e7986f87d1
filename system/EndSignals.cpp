#include "system/EndSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/socket.h>
#include <unistd.h>

namespace tessel {

namespace {

constexpr unsigned secondsToEnd = 10;
constexpr std::array signals = {SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes; the program's threads see it through the system.
volatile std::sig_atomic_t writeEnd = -1;

/// Only calls that a signal handler may make.
extern "C" void NoteEndSignal(int /*signal*/) {
  const int error = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
  ::alarm(secondsToEnd);
  errno = error;
}

void SetHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigaction(signal, &action, nullptr);
}

bool IsIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals() {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends_) != 0)
    throw std::system_error(errno, std::generic_category());
  writeEnd = ends_[1];
  for (const int signal : signals)
    if (!IsIgnored(signal)) SetHandler(signal, NoteEndSignal);
}

EndSignals::~EndSignals() {
  for (const int signal : signals)
    if (!IsIgnored(signal)) SetHandler(signal, SIG_DFL);
  ::close(ends_[0]);
  ::close(ends_[1]);
}

}  // namespace tessel
