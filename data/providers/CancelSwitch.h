#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>

namespace tessel {

/// Lets requests to cancel through to the database while a command runs there, and at no other
/// time: a late one would hit what runs next.
class CancelSwitch {
 public:
  /// `send` asks the database to cancel. Called on the threads that request, one at a time.
  explicit CancelSwitch(std::function<void()> send) : send_(std::move(send)) {}

  /// A command begins. Worker.
  void TurnOn();
  /// It has ended: waits for a request that is on its way. Worker.
  void TurnOff();

  /// A command runs while it lives. Worker.
  class On {
   public:
    explicit On(CancelSwitch& cancel) : cancel_(cancel) { cancel_.TurnOn(); }
    On(const On&) = delete;
    On& operator=(const On&) = delete;
    ~On() { cancel_.TurnOff(); }

   private:
    CancelSwitch& cancel_;
  };

  /// Asks the database, if a command runs. To be called again and again until it ends, for a
  /// request may come before the database has begun; they are sent in growing intervals. Blocks
  /// when the database does. Any thread.
  void Request() noexcept;
  /// True when the database was asked during the present or last command.
  [[nodiscard]] bool Sent() const;

 private:
  const std::function<void()> send_;
  mutable std::mutex mutex_;  ///< Also held while the database is asked.
  bool on_ = false;
  bool sent_ = false;
  std::chrono::steady_clock::time_point next_;
  std::chrono::milliseconds interval_{0};
};

}  // namespace tessel
