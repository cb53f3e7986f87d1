#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// The size that a member of a ZIP file has when it is unpacked, as the file's directory tells;
/// nothing when the file cannot be read or has no such member. For files without the extensions for
/// more than 4 GB.
[[nodiscard]] std::optional<std::uint64_t> ZipMemberSize(const std::string& zip,
                                                         std::string_view member);

}  // namespace tessel
