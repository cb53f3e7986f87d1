#include "contract/desktop/controls/values/HexBox.h"

#include <algorithm>
#include <utility>

#include "contract/text/NumberText.h"

namespace tessel {

namespace {

constexpr std::int64_t noTarget = -1;
constexpr int offsetDigits = 8;
constexpr int fewestOffsetDigits = 1;

/// Eight digits, and more where the offset needs them.
void AppendOffset(std::int64_t offset, std::string& line) {
  int digits = offsetDigits;
  while (digits < 16 && (offset >> (4 * digits)) != 0) ++digits;
  for (int digit = digits - fewestOffsetDigits; digit >= 0; --digit)
    line += hexDigits[static_cast<std::size_t>(offset >> (4 * digit)) & 15U];
}

char ShownCharacter(std::byte byte) {
  const auto character = static_cast<unsigned char>(byte);
  return character >= 0x20 && character < 0x7F ? static_cast<char>(character) : '.';
}

}  // namespace

void HexBox::SetSource(Source source) {
  source_ = std::move(source);
  caret_ = anchor_ = 0;
  WriteInSight();
  Tell();
}

void HexBox::Refresh() {
  caret_ = Clamped(caret_);
  anchor_ = Clamped(anchor_);
  Tell();
}

std::span<const std::byte> HexBox::Bytes() const {
  return source_ ? source_() : std::span<const std::byte>();
}

std::int64_t HexBox::SelStart() const { return std::min(anchor_, caret_); }

std::int64_t HexBox::SelLength() const {
  const std::int64_t length = std::max(anchor_, caret_) - SelStart() + 1;
  return std::min(length, Size());
}

void HexBox::Select(std::int64_t start, std::int64_t length) {
  anchor_ = Clamped(start);
  caret_ = Clamped(anchor_ + std::max<std::int64_t>(std::min(length, Size()), 1) - 1);
  WriteInSight();
  Tell();
}

std::string HexBox::LineText(std::int64_t line) const {
  const std::span<const std::byte> bytes = Bytes();
  const std::int64_t start = line * LineLength();
  std::string text;
  if (start < 0 || start >= static_cast<std::int64_t>(bytes.size())) return text;
  const auto begin = static_cast<std::size_t>(start);
  const auto shown =
      bytes.subspan(begin, std::min(bytes.size() - begin, static_cast<std::size_t>(LineLength())));
  AppendOffset(start, text);
  text += ' ';
  for (const std::byte byte : shown) text += ' ' + ByteToHex(static_cast<unsigned char>(byte));
  text.append(3 * (static_cast<std::size_t>(LineLength()) - shown.size()) + 2, ' ');
  for (const std::byte byte : shown) text += ShownCharacter(byte);
  return text;
}

void HexBox::MoveTo(std::int64_t offset, bool extend) {
  const std::int64_t caret = Clamped(offset);
  if (caret == caret_ && (extend || anchor_ == caret_)) return;
  caret_ = caret;
  if (!extend) anchor_ = caret_;
  WriteInSight();
  Tell();
}

bool HexBox::TakeMove(int keyCode, int shift, std::int64_t linesOnPage) {
  if ((shift & shiftState::alt) != 0) return false;
  const bool ctrl = (shift & shiftState::ctrl) != 0;
  if (keyCode == 'A' && shift == shiftState::ctrl) {
    Select(0, Size());
    return true;
  }
  const std::int64_t target = TargetOf(keyCode, ctrl, linesOnPage);
  if (target == noTarget) return false;
  MoveTo(target, (shift & shiftState::shift) != 0);
  return true;
}

std::int64_t HexBox::TargetOf(int keyCode, bool ctrl, std::int64_t linesOnPage) const {
  const std::int64_t line = LineLength();
  const std::int64_t page = std::max<std::int64_t>(linesOnPage, 1) * line;
  const std::int64_t inLine = caret_ % line;
  switch (keyCode) {
    case key::left: return std::max<std::int64_t>(caret_ - 1, 0);
    case key::right: return caret_ + 1;
    case key::up: return caret_ < line ? caret_ : caret_ - line;
    case key::down: return caret_ + line < Size() ? caret_ + line : caret_;
    case key::pageUp: return caret_ < page ? inLine : caret_ - page;
    case key::pageDown: return caret_ + page;
    case key::home: return ctrl ? 0 : caret_ - inLine;
    case key::end: return ctrl ? Size() : caret_ - inLine + line - 1;
    default: return noTarget;
  }
}

std::int64_t HexBox::Clamped(std::int64_t offset) const {
  return std::clamp<std::int64_t>(offset, 0, std::max<std::int64_t>(Size() - 1, 0));
}

void HexBox::Tell() {
  WriteShown();
  Raise(CaretMoved);
}

}  // namespace tessel
