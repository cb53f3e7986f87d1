#include "data/providers/LateLibrary.h"

#include <string>

#include <dlfcn.h>

#include "contract/base/Error.h"

namespace tessel {

void LateLibrary::RaiseMissing() const {
  const char* reason = dlerror();
  ErrorInfo error;
  error.number = errorNumber::database;
  error.source = database_;
  error.description = "The client library of " + std::string(database_) +
                      " cannot be loaded (package " + package_ +
                      "): " + (reason == nullptr ? "" : reason);
  throw Error(std::move(error));
}

/// The linker counts how often a library was opened, and never gives this one back.
void* LateLibrary::AddressOf(const char* name) const {
  void* library = dlopen(file_, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) RaiseMissing();
  void* address = dlsym(library, name);
  if (address == nullptr) RaiseMissing();
  return address;
}

}  // namespace tessel
