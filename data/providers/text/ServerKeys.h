#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "contract/text/ServerKeyNames.h"
#include "data/providers/text/ConnectionKeys.h"

namespace tessel {

/// One key of a connection string by the name that ServerKeyName gives it.
struct ServerKey {
  std::string name;
  std::string value;
};

/// The keys that say something to a server, in the order written: of several of one meaning the
/// first counts.
[[nodiscard]] std::vector<ServerKey> ServerKeysOf(const ConnectionKeys& keys);

/// How long to wait for a server when the connection string does not say.
inline constexpr std::chrono::seconds defaultConnectTimeout{15};

/// The value of "Connect Timeout", in seconds, 0 for no limit. Raises Error of `source` when it is
/// no such number.
[[nodiscard]] std::chrono::seconds ToConnectTimeout(const std::string& value,
                                                    const std::string& source);

/// Raises Error of `source`: there is no such key. `known` is the list of those there are.
[[noreturn]] void RaiseUnknownKey(const std::string& name, const std::string& source,
                                  const std::string& known);

/// The value of "SSL Mode" in small letters, without blanks and signs between the words.
[[nodiscard]] std::string ToSslMode(std::string_view value);

}  // namespace tessel
