#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contract/base/Error.h"
#include "contract/desktop/Desktop.h"

namespace tessel {

/// Elapsed time as "Hh:Nn:Ss", hours counting modulo 24.
[[nodiscard]] std::string FormatElapsed(std::int64_t milliseconds);

/// Work that the user had to wait for, at its end.
struct EndedWork {
  std::string title;  ///< Whose it was: the name of a connection, or the program's own.
  std::string work;   ///< What was done, as the progress window says it: "Executing...".
  std::int64_t milliseconds = 0;
  bool failed = false;
  std::string outcome;  ///< What came of it, to be read by anybody; empty: nothing more to say.
};

/// "1 record", "250 records".
[[nodiscard]] std::string RecordsText(std::int64_t records);

/// As much of a failure's text as holds nothing of the SQL or of the data that it speaks of: it
/// ends before the first quote, bracket or line end.
[[nodiscard]] std::string_view PublicPart(std::string_view description);

/// What a notice says of the work, such as "Executing has ended after 00:01:07: 250 records."
[[nodiscard]] std::string NoticeText(const EndedWork& work);

/// Tells the user of work that took more than ten seconds, if he has turned to something else.
void TellOfEnd(Desktop& desktop, const EndedWork& work);

}  // namespace tessel
