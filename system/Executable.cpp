#include "system/Executable.h"

#include <sys/auxv.h>

#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

constexpr const char* runningFile = "/proc/self/exe";

/// What the system was asked to start, as it was written then; empty if it does not tell.
std::filesystem::path StartedName() {
  const unsigned long address = getauxval(AT_EXECFN);
  return address == 0 ? "" : reinterpret_cast<const char*>(address);  // NOLINT: so it is told
}

}  // namespace

/// A program started by the system's loader is told the loader's name, and one started from an open
/// file that of the descriptor.
std::string ExecutablePath() {
  std::error_code untold;
  const std::filesystem::path name = StartedName();
  const auto folder =
      std::filesystem::canonical(std::filesystem::absolute(name).parent_path(), untold);
  const std::filesystem::path started = folder / name.filename();
  const bool isFile = !untold && !folder.native().starts_with("/proc/");
  if (isFile && std::filesystem::equivalent(started, runningFile, untold)) return started.string();
  return std::filesystem::read_symlink(runningFile).string();
}

}  // namespace tessel
