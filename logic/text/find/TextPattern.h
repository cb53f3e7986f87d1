#pragma once

#include <string_view>

#include "logic/text/find/PatternProgram.h"

namespace tessel {

/// How a text is looked for.
struct FindOptions {
  bool wholeWords = false;
  bool matchCase = false;
  bool regularExpression = false;
};

/// What is looked for, made ready: a text as it stands, or a regular expression.
///
/// An expression has characters, ".", sets such as "[a-z_]" and "[^,]", "\d", "\w", "\s" and their
/// opposites in capitals, "^" and "$" for the ends of a line, "\b" and "\B" for the edges of words,
/// groups "(...)" and "(?:...)", "|", and the repetitions "*", "+", "?" and "{2,5}", which take as
/// much as they can, or with a "?" behind them as little. "\n", "\r", "\t" and "\x41" are
/// characters; any other sign behind a backslash stands for itself. Of all places the first one
/// matches. The time it takes grows with the text and with the expression, never by more than both
/// multiplied, whatever they are.
///
/// `what` is not empty. Raises Error(application) with a sentence that says what is wrong with the
/// expression.
[[nodiscard]] PatternProgram MakePattern(std::string_view what, const FindOptions& options);

}  // namespace tessel
