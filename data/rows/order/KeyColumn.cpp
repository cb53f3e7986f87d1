#include "data/rows/order/KeyColumn.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

#include "contract/text/Ascii.h"
#include "data/rows/order/NumberKey.h"
#include "data/rows/order/SortOrder.h"

namespace tessel {

namespace {

/// Of a value longer than this the key holds so many bytes.
constexpr std::size_t longestPart = 1000;
constexpr std::size_t keysMeasured = 4096;
constexpr double spare = 1.25;
constexpr std::size_t headBytes = sizeof(std::uint64_t);

std::string_view AsText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The beginning of a text, up to the end of a character.
std::string_view StartOf(std::string_view text) {
  std::size_t end = std::min(text.size(), longestPart);
  if (end == text.size()) return text;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end);
}

std::uint64_t FromBigEndian(std::string_view bytes) {
  std::uint64_t head = 0;
  std::memcpy(&head, bytes.data(), std::min(bytes.size(), headBytes));
  return __builtin_bswap64(head);
}

int Sign(std::strong_ordering order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

}  // namespace

// --- making keys ---------------------------------------------------------------------------------

void KeyColumn::ExpectRows(std::size_t rows) {
  expected_ = rows;
  ranks_.reserve(rows);
  ends_.reserve(rows);
}

/// As much as the first keys let expect: growing moves all that there is, which takes long.
void KeyColumn::MakeRoom() {
  const double perKey = static_cast<double>(bytes_.size()) / static_cast<double>(keysMeasured);
  bytes_.reserve(static_cast<std::size_t>(perKey * static_cast<double>(expected_) * spare));
}

bool KeyColumn::Add(const ValueView& value) {
  if (Count() == keysMeasured) MakeRoom();
  const auto rank = static_cast<std::uint8_t>(RankOf(value));
  switch (RankOf(value)) {
    case ValueRank::Null: break;
    case ValueRank::Boolean: bytes_ += std::get<bool>(value) ? '\1' : '\0'; break;
    case ValueRank::Number:
      if (!AddNumber(value)) return false;
      break;
    case ValueRank::Text: AddText(std::get<std::string_view>(value)); break;
    case ValueRank::Moment: AddBytes(std::get<MomentView>(value).text); break;
    case ValueRank::Binary: AddBytes(AsText(std::get<BinaryView>(value).bytes)); break;
  }
  ranks_.push_back(rank);
  ends_.push_back(bytes_.size());
  NoteEnd(rank);
  return true;
}

bool KeyColumn::AddNumber(const ValueView& value) {
  if (form_ == NumberForm::Whole) {
    const auto* whole = std::get_if<std::int64_t>(&value);
    if (whole == nullptr) return BeginAnew(NumberForm::Real);
    AddFixed(WholeKey(*whole));
  } else if (form_ == NumberForm::Real) {
    const std::optional<double> real = ExactDouble(value);
    if (!real) return BeginAnew(NumberForm::Digits);
    AddFixed(RealKey(*real));
  } else {
    AppendDigitsKey(NumberDigits(value), bytes_);
  }
  return true;
}

void KeyColumn::AddFixed(std::uint64_t bits) {
  const std::uint64_t bigEndian = __builtin_bswap64(bits);
  bytes_.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

void KeyColumn::AddText(std::string_view text) {
  const std::string_view start = StartOf(text);
  if (start.size() < text.size()) hasCutKeys_ = true;
  if (texts_ != nullptr) return texts_->Append(start, bytes_);
  for (const char c : start) bytes_ += AsciiUpper(c);
}

void KeyColumn::AddBytes(std::string_view bytes) {
  if (bytes.size() > longestPart) hasCutKeys_ = true;
  bytes_ += bytes.substr(0, longestPart);
}

bool KeyColumn::BeginAnew(NumberForm form) {
  const std::size_t expected = expected_;
  *this = KeyColumn(descending_, texts_);
  form_ = form;
  ExpectRows(expected);
  return false;
}

void KeyColumn::NoteEnd(std::uint8_t rank) {
  Common& common = common_[rank];
  const std::size_t row = ranks_.size() - 1;
  const std::string_view key = KeyOf(row);
  if (!common.any) {
    common = {true, row, key.size(), key.size(), key.size()};
    return;
  }
  const std::string_view first = KeyOf(common.firstRow).substr(0, common.start);
  const auto differs = std::ranges::mismatch(first, key);
  common.start = static_cast<std::size_t>(differs.in1 - first.begin());
  common.longest = std::max(common.longest, key.size());
  common.shortest = std::min(common.shortest, key.size());
}

// --- comparing -----------------------------------------------------------------------------------

KeyColumn::Head KeyColumn::HeadOf(std::size_t row) const {
  const std::uint8_t rank = ranks_[row];
  return {FromBigEndian(KeyOf(row).substr(common_[rank].start)), rank};
}

int KeyColumn::CompareBehindHead(std::size_t a, std::size_t b) const {
  const Common& common = common_[ranks_[a]];
  const bool isInHead =
      common.longest == common.shortest && common.longest <= common.start + headBytes;
  if (isInHead) return 0;
  return Sign(KeyOf(a).substr(common.start) <=> KeyOf(b).substr(common.start));
}

int KeyColumn::Compare(std::size_t a, std::size_t b) const {
  if (ranks_[a] != ranks_[b]) return ranks_[a] < ranks_[b] ? -1 : 1;
  return Sign(KeyOf(a) <=> KeyOf(b));
}

}  // namespace tessel
