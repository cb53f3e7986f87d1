#pragma once

#include <atomic>

namespace tessel {

/// The client library of a database, which is loaded when the first of its functions is called:
/// with all that such libraries bring (TLS, Kerberos, LDAP) they would take a good part of the
/// program's start. It stays until the program ends. Any thread.
class LateLibrary {
 public:
  /// `file` as the dynamic linker finds it; `database` and `package` for the words when it is not
  /// there. All of them outlive it.
  constexpr LateLibrary(const char* file, const char* database, const char* package)
      : file_(file), database_(database), package_(package) {}

  /// The address of a function. Raises Error(database) when the library or the function is not
  /// there; that is tried again at the next call.
  [[nodiscard]] void* AddressOf(const char* name) const;

 private:
  [[noreturn]] void RaiseMissing() const;

  const char* file_;
  const char* database_;
  const char* package_;
};

/// The address of such a function, looked up when it is first asked for. Any thread.
class LateAddress {
 public:
  constexpr LateAddress(const LateLibrary& library, const char* name)
      : library_(library), name_(name) {}
  [[nodiscard]] void* Get() const {
    void* address = address_.load(std::memory_order_acquire);
    if (address == nullptr) {
      address = library_.AddressOf(name_);
      address_.store(address, std::memory_order_release);
    }
    return address;
  }

 private:
  const LateLibrary& library_;
  const char* name_;
  mutable std::atomic<void*> address_ = nullptr;
};

/// A function of such a library, called as it is declared.
template <class Signature>
class LateFunction;

template <class Result, class... Parts>
class LateFunction<Result(Parts...)> : public LateAddress {
 public:
  using LateAddress::LateAddress;
  Result operator()(Parts... parts) const {
    return reinterpret_cast<Result (*)(Parts...)>(Get())(parts...);
  }
};

/// One that takes more than it declares, called without more.
template <class Result, class... Parts>
class LateFunction<Result(Parts..., ...)> : public LateAddress {
 public:
  using LateAddress::LateAddress;
  Result operator()(Parts... parts) const {
    return reinterpret_cast<Result (*)(Parts..., ...)>(Get())(parts...);
  }
};

}  // namespace tessel
