#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tessel {

/// Time as an object, so that elapsed times and time stamps can be tested by hand. UI thread. No
/// function fails. The desktop owns it, and it lives as long as that. Time and time zone are those
/// of this machine, never a database's.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Milliseconds of a clock that never goes back; only differences have a meaning. Changes of the
  /// system's time do not show here.
  [[nodiscard]] virtual std::int64_t Milliseconds() const = 0;
  /// The local time of day in the system's long time format, for example "14:03:59", without the
  /// name of a time zone. For a person to read: nothing takes it apart again.
  [[nodiscard]] virtual std::string LongTime() const = 0;
  /// The local time of day of a moment in hours and minutes, for example "14:03": two digits each,
  /// 24 hours, in every locale.
  [[nodiscard]] virtual std::string
  ShortTimeOf(std::chrono::system_clock::time_point moment) const = 0;
  /// Date and time in UTC as they stand in files, for example "2026-11-22T14:03:59Z": the form of
  /// ISO 8601 in whole seconds.
  [[nodiscard]] virtual std::string UtcStamp() const = 0;
};

}  // namespace tessel
