#pragma once

#include <exception>
#include <functional>
#include <utility>

namespace tessel {

/// Where a handler's exception goes: the owner of the event shows it by its own rule. A window is
/// the sink of its own events and those of its controls and menus. It has to be there until
/// HandlerFailed returns: a handler that destroys its window must not let an exception out after
/// that.
class FailureSink {
 public:
  /// Called on the UI thread from inside Event::Raise, with the exception that the handler let out,
  /// never null. It may run the event loop, as a message box does. Raise returns afterwards as if
  /// the handler had returned: what it had answered by then counts. An exception of any type may
  /// come; one that is an Error shows its description.
  virtual void HandlerFailed(std::exception_ptr failure) noexcept = 0;

 protected:
  ~FailureSink() = default;
};

/// An event with at most one handler. UI thread only.
///
/// The handler is copied before it is called, so it may replace itself or close the window that
/// owns the event; nothing of the event is touched after the handler returns. An event may be
/// raised again from inside its own handler. What a handler answers goes through arguments that are
/// references, such as a flag that refuses. An event without a handler answers nothing: the flag
/// stays as whoever raises it has set it.
///
/// Whether a change by code raises an event stands with the event; where nothing is said, only the
/// user's doing does.
template <class... Args>
class Event {
 public:
  /// Takes what the event tells; it may be empty.
  using Handler = std::function<void(Args...)>;

  /// Sets the one handler; an empty function removes it. The event owns it: whatever the handler
  /// refers to has to outlive the event, or has to take it away before.
  void operator=(Handler handler) { handler_ = std::move(handler); }
  /// For owners that save work when nobody listens; Raise asks for itself.
  [[nodiscard]] bool HasHandler() const { return static_cast<bool>(handler_); }

  /// Calls the handler, if any, and returns when it has. What it throws goes to `failures`, which
  /// has to outlive the call; with none given it passes through.
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
