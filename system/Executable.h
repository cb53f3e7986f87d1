#pragma once

#include <string>

namespace tessel {

/// Full path of the running executable, with no symbolic link in it. Raises
/// std::filesystem::filesystem_error when the system does not tell.
[[nodiscard]] std::string ExecutablePath();

}  // namespace tessel
