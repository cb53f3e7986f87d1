#include "data/providers/postgresql/client/PqLibrary.h"

#include <string>

#include <dlfcn.h>

#include "contract/base/Error.h"

namespace tessel::pq {

namespace {

constexpr const char* libraryName = "libpq.so.5";

[[noreturn]] void RaiseMissing(const std::string& reason) {
  ErrorInfo error;
  error.number = errorNumber::database;
  error.source = "PostgreSQL";
  error.description =
      "The client library of PostgreSQL cannot be loaded (package libpq5): " + reason;
  throw Error(std::move(error));
}

std::string LastReason() {
  const char* reason = dlerror();
  return reason == nullptr ? std::string() : reason;
}

/// It stays until the program ends; a failure is tried again at the next connection.
void* Library() {
  static void* const library = [] {
    void* loaded = dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr) RaiseMissing(LastReason());
    return loaded;
  }();
  return library;
}

}  // namespace

void* AddressOf(const char* name) {
  void* address = dlsym(Library(), name);
  if (address == nullptr) RaiseMissing(LastReason());
  return address;
}

}  // namespace tessel::pq
