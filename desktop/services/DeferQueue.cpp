#include "desktop/services/DeferQueue.h"

#include <QCoreApplication>
#include <QEvent>

namespace tessel {

DeferQueue::DeferQueue(EventLoops& loops, std::function<void(std::exception_ptr)> failed)
    : loops_(loops), failed_(std::move(failed)) {
  loops_.becameIdle = [this] { Wake(); };
}

void DeferQueue::Add(std::function<void()> action) {
  actions_.push_back(std::move(action));
  Wake();
}

bool DeferQueue::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  if (loops_.Depth() == 0) RunNext();
  return true;
}

void DeferQueue::Wake() {
  if (!actions_.empty()) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void DeferQueue::RunNext() {
  if (actions_.empty()) return;
  const std::function<void()> action = std::move(actions_.front());
  actions_.pop_front();
  try {
    action();
  } catch (...) {
    failed_(std::current_exception());
  }
}

}  // namespace tessel
