#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/base/Clock.h"
#include "contract/base/EventQueue.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/Notifications.h"
#include "contract/desktop/Progress.h"

namespace tessel::test {

/// A clock that stands still until it is advanced, unless each look at it takes a while. It begins
/// at noon.
class HeadlessClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t Milliseconds() const override {
    now_ += lookTakes_;
    return now_;
  }
  /// "HH:MM:SS" of a day that began 12 hours before the clock's zero.
  [[nodiscard]] std::string LongTime() const override;
  /// The twin lives in universal time.
  [[nodiscard]] std::string
  ShortTimeOf(std::chrono::system_clock::time_point moment) const override;
  /// Of the same day, the first of January 2026.
  [[nodiscard]] std::string UtcStamp() const override { return "2026-01-01T" + LongTime() + "Z"; }
  void Set(std::int64_t milliseconds) { now_ = milliseconds; }
  void LetALookTake(std::int64_t milliseconds) { lookTakes_ = milliseconds; }

 private:
  mutable std::int64_t now_ = 0;
  std::int64_t lookTakes_ = 0;
};

class HeadlessClipboard final : public Clipboard {
 public:
  [[nodiscard]] std::string Text() const override { return text_; }
  [[nodiscard]] std::string Html() const override { return html_; }
  void SetText(std::string_view text) override {
    text_ = text;
    html_.clear();
  }
  /// As another program puts both forms of what it copies there.
  void SetForms(std::string text, std::string html) {
    text_ = std::move(text);
    html_ = std::move(html);
  }

 private:
  std::string text_;
  std::string html_;
};

/// The user is before the program until a test sends him away.
class HeadlessNotifications final : public Notifications {
 public:
  struct Notice {
    std::string title;
    std::string text;
    bool operator==(const Notice&) const = default;
  };

  [[nodiscard]] bool UserIsHere() const override { return here_; }
  void Show(const std::string& title, const std::string& text) override {
    shown_.push_back({title, text});
  }

  void SetUserHere(bool here) { here_ = here; }
  [[nodiscard]] const std::vector<Notice>& Shown() const { return shown_; }

 private:
  bool here_ = true;
  std::vector<Notice> shown_;
};

/// Notices wait until the twin runs them. Post may be called from any thread.
class HeadlessQueue final : public EventQueue {
 public:
  void Post(std::weak_ptr<const void> owner, std::function<void()> notice) override;
  [[nodiscard]] std::size_t Count() const;
  /// Takes the first notice and runs it, unless its owner is gone. False when none waits.
  bool RunOne();

 private:
  mutable std::mutex mutex_;
  std::deque<std::pair<std::weak_ptr<const void>, std::function<void()>>> notices_;
};

/// Ticks when the desktop's time is advanced past its next moment. An interval of 0 never ticks.
class HeadlessTimer final : public Timer {
 public:
  HeadlessTimer(const Clock& clock, FailureSink& failures) : clock_(&clock), failures_(&failures) {}

  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  void SetInterval(int milliseconds) override;

  [[nodiscard]] int Interval() const { return interval_; }
  [[nodiscard]] bool Runs() const { return enabled_ && interval_ > 0; }
  /// The clock's time of the next tick, of a timer that runs.
  [[nodiscard]] std::int64_t NextTick() const { return next_; }
  void TickNow();

 private:
  void Restart() { next_ = clock_->Milliseconds() + interval_; }

  const Clock* clock_;
  FailureSink* failures_;
  bool enabled_ = false;
  int interval_ = 0;
  std::int64_t next_ = 0;
};

}  // namespace tessel::test
