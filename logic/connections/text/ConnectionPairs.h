#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace tessel {

/// A parsed connection string: upper-case key to value.
using ConnectionPairs = std::map<std::string, std::string, std::less<>>;

/// Splits at every ";" and each piece at its first "="; keys are trimmed and upper-cased, values
/// kept as they are. Empty keys are skipped and the first of two equal keys wins.
[[nodiscard]] ConnectionPairs ParseConnectionString(std::string_view connectionString);
/// The value of the first of `names` that is a key; empty if none is.
[[nodiscard]] std::string GetConnectionStringValue(const ConnectionPairs& pairs,
                                                   std::initializer_list<std::string_view> names);
/// Appends key=value, behind a ";" when something stands before it; nothing for an empty value.
void AppendConnectionStringPair(std::string& connectionString, std::string_view key,
                                std::string_view value);

}  // namespace tessel
