#pragma once

#include <string>

namespace tessel {

/// Full path of the running executable as it was started: started through a symbolic link, it is
/// the link, and its folder is the link's. There is no link in the folder itself. Where the system
/// tells of no such path that still is the running executable, it is that of the file the link
/// leads to. Not to be called after the current directory has been changed. Raises
/// std::filesystem::filesystem_error when the system does not tell.
[[nodiscard]] std::string ExecutablePath();

}  // namespace tessel
