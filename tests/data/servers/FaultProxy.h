#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace tessel::test {

/// What goes wrong on the way between a client and its server, and where.
struct Fault {
  enum class Kind {
    None,
    Reset,    ///< The connection is torn down at once, in both directions.
    Close,    ///< It is closed in good order.
    Stall,    ///< Nothing passes any more, in either direction, until the fault is taken back.
    Delay,    ///< Every piece of the answer comes 5 milliseconds late.
    Corrupt,  ///< The next 64 bytes are overwritten, once.
  };
  Kind kind = Kind::None;
  /// Counting begins when the client sends this text; empty: when it connects.
  std::string request = {};
  /// So many bytes of the server's answer pass before it strikes.
  std::size_t answerBytes = 0;
  /// It strikes at the request itself, which then does not reach the server.
  bool atRequest = false;
  /// Only the connections from this number on, counted from 1, are struck.
  int fromConnection = 1;
};

/// A port of the loopback interface that leads to a server's, through whatever fault is set.
class FaultProxy {
 public:
  explicit FaultProxy(int serverPort);
  FaultProxy(const FaultProxy&) = delete;
  /// Tears down all connections.
  ~FaultProxy();

  [[nodiscard]] int Port() const { return port_; }
  /// From now on, in place of the fault before; what that one stalled goes on.
  void Set(Fault fault);
  void Clear() { Set({}); }
  /// Connections taken so far.
  [[nodiscard]] int Connections() const;
  /// True when the fault set last has struck within `limit`.
  [[nodiscard]] bool WaitUntilStruck(std::chrono::milliseconds limit) const;

 private:
  class Link;
  friend class Link;

  void Accept();

  int serverPort_;
  int port_ = 0;  ///< Before the listener, which sets it.
  int listener_ = -1;
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  Fault fault_;
  int faultNumber_ = 0;
  bool struck_ = false;
  bool ends_ = false;
  std::vector<std::unique_ptr<Link>> links_;
  std::thread acceptor_;
};

}  // namespace tessel::test
