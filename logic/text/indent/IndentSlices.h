#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contract/base/Clock.h"
#include "contract/desktop/Window.h"
#include "logic/text/indent/TextIndent.h"

namespace tessel {

/// Indents a text in slices of some milliseconds, between which the window works on.
class IndentSlices {
 public:
  /// `timer` belongs to a window that outlives it, as does the clock.
  IndentSlices(Timer& timer, const Clock& clock);

  /// What came of it. The text is still there then.
  std::function<void(IndentedText)> Ended;
  /// After each slice: how much is done, from 0 to 100.
  std::function<void(int)> Progress;

  /// Begins with a text that looks like JSON or XML, in place of one that was under way.
  void Start(std::string text);
  /// Ends what is under way; it is not told.
  void Stop();
  [[nodiscard]] bool IsUnderWay() const { return work_ != nullptr; }
  /// The text that was begun last.
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  void RunSlice();

  Timer& timer_;
  const Clock& clock_;
  std::string text_;
  std::unique_ptr<Indenting> work_;  ///< Looks at text_.
};

}  // namespace tessel
