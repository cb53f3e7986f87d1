#include "tests/data/servers/Listener.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/data/servers/Sockets.h"

namespace tessel::test {

namespace {

constexpr int backlog = 64;

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

int NewSocket() {
  const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0) throw std::runtime_error(std::string("No socket: ") + std::strerror(errno));
  return made;
}

bool Readable(int socket, std::chrono::milliseconds limit) {
  pollfd watched{socket, POLLIN, 0};
  return poll(&watched, 1, static_cast<int>(limit.count())) == 1;
}

bool Connect(int socket, int port) {
  const sockaddr_in address = Loopback(port);
  return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

}  // namespace

int ListenOnLoopback(int& port) {
  const int listener = NewSocket();
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      listen(listener, backlog) != 0)
    throw std::runtime_error("Cannot listen on the loopback interface.");
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  port = ntohs(address.sin_port);
  return listener;
}

int ConnectToLoopback(int port) {
  const int client = NewSocket();
  if (Connect(client, port)) return client;
  close(client);
  return -1;
}

int FreePort() { return Listener(Listener::Behaviour::Refuse).Port(); }

// The system completes connections of a listening socket by itself, up to the backlog; one that is
// only bound refuses them.
Listener::Listener(Behaviour behaviour) : socket_(NewSocket()) {
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  const bool bound = bind(socket_, reinterpret_cast<sockaddr*>(&address), size) == 0;
  const bool listens = behaviour == Behaviour::Refuse || listen(socket_, backlog) == 0;
  if (!bound || !listens) throw std::runtime_error("Cannot listen on the loopback interface.");
  getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
}

Listener::~Listener() { close(socket_); }

bool Listener::WaitForClient(std::chrono::milliseconds limit) const {
  return Readable(socket_, limit);
}

bool TakesConnections(int port) {
  const int client = NewSocket();
  const bool connected = Connect(client, port);
  close(client);
  return connected;
}

bool Greets(int port) {
  const int client = NewSocket();
  char first = 0;
  const bool greeted = Connect(client, port) && Readable(client, std::chrono::seconds(1)) &&
                       recv(client, &first, 1, 0) == 1;
  close(client);
  return greeted;
}

}  // namespace tessel::test
