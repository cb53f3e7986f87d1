#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

namespace tessel {

/// Most that a field of one line takes: the toolkit's own limit of 32767 is too short for what a
/// connection string or the value of a tag may hold.
inline constexpr int longestTypedLine = 1 << 24;

/// UTF-8 as Qt keeps text; a byte that is no valid UTF-8 becomes U+FFFD.
[[nodiscard]] QString ToQt(std::string_view text);
/// Qt's text as UTF-8.
[[nodiscard]] std::string FromQt(QStringView text);

/// Text for a place where Qt would take markup for markup (a tool tip): shown as it stands.
[[nodiscard]] QString AsPlainToolTip(std::string_view text);
/// A window's title; Qt's own place holder for "modified" is shown as it stands.
[[nodiscard]] QString AsWindowTitle(std::string_view text);

/// Bytes that the first `units` UTF-16 units of `text` take in UTF-8.
[[nodiscard]] std::size_t BytesBefore(QStringView text, qsizetype units);
/// UTF-16 units that lie wholly before byte `bytes` of the UTF-8 form of `text`: an offset inside a
/// character is taken back to its start, one beyond the end to the end.
[[nodiscard]] qsizetype UnitsBefore(QStringView text, std::size_t bytes);

}  // namespace tessel
