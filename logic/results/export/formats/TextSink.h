#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "contract/text/Utf8.h"

namespace tessel {

/// Where a writer puts its text. Now and then what has come together goes on to where it belongs,
/// so that a long text is never held whole.
class TextSink {
 public:
  using Drain = std::function<void(std::string_view)>;

  /// All that is put here stays.
  TextSink() = default;
  /// `drain` gets what has come together.
  explicit TextSink(Drain drain) : drain_(std::move(drain)) {}

  /// To append to.
  [[nodiscard]] std::string& Text() { return text_; }
  /// To be called after each record, and within long values: hands on what has come together when
  /// it is much.
  void Pass() {
    if (text_.size() >= much && drain_) HandOn();
  }
  /// Hands on what is left.
  void HandOn() {
    if (drain_) drain_(text_);
    text_.clear();
  }
  /// Gives away what has stayed.
  [[nodiscard]] std::string Taken() { return std::exchange(text_, {}); }

 private:
  static constexpr std::size_t much = std::size_t{1} << 18U;

  Drain drain_;
  std::string text_;
};

/// Calls `append` with `text`; a long one comes in pieces of whole characters, and the sink may
/// hand on between them.
template <class Append>
void AppendInPieces(TextSink& sink, std::string_view text, Append append) {
  constexpr std::size_t pieceBytes = std::size_t{1} << 16U;
  while (text.size() > pieceBytes) {
    std::size_t length = CharacterStart(text, pieceBytes);
    if (length == 0) length = pieceBytes;  // No text at all.
    append(text.substr(0, length));
    text.remove_prefix(length);
    sink.Pass();
  }
  append(text);
}

}  // namespace tessel
