#include "system/Descriptor.h"

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "contract/base/Error.h"
#include "contract/base/Files.h"

namespace tessel {

void ThrowFileError(const std::string& path, const std::string& reason, int code) {
  throw Error(ErrorInfo{errorNumber::file, code, {}, "Tessel", path + ": " + reason, {}, 0});
}

void ThrowSystemError(const std::string& path, int code) {
  ThrowFileError(path, std::generic_category().message(code), code);
}

void RefuseUnlessRegular(const std::string& path, mode_t mode) {
  if (S_ISDIR(mode)) ThrowSystemError(path, EISDIR);
  if (!S_ISREG(mode)) ThrowFileError(path, "Not a regular file", 0);
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind(pathSeparator);
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace tessel
