#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>

namespace tessel {

/// Lets requests to cancel through to the database while it works on something, and at no other
/// time: a late one would hit what runs next. Every session has one.
class CancelSwitch {
 public:
  using Milliseconds = std::chrono::milliseconds;

  /// When requests are passed on.
  struct Pace {
    Milliseconds before{0};    ///< Of the work's beginning; earlier requests are not passed on.
    Milliseconds between{15};  ///< Two requests at first; the interval doubles, up to a second.
  };

  CancelSwitch() = default;
  explicit CancelSwitch(Pace pace) : pace_(pace) {}
  CancelSwitch(const CancelSwitch&) = delete;
  CancelSwitch& operator=(const CancelSwitch&) = delete;

  /// Work that may be cancelled goes on while it lives. Its end waits for a request that is on its
  /// way. Worker.
  class On {
   public:
    /// `send` asks the database to cancel; it may block. Called on the threads that request, one at
    /// a time.
    On(CancelSwitch& cancel, std::function<void()> send) : cancel_(cancel) {
      cancel_.TurnOn(std::move(send));
    }
    On(const On&) = delete;
    On& operator=(const On&) = delete;
    ~On() { cancel_.TurnOff(); }

   private:
    CancelSwitch& cancel_;
  };

  /// Asks the database, if it works. To be called again and again until the work ends, for a
  /// request may come before the database has begun. Blocks when the database does. Any thread.
  void Request() noexcept;
  /// True when the database was asked during the present or last work.
  [[nodiscard]] bool Sent() const;

 private:
  void TurnOn(std::function<void()> send);
  void TurnOff();

  const Pace pace_;
  mutable std::mutex mutex_;    ///< Also held while the database is asked.
  std::function<void()> send_;  ///< Null: nothing runs.
  bool sent_ = false;
  std::chrono::steady_clock::time_point next_;
  Milliseconds interval_{0};
};

}  // namespace tessel
