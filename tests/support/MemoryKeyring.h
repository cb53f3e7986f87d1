#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "contract/base/EventQueue.h"
#include "contract/desktop/Keyring.h"

namespace tessel::test {

/// A keyring in memory, which answers through the event queue: at once, or when the test lets it.
class MemoryKeyring final : public Keyring {
 public:
  explicit MemoryKeyring(EventQueue& queue) : queue_(queue) {}

  void Look(std::weak_ptr<const void> owner, Answered answered) override {
    Answer(std::move(owner), std::move(answered), [this] { return Refused({}, absent); });
  }
  void Read(std::string_view name, std::weak_ptr<const void> owner, Answered answered) override {
    Answer(std::move(owner), std::move(answered), [this, key = std::string(name)] {
      const auto found = secrets.find(key);
      const auto kind =
          found == secrets.end() ? KeyringAnswer::Kind::Missing : KeyringAnswer::Kind::Done;
      return Refused({kind, found == secrets.end() ? "" : found->second, ""}, failure);
    });
  }
  void Keep(std::string_view name, std::string_view secret, std::weak_ptr<const void> owner,
            Answered answered) override {
    Answer(std::move(owner), std::move(answered),
           [this, key = std::string(name), value = std::string(secret)] {
             if (!failure) secrets[key] = value;
             return Refused({}, failure);
           });
  }

  /// Gives the answers that are held back.
  void Resume() {
    hold = false;
    while (!held_.empty()) {
      queue_.Post(held_.front().first, held_.front().second);
      held_.pop_front();
    }
  }

  std::map<std::string, std::string> secrets;
  std::optional<std::string> absent;   ///< Why there is no keyring.
  std::optional<std::string> failure;  ///< Why it refuses to read and to keep.
  bool hold = false;                   ///< Requests to read and to keep wait for Resume.

 private:
  static KeyringAnswer Refused(KeyringAnswer answer, const std::optional<std::string>& reason) {
    return reason ? KeyringAnswer{KeyringAnswer::Kind::Failed, "", *reason} : answer;
  }
  template <class Make>
  void Answer(std::weak_ptr<const void> owner, Answered answered, Make make) {
    auto notice = [answered = std::move(answered), make = std::move(make)] { answered(make()); };
    if (hold) held_.emplace_back(std::move(owner), std::move(notice));
    else queue_.Post(std::move(owner), std::move(notice));
  }

  EventQueue& queue_;
  std::deque<std::pair<std::weak_ptr<const void>, std::function<void()>>> held_;
};

}  // namespace tessel::test
