#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tessel {

/// What the text of a moment names. Two moments are the same when all parts are.
struct MomentParts {
  enum class Kind : std::uint8_t {
    Day,           ///< A date, with or without a time of day, wherever it was.
    Instant,       ///< A date and a time with a zone.
    Time,          ///< A time of day alone, or a span of time.
    TimeWithZone,  ///< Seconds of a day in UTC: may be less than none, or more than a day has.
  };
  Kind kind = Kind::Day;
  /// Since 1970-01-01 00:00:00, that of UTC for an instant; of a time since its midnight. A span of
  /// less than none with a fraction is one second further down.
  std::int64_t seconds = 0;
  std::string_view fraction;  ///< Digits of a second, without zeros at the end.

  bool operator==(const MomentParts&) const = default;
};

/// The parts of `text`, which they point into; nothing where it has none of the forms of MomentView
/// or something was added to it that is not known, such as "infinity".
[[nodiscard]] std::optional<MomentParts> ReadMoment(std::string_view text);

}  // namespace tessel
