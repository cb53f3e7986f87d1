#include "logic/results/runs/HistoryRing.h"

#include <limits>

#include "contract/text/Utf8.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr int longestTip = 80;

/// Byte length of the first `characters` characters; the whole length when there are no more.
std::size_t LengthOf(std::string_view text, int characters) {
  std::size_t at = 0;
  for (; at < text.size(); ++at)
    if (!ContinuesCharacter(text[at]) && characters-- == 0) break;
  return at;
}

}  // namespace

std::string ShortenForTip(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\r\n") ++i;
    if (text[i] == '\n') line += "  ";
    else line += text[i] == '\t' ? ' ' : text[i];
  }
  const std::size_t length = LengthOf(line, longestTip);
  return length < line.size() ? line.substr(0, length) + "..." : line;
}

void HistoryRing::RecordNew(const HistoryEntry& entry) {
  const bool repeats =
      count_ > 0 && At(position_).sql == entry.sql && At(position_).taggedSQL == entry.taggedSQL;
  if (!repeats) Append(entry);
  RecordRerun(position_, entry.sql, entry.recordCount);
}

void HistoryRing::Append(const HistoryEntry& entry) {
  if (position_ == capacity - 1) {
    if (base_ == std::numeric_limits<std::int16_t>::max()) RaiseAppError("Overflow");
    ++base_;
  } else {
    ++position_;
  }
  count_ = static_cast<std::int16_t>(position_ + 1);
  ring_[Index(position_)] = entry;
}

void HistoryRing::RecordRerun(int position, const std::string& sql, std::int64_t recordCount) {
  position_ = static_cast<std::int16_t>(position);
  HistoryEntry& entry = ring_[Index(position)];
  entry.sql = sql;
  entry.recordCount = recordCount;
}

}  // namespace tessel
