#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

#include "contract/base/Clock.h"
#include "contract/desktop/Window.h"
#include "logic/text/indent/TextIndent.h"

namespace tessel {

/// Indents a long text in slices of some milliseconds, between which the window works on.
class IndentSlices {
 public:
  /// `timer` belongs to a window that outlives it, as does the clock.
  IndentSlices(Timer& timer, const Clock& clock);

  /// A text of more bytes is long: indenting it at once would hold the window.
  static constexpr std::size_t longestAtOnce = 256U << 10U;

  /// What came of it.
  std::function<void(IndentedText)> Ended;
  /// After each slice: how much is done, from 0 to 100.
  std::function<void(int)> Progress;

  /// Begins with a text that looks like JSON or XML, in place of one that was under way. The text
  /// stays with the caller, and as it is, until it has ended or is stopped.
  void Start(std::string_view text);
  /// Ends what is under way; it is not told.
  void Stop();
  [[nodiscard]] bool IsUnderWay() const { return work_ != nullptr; }

 private:
  void RunSlice();

  Timer& timer_;
  const Clock& clock_;
  std::unique_ptr<Indenting> work_;
};

}  // namespace tessel
