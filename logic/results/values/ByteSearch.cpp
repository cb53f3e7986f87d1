#include "logic/results/values/ByteSearch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "logic/results/values/ValueKind.h"

namespace tessel {

namespace {

/// Bytes that are looked through before the window has its turn: a few milliseconds.
constexpr std::size_t piece = 4U << 20U;
constexpr std::size_t percent = 100;

}  // namespace

ByteSearch::ByteSearch(Window& window, HexBox& box, std::function<void(const std::string&)> said)
    : box_(box), timer_(window.TimerNamed("tmrFindBytes")), said_(std::move(said)) {
  timer_.SetInterval(1);
  timer_.Tick = [this] { Tick(); };
}

void ByteSearch::SetSource(HexBox::Source source) {
  timer_.SetEnabled(false);
  source_ = std::move(source);
}

void ByteSearch::Find(std::string wanted) {
  wanted_ = std::move(wanted);
  Begin();
}

bool ByteSearch::Again() {
  if (wanted_.empty()) return false;
  Begin();
  return true;
}

bool ByteSearch::Stop() {
  if (!timer_.Enabled()) return false;
  End("Search stopped");
  return true;
}

/// Behind the current byte; a small value is looked through at once.
void ByteSearch::Begin() {
  looked_ = 0;
  start_ = static_cast<std::size_t>(box_.SelStart()) + 1;
  timer_.SetEnabled(true);
  Tick();
}

/// The bytes may be others by now, or gone.
void ByteSearch::Tick() {
  const std::size_t size = source_ ? source_().size() : 0;
  if (looked_ >= size || size < wanted_.size()) return End("Not found");
  const std::size_t from = (start_ + looked_) % size;
  Look(from, std::min(from + piece, size));
}

/// Matches that begin in this piece.
void ByteSearch::Look(std::size_t from, std::size_t to) {
  const std::string_view bytes = AsCharacters(source_());
  const std::size_t end = std::min(to + wanted_.size() - 1, bytes.size());
  const std::size_t found = bytes.substr(0, end).find(wanted_, from);
  if (found != std::string_view::npos) {
    End("");
    return box_.Select(static_cast<std::int64_t>(found), static_cast<std::int64_t>(wanted_.size()));
  }
  looked_ += to - from;
  if (looked_ >= bytes.size()) return End("Not found");
  said_("Searching... " + std::to_string(looked_ * percent / bytes.size()) + " %");
}

void ByteSearch::End(const std::string& said) {
  timer_.SetEnabled(false);
  said_(said);
}

}  // namespace tessel
