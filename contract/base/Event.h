#pragma once

#include <exception>
#include <functional>
#include <utility>

namespace tessel {

/// Where a handler's exception goes: the owner of the event shows it by its own rule.
class FailureSink {
 public:
  /// Called on the UI thread from inside Event::Raise, with the exception that the handler let out.
  virtual void HandlerFailed(std::exception_ptr failure) noexcept = 0;

 protected:
  ~FailureSink() = default;
};

/// An event with at most one handler. UI thread only.
///
/// The handler is copied before it is called, so it may replace itself or close the window that
/// owns the event; nothing of the event is touched after the handler returns.
template <class... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;

  /// Sets the one handler; an empty function removes it.
  void operator=(Handler handler) { handler_ = std::move(handler); }
  [[nodiscard]] bool HasHandler() const { return static_cast<bool>(handler_); }

  /// Calls the handler, if any. What it throws goes to `failures`; with none given it passes
  /// through.
  void Raise(FailureSink* failures, Args... args) const {
    const Handler handler = handler_;
    if (!handler) return;
    if (failures == nullptr) {
      handler(std::forward<Args>(args)...);
      return;
    }
    try {
      handler(std::forward<Args>(args)...);
    } catch (...) {
      failures->HandlerFailed(std::current_exception());
    }
  }

 private:
  Handler handler_;
};

}  // namespace tessel
