#include "system/Executable.h"

#include <filesystem>

namespace tessel {

std::string ExecutablePath() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

}  // namespace tessel
