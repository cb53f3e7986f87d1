// What the user is told of work that took long and ended while he looked at something else. The
// notice may be read by anybody who passes, even on a locked screen: it tells no SQL and no data.

#include "logic/program/EndNotice.h"

#include <cstdio>

#include "contract/desktop/Notifications.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr std::int64_t longMilliseconds = 10'000;
constexpr std::string_view quotes = "'\"`([{<\r\n";

bool IsLetterAt(std::string_view text, std::size_t place) {
  if (place >= text.size()) return false;
  const char letter = AsciiUpper(text[place]);
  return letter >= 'A' && letter <= 'Z';
}

/// The one of "doesn't".
bool IsApostrophe(std::string_view text, std::size_t place) {
  return text[place] == '\'' && place > 0 && IsLetterAt(text, place - 1) &&
         IsLetterAt(text, place + 1);
}

}  // namespace

std::string FormatElapsed(std::int64_t milliseconds) {
  const std::int64_t seconds = milliseconds / 1000;
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text;
}

std::string RecordsText(std::int64_t records) {
  return std::to_string(records) + (records == 1 ? " record" : " records");
}

std::string_view PublicPart(std::string_view description) {
  std::size_t end = description.find_first_of(quotes);
  while (end != std::string_view::npos && IsApostrophe(description, end))
    end = description.find_first_of(quotes, end + 1);
  std::string_view part = description.substr(0, end);
  while (!part.empty() && part.find_last_of(" :,;.") == part.size() - 1) part.remove_suffix(1);
  return part;
}

std::string NoticeText(const EndedWork& work) {
  std::string text = work.work;
  while (!text.empty() && text.back() == '.') text.pop_back();
  text += work.failed ? " has failed after " : " has ended after ";
  text += FormatElapsed(work.milliseconds);
  if (!work.outcome.empty()) text += ": " + work.outcome;
  return text + ".";
}

void TellOfEnd(Desktop& desktop, const EndedWork& work) {
  if (work.milliseconds <= longMilliseconds || desktop.TheNotifications().UserIsHere()) return;
  desktop.TheNotifications().Show(work.title, NoticeText(work));
}

}  // namespace tessel
