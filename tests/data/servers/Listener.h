#pragma once

#include <chrono>

namespace tessel::test {

/// A port of the loopback interface that was free a moment ago.
[[nodiscard]] int FreePort();

/// A port of the loopback interface, held for as long as the object lives.
class Listener {
 public:
  enum class Behaviour {
    Silent,  ///< Takes every connection and never says a word.
    Refuse,  ///< Refuses every connection.
  };
  explicit Listener(Behaviour behaviour);
  Listener(const Listener&) = delete;
  ~Listener();

  [[nodiscard]] int Port() const { return port_; }
  /// True when a client has connected within `limit`.
  [[nodiscard]] bool WaitForClient(std::chrono::milliseconds limit) const;

 private:
  int socket_ = -1;
  int port_ = 0;
};

/// True when a TCP connection to the port of the loopback interface is taken.
[[nodiscard]] bool TakesConnections(int port);

/// True when a TCP connection to the port is taken and something is sent within a second, unasked.
[[nodiscard]] bool Greets(int port);

}  // namespace tessel::test
