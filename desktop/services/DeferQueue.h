#pragma once

#include <QObject>
#include <deque>
#include <exception>
#include <functional>

#include "desktop/services/EventLoops.h"

namespace tessel {

/// Actions that run from the top of the application's event loop, outside every handler and modal
/// window.
class DeferQueue final : public QObject {
 public:
  /// `failed` gets what an action throws.
  DeferQueue(EventLoops& loops, std::function<void(std::exception_ptr)> failed);

  void Add(std::function<void()> action);

 protected:
  bool event(QEvent* event) override;

 private:
  void Wake();
  void RunNext();

  EventLoops& loops_;
  std::function<void(std::exception_ptr)> failed_;
  std::deque<std::function<void()>> actions_;
};

}  // namespace tessel
