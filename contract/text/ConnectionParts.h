#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/text/Ascii.h"

namespace tessel {

/// What may stand around a value of a connection string. Inside it ";" is plain, and the sign that
/// ends it stands doubled for itself.
enum class Wrapping {
  Braces,          ///< {value}: how the providers read.
  BracesAndQuotes  ///< "value" and 'value' too, as some drivers read.
};

/// One piece of a connection string; both texts point into it and live as long as it does.
struct ConnectionPart {
  std::string_view name;  ///< Without surrounding blanks; may be empty.
  std::string_view text;  ///< All behind the first "=", as written; empty without one.
  bool hasValue = false;  ///< Whether there is a "=".

  /// As written, its braces or quotes included, without surrounding blanks.
  [[nodiscard]] std::string_view Value() const { return TrimSpaces(text); }
};

/// The pieces of a connection string, in the order written, with ";" between them. A wrapped value
/// goes on to the sign that ends it, and then to the next ";"; without an end, to the end of the
/// text. A piece with nothing in it, as between ";;", is given too, without a name. Nothing is
/// refused. This is the one place where connection strings are read by their rules. Any thread.
[[nodiscard]] std::vector<ConnectionPart> ConnectionParts(std::string_view connectionString,
                                                          Wrapping wrapping);

/// A value without what is wrapped around it, and each doubled sign in it single. One that is not
/// wrapped, or whose end is missing, comes back as it is. `value` has no blanks around it.
[[nodiscard]] std::string BareValue(std::string_view value, Wrapping wrapping);

/// `value` as it has to stand in a connection string: in braces when it holds "{", "}", ";", "=" or
/// begins or ends with a blank.
[[nodiscard]] std::string BracedValue(std::string_view value);
/// The same, but always in braces.
[[nodiscard]] std::string InBraces(std::string_view value);

}  // namespace tessel
