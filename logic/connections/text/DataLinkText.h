#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessel {

/// The keys and values of a connection string in their order, spelled as they were. A value in
/// braces is read as the providers read it.
using DataLinkPairs = std::vector<std::pair<std::string, std::string>>;

/// Splits a connection string; pieces without a key are left out.
[[nodiscard]] DataLinkPairs SplitDataLink(std::string_view connectionString);
/// Joins what SplitDataLink split; a value that would not be read again as it stands gets
/// braces.
[[nodiscard]] std::string JoinDataLink(const DataLinkPairs& pairs);
/// Sets the value of a key (compared without regard to case), adding it at the end when it is new;
/// an empty value stays.
void SetDataLinkPair(DataLinkPairs& pairs, std::string_view key, std::string_view value);

}  // namespace tessel
