#include "tests/data/servers/FaultProxy.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/data/servers/Sockets.h"

namespace tessel::test {

namespace {

using Piece = std::span<char>;

bool SendAll(int socket, Piece bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(sent));
  }
  return true;
}

/// Closing it then tears the connection down.
void TearOnClose(int socket) {
  const linger none{1, 0};
  setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

}  // namespace

/// One connection of a client, and its own to the server.
class FaultProxy::Link {
 public:
  Link(FaultProxy& proxy, int client, int number)
      : proxy_(proxy),
        client_(client),
        server_(ConnectToLoopback(proxy.serverPort_)),
        number_(number),
        thread_([this] { Serve(); }) {}
  Link(const Link&) = delete;
  ~Link() {
    shutdown(client_, SHUT_RDWR);
    if (server_ >= 0) shutdown(server_, SHUT_RDWR);
    thread_.join();
    close(client_);
    if (server_ >= 0) close(server_);
  }

 private:
  void Serve();
  [[nodiscard]] bool Pass(int from, int to);
  [[nodiscard]] bool PassRequest(Piece request);
  [[nodiscard]] bool PassAnswer(Piece answer);
  [[nodiscard]] bool Strike(int to, Piece rest);
  void TakeFault();
  void TellStruck();
  void AwaitNextFault();

  FaultProxy& proxy_;
  const int client_;
  const int server_;
  const int number_;
  Fault fault_;
  int faultNumber_ = 0;
  bool counts_ = false;
  std::size_t answered_ = 0;
  std::thread thread_;
};

void FaultProxy::Link::Serve() {
  bool open = server_ >= 0;
  while (open) {
    std::array<pollfd, 2> both{{{client_, POLLIN, 0}, {server_, POLLIN, 0}}};
    poll(both.data(), both.size(), -1);
    if (both[0].revents != 0) open = Pass(client_, server_);
    if (open && both[1].revents != 0) open = Pass(server_, client_);
  }
  shutdown(client_, SHUT_RDWR);
  if (server_ >= 0) shutdown(server_, SHUT_RDWR);
}

bool FaultProxy::Link::Pass(int from, int to) {
  std::array<char, 16384> buffer{};
  const ssize_t size = recv(from, buffer.data(), buffer.size(), 0);
  if (size <= 0) return false;
  TakeFault();
  const Piece bytes(buffer.data(), static_cast<std::size_t>(size));
  if (fault_.kind == Fault::Kind::None || number_ < fault_.fromConnection)
    return SendAll(to, bytes);
  return from == client_ ? PassRequest(bytes) : PassAnswer(bytes);
}

void FaultProxy::Link::TakeFault() {
  const std::lock_guard lock(proxy_.mutex_);
  if (faultNumber_ == proxy_.faultNumber_) return;
  faultNumber_ = proxy_.faultNumber_;
  fault_ = proxy_.fault_;
  counts_ = fault_.request.empty();
  answered_ = 0;
}

bool FaultProxy::Link::PassRequest(Piece request) {
  const std::string_view text(request.data(), request.size());
  if (!counts_ && text.find(fault_.request) != std::string_view::npos) {
    counts_ = true;
    if (fault_.atRequest) return Strike(server_, request);
  }
  return SendAll(server_, request);
}

bool FaultProxy::Link::PassAnswer(Piece answer) {
  if (!counts_) return SendAll(client_, answer);
  const std::size_t first = std::min(answer.size(), fault_.answerBytes - answered_);
  answered_ += first;
  if (!SendAll(client_, answer.first(first))) return false;
  return first == answer.size() || Strike(client_, answer.subspan(first));
}

bool FaultProxy::Link::Strike(int to, Piece rest) {
  constexpr std::size_t corrupted = 64;
  TellStruck();
  switch (fault_.kind) {
    case Fault::Kind::Reset:
      TearOnClose(client_);
      TearOnClose(server_);
      return false;
    case Fault::Kind::Close: return false;
    case Fault::Kind::Stall: AwaitNextFault(); break;
    case Fault::Kind::Delay: std::this_thread::sleep_for(std::chrono::milliseconds(5)); break;
    case Fault::Kind::Corrupt:
      std::ranges::fill(rest.first(std::min(rest.size(), corrupted)), '\xFF');
      fault_.kind = Fault::Kind::None;
      break;
    case Fault::Kind::None: break;
  }
  return SendAll(to, rest);
}

void FaultProxy::Link::TellStruck() {
  const std::lock_guard lock(proxy_.mutex_);
  if (faultNumber_ == proxy_.faultNumber_) proxy_.struck_ = true;
  proxy_.changed_.notify_all();
}

void FaultProxy::Link::AwaitNextFault() {
  std::unique_lock lock(proxy_.mutex_);
  proxy_.changed_.wait(lock,
                       [this] { return proxy_.ends_ || faultNumber_ != proxy_.faultNumber_; });
}

FaultProxy::FaultProxy(int serverPort)
    : serverPort_(serverPort),
      listener_(ListenOnLoopback(port_)),
      acceptor_([this] { Accept(); }) {}

FaultProxy::~FaultProxy() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    changed_.notify_all();
  }
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  links_.clear();
  close(listener_);
}

void FaultProxy::Accept() {
  for (;;) {
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    const std::lock_guard lock(mutex_);
    links_.push_back(std::make_unique<Link>(*this, client, static_cast<int>(links_.size()) + 1));
  }
}

void FaultProxy::Set(Fault fault) {
  const std::lock_guard lock(mutex_);
  fault_ = std::move(fault);
  ++faultNumber_;
  struck_ = false;
  changed_.notify_all();
}

int FaultProxy::Connections() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(links_.size());
}

bool FaultProxy::WaitUntilStruck(std::chrono::milliseconds limit) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, limit, [this] { return struck_; });
}

}  // namespace tessel::test
