#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "contract/base/Clock.h"
#include "contract/base/EventQueue.h"
#include "contract/desktop/Desktop.h"

namespace tessel {

class QtClipboard final : public Clipboard {
 public:
  [[nodiscard]] std::string Text() const override;
  [[nodiscard]] std::string Html() const override;
  void SetText(std::string_view text) override;
};

class QtClock final : public Clock {
 public:
  QtClock() { timer_.start(); }
  [[nodiscard]] std::int64_t Milliseconds() const override { return timer_.elapsed(); }
  [[nodiscard]] std::string LongTime() const override;
  [[nodiscard]] std::string
  ShortTimeOf(std::chrono::system_clock::time_point moment) const override;
  [[nodiscard]] std::string UtcStamp() const override;

 private:
  QElapsedTimer timer_;
};

/// Notices travel as events of Qt, which keeps their order.
class QtEventQueue final : public QObject, public EventQueue {
 public:
  void Post(std::weak_ptr<const void> owner, std::function<void()> notice) override;

 protected:
  bool event(QEvent* event) override;
};

/// Starts a program that lives on by itself; raises Error with the system's reason.
void StartDetached(const std::string& path);

}  // namespace tessel
